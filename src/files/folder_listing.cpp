// Listing of folders.
#include "files/folder_listing.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "files/failure.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

// Not those of <cctype>, which depend on the locale.
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

int Sign(bool isBefore, bool isAfter) { return isBefore ? -1 : isAfter ? 1 : 0; }

int Compared(char a, char b) {
  const auto codeA = static_cast<unsigned char>(Lower(a)), codeB = static_cast<unsigned char>(Lower(b));
  return Sign(codeA<codeB, codeA> codeB);
}

// Takes the number that `text` begins with, without leading zeros. It may have any number of digits.
std::string_view TakeNumber(std::string_view& text) {
  const auto length = std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin();
  std::string_view number = text.substr(0, length);
  text.remove_prefix(length);
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

int ComparedNumbers(std::string_view a, std::string_view b) {
  return a.size() != b.size() ? Sign(a.size() < b.size(), true) : a.compare(b);
}

}  // namespace

FolderListing ListFolder(const std::string& folder) {
  // With the slash at its end, a folder that is missing is a path not found and no file not found.
  const std::string path = folder + "/";
  const auto check = [&](const std::error_code& error) {
    if (error)
      throw ErrorFromSystem(error.value(), path);
  };

  FolderListing listing;
  std::error_code error, unknown;
  fs::directory_iterator entry(path, error);
  check(error);
  while (entry != fs::directory_iterator()) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with('.')) {
      if (entry->is_directory(unknown))
        listing.folders.push_back(name);
      else if (entry->is_regular_file(unknown))
        listing.files.push_back(name);
    }
    entry.increment(error);
    check(error);
  }
  std::sort(listing.folders.begin(), listing.folders.end(), ComesBefore);
  std::sort(listing.files.begin(), listing.files.end(), ComesBefore);
  return listing;
}

bool IsOfType(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*")
    return true;
  const std::string_view ending = pattern.substr(1);
  return name.size() >= ending.size() && std::equal(ending.begin(), ending.end(), name.end() - ending.size(),
                                                    [](char a, char b) { return Lower(a) == Lower(b); });
}

bool ComesBefore(std::string_view a, std::string_view b) {
  std::string_view restA = a, restB = b;
  while (!restA.empty() && !restB.empty()) {
    int order = 0;
    if (IsDigit(restA[0]) && IsDigit(restB[0])) {
      const std::string_view numberA = TakeNumber(restA), numberB = TakeNumber(restB);
      order = ComparedNumbers(numberA, numberB);
    } else {
      order = Compared(restA[0], restB[0]);
      restA.remove_prefix(1);
      restB.remove_prefix(1);
    }
    if (order != 0)
      return order < 0;
  }
  // Names that differ in case or leading zeros only still have their order.
  return restA.empty() && restB.empty() ? a < b : restA.empty();
}

std::vector<std::string> FoldersDownTo(const std::string& folder) {
  std::vector<std::string> folders;
  fs::path reached;
  for (const fs::path& part : fs::path(folder).lexically_normal()) {
    // A slash at the end gives an empty last part.
    if (part.empty())
      break;
    reached /= part;
    folders.push_back(reached.string());
  }
  return folders;
}

}  // namespace halmek
