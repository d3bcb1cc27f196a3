// Plots as files of pictures.
#pragma once

#include <string>

#include "files/known_file.h"
#include "plot/drawing.h"

namespace halmek {

// The picture of a drawing as the bytes of a file of the kind that its name ends in: .png, of twice the
// screen's resolution, .svg or .pdf, in letters of either case. Throws Refusal where it ends in something
// else.
std::string PictureBytes(const Drawing& drawing, const std::string& file);

// The kind of file that it is.
FileKind KindOfPicture(const std::string& file);

}  // namespace halmek
