// Recipes.
#include "steps/recipe.h"

#include <algorithm>
#include <filesystem>
#include <new>

#include "files/input_file.h"
#include "files/known_file.h"
#include "files/text_records.h"
#include "plot/wording.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool IsNameCharacter(char c) { return IsNameStart(c) || (c >= '0' && c <= '9'); }

// No text has them; in a file name they would be a trap.
bool HasControlCharacter(std::string_view word) {
  return std::any_of(word.begin(), word.end(), [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code < 0x20 && c != '\t') || code == 0x7F;
  });
}

// Takes the words of a line one by one.
class Scanner {
 public:
  Scanner(std::string_view line, const Variables& variables) : rest_(line), variables_(variables) {}

  bool AtEnd() {
    while (!rest_.empty() && IsBlank(rest_[0]))
      rest_.remove_prefix(1);
    return rest_.empty() || rest_[0] == '#';
  }

  std::string Word() {
    std::string word;
    bool quoted = false;
    while (!rest_.empty() && (quoted || !IsBlank(rest_[0]))) {
      if (rest_.starts_with("\"\"") && quoted) {
        word += '"';
        rest_.remove_prefix(2);
      } else if (rest_[0] == '"') {
        quoted = !quoted;
        rest_.remove_prefix(1);
      } else if (rest_[0] == '$') {
        word += Replacement();
      } else {
        word += rest_[0];
        rest_.remove_prefix(1);
      }
      // While it grows: a line can name a long value a million times.
      if (word.size() > room_)
        throw NotUnderstood("the line is longer than 64 KiB after its variables are replaced");
    }
    if (quoted)
      throw NotUnderstood("a double quote is not closed");
    room_ -= word.size();
    return word;
  }

 private:
  // What stands for the dollar sign and the name behind it.
  std::string Replacement() {
    rest_.remove_prefix(1);
    if (rest_.starts_with('$')) {
      rest_.remove_prefix(1);
      return "$";
    }
    const bool braced = rest_.starts_with('{');
    const size_t start = braced ? 1 : 0;
    size_t end = start;
    while (end < rest_.size() && (end == start ? IsNameStart(rest_[end]) : IsNameCharacter(rest_[end])))
      ++end;
    const std::string name(rest_.substr(start, end - start));
    if (name.empty() || (braced && (end == rest_.size() || rest_[end] != '}')))
      throw NotUnderstood(
          "a dollar sign needs a name behind it, as in $star or ${star}; write $$ for the sign");
    rest_.remove_prefix(braced ? end + 1 : end);
    const auto found = variables_.find(name);
    if (found == variables_.end())
      throw NotUnderstood("$" + name + " has no value; give it one as in " + name + "=VALUE");
    return found->second;
  }

  std::string_view rest_;
  const Variables& variables_;
  size_t room_ = 64 << 10;  // for words still to be taken
};

// The file that a failing step's message names; a save may have gone by its default name.
std::string FileInMessage(const Session& session, const Step& step) {
  const auto* const save = std::get_if<steps::Save>(&step);
  if (save == nullptr || !save->file.empty())
    return FileOf(step);
  const int slot = SlotNamed(save->what);
  return session.slot[slot].fileName.empty() ? "" : LeafName(ProposedFile(session, slot));
}

// The recipe's own file is not replaced while it runs.
class RunningRecipe {
 public:
  RunningRecipe(Session& session, const std::string& path) : session_(session) { session_.recipeFile = path; }
  ~RunningRecipe() { session_.recipeFile.clear(); }
  RunningRecipe(const RunningRecipe&) = delete;
  RunningRecipe& operator=(const RunningRecipe&) = delete;

 private:
  Session& session_;
};

// A recipe accepts what it fits, as the windows do by "OK".
struct Acceptance {
  Session& session;
  void operator()(const steps::Background&) const { AcceptBackground(session); }
  void operator()(const steps::NormalizeAuto&) const { AcceptContinuum(session); }
  void operator()(const steps::NormalizePoints&) const { AcceptContinuum(session); }
  void operator()(const auto&) const {}
};

}  // namespace

