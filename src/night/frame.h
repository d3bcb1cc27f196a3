// Frames as the detector reads them out, and their files.
#pragma once

#include "app/session.h"
#include "night/light.h"
#include "night/night.h"

namespace halmek::night {

// Exposes the detector to `light` and reads it out into the session's frame, with a header that says what
// the observer knew, and saves it under the exposure's name in the session's data folder. Throws Failure.
void TakeFrame(Session& session, const Night& night, const Star& star, const Exposure& exposure, Light light);

}  // namespace halmek::night
