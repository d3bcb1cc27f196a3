// The one place where files are written, and the check before it: nobody's file is replaced by a slip.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "files/failure.h"
#include "files/known_file.h"

namespace halmek {

struct Session;

struct Output {
  std::string file;  // named relative to `dataFolder`
  FileKind kind = FileKind::other;
  bool mayReplace = false;  // the observer says that whatever is there may go
  std::string_view allowedBy = "end the step with 'replace'";  // what a refusal tells to do for that
};

// What a write would replace.
struct Replaced {
  std::string what;       // as in "a raw frame, 1748 x 140, that Halmek did not write"
  bool isFree = false;    // a file of ours of the same kind, in use nowhere: recipes replace it unasked
  bool isLinked = false;  // it has other names (hard links), which will keep the old content
};

// What stands where a file of that kind would be written; nothing where there is nothing to lose. A file is
// not free if this program did not write it, or wrote another kind of file there; if it is loaded in a slot,
// or as table or mask; or if it is the recipe that runs. A picture is ours if this session wrote it.
std::optional<Replaced> WouldReplace(const Session& session, const std::string& file, FileKind kind);

// Throws Refusal where the output would replace a file that is not free and may not be replaced.
void RequireFree(const Session& session, const Output& output);

// Throws Refusal where the output would replace a file that is not free and may not be replaced.
void RequireFree(const Session& session, const Output& output);

// Puts the bytes into the file, as a whole or not at all, and enters it among the session's files. Warns
// where the file that was there has another name, under which it still holds what it held. Throws Refusal
// where they would replace a file that is not free and may not be replaced, and RunTimeError for the file.
Warnings WriteOutput(Session& session, const Output& output, std::string_view bytes);

}  // namespace halmek
