// Drawings as SVG: files, and parts of HTML pages.
#pragma once

#include <string>

#include "plot/drawing.h"

namespace halmek {

// The picture of a drawing as an SVG document, at 15 twips to the pixel.
std::string SvgOf(const Drawing& drawing);

// The same picture as an element of an HTML page that holds many. It has no names that could meet those of
// another one, is as wide as the page makes it, and takes about half the bytes: its points lie on whole
// twips and are written as steps from one to the next.
std::string InlineSvgOf(const Drawing& drawing);

}  // namespace halmek
