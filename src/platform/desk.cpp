// The door of the windows.
#include "platform/desk.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <utility>

#include "platform/accessible.h"
#include "steps/perform.h"
#include "steps/step_text.h"
#include "steps/unsaved_work.h"

namespace halmek {
namespace {

// What is to be said of the failure of `action`; nothing where it succeeds.
std::optional<Message> FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return Message{failure.text(), failure.detail()};
  } catch (const std::bad_alloc&) {
    return Message{RunTimeError(run_time_error::outOfMemory).text(), {}};
  } catch (const std::exception& error) {
    // Whatever it is, the evening's work goes on.
    return Message{error.what(), {}};
  }
  return std::nullopt;
}

std::string Joined(const Warnings& warnings) {
  std::string text;
  for (const std::string& warning : warnings)
    text += (text.empty() ? "" : "\n") + warning;
  return text;
}

}  // namespace

Desk::Desk(Session& session, Platform& platform)
    : session_(session), platform_(platform), printing_(session.fileOperations) {
  InstallAccessibility();
}

bool Desk::Do(QWidget* over, const std::vector<Step>& steps) {
  const auto allowed = Allowed(over, steps);
  return allowed && DoAllowed(over, *allowed);
}

std::optional<std::vector<Step>> Desk::Allowed(QWidget* over, std::vector<Step> steps) {
  std::filesystem::path folder = session_.dataFolder;
  for (Step& step : steps) {
    if (const auto* const change = std::get_if<steps::Folder>(&step))
      folder /= change->directory;
    if (!MayLose(over, LostBy(session_, step), "Discard It"))
      return std::nullopt;
    const auto kind = WrittenBy(step);
    if (!kind)
      continue;
    const auto needsLeave = MayReplace(over, (folder / FileOf(step)).string(), *kind);
    if (!needsLeave)
      return std::nullopt;
    if (*needsLeave)
      AllowReplacing(step);
  }
  return steps;
}

std::optional<bool> Desk::MayReplace(QWidget* over, const std::string& file, FileKind kind) {
  const auto replaced = WouldReplace(session_, file, kind);
  if (!replaced)
    return false;
  std::string detail = "it is " + replaced->what + ".";
  if (!replaced->isFree)
    detail += " What it holds would be lost.";
  if (replaced->isLinked)
    detail += " It has another name (a hard link), which will keep what it holds.";
  // Return replaces our own, and spares what is another's.
  const size_t usual = replaced->isFree ? 0 : 1;
  if (platform_.Ask(over, {"Replace " + LeafName(file) + "?", detail, {"Replace", "Cancel"}, usual}) != 0)
    return std::nullopt;
  return !replaced->isFree;
}

bool Desk::MayLose(QWidget* over, const std::vector<std::string>& work, const std::string& answer) {
  if (work.empty())
    return true;
  std::string list;
  for (const std::string& piece : work)
    list += (list.empty() ? "" : "\n") + piece;
  return platform_.Ask(over, {"This is not saved and would be lost:", list, {answer, "Cancel"}, 1}) == 0;
}

std::optional<Output> Desk::FileToSave(QWidget* over, const FileQuestion& question,
                                       FileKind (*kindOf)(const std::string& file)) {
  while (const auto file = platform_.FileToSave(over, question)) {
    const FileKind kind = kindOf(*file);
    if (const auto needsLeave = MayReplace(over, *file, kind))
      return Output{.file = *file, .kind = kind, .mayReplace = *needsLeave};
  }
  return std::nullopt;
}

void Desk::KeepJournal(JournalFile& journal) {
  session_.keepJournal = [this, &journal, isBroken = false](const std::string& line) mutable {
    if (isBroken)
      return;
    if (auto failure = FailureOf([&] { journal.Append(line); })) {
      isBroken = true;
      journalTrouble_ =
          Message{failure->text, "the journal that would outlive a crash is not kept: " +
                                     (failure->detail.empty() ? journal.path() : failure->detail)};
    }
  };
}

bool Desk::DoAllowed(QWidget* over, const std::vector<Step>& steps) {
  Warnings warnings;
  std::optional<Message> failure;
  {
    const BusyPointer busy(*this);
    for (size_t i = 0; i < steps.size() && !failure; ++i) {
      failure = FailureOf([&] {
        for (std::string& warning : Perform(session_, steps[i]).warnings)
          warnings.push_back(std::move(warning));
      });
      if (const std::string file = FileOf(steps[i]); failure && !file.empty())
        failure->detail = NamingFile(failure->detail, file);
    }
  }
  // What stands on the screen is right before a box asks to be read.
  RefreshViews();
  if (failure)
    platform_.Show(over, *failure);
  if (!warnings.empty())
    Tell(over, Joined(warnings));
  if (const auto trouble = std::exchange(journalTrouble_, std::nullopt))
    platform_.Show(over, *trouble);
  return !failure;
}

bool Desk::Try(QWidget* over, const std::function<void()>& action, const std::string& consequence) {
  auto failure = FailureOf(action);
  if (!failure)
    return true;
  if (failure->detail.empty())
    failure->detail = consequence;
  platform_.Show(over, *failure);
  return false;
}

bool Desk::TryWith(const std::string& file, QWidget* over, const std::function<void()>& action) {
  auto failure = FailureOf(action);
  if (!failure)
    return true;
  failure->detail = NamingFile(failure->detail, file);
  platform_.Show(over, *failure);
  return false;
}

void Desk::RefreshViews() {
  // A view may close itself meanwhile.
  for (View* view : std::vector(views_))
    if (std::find(views_.begin(), views_.end(), view) != views_.end())
      view->Refresh();
}

BusyPointer::BusyPointer(Desk& desk) : desk_(desk) {
  if (desk_.mainWindow() != nullptr)
    desk_.platform().SetBusy(desk_.mainWindow(), true);
}

BusyPointer::~BusyPointer() {
  if (desk_.mainWindow() != nullptr)
    desk_.platform().SetBusy(desk_.mainWindow(), false);
}

}  // namespace halmek
