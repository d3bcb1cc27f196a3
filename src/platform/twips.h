// Twips (1/1440 inch), in which windows and drawings are measured, and the pixels of the screen.
#pragma once

namespace halmek {

// Logical pixels per twip: 1/15, and more where the desktop's text is larger than usual, so that a layout in
// twips grows with the text that stands in it.
double PixelsPerTwip();

// The nearest whole pixel.
int PixelsOf(double twips);

double TwipsOf(double pixels);

}  // namespace halmek
