// Tests of text records, and of whole numbers.
#include "files/text_records.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "files/whole_number.h"
#include "support/test_session.h"

namespace halmek {
namespace {

TEST(Lines, EndInAnyOfTheThreeWays) {
  const struct {
    std::string_view text;
    std::vector<std::string_view> lines;
  } cases[] = {{"", {}},
               {"a\r\nb\r\n", {"a", "b"}},
               {"a\nb\rc", {"a", "b", "c"}},
               {"\r\n\n\r", {"", "", ""}},
               {"a\n\rb", {"a", "", "b"}}};
  for (const auto& c : cases)
    EXPECT_EQ(Lines(c.text), c.lines) << c.text;
}

// The fields of a line that are asked for in turn, `n` for a number and `t` for a text; "-" where there is
// none, and "..." where something is left.
std::string Fields(std::string_view line, std::string_view asked) {
  RecordLine record(line);
  std::string found;
  for (const char kind : asked) {
    found += '[';
    if (kind == 'n') {
      const auto number = record.Number();
      found += number ? std::to_string(*number).substr(0, 6) : "-";
    } else {
      found += record.Text().value_or("-");
    }
    found += ']';
  }
  return found + (record.AtEnd() ? "" : "...");
}

TEST(RecordLine, TakesNumbersAndTexts) {
  const struct {
    std::string_view line, asked, found;
  } cases[] = {
      {"6562.817,H alpha", "nt", "[6562.8][H alpha]"},
      {"  6562.817 ,  H alpha ", "nt", "[6562.8][H alpha ]"},
      {"1,\"a,b\"", "nt", "[1.0000][a,b]"},
      {"\"a, b\" , 2", "tn", "[a, b][2.0000]"},
      {"\"\",\"open", "tt", "[][open]"},
      {"a\"b\",c", "tt", "[a\"b\"][c]"},
      {",x", "tt", "[][x]"},
      {" 12.5  6402.25 ", "nn", "[12.500][6402.2]"},
      {"12.5 , 6402.25 9", "nn", "[12.500][6402.2]..."},
      {"-1.5D+2", "n", "[-150.0]"},
      {"", "nt", "[-][-]"},
      {"5,", "nt", "[5.0000][-]"},
      {"5", "nn", "[5.0000][-]"},
      {"1,,2", "nn", "[1.0000][-]..."},
      {"12x", "n", "[-]..."},
      {"\"12\"", "n", "[-]..."},
      {"1E999", "n", "[-]..."},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Fields(c.line, c.asked), c.found) << c.line;
}

TEST(WholeNumber, RoundsHalvesToEvenWithinSixteenBits) {
  const struct {
    const char* text;
    int value;
  } cases[] = {{"2.5", 2}, {"3.5", 4},    {" -1.5 rows", -2}, {"", 0},
               {"abc", 0}, {"1D3", 1000}, {"32767.4", 32767}, {"-32768.5", -32768}};
  for (const auto& c : cases)
    EXPECT_EQ(WholeNumber(std::string_view(c.text)), c.value) << c.text;

  using Limits = std::numeric_limits<double>;
  for (const double value : {32767.5, -32769.0, 65536.0, 1e300, Limits::infinity(), Limits::quiet_NaN()})
    EXPECT_EQ(test::RefusalOf([&] { WholeNumber(value); }), "Error: 6  Error: Overflow.") << value;
}

}  // namespace
}  // namespace halmek
