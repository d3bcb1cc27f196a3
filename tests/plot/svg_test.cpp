// Tests of drawings as SVG, and of the text that goes into them.
#include "plot/svg.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "plot/picture.h"
#include "plot/text_encoding.h"

namespace halmek {
namespace {

TEST(Svg, WritesOneElementAnItemInOrder) {
  Drawing drawing({1500, 2850}, "File:  <a&b>");
  drawing.plotTopLeft = {100, 200};
  drawing.plotBottomRight = {1400, 900};
  drawing.Add(Line{{1, 2.25f}, {3, -4}, colours::grey});
  drawing.Add(Polyline{{{0, 0}, {10.04f, 20}}, colours::red, 2});
  drawing.Add(Circle{{50, 60}, 40, 50, colours::blue});
  drawing.Add(Text{{70, 100}, "  \xE9>1\x1B[0m", "Label3"});
  const std::string svg = SvgOf(drawing);
  size_t at = 0;
  for (const char* piece :
       {"<svg ", "width=\"100\" height=\"100\" viewBox=\"0 0 1500 1500\"",
        "<title>File:  &lt;a&amp;b&gt;</title>", "<rect x=\"100\" y=\"200\" width=\"1300\" height=\"700\"/>",
        ">File:  &lt;a&amp;b&gt;</text>",
        "<line x1=\"1\" y1=\"2.3\" x2=\"3\" y2=\"-4\" stroke=\"rgb(192,192,192)\" stroke-width=\"15\"/>",
        "<polyline points=\"0,0 10,20 \"", "clip-path", "stroke=\"rgb(255,0,0)\" stroke-width=\"30\"/>",
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

TEST(Svg, KeepsEveryPointOfACurveAndWritesFiniteNumbersOnly) {
  Polyline curve{std::vector<Point>(6000, Point{1, 2}), colours::red};
  using Limits = std::numeric_limits<float>;
  for (const float value : {Limits::quiet_NaN(), Limits::infinity(), Limits::max(), Limits::lowest()})
    curve.points.push_back({value, value});
  Drawing drawing({}, "");
  drawing.Add(std::move(curve));
  const std::string svg = SvgOf(drawing);
  const std::string points = svg.substr(svg.find("points=\"") + 8);
  const std::string numbers = points.substr(0, points.find("\" "));
  EXPECT_EQ(std::count(numbers.begin(), numbers.end(), ','), 6004);
  EXPECT_EQ(numbers.find_first_of("nif"), std::string::npos);
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
