// Numbers in sentences.
#pragma once

#include <algorithm>
#include <string>

namespace halmek {

// "1 line", "2 lines".
inline std::string Count(int n, const char* what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

// "3 to 7", in whatever order the two come.
inline std::string FromTo(int a, int b) {
  return std::to_string(std::min(a, b)) + " to " + std::to_string(std::max(a, b));
}

}  // namespace halmek
