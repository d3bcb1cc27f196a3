// What a picture of a plot shows in a file, of whatever kind: the plot with its axis numbers, and the caption
// above it. The band below, which holds the controls of a window, is left out.
#pragma once

#include "plot/drawing.h"

namespace halmek {

// In twips: the size of a picture, where its caption begins, and the height of its letters.
WindowSize PictureSize(const Drawing& drawing);
inline constexpr Point captionTopLeft{800, 40};
inline constexpr int pictureTextHeight = 165;

// Where a text of that width begins, in twips: the values of the left axis end in one line where they are not
// too long, left of where the first number of the lower axis begins.
float LeftOf(const Text& text, float width);

}  // namespace halmek
