// Drawings as SVG files.
#pragma once

#include <string>

#include "plot/drawing.h"

namespace halmek {

// The drawing as an SVG document at 15 twips to the pixel, with its caption above the plot. The band below
// the axis numbers, which holds the controls of a window, is left out.
std::string SvgOf(const Drawing& drawing);

}  // namespace halmek
