// What a plot shows: a list of lines, curves, circles and texts, in the order of painting.
//
// Coordinates are twips (1/1440 inch, 15 to a logical pixel), origin at the window's top left corner, x to
// the right, y downward. A window paints the list, a printer prints it, an SVG file holds it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace halmek {

struct Colour {
  uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

namespace colours {
inline constexpr Colour black{0, 0, 0};
inline constexpr Colour grey{192, 192, 192};
inline constexpr Colour red{255, 0, 0};
inline constexpr Colour green{0, 255, 0};
inline constexpr Colour blue{0, 0, 255};
}  // namespace colours

// Of a logical pixel, in which pens are measured.
inline constexpr int twipsPerPixel = 15;

struct Point {
  float x = 0, y = 0;
};

// Pen widths are in logical pixels.
struct Line {
  Point from, to;
  Colour colour;
  int penWidth = 1;
};

// A curve, of which only what lies within the drawing's plot area is shown.
struct Polyline {
  std::vector<Point> points;
  Colour colour;
  int penWidth = 1;
};

// A ring that is filled from its inner to its outer radius; a disc where the inner radius is 0.
struct Circle {
  Point centre;
  float innerRadius = 0, outerRadius = 0;
  Colour colour;
};

// A text from its top left corner on. `control` names the label that shows it in a window.
struct Text {
  Point topLeft;
  std::string text;
  std::string_view control;
};

using DrawingItem = std::variant<Line, Polyline, Circle, Text>;

// The outer size of a window, border and title bar included, in twips.
struct WindowSize {
  int width = 14000, height = 6000;
};

struct Drawing {
  Drawing(WindowSize windowSize, std::string title) : size(windowSize), caption(std::move(title)) {}

  WindowSize size;
  std::string caption;                 // the window's title
  Point plotTopLeft, plotBottomRight;  // the corners of the plot area
  std::vector<DrawingItem> items;

  void Add(DrawingItem item) { items.push_back(std::move(item)); }
};

}  // namespace halmek
