// Twips and pixels.
#include "platform/twips.h"

#include <QApplication>
#include <QFontInfo>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "plot/drawing.h"

namespace halmek {

double PixelsPerTwip() {
  constexpr double usualTextPixels = 12;
  // The main window, the largest that cannot be made smaller, must still fit on the screen.
  constexpr double largestWidth = 10920, largestHeight = 7950;
  const double textPixels = QFontInfo(QApplication::font()).pixelSize();
  double pixelsPerTwip = textPixels / usualTextPixels / twipsPerPixel;
  if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
    const QSizeF room = screen->availableSize();
    pixelsPerTwip = std::min({pixelsPerTwip, room.width() / largestWidth, room.height() / largestHeight});
  }
  return std::max(1.0 / twipsPerPixel, pixelsPerTwip);
}

int PixelsOf(double twips) { return static_cast<int>(std::lround(twips * PixelsPerTwip())); }

double TwipsOf(double pixels) { return pixels / PixelsPerTwip(); }

}  // namespace halmek
