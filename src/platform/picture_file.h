// Plots as files of pictures.
#pragma once

#include <string>

#include "files/file_operations.h"
#include "plot/drawing.h"

namespace halmek {

// Writes the picture of a drawing to a file of the kind that its name ends in: .png, of twice the screen's
// resolution, .svg or .pdf, in letters of either case. Throws Refusal where it ends in something else, and
// RunTimeError where it cannot be written.
void SavePicture(const Drawing& drawing, const std::string& file, const FileOperations& system = {});

}  // namespace halmek
