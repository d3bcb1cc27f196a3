// Drawings as SVG files.
#pragma once

#include <string>

#include "plot/drawing.h"

namespace halmek {

// The picture of a drawing as an SVG document, at 15 twips to the pixel.
std::string SvgOf(const Drawing& drawing);

}  // namespace halmek
