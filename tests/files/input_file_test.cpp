// Tests of reading files that nobody vouches for, and of the errors that it gives.
#include "files/input_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <span>
#include <string>

#include "files/failure.h"
#include "support/test_session.h"

namespace halmek {
namespace {

using test::RefusalOf;
using test::TemporaryFolder;
using test::WriteFile;

TEST(InputFile, RefusesWhatIsNoFileWithoutHanging) {
  const TemporaryFolder folder;
  WriteFile(folder.File("file"), "x");
  mkfifo(folder.File("pipe").c_str(), 0600);
  const struct {
    std::string path;
    const char* refusal;
  } cases[] = {
      {folder.File("absent"), "Error: 53  Error: File not found."},
      {folder.File("absent/file"), "Error: 76  Error: Path not found."},
      {folder.File("file/file"), "Error: 76  Error: Path not found."},
      {folder.path(), "Error: 75  Error: Path/file access error."},
      {folder.File("pipe"), "Error: 75  Error: Path/file access error."},
      {"/dev/zero", "Error: 75  Error: Path/file access error."},
      {folder.File(std::string(300, 'n')), "Error: 64  Error: Bad file name."},
      {"", "Error: 53  Error: File not found."},
  };
  for (const auto& c : cases)
    EXPECT_EQ(RefusalOf([&] { ReadWholeFile(c.path); }), c.refusal) << c.path;
  EXPECT_EQ(ReadWholeFile(folder.File("file"), 1), "x");
  EXPECT_EQ(RefusalOf([&] { ReadWholeFile(folder.File("file"), 0); }), "Error: 7  Out of memory.");
}

TEST(InputFile, ReadsAtPositionsWithinTheFileOnly) {
  const TemporaryFolder folder;
  WriteFile(folder.File("file"), std::string("0123\0x6789", 10));
  const InputFile file(folder.File("file"));
  EXPECT_EQ(file.ReadStart(5), std::string("0123\0", 5));
  EXPECT_EQ(file.ReadStart(100).size(), 10u);
  std::array<char, 4> bytes{};
  const auto readAt = [&](int64_t offset) {
    return RefusalOf([&] { file.ReadAt(offset, std::as_writable_bytes(std::span(bytes))); });
  };
  EXPECT_EQ(readAt(6), "");
  EXPECT_EQ(std::string(bytes.data(), 4), "6789");
  for (const int64_t offset : {7, 10, 1000000})
    EXPECT_EQ(readAt(offset), "Error: 62  Error: Input past end of file.") << offset;
}

TEST(RunTimeError, SaysNumberAndText) {
  for (const char* text : {"Error: 6  Error: Overflow.", "Error: 9  Subscript out of range.",
                           "Error: 72  Error: Disk media error", "Error: 731  Error: Path not found.",
                           "Error: 5  ", "Error: 32000  "})
    EXPECT_EQ(RunTimeError(std::stoi(std::string(text).substr(7))).text(), text);
  for (const int number : {-1, 0, 8, 60, 322, 709, 750, 751})
    EXPECT_EQ(ErrorText(number), "") << number;

  const struct {
    int systemError, number;
  } cases[] = {{ENOTDIR, 76}, {EACCES, 70}, {EROFS, 70}, {ENOSPC, 61},
               {EDQUOT, 61},  {EMFILE, 67}, {EIO, 57},   {EISDIR, 75}};
  for (const auto& c : cases)
    EXPECT_EQ(ErrorFromSystem(c.systemError, "x").number(), c.number) << c.systemError;
}

}  // namespace
}  // namespace halmek
