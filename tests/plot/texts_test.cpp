// Numbers as text, drawings as SVG, and the text that goes into them.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "numeric/number_prefix.h"
#include "plot/number_text.h"
#include "plot/picture.h"
#include "plot/svg.h"
#include "plot/text_encoding.h"

namespace halmek {
namespace {

TEST(GeneralText, IsTheShortestTextOfFifteenDigits) {
  // The later ones stand where the exponent form begins, some of them only by rounding.
  const std::pair<double, const char*> cases[] = {{-0.0, "0"},
                                                  {-0.25, "-0.25"},
                                                  {2.0 / 3, "0.666666666666667"},
                                                  {0.1 + 0.2, "0.3"},
                                                  {0.000099, "9.9E-05"},
                                                  {999999999999999.4, "999999999999999"},
                                                  {999999999999999.9, "1E+15"},
                                                  {0.00009999999999999999, "0.0001"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(GeneralText(value), text);
  for (const char* text : {"6562.81712345678", "-0.000123456789012345", "9.87654321098765E+25",
                           "123456789012345", "1.00000000000001E-09", "1.79769313486231E+308"})
    EXPECT_EQ(GeneralText(NumericPrefix(text)), text);
}

TEST(GeneralText, HasSevenDigitsAtSinglePrecision) {
  const std::pair<float, const char*> cases[] = {{3 * 0.1f, "0.3"},    {1.0f / 3, "0.3333333"},
                                                 {9999999, "9999999"}, {1e7f, "1E+07"},
                                                 {0.0001f, "0.0001"},  {5e-5f, "5E-05"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(GeneralText(value), text);
}

TEST(FormatFixed, AlignsPadsRoundsAndCuts) {
  const std::tuple<double, int, int, const char*> cases[] = {
      {2, 6, 2, "  2.00"},         {2.5, 6, 0, "     3"},          {0.125, 6, 2, "  0.13"},
      {-0.125, 6, 2, " -0.12"},    {1.999, 6, 2, "     2"},        {-0.04, 6, 1, "     0"},
      {-0.12345, 5, 3, "-0.12"},   {12345, 6, 1, "12345."},        {123456789, 8, 0, "0.12D+09"},
      {123456789, 5, 0, " 0D+09"}, {-2.5e120, 9, 5, "-0.25D+121"}, {1e16, 20, 1, " 10000000000000000.0"}};
  for (const auto& [value, width, decimals, text] : cases)
    EXPECT_EQ(FormatFixed(value, width, decimals), text) << value;
}

TEST(Svg, WritesOneElementAnItemInOrder) {
  Drawing drawing({1500, 2850}, "File:  <a&b>");
  drawing.plotTopLeft = {100, 200};
  drawing.plotBottomRight = {1400, 900};
  drawing.Add(Line{{1, 2.25f}, {3, -4}, colours::grey});
  using Limits = std::numeric_limits<float>;
  drawing.Add(
      Polyline{{{0, 0}, {10.04f, 20}, {Limits::quiet_NaN(), -Limits::infinity()}, {Limits::lowest(), 1}},
               colours::red,
               2});
  drawing.Add(Circle{{50, 60}, 40, 50, colours::blue});
  drawing.Add(Text{{70, 100}, "  \xE9>1\x1B[0m", "Label3"});
  const std::string svg = SvgOf(drawing);
  size_t at = 0;
  for (const char* piece :
       {"<svg ", "width=\"100\" height=\"100\" viewBox=\"0 0 1500 1500\"",
        "<title>File:  &lt;a&amp;b&gt;</title>", "<rect x=\"100\" y=\"200\" width=\"1300\" height=\"700\"/>",
        ">File:  &lt;a&amp;b&gt;</text>",
        "<line x1=\"1\" y1=\"2.3\" x2=\"3\" y2=\"-4\" stroke=\"rgb(192,192,192)\" stroke-width=\"15\"/>",
        "<polyline points=\"0,0 10,20 0,0 -340282346638528859811704183484516925440,1 \"", "clip-path",
        "stroke=\"rgb(255,0,0)\" stroke-width=\"30\"/>",
        "<circle cx=\"50\" cy=\"60\" r=\"45\" fill=\"none\" stroke=\"rgb(0,0,255)\" stroke-width=\"10\"/>",
        "<text xml:space=\"preserve\" x=\"70\"", ">  \xC3\xA9&gt;1?[0m</text>\n</svg>\n"}) {
    at = svg.find(piece, at);
    ASSERT_NE(at, std::string::npos) << piece << "\n" << svg;
  }
}

// A page holds many: a name in one would be taken for that in another. Steps must not add up their rounding.
TEST(Svg, OnAPageHasNoNamesAndReturnsToTheTwipFromAnywhere) {
  Drawing drawing({1500, 2850}, "a<b");
  drawing.plotTopLeft = {100, 200};
  drawing.plotBottomRight = {1400, 900};
  drawing.Add(Polyline{{{10.4f, 20}, {10.8f, 20.4f}, {11.2f, 20.8f}, {-5, std::numeric_limits<float>::max()}},
                       colours::red});
  const std::string svg = InlineSvgOf(drawing);
  EXPECT_EQ(svg.find("id="), std::string::npos);
  EXPECT_EQ(svg.find("url("), std::string::npos);
  EXPECT_NE(svg.find("<svg x=\"100\" y=\"200\" width=\"1300\" height=\"700\" viewBox=\"100 200 1300 700\">"),
            std::string::npos);
  EXPECT_NE(svg.find("d=\"M 10 20l 1 0 0 1-16 9999979\""), std::string::npos) << svg;
}

TEST(Pictures, LineUpTheValuesOfTheLeftAxisWhereTheyAreShort) {
  EXPECT_EQ(LeftOf(Text{{0, 9}, "2.0", {}}, 100), 485);
  EXPECT_EQ(LeftOf(Text{{0, 9}, "123456789", {}}, 700), 0);
  EXPECT_EQ(LeftOf(Text{{800, 9}, "200", {}}, 100), 800);
}

TEST(Utf8, TakesBytesThatAreNotUtf8AsLatin) {
  const std::pair<const char*, const char*> cases[] = {
      {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8C\x9F", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8C\x9F"},
      {"\xC3\xA9 \xE9", "\xC3\x83\xC2\xA9 \xC3\xA9"},
      {"\xE2\xAC", "\xC3\xA2\xC2\xAC"},
      // Control characters of any set, which terminals obey.
      {"a\tb\nc\x1B[2J\x7F", "a?b?c?[2J?"},
      {"\x9B[2J", "?[2J"},
      {"\xC2\x9B[2J", "?[2J"},
      // No characters: an overlong form, a surrogate and a code beyond the last.
      {"\xE0\xA0\xBC\xE0\x9F\xBC", "\xC3\xA0\xC2\xA0\xC2\xBC\xC3\xA0?\xC2\xBC"},
      {"\xED\xA0\xB0", "\xC3\xAD\xC2\xA0\xC2\xB0"},
      {"\xF4\xB0\xA0\xA0", "\xC3\xB4\xC2\xB0\xC2\xA0\xC2\xA0"},
      // The first and last of those that turn the direction of writing, and their neighbours, which do not.
      {"\u061B\u061C\u061D", "\u061B\\u061C\u061D"},
      {"\u200D\u200E\u200F\u2010", "\u200D\\u200E\\u200F\u2010"},
      {"\u2029\u202A\u202E\u202F", "\u2029\\u202A\\u202E\u202F"},
      {"\u2065\u2066\u2069\u206A", "\u2065\\u2066\\u2069\u206A"},
  };
  for (const auto& [bytes, text] : cases)
    EXPECT_EQ(Utf8Of(bytes), text);
}

}  // namespace
}  // namespace halmek
