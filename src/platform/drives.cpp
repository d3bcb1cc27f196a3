// Mounted file systems.
#include "platform/drives.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <algorithm>
#include <set>
#include <string_view>

#include "platform/installed.h"
#include "platform/text.h"

namespace halmek {
namespace {

// Views of the system's own state, and pieces that containers and packages are made of.
constexpr std::string_view pseudoTypes[] = {
    "autofs",   "binfmt_misc", "bpf",      "cgroup",        "cgroup2",    "configfs",
    "debugfs",  "devpts",      "devtmpfs", "efivarfs",      "fuse.lxcfs", "fuse.portal",
    "fusectl",  "hugetlbfs",   "mqueue",   "nfsd",          "nsfs",       "overlay",
    "proc",     "pstore",      "ramfs",    "rpc_pipefs",    "securityfs", "selinuxfs",
    "squashfs", "sysfs",       "tracefs",  "fuse.snapfuse", "rootfs",     "fuse.gvfsd-fuse",
};

bool LiesIn(std::string_view path, std::string_view folder) {
  return folder == "/" || path == folder || (path.starts_with(folder) && path[folder.size()] == '/');
}

bool MayHoldFiles(const Mount& mount) {
  if (std::find(std::begin(pseudoTypes), std::end(pseudoTypes), mount.type) != std::end(pseudoTypes))
    return false;
  // Desktops mount disks under /run, but what lies there in memory is the system's.
  const bool isInMemory = mount.type == "tmpfs";
  return !(isInMemory &&
           (LiesIn(mount.folder, "/run") || LiesIn(mount.folder, "/dev") || LiesIn(mount.folder, "/sys")));
}

}  // namespace

std::vector<Drive> Drives() {
  std::vector<Mount> mounts;
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
    // Containers mount single files, too.
    if (QFileInfo(volume.rootPath()).isDir())
      mounts.push_back({Typed(volume.rootPath()), volume.fileSystemType().toStdString()});
  std::vector<Drive> drives = DrivesOf(Typed(QDir::homePath()), mounts);
  if (const std::string installed = InstalledFolder(); !installed.empty())
    drives.push_back({"Halmek's own (" + installed + ")", installed});
  return drives;
}

std::vector<Drive> DrivesOf(const std::string& home, const std::vector<Mount>& mounts) {
  std::set<std::string> folders{"/"};
  for (const Mount& mount : mounts)
    if (MayHoldFiles(mount))
      folders.insert(mount.folder);

  std::vector<Drive> drives;
  if (!home.empty() && home != "/") {
    folders.erase(home);
    drives.push_back({"Home (" + home + ")", home});
  }
  for (const std::string& folder : folders)
    drives.push_back({folder, folder});
  return drives;
}

int DriveHolding(const std::vector<Drive>& drives, const std::string& folder) {
  int holding = 0;
  size_t longest = 0;
  for (size_t i = 0; i < drives.size(); ++i) {
    const std::string& path = drives[i].folder;
    if (path.size() > longest && LiesIn(folder, path)) {
      holding = static_cast<int>(i);
      longest = path.size();
    }
  }
  return holding;
}

}  // namespace halmek
