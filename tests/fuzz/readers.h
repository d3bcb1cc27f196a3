// The readers of files that nobody vouches for, and what must hold after each input.
#pragma once

#include <string>
#include <string_view>

#include "app/session.h"

namespace halmek::test {

// Where a reader puts what it reads: a slot, a table, or nothing of the session.
inline constexpr int table = -1, none = -2;

struct Reader {
  const char* name;
  int target;
  // Reads the input, which also stands in the file "input", and checks what it gave. Returns it as the
  // program writes it, where it does. Throws Failure or RecipeStopped where the input is refused.
  std::string (*read)(Session& session, const std::string& bytes);
  // Reads what was written, where that is of another kind than the input.
  std::string (*readBack)(Session& session, const std::string& bytes) = nullptr;
};

const Reader& ReaderNamed(std::string_view name);

// Gives the input to the reader. Returns "accepted", or the text with which it was refused. Whatever else is
// thrown is a fault: what is accepted must be read back from what is written of it, and the other slots must
// be left alone.
std::string Feed(const Reader& reader, const std::string& bytes);

}  // namespace halmek::test
