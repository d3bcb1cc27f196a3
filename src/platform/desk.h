// What all windows share: the session they show, the platform they speak through, and the one place where
// failures become message boxes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/output.h"
#include "app/session.h"
#include "platform/platform.h"
#include "platform/printing.h"
#include "steps/journal_file.h"
#include "steps/steps.h"

namespace halmek {

// A window that shows something of the session.
class View {
 public:
  virtual ~View() = default;

  // Shows what the session holds now. Called after every step.
  virtual void Refresh() = 0;
};

class Desk {
 public:
  Desk(Session& session, Platform& platform);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  Session& session() { return session_; }
  const Session& session() const { return session_; }
  Platform& platform() { return platform_; }
  Printing& printing() { return printing_; }

  // Performs the steps in order under the busy pointer, up to the first that fails, whose message is shown
  // over the window. Then refreshes all views and shows the warnings in one box. Before, it asks whether
  // files may be replaced, and unsaved work lost. Returns true if all succeeded.
  bool Do(QWidget* over, const std::vector<Step>& steps);
  bool Do(QWidget* over, const Step& step) { return Do(over, std::vector<Step>{step}); }

  // The steps as the observer allows them, who is asked before one replaces a file or loses work that is not
  // saved; nothing where the answer is to cancel.
  std::optional<std::vector<Step>> Allowed(QWidget* over, std::vector<Step> steps);

  // Performs steps that are allowed.
  bool DoAllowed(QWidget* over, const std::vector<Step>& steps);

  // Asks before a file, named relative to the data folder, is replaced. Nothing where the answer is to
  // cancel; else whether the write needs leave to replace it.
  std::optional<bool> MayReplace(QWidget* over, const std::string& file, FileKind kind);

  // Asks whether these pieces of work may be lost; `answer` is that of yes. True where there are none.
  bool MayLose(QWidget* over, const std::vector<std::string>& work, const std::string& answer);

  // Asks for the file to save, until it is new or may be replaced. Nothing where the dialog is cancelled.
  std::optional<Output> FileToSave(QWidget* over, const FileQuestion& question,
                                   FileKind (*kindOf)(const std::string& file));

  // Keeps the journal in the file from now on. Where that fails, it is said once.
  void KeepJournal(JournalFile& journal);

  // Does anything else that may be refused: shows the message where it is, with `consequence` as its detail
  // where it has none. Returns true if it succeeded.
  bool Try(QWidget* over, const std::function<void()>& action, const std::string& consequence = {});

  // The same for what is done to a file, which the message names.
  bool TryWith(const std::string& file, QWidget* over, const std::function<void()>& action);

  void Tell(QWidget* over, const std::string& text, const std::string& detail = {}) {
    platform_.Show(over, {text, detail});
  }

  void AddView(View& view) { views_.push_back(&view); }
  void RemoveView(View& view) { std::erase(views_, &view); }
  void RefreshViews();

  // The window that shows the busy pointer.
  void SetMainWindow(QWidget* window) { mainWindow_ = window; }
  QWidget* mainWindow() const { return mainWindow_; }

 private:
  Session& session_;
  Platform& platform_;
  Printing printing_;
  std::vector<View*> views_;
  std::optional<Message> journalTrouble_;  // not said yet
  QWidget* mainWindow_ = nullptr;
};

// Shows the busy pointer on the main window while it lives.
class BusyPointer {
 public:
  explicit BusyPointer(Desk& desk);
  ~BusyPointer();
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  Desk& desk_;
};

}  // namespace halmek
