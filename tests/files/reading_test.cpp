// Reading of files that nobody vouches for, of text records and whole numbers, and the errors that it gives.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

#include "files/failure.h"
#include "files/input_file.h"
#include "files/text_records.h"
#include "files/whole_number.h"
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

TEST(RunTimeError, IsThatOfTheSystemsError) {
  EXPECT_EQ(RunTimeError(731).text(), "Error: 731  Error: Path not found.");
  for (const auto& [systemError, number] :
       {std::pair{EROFS, 70}, {EDQUOT, 61}, {EFBIG, 61}, {EMFILE, 67}, {EPERM, 70}})
    EXPECT_EQ(ErrorFromSystem(systemError, "x").number(), number) << systemError;
}

TEST(Lines, EndInAnyOfTheThreeWays) {
  EXPECT_EQ(Lines("a\r\nb\n\rc\rd\r\n"), (std::vector<std::string_view>{"a", "b", "", "c", "d"}));
  EXPECT_EQ(Lines("a\n").size(), 1u);
  EXPECT_TRUE(Lines("").empty());
}

// The fields of a line that are asked for in turn, `n` for a number and `t` for a text; "-" where there is
// none, and "..." where something is left.
std::string Fields(std::string_view line, std::string_view asked) {
  RecordLine record(line);
  std::string found;
  for (const char kind : asked) {
    std::string field = "-";
    if (kind == 't')
      field = record.Text().value_or(field);
    else if (const auto number = record.Number())
      field = std::to_string(*number).substr(0, 6);
    found += '[' + field + ']';
  }
  return found + (record.AtEnd() ? "" : "...");
}

TEST(RecordLine, TakesNumbersAndTexts) {
  const std::array<std::string_view, 3> cases[] = {
      {"6562.817,H alpha", "nt", "[6562.8][H alpha]"},
      {"  6562.817 ,  H alpha ", "nt", "[6562.8][H alpha ]"},
      {"\"a, b\" , 2", "tn", "[a, b][2.0000]"},
      {"\"\",\"open", "tt", "[][open]"},
      {"a\"b\",c", "tt", "[a\"b\"][c]"},
      {" 12.5  6402.25 ", "nn", "[12.500][6402.2]"},
      {"12.5 , 6402.25 9", "nn", "[12.500][6402.2]..."},
      {"-1.5D+2", "n", "[-150.0]"},
      {"", "nt", "[-][-]"},
      {"5,", "nt", "[5.0000][-]"},
      {"1,,2", "nn", "[1.0000][-]..."},
      {"12x", "n", "[-]..."},
      {"\"12\"", "n", "[-]..."},
      {"1E999", "n", "[-]..."},
  };
  for (const auto& [line, asked, found] : cases)
    EXPECT_EQ(Fields(line, asked), found) << line;
}

TEST(WholeNumber, RoundsHalvesToEvenWithinSixteenBits) {
  for (const auto& [text, value] :
       {std::pair{"2.5", 2}, {" -1.5 rows", -2}, {"abc", 0}, {"32767.4", 32767}, {"-32768.5", -32768}})
    EXPECT_EQ(WholeNumber(std::string_view(text)), value) << text;
  using Limits = std::numeric_limits<double>;
  for (const double value : {32767.5, -32769.0, 65536.0, 1e300, Limits::infinity(), Limits::quiet_NaN()})
    EXPECT_EQ(RefusalOf([&] { WholeNumber(value); }), "Error: 6  Error: Overflow.") << value;
}

}  // namespace
}  // namespace halmek::test
