// What the build says of the version.
#include "app/version.h"

namespace halmek {

const char* const programVersion = HALMEK_VERSION;
const char* const releaseDate = HALMEK_RELEASE_DATE;

}  // namespace halmek
