// The two kinds of failure that leave a procedure, and the texts of run-time errors.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace halmek {

// What both kinds share: the text of the message box, and a detail for those who read a line of output (what
// was found and what was expected), which may be empty.
class Failure : public std::exception {
 public:
  const std::string& text() const { return text_; }
  const std::string& detail() const { return detail_; }
  const char* what() const noexcept override { return text_.c_str(); }

 protected:
  Failure(std::string text, std::string detail) : text_(std::move(text)), detail_(std::move(detail)) {}

 private:
  std::string text_;
  std::string detail_;
};

// An operation that is refused; its text is the message box's text.
class Refusal : public Failure {
 public:
  explicit Refusal(std::string text, std::string detail = {}) : Failure(std::move(text), std::move(detail)) {}
};

// A failure of the run-time system with its number. Its text is that of the message box: "Error: ", the
// number, two blanks and the number's own text.
class RunTimeError : public Failure {
 public:
  explicit RunTimeError(int number, std::string detail = {});
  int number() const { return number_; }

 private:
  int number_;
};

// Plain sentences about a result that deserves doubt although the operation succeeded.
using Warnings = std::vector<std::string>;

namespace run_time_error {
inline constexpr int badArgument = 5;
inline constexpr int overflow = 6;
inline constexpr int outOfMemory = 7;
inline constexpr int subscript = 9;
inline constexpr int fileNotFound = 53;
inline constexpr int deviceIo = 57;
inline constexpr int diskFull = 61;
inline constexpr int pastEndOfFile = 62;
inline constexpr int badFileName = 64;
inline constexpr int tooManyFiles = 67;
inline constexpr int deviceUnavailable = 68;
inline constexpr int permissionDenied = 70;
inline constexpr int pathAccess = 75;
inline constexpr int pathNotFound = 76;
inline constexpr int invalidFormat = 321;
}  // namespace run_time_error

// The text for error `number`; empty for numbers that have none, whatever they are.
std::string_view ErrorText(int number);

// The failure of an operation on the file `path`, from the value of `errno` that the system left.
RunTimeError ErrorFromSystem(int systemError, const std::string& path);

}  // namespace halmek
