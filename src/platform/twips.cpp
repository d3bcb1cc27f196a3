// Twips and pixels.
#include "platform/twips.h"

#include <QApplication>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace halmek {

double PixelsPerTwip() {
  constexpr double twipsPerPixel = 15, usualTextPixels = 12;
  const double textPixels = QFontInfo(QApplication::font()).pixelSize();
  return std::max(1.0, textPixels / usualTextPixels) / twipsPerPixel;
}

int PixelsOf(double twips) { return static_cast<int>(std::lround(twips * PixelsPerTwip())); }

double TwipsOf(double pixels) { return pixels / PixelsPerTwip(); }

}  // namespace halmek
