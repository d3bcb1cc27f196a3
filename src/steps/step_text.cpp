// Reading and writing of steps, by visiting their arguments.
#include "steps/step_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "files/failure.h"
#include "numeric/number_prefix.h"

namespace halmek {
namespace {

using Words = std::vector<std::string>;

constexpr std::string_view replaceWord = "replace";

constexpr std::array<int, 5> saveTypes = {16, 17, 32, -32, -64};

// True if `word` is one of the words of `options`, which "|" separates.
bool IsOption(std::string_view options, std::string_view word) {
  while (!options.empty()) {
    const size_t end = std::min(options.find('|'), options.size());
    if (options.substr(0, end) == word)
      return true;
    options.remove_prefix(std::min(end + 1, options.size()));
  }
  return false;
}

std::optional<int> WholeOf(std::string_view word) {
  int value = 0;
  if (word.starts_with('+'))
    word.remove_prefix(1);
  const auto result = std::from_chars(word.data(), word.data() + word.size(), value);
  if (result.ec != std::errc() || result.ptr != word.data() + word.size())
    return std::nullopt;
  return value;
}

// Takes the arguments from words.
class Reader {
 public:
  explicit Reader(const Words& words) : words_(words) {}

  void Whole(std::string_view argument, int& value) {
    const std::string& word = Next(argument);
    const auto whole = WholeOf(word);
    if (!whole)
      throw NotUnderstood(std::string(argument) + " must be a whole number, not '" + word + "'");
    value = *whole;
  }
  void WholeIn(std::string_view argument, int& value, int low, int high) {
    Whole(argument, value);
    if (value < low || value > high)
      throw NotUnderstood(std::string(argument) + " must be " + std::to_string(low) + " to " +
                          std::to_string(high) + ", not " + std::to_string(value));
  }
  void OptionalWhole(std::string_view argument, int& value, int) {
    if (!AtEnd())
      Whole(argument, value);
  }
  void Wholes(std::string_view argument, std::vector<int>& values) {
    do
      Whole(argument.substr(0, argument.find('.')), values.emplace_back());
    while (!AtEnd());
  }
  void Number(std::string_view argument, double& value) {
    const std::string& word = Next(argument);
    value = NumericPrefix(word);
    if (!IsNumber(word) || !std::isfinite(value))
      throw NotUnderstood(std::string(argument) + " must be a number, not '" + word + "'");
  }
  void OptionalNumber(std::string_view argument, std::optional<double>& value) {
    if (!AtEnd())
      Number(argument, value.emplace());
  }
  void Choice(std::string_view options, std::string& value) {
    value = Next(options);
    if (!IsOption(options, value))
      throw NotUnderstood("expected " + std::string(options) + ", not '" + value + "'");
  }
  void File(std::string_view argument, std::string& value) {
    value = Next(argument);
    if (value.empty())
      throw NotUnderstood(std::string(argument) + " is empty");
  }
  // The last word is the type if it is one; `replace` may stand behind it.
  void FileAndType(std::string& file, int& type) {
    replaces_ = !AtEnd() && words_.back() == replaceWord;
    end_ -= replaces_;
    if (const auto whole = AtEnd() ? std::nullopt : WholeOf(words_[end_ - 1])) {
      if (std::find(saveTypes.begin(), saveTypes.end(), *whole) == saveTypes.end())
        throw NotUnderstood("'" + words_[end_ - 1] + "' is no pixel type");
      type = *whole;
      --end_;
    }
    if (!AtEnd())
      File("FILE", file);
  }
  void Replace(bool& replace) {
    replace = replaces_ || (!AtEnd() && words_[at_] == replaceWord);
    at_ += !replaces_ && replace;
  }

  void RequireEnd() const {
    if (!AtEnd())
      throw NotUnderstood("'" + words_[at_] + "' is one word too many");
  }

 private:
  bool AtEnd() const { return at_ >= end_; }
  const std::string& Next(std::string_view argument) {
    if (AtEnd())
      throw NotUnderstood(std::string(argument) + " is missing");
    return words_[at_++];
  }

  const Words& words_;
  size_t at_ = 0;
  size_t end_ = words_.size();
  bool replaces_ = false;  // `replace` was taken off the end
};

// Writes the arguments as the words of a line.
class Writer {
 public:
  explicit Writer(std::string_view name) : line_(name) {}

  void Whole(std::string_view, int value) { Add(std::to_string(value)); }
  void WholeIn(std::string_view, int value, int, int) { Add(std::to_string(value)); }
  void OptionalWhole(std::string_view, int value, int usual) {
    if (value != usual)
      Add(std::to_string(value));
  }
  void Wholes(std::string_view, const std::vector<int>& values) {
    for (int value : values)
      Add(std::to_string(value));
  }
  void Number(std::string_view, double value) {
    std::array<char, 32> text;
    Add({text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr});
  }
  void OptionalNumber(std::string_view argument, const std::optional<double>& value) {
    if (value)
      Number(argument, *value);
  }
  void Choice(std::string_view, const std::string& value) { Add(value); }
  void File(std::string_view, const std::string& value) { Add(Quoted(value)); }
  void FileAndType(const std::string& file, int type) {
    if (!file.empty())
      Add(Quoted(file));
    Add(std::to_string(type));
  }
  void Replace(bool replace) {
    if (replace)
      Add(replaceWord);
  }

  const std::string& line() const { return line_; }

