// The command line of halmek-night.
#pragma once

#include <iosfwd>

namespace halmek::night {

// Makes a sample night or checks one, as the arguments say. Returns the exit status: 1 where something
// failed, 2 where the arguments cannot be understood.
int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace halmek::night
