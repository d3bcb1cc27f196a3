// The tests of the windows: real ones, on a screen that exists only in memory.
#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>
#include <cstdio>
#include <filesystem>

namespace {

// A screen in memory stacks no windows, which Qt remarks on every time.
void PrintUnlessRemark(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (!text.startsWith("This plugin does not support"))
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  // In a locale with a decimal comma, which no number may follow.
  qputenv("LOCPATH", HALMEK_TEST_LOCALES);
  qputenv("LC_ALL", "de_DE.UTF-8");
  // Nothing is printed on a printer that this machine may have.
  qputenv("CUPS_SERVER", "127.0.0.1:1");
  qInstallMessageHandler(PrintUnlessRemark);
  const QApplication application(argc, argv);
  if (std::filesystem::exists(HALMEK_TEST_LOCALES "/de_DE.UTF-8") &&
      *std::localeconv()->decimal_point != ',') {
    std::fprintf(stderr, "The locale with a decimal comma is not in force.\n");
    return 1;
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
