// The version of the programs, and the day of its release.
#pragma once

namespace halmek {

// As in "0.1.0", and "2026-11-23". Both stand in the CMakeLists.txt of the project.
extern const char* const programVersion;
extern const char* const releaseDate;

}  // namespace halmek
