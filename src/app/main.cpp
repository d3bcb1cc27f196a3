// halmek: reductions at the screen.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "app/main_window.h"
#include "app/version.h"
#include "files/process.h"
#include "platform/desk.h"
#include "platform/installed.h"
#include "steps/journal_file.h"
#include "steps/start_up.h"

namespace {

constexpr int statusNoScreen = 1;
constexpr int statusNotUnderstood = 2;

bool HasScreen() {
  const auto isSet = [](const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
  };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

int RunWindows(int argc, char** argv, const std::string& frame) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("halmek");
  QApplication::setApplicationDisplayName("");
  QApplication::setDesktopFileName("halmek");
  QApplication::setWindowIcon(halmek::ProgramIcon());
  QApplication::setQuitOnLastWindowClosed(false);

  const auto session = std::make_unique<halmek::Session>();
  halmek::QtPlatform platform;
  halmek::Desk desk(*session, platform);
  halmek::MainWindow window(desk);
  for (const std::string& message : halmek::StartUp(*session, std::filesystem::current_path().string()))
    desk.Tell(nullptr, message);
  window.Open();
  const std::string state = halmek::StateFolder();
  const auto left = halmek::LeftJournals(state);
  halmek::JournalFile journal(state, session->dataFolder);
  desk.KeepJournal(journal);
  if (!left.empty())
    window.actions().OfferReplay(left.front());
  if (!frame.empty())
    window.actions().LoadFrameFrom(frame);
  const int status = QApplication::exec();
  journal.Remove();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  halmek::PrepareProcess();
  CLI::App app("Turns long-slit CCD frames into wavelength-calibrated spectra, at the screen.", "halmek");
  std::string frame;
  app.add_option("frame", frame, "a 2-D FITS file to begin with")->type_name("FRAME");
  app.set_version_flag("--version", std::string("halmek ") + halmek::programVersion);
  app.footer(
      "The settings file Halmek8.ini is read from and written to the current folder. halmek-batch runs the\n"
      "same steps from recipes, without a screen.\n");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    std::fprintf(stderr, "halmek: %s; see halmek --help\n", error.what());
    return statusNotUnderstood;
  }
  if (!HasScreen()) {
    std::fprintf(stderr,
                 "halmek: there is no screen to show windows on; halmek-batch runs recipes without one\n");
    return statusNoScreen;
  }
  try {
    return RunWindows(argc, argv, frame);
  } catch (const std::exception& error) {
    // The current folder is gone, for example.
    std::fprintf(stderr, "halmek: %s\n", error.what());
    return statusNoScreen;
  }
}
