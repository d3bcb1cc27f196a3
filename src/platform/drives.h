// The "drives" of a file chooser: the home folder, the mounted file systems, and what is installed with
// Halmek.
#pragma once

#include <string>
#include <vector>

namespace halmek {

// A place to start from; its name is as it is shown.
struct Drive {
  std::string name, folder;
};

// A mounted file system, its type as the system calls it, such as "ext4".
struct Mount {
  std::string folder, type;
};

// The home folder and the file systems on which files may lie, as they are now; and the folder of the
// wavelength tables and the sample night, where they are installed.
std::vector<Drive> Drives();

// The same of given mounts, by path: the root is always there, those that hold no files of anybody are left
// out. `home` may be empty.
std::vector<Drive> DrivesOf(const std::string& home, const std::vector<Mount>& mounts);

// The number of the drive that a folder lies on: the one with the longest path above it.
int DriveHolding(const std::vector<Drive>& drives, const std::string& folder);

}  // namespace halmek
