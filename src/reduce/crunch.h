// Extraction: the frame collapsed into a spectrum.
#pragma once

#include "app/session.h"

namespace halmek {

// Sums, for every column, the aperture's rows less the background, into slot 3. The spectrum gets the frame's
// header with one HISTORY card that names today's date, and a default file name. It can be run again; each
// run starts afresh. Throws Refusal where the aperture or the background fit is missing, and RunTimeError 9
// where the header is full, with nothing changed.
void CrunchFrame(Session& session);

}  // namespace halmek
