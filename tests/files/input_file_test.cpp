// Tests of reading files that nobody vouches for, and of the errors that it gives.
#include "files/input_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include "files/failure.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

TEST(InputFile, RefusesWhatIsNoFileWithoutHanging) {
  const TemporaryFolder folder;
  WriteFile(folder.File("file"), "x");
  mkfifo(folder.File("pipe").c_str(), 0600);
  const std::string absent = folder.File("absent"), pipe = folder.File("pipe"), none;
  const std::string notFound = "Error: 53  Error: File not found.";
  const std::string noPath = "Error: 76  Error: Path not found.";
  const std::string noAccess = "Error: 75  Error: Path/file access error.";
  const std::pair<std::string, std::string> cases[] = {
      {absent, notFound},         {none, notFound},
      {absent + "/file", noPath}, {folder.File("file/file"), noPath},
      {pipe, noAccess},           {folder.path(), noAccess},
      {"/dev/zero", noAccess},    {absent + std::string(300, 'n'), "Error: 64  Error: Bad file name."}};
  for (const auto& [path, refusal] : cases)
    EXPECT_EQ(RefusalOf([&, p = path] { ReadWholeFile(p); }), refusal) << path;
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
  for (const int64_t offset : {7, 1000000})
    EXPECT_EQ(readAt(offset), "Error: 62  Error: Input past end of file.") << offset;
}

TEST(InputFile, GoesOnAfterInterruptionsButNotForEver) {
  const TemporaryFolder folder;
  WriteFile(folder.File("file"), "0123");
  for (const int interruptions : {999, 1'000'000'000}) {
    int left = interruptions;
    const InputFile file(folder.File("file"), [&](int descriptor, void* bytes, size_t, off_t offset) {
      errno = EINTR;
      return left-- > 0 ? -1 : pread(descriptor, bytes, 1, offset);
    });
    try {
      EXPECT_EQ(file.ReadStart(4), "0123");
      EXPECT_EQ(interruptions, 999);
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.text() + error.detail(),
                "Error: 75  Error: Path/file access error.the system was interrupted again and again");
    }
  }
}

TEST(RunTimeError, SaysNumberAndText) {
  for (const char* text : {"Error: 72  Error: Disk media error", "Error: 731  Error: Path not found.",
                           "Error: 5  ", "Error: 32000  "})
    EXPECT_EQ(RunTimeError(std::stoi(std::string(text).substr(7))).text(), text);
  for (const int number : {-1, 0, 8, 60, 322, 709, 751})
    EXPECT_EQ(ErrorText(number), "") << number;
  for (const auto& [systemError, number] :
       {std::pair{EACCES, 70}, {EROFS, 70}, {EDQUOT, 61}, {EMFILE, 67}, {EIO, 57}})
    EXPECT_EQ(ErrorFromSystem(systemError, "x").number(), number) << systemError;
}

}  // namespace
}  // namespace halmek::test
