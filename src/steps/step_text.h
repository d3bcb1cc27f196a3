// Steps as text: the words of a recipe line, and the table of the language.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "steps/steps.h"

namespace halmek {

// A line that cannot be understood; its text says why.
class NotUnderstood : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One row of the language.
struct StepInfo {
  std::string_view name;  // one or two words
  std::string arguments;  // as in "ROW FIRST LAST [NEIGHBOURS]"
  std::string_view help;
  Step (*read)(const std::vector<std::string>& words);  // of the words behind the name
};

// All steps, in the order of the help.
const std::vector<StepInfo>& StepTable();

// The step that the words of a line say. Throws NotUnderstood.
Step StepOf(const std::vector<std::string>& words);

// The recipe line that says the step; numbers read back to the last bit. Throws RunTimeError 64 where a file
// name holds a line end, which no recipe can say.
std::string TextOf(const Step& step);

// `word` as it must stand in a recipe: in double quotes where it has blanks or characters of the language.
std::string Quoted(std::string_view word);

// The file that the step names, which its messages name, too; empty where it names none.
std::string FileOf(const Step& step);

// The kind of file that the step writes; nothing where it writes none.
std::optional<FileKind> WrittenBy(const Step& step);

// Lets a step that writes replace whatever stands there.
void AllowReplacing(Step& step);

// The whole language, one line a step.
std::string LanguageHelp();

}  // namespace halmek
