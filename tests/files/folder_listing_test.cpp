// What a folder holds.
#include "files/folder_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

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
  const struct {
    const char *name, *pattern;
    bool expected;
  } cases[] = {
      {"star.fts", "*.fts", true},    {"STAR.FTS", "*.fts", true}, {"star.fits", "*.fit", false},
      {"star.ft", "*.fts", false},    {"starfts", "*.fts", false}, {"a.fts.txt", "*.fts", false},
      {"a.txt.Fits", "*.fits", true}, {"README", "*.*", true},     {"star.fts", "*.*", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(IsOfType(c.name, c.pattern), c.expected) << c.name << " " << c.pattern;
}

TEST(ComesBefore, OrdersNamesAsPeopleCount) {
  const Names ordered = {"1.fts",
                         "02.fts",
                         "2.fts",
                         "arc-10.fts",
                         "Arc.fts",
                         "arc.fts",
                         "img2.fts",
                         "IMG10.fts",
                         "img10b",
                         "img10b2",
                         "img99999999999999999999",
                         "img100000000000000000000",
                         "star",
                         "star.fts",
                         "\xC3\xA9toile"};
  Names sorted = {ordered.rbegin(), ordered.rend()};
  std::sort(sorted.begin(), sorted.end(), ComesBefore);
  EXPECT_EQ(sorted, ordered);
}

TEST(FoldersDownTo, NamesEveryFolderOnTheWay) {
  const struct {
    const char* folder;
    Names expected;
  } cases[] = {
      {"/", {"/"}},
      {"/home/a night/raw", {"/", "/home", "/home/a night", "/home/a night/raw"}},
      {"/home//raw/../cooked/", {"/", "/home", "/home/cooked"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(FoldersDownTo(c.folder), c.expected) << c.folder;
}

}  // namespace
}  // namespace halmek
