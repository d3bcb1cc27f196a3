// What the windows ask of the desktop: message boxes, the busy pointer, file and printer dialogs. Tests
// answer in its place.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QPrinter;
class QWidget;

namespace halmek {

// A message box: its text, and a detail in smaller print, which may be empty.
struct Message {
  std::string text, detail;
};

// A question with a button for each answer. `usual` is the one that Return presses; the last is that of
// somebody who closes the box.
struct Question {
  std::string text, detail;
  std::vector<std::string> answers;
  size_t usual = 0;
};

// The detail of a failure, with the file that it is about.
std::string NamingFile(std::string detail, const std::string& file);

// What a file dialog is for. The first pattern, as in "*.recipe", is that of the name proposed.
struct FileQuestion {
  std::string title, folder, name;
  std::vector<std::string> patterns;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Shows a modal box with an OK button over a window and returns when it is closed.
  virtual void Show(QWidget* over, const Message& message) = 0;

  // Asks in a modal box and returns the index of the answer.
  virtual size_t Ask(QWidget* over, const Question& question) = 0;

  // The busy pointer on a window, or the arrow again.
  virtual void SetBusy(QWidget* window, bool busy) = 0;

  // The full name of a file that the user chooses; nothing where the dialog is cancelled. That a file to save
  // exists is not asked about.
  virtual std::optional<std::string> FileToOpen(QWidget* over, const FileQuestion& question) = 0;
  virtual std::optional<std::string> FileToSave(QWidget* over, const FileQuestion& question) = 0;

  // Shows the printer dialog for `printer`, which it changes. Returns false where it is cancelled.
  virtual bool SetUpPrinter(QWidget* over, QPrinter& printer) = 0;
};

// The desktop itself.
class QtPlatform : public Platform {
 public:
  void Show(QWidget* over, const Message& message) override;
  size_t Ask(QWidget* over, const Question& question) override;
  void SetBusy(QWidget* window, bool busy) override;
  std::optional<std::string> FileToOpen(QWidget* over, const FileQuestion& question) override;
  std::optional<std::string> FileToSave(QWidget* over, const FileQuestion& question) override;
  bool SetUpPrinter(QWidget* over, QPrinter& printer) override;
};

}  // namespace halmek
