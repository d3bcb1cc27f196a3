// The plot's cursor.
#include "plot/plot_cursor.h"

#include <algorithm>
#include <optional>

namespace halmek {
namespace {

// The curve that the cursor follows: the data, which are red, before any fit.
const Polyline* CurveOf(const Drawing& drawing) {
  const Polyline* found = nullptr;
  for (const DrawingItem& item : drawing.items)
    if (const auto* curve = std::get_if<Polyline>(&item);
        curve && (found == nullptr || curve->colour == colours::red))
      found = curve;
  return found;
}

std::optional<float> HeightAt(const Polyline& curve, float x) {
  const auto next = std::upper_bound(curve.points.begin(), curve.points.end(), x,
                                     [](float value, const Point& point) { return value < point.x; });
  return next == curve.points.end() ? std::nullopt : std::optional(next->y);
}

}  // namespace

CursorTrack TrackOfPositions(const PlotFrame& f, int n) {
  return {.first = 1,
          .last = std::max(1, n),
          .firstX = static_cast<double>(f.plotLeft),
          .lastX = static_cast<double>(f.plotRight)};
}

CursorTrack TrackOfSteps(const PlotFrame& f, int first, int last, double within) {
  return {.first = first,
          .last = std::max(first, last),
          .firstX = ScreenX(f, first - 1 + within),
          .lastX = ScreenX(f, last - 1 + within)};
}

Point CursorAt(const Drawing& drawing, const CursorTrack& track, int column) {
  const Point topLeft = drawing.plotTopLeft, bottomRight = drawing.plotBottomRight;
  // A click on the border is none.
  const auto inside = [](double value, float low, float high) {
    return static_cast<float>(std::max(low + 1.0, std::min(high - 1.0, value)));
  };
  const double steps = std::max(1, track.last - track.first);
  const double x = track.firstX + (track.lastX - track.firstX) * (column - track.first) / steps;
  Point at{inside(x, topLeft.x, bottomRight.x), (topLeft.y + bottomRight.y) / 2};
  if (const Polyline* const curve = CurveOf(drawing))
    if (const auto height = HeightAt(*curve, at.x))
      at.y = inside(*height, topLeft.y, bottomRight.y);
  return at;
}

}  // namespace halmek