bool IsVariableName(std::string_view name) {
  return !name.empty() && IsNameStart(name[0]) && std::all_of(name.begin(), name.end(), IsNameCharacter);
}

std::vector<std::string> WordsOf(std::string_view line, const Variables& variables) {
  std::vector<std::string> words;
  for (Scanner scanner(line, variables); !scanner.AtEnd();) {
    words.push_back(scanner.Word());
    if (HasControlCharacter(words.back()))
      throw NotUnderstood("the line holds a character that no text has");
  }
  return words;
}

std::vector<RecipeLine> ParseRecipe(std::string_view text, const Variables& variables) {
  if (text.starts_with("\xEF\xBB\xBF"))
    text.remove_prefix(3);
  std::vector<RecipeLine> lines;
  int number = 0;
  for (std::string_view line : Lines(text)) {
    ++number;
    try {
      const std::vector<std::string> words = WordsOf(line, variables);
      if (!words.empty())
        lines.push_back({number, StepOf(words)});
    } catch (const NotUnderstood& problem) {
      throw RecipeStopped(number, problem.what());
    }
  }
  return lines;
}

void RunRecipe(Session& session, const std::vector<RecipeLine>& lines,
               const std::function<void(const RecipeLine&, const Outcome&)>& report) {
  for (const RecipeLine& line : lines) {
    try {
      report(line, Perform(session, line.step));
      std::visit(Acceptance{session}, line.step);
    } catch (const Failure& failure) {
      throw RecipeStopped(line.number, FailureLine(FileInMessage(session, line.step), failure));
    } catch (const std::bad_alloc&) {
      throw RecipeStopped(line.number, RunTimeError(run_time_error::outOfMemory).text());
    }
  }
}

std::string FailureLine(const std::string& file, const Failure& failure) {
  std::string line = file.empty() ? failure.text() : file + ": " + failure.text();
  line.erase(line.find_last_not_of(' ') + 1);
  if (!failure.detail().empty())
    line += " (" + failure.detail() + ")";
  return line;
}

RecipeReport RunRecipeFile(Session& session, const std::string& path, const std::string& inFolder) {
  const std::string name = LeafName(path);
  const RunningRecipe running(session, path);
  RecipeReport report;
  int done = 0;
  try {
    const std::vector<RecipeLine> lines = ParseRecipe(ReadWholeFile(path), {});
    if (!inFolder.empty() && inFolder != session.dataFolder)
      Perform(session, steps::Folder{inFolder});
    RunRecipe(session, lines, [&](const RecipeLine& line, const Outcome& outcome) {
      ++done;
      for (const std::string& warning : outcome.warnings)
        report.warnings +=
            (report.warnings.empty() ? "" : "\n") + name + ":" + std::to_string(line.number) + ": " + warning;
    });
    report.text = name + ": " + Count(done, "step") + " done.";
    report.isDone = true;
  } catch (const RecipeStopped& stopped) {
    report.text = name + ":" + std::to_string(stopped.line()) + ": " + stopped.what();
  } catch (const Failure& failure) {
    report.text = FailureLine(name, failure);
  }
  return report;
}

std::string SavedRecipe(const Session& session, const std::string& path) {
  const fs::path start = fs::path(session.settingsPath).parent_path();
  const bool isElsewhere = fs::path(path).parent_path() != start;
  std::string text = JournalText(session);
  if (isElsewhere)
    text.insert(first_lines::recipe.size() + 1, TextOf(steps::Folder{start.string()}) + "\n");
  return text;
}

std::string JournalText(const Session& session) {
  std::string text = std::string(first_lines::recipe) + "\n";
  for (const std::string& line : session.journal)
    text += line + "\n";
  return text;
}

}  // namespace halmek
