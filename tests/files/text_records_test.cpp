// Tests of text records, and of whole numbers.
#include "files/text_records.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/whole_number.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

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
  const struct {
    std::string_view line, asked, found;
  } cases[] = {
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
  for (const auto& c : cases)
    EXPECT_EQ(Fields(c.line, c.asked), c.found) << c.line;
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
