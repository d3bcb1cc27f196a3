// The system's calls, made again where a signal interrupts them.
#pragma once

#include <cerrno>

namespace halmek {

// The result of `call`, made again where a signal interrupted it; but not for ever.
template <typename Call>
auto Uninterrupted(const Call& call) {
  constexpr int mostTimes = 1000;
  auto result = call();
  for (int i = 1; result < 0 && errno == EINTR && i < mostTimes; ++i)
    result = call();
  return result;
}

}  // namespace halmek
