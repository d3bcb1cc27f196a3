// Writing of files.
#include "app/output.h"

#include <algorithm>
#include <filesystem>

#include "app/session.h"
#include "files/atomic_write.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return !b.empty() && fs::equivalent(a, b, ignored);
}

// What the session needs the file for; empty where it does not.
std::string UseOf(const Session& session, const std::string& path) {
  if (IsSameFile(path, session.recipeFile))
    return "that is running";
  constexpr const char* names[] = {"the frame", "Arc 1", "Arc 2", nullptr, "the object"};
  for (const int slot : {slots::frame, slots::arc1, slots::arc2, slots::object})
    if (IsSameFile(path, session.slot[slot].loadedFile))
      return std::string("that is loaded as ") + names[slot];
  if (IsSameFile(path, session.wavelengthTable.loadedFile))
    return "that is loaded as the wavelength table";
  if (IsSameFile(path, session.mask.loadedFile))
    return "that is loaded as the mask";
  return {};
}

bool IsWrittenHere(const Session& session, const std::string& path) {
  return std::any_of(session.writtenFiles.begin(), session.writtenFiles.end(),
                     [&](const std::string& written) { return IsSameFile(path, written); });
}

void Require(const std::optional<Replaced>& replaced, const Output& output) {
  if (replaced && !replaced->isFree && !output.mayReplace)
    throw Refusal("This would replace " + replaced->what + ".  Give another name, or " +
                  std::string(output.allowedBy) + "." +
                  (replaced->isLinked ? "  It has another name (a hard link)." : ""));
}

}  // namespace

std::optional<Replaced> WouldReplace(const Session& session, const std::string& file, FileKind kind) {
  const std::string path = FullName(session, file);
  const std::optional<KnownFile> known = LookAtFile(path);
  if (!known)
    return std::nullopt;
  // Nothing in a picture says whose it is.
  const bool isOurs = known->isOurs || (known->kind == FileKind::picture && IsWrittenHere(session, path));
  Replaced replaced{.what = "a " + known->description, .isLinked = known->names > 1};
  if (const std::string use = UseOf(session, path); !use.empty())
    replaced.what += ", " + use;
  else if (!isOurs)
    replaced.what += ", that Halmek did not write";
  else if (known->kind != kind)
    replaced.what += ", which is another kind of file";
  else
    replaced.isFree = true;
  return replaced;
}

void RequireFree(const Session& session, const Output& output) {
  Require(WouldReplace(session, output.file, output.kind), output);
}

Warnings WriteOutput(Session& session, const Output& output, std::string_view bytes) {
  const auto replaced = WouldReplace(session, output.file, output.kind);
  Require(replaced, output);
  const std::string path = FullName(session, output.file);
  AtomicWrite(path, bytes, session.fileOperations);
  session.writtenFiles.push_back(path);
  if (!replaced || !replaced->isLinked)
    return {};
  return {output.file + " had another name (a hard link), which keeps what the file held."};
}

}  // namespace halmek
