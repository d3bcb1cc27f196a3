// Recipes of any text, run for what they leave behind.
#include "fuzz/recipe_folder.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>

#include "steps/recipe.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;  // bytes by full name

// The tiny night's files, one that ends too early and one that promises too much.
Files MakeFiles(const std::string& folder) {
  fs::create_directories(folder + "/sub");
  WriteTinyNight(folder);
  std::string frame = ReadFile(folder + "/frame.fts");
  WriteFile(folder + "/short.fts", frame.substr(0, 3000));
  WriteFile(folder + "/large.fts", frame.replace(frame.find("  40 /"), 4, "9999"));
  Files files;
  for (const std::string& name : FilesIn(folder))
    if (name != "sub")
      files[folder + "/" + name] = ReadFile(folder + "/" + name);
  return files;
}

// What a session has written. It is removed, and the folder's own files are put back.
Files TakeWritten(const Session& s, const Files& own) {
  Files written;
  for (const std::string& path : s.writtenFiles)
    if (path != "/dev/null")
      written[path] = ReadFile(path);
  for (const auto& [path, bytes] : written) {
    fs::remove(path);
    if (const auto file = own.find(path); file != own.end())
      WriteFile(path, file->second);
  }
  Require(FilesIn(fs::path(own.begin()->first).parent_path().string()).size() == own.size() + 1,
          "a save has left something beside its file");
  return written;
}

bool StaysInFolder(const RecipeLine& line) {
  const std::string file = FileOf(line.step);
  return file == "/dev/null" || (file.find('/') == std::string::npos && file != "..");
}

std::optional<RecipeStopped> RefusalOfLine(Session& s, const RecipeLine& line) {
  try {
    RunRecipe(s, {line}, [](const RecipeLine&, const Outcome&) {});
    return std::nullopt;
  } catch (const RecipeStopped& stopped) {
    return stopped;
  }
}

// Everything that a session can write.
Files WriteAll(Session& s, const Files& own) {
  for (const RecipeLine& line :
       ParseRecipe("save frame all0 -32\nsave spectrum all3 -32\nsave object all4 -32\n"
                   "export arc1 all1\nexport arc2 all2\n"
                   "save mask arc1 mask1\nsave mask arc2 mask2\n",
                   {}))
    RefusalOfLine(s, line);
  return TakeWritten(s, own);
}

}  // namespace

void Require(bool holds, const char* what) {
  if (!holds)
    throw std::logic_error(what);
}

void RunInPreparedFolder(const std::string& folder, const std::string& recipe) {
  static const Files own = MakeFiles(folder);
  const std::vector<RecipeLine> lines = ParseRecipe(recipe, {});
  if (!std::ranges::all_of(lines, StaysInFolder))
    throw Refusal("The recipe leaves its folder.");

  const auto s = SessionIn(folder);
  std::optional<RecipeStopped> first;
  for (const RecipeLine& line : lines) {
    const auto refusal = RefusalOfLine(*s, line);
    first = first ? first : refusal;
  }
  const std::string journal = JournalText(*s);
  const Files written = WriteAll(*s, own);

  if (std::hash<std::string>{}(recipe) % 4 == 0) {
    const auto again = SessionIn(folder);
    for (const RecipeLine& line : ParseRecipe(journal, {}))
      Require(!RefusalOfLine(*again, line), "a line of the journal is refused when it is replayed");
    Require(WriteAll(*again, own) == written, "the journal gives other files");
  }
  if (first)
    throw *first;
}

}  // namespace halmek::test
