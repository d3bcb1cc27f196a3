// Recipes: text files of steps, one a line.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "steps/perform.h"
#include "steps/step_text.h"

namespace halmek {

// The values of `$name` in a recipe.
using Variables = std::map<std::string, std::string>;

struct RecipeLine {
  int number = 0;  // in the file, from 1
  Step step;
};

// A recipe that stopped: the line's number and, after it, what is wrong.
class RecipeStopped : public std::runtime_error {
 public:
  RecipeStopped(int line, const std::string& text) : std::runtime_error(text), line_(line) {}
  int line() const { return line_; }

 private:
  int line_;
};

// True for what `$` may stand before: a letter or "_", then letters, digits and "_".
bool IsVariableName(std::string_view name);

// The words of a line: separated by blanks; in double quotes where they hold blanks, with "" for a quote; `#`
// at the start of a word begins a comment; `$name` and `${name}` are replaced anywhere in a word, `$$` is a
// dollar sign. Throws NotUnderstood for an open quote, a name without value, control characters and
// words of more than 64 KiB together.
std::vector<std::string> WordsOf(std::string_view line, const Variables& variables);

// Reads a whole recipe. Throws RecipeStopped at the first line that cannot be understood.
std::vector<RecipeLine> ParseRecipe(std::string_view text, const Variables& variables);

// Performs the lines in order, accepts the fits among them, and hands each outcome to `report`. Throws
// RecipeStopped at the first that is refused; its text names the step's file, the refusal and its detail.
void RunRecipe(Session& session, const std::vector<RecipeLine>& lines,
               const std::function<void(const RecipeLine&, const Outcome&)>& report);

// One line for a failure of an operation on `file`, which may be empty: "FILE: TEXT (DETAIL)".
std::string FailureLine(const std::string& file, const Failure& failure);

// The journal as a recipe.
std::string JournalText(const Session& session);

// The journal as it is saved at `path`, so that it runs from the folder it is saved in: where the session
// began elsewhere, the first line says so.
std::string SavedRecipe(const Session& session, const std::string& path);

// What is to be said of a recipe that was run: one line, and its warnings, one a line.
struct RecipeReport {
  std::string text, warnings;
  bool isDone = false;  // it ran to its end
};

// Runs the recipe in a file on a session that may already hold data. `inFolder` becomes current, as its
// relative names expect; where that is empty, the current folder stays. Nothing is run where a line cannot be
// understood.
RecipeReport RunRecipeFile(Session& session, const std::string& path, const std::string& inFolder);

}  // namespace halmek
