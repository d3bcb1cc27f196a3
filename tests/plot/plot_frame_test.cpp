// Tests of axis limits, ticks, layout, axes, the step curve and the mouse read-out.
#include "plot/plot_frame.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace halmek {
namespace {

PlotFrame FrameOf(double xLow, double xHigh, double yLow, double yHigh) {
  PlotFrame frame;
  LayoutPlot(frame, {14000, 6000});
  SetXRange(frame, xLow, xHigh);
  SetYRange(frame, yLow, yHigh);
  return frame;
}

std::vector<DrawingItem> AxesOf(const PlotFrame& frame, std::string_view xTitle = "Column") {
  Drawing drawing({14000, 6000}, "");
  DrawAxes(drawing, frame, xTitle);
  return drawing.items;
}

std::vector<Text> TextsOf(const std::vector<DrawingItem>& items) {
  std::vector<Text> texts;
  for (const DrawingItem& item : items)
    if (const auto* text = std::get_if<Text>(&item))
      texts.push_back(*text);
  return texts;
}

TEST(NiceBounds, RoundOutwardByTwoFiveOrTenTenths) {
  // The logarithm is a little too large in magnitude: 0.001 counts in the decade below.
  const std::array<double, 3> cases[] = {{347, 290, 390},         {-347, -360, -320}, {1, 0.8, 1.2},
                                         {2, 1.5, 2.5},           {8000, 7000, 9000}, {-8000, -8200, -7800},
                                         {0.001, 0.0009, 0.0011}, {0.000005, 0, 0}};
  for (const auto& [value, lower, upper] : cases) {
    EXPECT_DOUBLE_EQ(NiceLowerBound(value), lower) << value;
    EXPECT_DOUBLE_EQ(NiceUpperBound(value), upper) << value;
  }
}

TEST(Ticks, AreTheMultiplesOfTheStepWithinTheLimits) {
  // 0.3 at single precision is a hair above the limit 0.3.
  const std::tuple<double, double, std::vector<float>> cases[] = {
      {-360, -20, {-350, -300, -250, -200, -150, -100, -50}},
      {-1, 1, {-1, -0.5f, 0, 0.5f, 1}},
      {100.001, 103, {100.5f, 101, 101.5f, 102, 102.5f, 103}},
      {0, 499, {0, 50, 100, 150, 200, 250, 300, 350, 400, 450}},
      {0, 500, {0, 100, 200, 300, 400, 500}},
      {0, 200, {0, 50, 100, 150, 200}},
      {1, 200, {20, 40, 60, 80, 100, 120, 140, 160, 180, 200}},
      {0, 100, {0, 20, 40, 60, 80, 100}},
      {0,
       0.001,
       {0, 0.0001f, 2 * 0.0001f, 3 * 0.0001f, 4 * 0.0001f, 5 * 0.0001f, 6 * 0.0001f, 7 * 0.0001f, 8 * 0.0001f,
        9 * 0.0001f, 10 * 0.0001f}},
      {0, 0.3, {0, 0.05f, 2 * 0.05f, 3 * 0.05f, 4 * 0.05f, 5 * 0.05f}}};
  for (const auto& [low, high, values] : cases)
    EXPECT_EQ(TicksBetween(low, high).values, values) << low << ".." << high;

  // No ticks where they cannot be told apart.
  const std::pair<double, double> none[] = {
      {5, 5},      {6, 5},     {1e9, 1e9 + 10}, {0, INFINITY}, {std::nan(""), 1},
      {0, 1e-320}, {0, 1e300}, {-1e308, 1e308}, {-1e40, 1e40}};
  for (const auto& [low, high] : none)
    EXPECT_TRUE(TicksBetween(low, high).values.empty()) << low << ".." << high;
}

TEST(Axes, DrawGridTicksAndNumbersInOrder) {
  const auto items = AxesOf(FrameOf(0, 2, -0.25, 1.75), "Row");
  std::string kinds;
  for (const DrawingItem& item : items) {
    const auto* line = std::get_if<Line>(&item);
    kinds += !line ? 't' : line->colour == colours::grey ? 'g' : line->colour == colours::black ? 'b' : '?';
  }
  // Five ticks of the columns, one on either edge, then four of the values.
  ASSERT_EQ(kinds, "gbbgbbgbbgbbgbbtttgbbgbbgbbgbbtttbbbb");

  // The grid line and both marks of a tick of either axis, the last tick of the columns, the border.
  std::vector<float> ends;
  for (const size_t item : {0, 1, 2, 18, 19, 20, 12, 33, 34, 35, 36}) {
    const Line& line = std::get<Line>(items[item]);
    ends.insert(ends.end(), {line.from.x, line.from.y, line.to.x, line.to.y});
  }
  EXPECT_EQ(ends,
            (std::vector<float>{
                800,   300,      800,      3950,  800,      300,  800,      400, 800,      3950,  800,
                3850,  800,      3493.75f, 13585, 3493.75f, 800,  3493.75f, 900, 3493.75f, 13485, 3493.75f,
                13585, 3493.75f, 13585,    300,   13585,    3950, 800,      300, 13585,    300,   13585,
                300,   13585,    3950,     13585, 3950,     800,  3950,     800, 3950,     800,   300}));

  const std::tuple<float, float, std::string, std::string_view> labels[] = {
      {600, 4000, "0", "Label1"},       {13385, 4000, "2", "Label2"},      {12600, 4200, "Row", "Label6"},
      {0, 656.25f, "   1.5", "Label3"}, {0, 3393.75f, "   0.0", "Label4"}, {0, 2490, "0.5", "Label8"}};
  const std::vector<Text> texts = TextsOf(items);
  for (size_t i = 0; i < std::size(labels); ++i) {
    const auto& [topLeft, text, control] = texts.at(i);
    EXPECT_EQ(std::tuple(topLeft.x, topLeft.y, text, control), labels[i]);
  }
}

TEST(Axes, NumberTheValuesWithTheDecimalsOfTheirSpacing) {
  // The limits of the values; the highest tick, the lowest one and the spacing.
  const std::tuple<double, double, std::vector<std::string>> cases[] = {
      {-0.06, 0.21, {"  0.20", " -0.05", "0.05"}},       {-0.31, 0.31, {"   0.3", "  -0.3", "0.1"}},
      {-0.0004, 0.0021, {"0.0020", "0.0000", "0.0005"}}, {-2e-4, 2e-4, {"0.00020", "-0.0002", "5E-05"}},
      {-200, 12000, {" 12000", "     0", "2000"}},       {65000, 65003, {"65003.0", "65000.0", "0.5"}},
      {-2e6, 9e6, {"8000000", "-2000000", "2000000"}},   {0, 4e9, {" 4E+09", "     0", "5E+08"}}};
  for (const auto& [low, high, numbers] : cases) {
    const auto texts = TextsOf(AxesOf(FrameOf(0, 100, low, high)));
    EXPECT_EQ((std::vector{texts.at(3).text, texts.at(4).text, texts.at(5).text}), numbers) << low;
  }
}

TEST(Axes, CutLongColumnsAndAreABorderAndATitleWhereNothingSpans) {
  EXPECT_EQ(TextsOf(AxesOf(FrameOf(0.001230, 0.001232, 0, 1))).at(0).text, "0.0012");
  const PlotFrame frame = FrameOf(3, 3, 7, 7);
  const auto items = AxesOf(frame);
  EXPECT_EQ(items.size(), 5u);
  EXPECT_EQ(TextsOf(items).at(0).text, "Column");
  EXPECT_EQ(ScreenX(frame, 3) + ScreenY(frame, 7), 800 + 3950);
}

TEST(StepCurve, DrawsEachValueOverItsWidthJoinedByRisers) {
  Drawing drawing({}, "");
  DrawStepCurve(drawing, FrameOf(0, 5, 0, 365), std::vector<double>{0, 200, 100, 365, 300});
  ASSERT_EQ(drawing.items.size(), 1u);
  const auto& curve = std::get<Polyline>(drawing.items[0]);
  EXPECT_TRUE(curve.colour == colours::red);
  std::vector<float> coordinates;
  for (const Point& point : curve.points)
    coordinates.insert(coordinates.end(), {point.x, point.y});
  EXPECT_EQ(coordinates, (std::vector<float>{800,  3950, 3357, 3950, 3357,  1950, 5914,  1950, 5914,  2950,
                                             8471, 2950, 8471, 300,  11028, 300,  11028, 950,  13585, 950}));
}

TEST(ReadOut, MapsTheWidthOntoPixelsOneToNInsideThePlotOnly) {
  const std::tuple<double, double, std::string> cases[] = {{7192.5, 2125, "    51  190.00"},
                                                           {3996.25, 3220, "    26      70"},
                                                           {801, 3949, "     1   -9.89"},
                                                           {13584, 301, "   101  389.89"},
                                                           {800, 2000, ""},
                                                           {5000, 3950, ""},
                                                           {std::nan(""), 2000, ""}};
  for (const auto& [x, y, texts] : cases) {
    const ReadOut r = ReadOutPosition(FrameOf(0, 101, -10, 390), x, y, 101);
    EXPECT_EQ(r.columnText + r.valueText, texts) << x << ',' << y;
    EXPECT_EQ(r.inside, !texts.empty());
  }
}

}  // namespace
}  // namespace halmek
