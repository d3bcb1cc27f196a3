// Small frames for recipes: a star and an arc whose lines are known.
#pragma once

#include <string>

namespace halmek::test {

// Writes star.fts and arc.fts (400 x 60 pixels, 16-bit unsigned, no noise) and the table lines.txt into
// `folder`. The star's trace is centred on row 30, over a background of 400 to 460. The arc's lines lie at
// the columns 40, 90, ... 340, at 4960 + column Angstrom.
void WriteSmallNight(const std::string& folder);

// Writes files on which every step runs in next to no time: frame.fts (40 x 12 pixels, the trace on row 6),
// the arcs arc1.fts and arc2.fts, a column further right, with three lines, and lines.txt and a.mask with
// these.
void WriteTinyNight(const std::string& folder);

}  // namespace halmek::test
