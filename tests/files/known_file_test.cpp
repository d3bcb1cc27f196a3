// What is known of a file before it is replaced.
#include "files/known_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fits/fits_bytes.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

TEST(KnownFile, TellsOursFromOthersByHowTheyBegin) {
  const TemporaryFolder folder;
  const auto fits = [](const char* columns, const char* rows, const char* card) {
    return FitsBytes(ImageCards("16", columns, rows, {card}), "");
  };
  const struct {
    std::string bytes;
    FileKind kind;
    bool isOurs;
    std::string description;
  } cases[] = {
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
  for (const auto& c : cases) {
    WriteFile(folder.File("file"), c.bytes);
    const auto known = LookAtFile(folder.File("file"));
    ASSERT_TRUE(known);
    EXPECT_EQ(known->description, c.description);
    EXPECT_TRUE(known->kind == c.kind && known->isOurs == c.isOurs && known->names == 1) << c.description;
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
