// What a folder holds, as it is listed to choose from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halmek {

// Names without their folder, as the bytes that they are, in order.
struct FolderListing {
  std::vector<std::string> folders, files;

  bool operator==(const FolderListing&) const = default;
};

// The folders and the regular files in `folder`, links to such included, those whose names begin with "."
// not. Throws RunTimeError where it cannot be read.
FolderListing ListFolder(const std::string& folder);

// Whether a file is of the type `pattern`: "*" and an ending in whatever case; "*.*" is every file.
bool IsOfType(std::string_view name, std::string_view pattern);

// The order of names: without regard to case, and numbers within them by their value (img2 before img10).
bool ComesBefore(std::string_view a, std::string_view b);

// The folders that lead to an absolute path, from the root down to itself.
std::vector<std::string> FoldersDownTo(const std::string& folder);

}  // namespace halmek
