// The plot of an arc spectrum with the marks of its identified lines.
#pragma once

#include <optional>
#include <string>

#include "app/session.h"

namespace halmek {

// What opening the plot of arc `a` does before it draws: makes the arc current, computes the straight-line
// fit and its RMS anew, and sets the status texts of its window. Throws Refusal where no arc is loaded.
void OpenArcPlot(Session& session, int a);

// The plot of arc `a`, with a short mark at the top for every identified line. Throws Refusal where no arc is
// loaded.
Drawing PlotArc(Session& session, int a, WindowSize window);

// The column, numbered from 1, under a click in twips; nothing outside the plot area or on its edge.
std::optional<int> ArcColumnAt(const Session& session, int a, double mouseX, double mouseY);

// The read-out of a position in one of the arc's plots, whose frame is given, with the wavelength there by
// the straight line once two lines are identified.
struct ArcReadOut : ReadOut {
  std::string wavelengthText;
};
ArcReadOut ReadOutArc(const Session& session, int a, const PlotFrame& frame, double mouseX, double mouseY);

// What is to be read over the mark of an identified line: its wavelength and its centroid. Empty where no
// mark is within reach of the position.
std::string MarkTextAt(const Session& session, int a, double mouseX, double mouseY);

}  // namespace halmek
