// Layout of pictures.
#include "plot/picture.h"

#include <algorithm>

namespace halmek {
namespace {

constexpr int controlBand = 1350;  // from the lower edge up to below the axis title
constexpr float valuesEnd = 585;

}  // namespace

WindowSize PictureSize(const Drawing& drawing) {
  return {std::max(1, drawing.size.width), std::max(1, drawing.size.height - controlBand)};
}

float LeftOf(const Text& text, float width) {
  return text.topLeft.x == 0 ? std::max(0.0f, valuesEnd - width) : text.topLeft.x;
}

}  // namespace halmek
