// What a folder holds, and what is known of a file before it is replaced.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <tuple>

#include "files/folder_listing.h"
#include "files/known_file.h"
#include "fits/fits_bytes.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

TEST(ListFolder, ListsFoldersAndRegularFilesAndLinksToThem) {
  const TemporaryFolder folder;
  WriteFile(folder.File("star.fts"), "");
  WriteFile(folder.File(".hidden"), "");
  WriteFile(folder.File("\xE9toile.fts"), "");
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
  const TemporaryFolder folder;
  WriteFile(folder.File("star.fts"), "");
  for (const char* name : {"missing", "missing/within", "star.fts"})
    EXPECT_EQ(RefusalOf([&] { ListFolder(folder.File(name)); }), "Error: 76  Error: Path not found.") << name;
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

TEST(KnownFile, TellsOursFromOthersByHowTheyBegin) {
  const TemporaryFolder folder;
  const auto fits = [](const char* columns, const char* rows, const char* card) {
    return FitsBytes(ImageCards("16", columns, rows, {card}), "");
  };
  const std::tuple<std::string, FileKind, bool, std::string> cases[] = {
      {fits("1748", "140", "COMMENT Halmek"), FileKind::fits, false, "raw frame, 1748 x 140"},
      {fits("1748", "1", "HISTORY  another program"), FileKind::fits, false, "spectrum, 1748 pixels"},
      {fits("17", "2.0", "HISTORY  Halmek saved this file"), FileKind::fits, true, "frame of Halmek, 17 x 2"},
      {fits("9", "1", "HISTORY:  Halmek collapsed"), FileKind::fits, true, "spectrum of Halmek, 9 pixels"},
      {fits("0", "0", ""), FileKind::fits, false, "FITS file"},
      {std::string(first_lines::mask) + "\r\n", FileKind::mask, true, "mask of Halmek"},
      {std::string(first_lines::recipe) + "\ncrunch", FileKind::recipe, true, "recipe of Halmek"},
      {"# my own\ncrunch\n", FileKind::other, false, "file of 16 bytes"},
      {" 1             12.5 \r\n", FileKind::numbers, true, "text of pixel values"},
      {" 12 ,-3.5E+20 , 7 \r\n 1 ", FileKind::numbers, true, "text of pixel values"},
      {"12,3\r\n", FileKind::other, false, "file of 6 bytes"},
      {" 1 12.5\r\n", FileKind::other, false, "file of 9 bytes"},
      {" 1 , x \r\n", FileKind::other, false, "file of 9 bytes"},
      {"\r\n", FileKind::other, false, "file of 2 bytes"},
      {"%PDF-1.4", FileKind::picture, false, "picture"},
      {std::string(20000, 'x'), FileKind::other, false, "file of 20 KB"},
  };
  for (const auto& [bytes, kind, isOurs, description] : cases) {
    WriteFile(folder.File("file"), bytes);
    const auto known = LookAtFile(folder.File("file"));
    ASSERT_TRUE(known);
    EXPECT_EQ(known->description, description);
    EXPECT_TRUE(known->kind == kind && known->isOurs == isOurs && known->names == 1) << description;
  }
  std::filesystem::create_hard_link(folder.File("file"), folder.File("other name"));
  EXPECT_EQ(LookAtFile(folder.File("file"))->names, 2);
  WriteFile(folder.File("empty"), "");
  for (const std::string& nothing :
       {folder.File("none"), folder.File("empty"), folder.path(), std::string("/dev/null")})
    EXPECT_FALSE(LookAtFile(nothing)) << nothing;
}

}  // namespace
}  // namespace halmek::test
