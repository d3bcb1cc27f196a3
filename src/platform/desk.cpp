// The door of the windows.
#include "platform/desk.h"

#include <algorithm>
#include <new>
#include <optional>

#include "platform/accessible.h"
#include "steps/perform.h"
#include "steps/step_text.h"

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
