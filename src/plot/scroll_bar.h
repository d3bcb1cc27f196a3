// The state of a scroll bar as a plain value.
#pragma once

namespace halmek {

struct ScrollBar {
  int min = 0, max = 0, value = 0;
  int smallChange = 1, largeChange = 1;
  friend bool operator==(const ScrollBar&, const ScrollBar&) = default;
};

}  // namespace halmek