 private:
  void Add(std::string_view word) {
    line_ += ' ';
    line_ += word;
  }
  std::string line_;
};

// Writes the names of the arguments.
class UsageWriter {
 public:
  void Whole(std::string_view argument, int) { Add(argument); }
  void WholeIn(std::string_view argument, int, int, int) { Add(argument); }
  void OptionalWhole(std::string_view argument, int, int) { AddOptional(argument); }
  void Wholes(std::string_view argument, const std::vector<int>&) { Add(argument); }
  void Number(std::string_view argument, double) { Add(argument); }
  void OptionalNumber(std::string_view argument, const std::optional<double>&) { AddOptional(argument); }
  void Choice(std::string_view options, const std::string&) { Add(options); }
  void File(std::string_view argument, const std::string&) { Add(argument); }
  void FileAndType(const std::string&, int) {
    AddOptional("FILE");
    AddOptional("16|17|32|-32");
  }
  void Replace(bool) { AddOptional(replaceWord); }

  const std::string& usage() const { return usage_; }

 private:
  void Add(std::string_view word) {
    if (!usage_.empty())
      usage_ += ' ';
    usage_ += word;
  }
  void AddOptional(std::string_view word) { Add("[" + std::string(word) + "]"); }
  std::string usage_;
};

// Finds the argument that names a file.
class FileFinder {
 public:
  void Whole(std::string_view, int) {}
  void WholeIn(std::string_view, int, int, int) {}
  void OptionalWhole(std::string_view, int, int) {}
  void Wholes(std::string_view, const std::vector<int>&) {}
  void Number(std::string_view, double) {}
  void OptionalNumber(std::string_view, const std::optional<double>&) {}
  void Choice(std::string_view, const std::string&) {}
  void File(std::string_view, const std::string& value) { file = value; }
  void FileAndType(const std::string& value, int) { file = value; }
  void Replace(bool) {}

  std::string file;
};

template <class S>
StepInfo InfoOf() {
  UsageWriter usage;
  S{}.Visit(usage);
  return {S::name, usage.usage(), S::help, [](const Words& words) -> Step {
            S step;
            Reader reader(words);
            step.Visit(reader);
            reader.RequireEnd();
            return step;
          }};
}

template <class... S>
std::vector<StepInfo> InfosOf(const std::variant<S...>*) {
  return {InfoOf<S>()...};
}

std::string UsageOf(const StepInfo& info) {
  return std::string(info.name) + (info.arguments.empty() ? "" : " ") + info.arguments;
}

// The row whose name begins the words, and of how many words the name is.
struct Match {
  const StepInfo* info = nullptr;
  size_t words = 0;
};
Match FindStep(const Words& words) {
  for (const StepInfo& info : StepTable()) {
    const size_t blank = info.name.find(' ');
    if (blank == std::string_view::npos ? words[0] == info.name
                                        : words.size() > 1 && words[0] == info.name.substr(0, blank) &&
                                              words[1] == info.name.substr(blank + 1))
      return {&info, blank == std::string_view::npos ? size_t{1} : size_t{2}};
  }
  return {};
}

// What is said of a first word that is no step by itself.
std::string UnknownCommand(const Words& words) {
  std::string forms;
  for (const StepInfo& info : StepTable())
    if (info.name.starts_with(words[0] + " "))
      forms += (forms.empty() ? "" : " or ") + UsageOf(info);
  return forms.empty() ? "unknown command '" + words[0] + "'" : "expected " + forms;
}

}  // namespace

const std::vector<StepInfo>& StepTable() {
  static const std::vector<StepInfo> table = InfosOf(static_cast<const Step*>(nullptr));
  return table;
}

Step StepOf(const Words& words) {
  const Match match = FindStep(words);
  if (match.info == nullptr)
    throw NotUnderstood(UnknownCommand(words));
  try {
    return match.info->read({words.begin() + static_cast<std::ptrdiff_t>(match.words), words.end()});
  } catch (const NotUnderstood& problem) {
    throw NotUnderstood(std::string(problem.what()) + ": " + UsageOf(*match.info));
  }
}

std::string Quoted(std::string_view word) {
  std::string quoted;
  bool needsQuotes = word.empty();
  for (char c : word) {
    needsQuotes = needsQuotes || c == ' ' || c == '\t' || c == '#' || c == '"';
    if (c == '"' || c == '$')
      quoted += c;  // doubled
    quoted += c;
  }
  return needsQuotes ? '"' + quoted + '"' : quoted;
}

std::string TextOf(const Step& step) {
  const std::string line = std::visit(
      [](auto copy) {
        Writer writer(copy.name);
        copy.Visit(writer);
        return writer.line();
      },
      step);
  if (line.find_first_of("\r\n") != std::string::npos)
    throw RunTimeError(run_time_error::badFileName, "the name holds a line end");
  return line;
}

std::string FileOf(const Step& step) {
  return std::visit(
      [](auto copy) {
        FileFinder finder;
        copy.Visit(finder);
        return finder.file;
      },
      step);
}

std::optional<FileKind> WrittenBy(const Step& step) {
  return std::visit(
      []<class S>(const S&) -> std::optional<FileKind> {
        if constexpr (requires { S::writes; })
          return S::writes;
        else
          return std::nullopt;
      },
      step);
}

void AllowReplacing(Step& step) {
  std::visit(
      []<class S>(S& s) {
        if constexpr (requires { s.replace; })
          s.replace = true;
      },
      step);
}

std::string LanguageHelp() {
  constexpr size_t helpColumn = 46;
  std::string text;
  for (const StepInfo& info : StepTable()) {
    std::string line = "  " + UsageOf(info);
    if (line.size() + 2 > helpColumn)
      line += "\n" + std::string(helpColumn, ' ');
    else
      line.resize(helpColumn, ' ');
    text += line + std::string(info.help) + "\n";
  }
  return text;
}

}  // namespace halmek
