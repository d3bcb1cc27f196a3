// Numbers in sentences.
#pragma once

#include <string>

namespace halmek {

// "1 line", "2 lines".
inline std::string Count(int n, const char* what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

}  // namespace halmek
