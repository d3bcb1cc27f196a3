// What a folder holds.
#include "files/folder_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <tuple>

#include "support/test_session.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

TEST(ListFolder, ListsFoldersAndRegularFilesAndLinksToThem) {
  const test::TemporaryFolder folder;
  test::WriteFile(folder.File("star.fts"), "");
  test::WriteFile(folder.File(".hidden"), "");
  test::WriteFile(folder.File("\xE9toile.fts"), "");
  fs::create_directory(folder.File("night"));
  fs::create_directory(folder.File(".cache"));
  fs::create_symlink("star.fts", folder.File("link.fts"));
  fs::create_directory_symlink("night", folder.File("linked"));
  fs::create_symlink("nowhere", folder.File("broken.fts"));
  fs::create_symlink("circle.fts", folder.File("circle.fts"));

  const FolderListing listing = ListFolder(folder.path());
  EXPECT_EQ(listing.folders, (Names{"linked", "night"}));
  EXPECT_EQ(listing.files, (Names{"link.fts", "star.fts", "\xE9toile.fts"}));
}

TEST(ListFolder, RefusesWhatIsNoFolder) {
  const test::TemporaryFolder folder;
  test::WriteFile(folder.File("star.fts"), "");
  for (const char* name : {"missing", "missing/within", "star.fts"})
    EXPECT_EQ(test::RefusalOf([&] { ListFolder(folder.File(name)); }), "Error: 76  Error: Path not found.")
        << name;
}

TEST(IsOfType, TakesEndingsInWhateverCaseAndEveryFileForAllTypes) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"star.fts", "*.fts", true},    {"STAR.FTS", "*.fts", true}, {"star.fits", "*.fit", false},
      {"star.ft", "*.fts", false},    {"starfts", "*.fts", false}, {"a.fts.txt", "*.fts", false},
      {"a.txt.Fits", "*.fits", true}, {"README", "*.*", true},     {"star.fts", "*.*", true},
  };
  for (const auto& [name, pattern, expected] : cases)
    EXPECT_EQ(IsOfType(name, pattern), expected) << name << " " << pattern;
}

TEST(ComesBefore, OrdersNamesAsPeopleCount) {
  std::istringstream names(
      "1.fts 02.fts 2.fts arc-10.fts Arc.fts arc.fts img2.fts IMG10.fts img10b img10b2 "
      "img99999999999999999999 img100000000000000000000 star star.fts \xC3\xA9toile");
  const Names ordered(std::istream_iterator<std::string>(names), {});
  Names sorted = {ordered.rbegin(), ordered.rend()};
  std::sort(sorted.begin(), sorted.end(), ComesBefore);
  EXPECT_EQ(sorted, ordered);
}

TEST(FoldersDownTo, NamesEveryFolderOnTheWay) {
  const std::pair<const char*, Names> cases[] = {
      {"/", {"/"}},
      {"/home/a night/raw", {"/", "/home", "/home/a night", "/home/a night/raw"}},
      {"/home//raw/../cooked/", {"/", "/home", "/home/cooked"}},
  };
  for (const auto& [folder, expected] : cases)
    EXPECT_EQ(FoldersDownTo(folder), expected) << folder;
}

}  // namespace
}  // namespace halmek
