// What tests of windows share: a platform that keeps what it is told and answers at once, and controls found
// by name.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QWheelEvent>
#include <QtTest/QTest>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fits/fits_writer.h"
#include "platform/desk.h"
#include "support/test_session.h"

namespace halmek::test {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

// The boxes that stand for a message; none for a null pointer.
inline Texts Told(const char* message) { return message ? Texts{message} : Texts{}; }

class FakePlatform : public Platform {
 public:
  Texts messages;                                     // the texts of the boxes, in order
  std::string detail;                                 // of the last box
  QWidget* over = nullptr;                            // where the last box was shown
  Texts asked;                                        // the questions, in order
  Question lastAsked;                                 //
  size_t answer = 0;                                  // to all of them
  std::vector<FileQuestion> questions;                // of the file dialogs
  std::optional<std::string> fileToOpen, fileToSave;  // their answers
  // What the user does in the printer dialog, and whether it is confirmed.
  std::function<bool(QPrinter&)> setUpPrinter;
  int busyCount = 0;  // how often the busy pointer was shown
  bool isBusy = false;

  void Show(QWidget* window, const Message& message) override {
    over = window;
    messages.push_back(message.text);
    detail = message.detail;
  }
  size_t Ask(QWidget*, const Question& question) override {
    asked.push_back(question.text);
    lastAsked = question;
    // Whoever is asked for another name then gives none.
    if (answer != 0)
      fileToSave.reset();
    return answer;
  }
  void SetBusy(QWidget*, bool busy) override {
    busyCount += busy;
    isBusy = busy;
  }
  std::optional<std::string> FileToOpen(QWidget*, const FileQuestion& question) override {
    questions.push_back(question);
    return fileToOpen;
  }
  std::optional<std::string> FileToSave(QWidget*, const FileQuestion& question) override {
    questions.push_back(question);
    return fileToSave;
  }
  bool SetUpPrinter(QWidget*, QPrinter& printer) override { return setUpPrinter && setUpPrinter(printer); }

  // What the user does in the printer dialog: to print into that file.
  void PrintInto(const std::string& file, QPageLayout::Orientation orientation = QPageLayout::Portrait,
                 int copies = 1) {
    setUpPrinter = [=](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(file));
      printer.setPageOrientation(orientation);
      printer.setCopyCount(copies);
      return true;
    };
  }
  // The messages since the last call.
  Texts TakeMessages() { return std::exchange(messages, {}); }
  Texts TakeAsked() { return std::exchange(asked, {}); }
};

// The control of that name in a window; fails the test where there is none.
template <class Control>
Control* Find(QWidget* window, const char* name) {
  auto* const control = window->findChild<Control*>(name);
  EXPECT_NE(control, nullptr) << name;
  return control;
}

// A window that has been opened before; a null pointer where there is none.
inline QWidget* Window(const char* name) {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->objectName() == name)
      return window;
  return nullptr;
}
inline bool IsOpen(const char* name) { return Window(name) != nullptr && Window(name)->isVisible(); }

// The windows that are open, by their names: Qt's own order changes from run to run.
inline QList<QWidget*> OpenWindows() {
  QList<QWidget*> open;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible() && window->objectName().startsWith("frm"))
      open.push_back(window);
  std::ranges::sort(open, {}, [](const QWidget* window) { return window->objectName(); });
  return open;
}

// Turns the wheel over a widget; positive is away from the user.
inline void SendWheel(QWidget* widget, int notches, Qt::KeyboardModifiers modifiers = {}) {
  const QPointF at(widget->rect().center());
  QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
}

// Texts of all windows that are larger by this factor, as long as it lives.
class LargerText {
 public:
  explicit LargerText(double factor) {
    QFont font = usual_;
    font.setPointSizeF(QFontInfo(usual_).pointSizeF() * factor);
    QApplication::setFont(font);
  }
  ~LargerText() { QApplication::setFont(usual_); }
  Q_DISABLE_COPY(LargerText)

 private:
  const QFont usual_ = QApplication::font();
};

// A session in an empty folder, and a desk on it.
class WindowTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  FakePlatform platform;
  Desk desk{*session, platform};

  // What a test provokes, it takes; nothing else may be said.
  void TearDown() override { EXPECT_EQ(platform.messages, Texts{}); }

  // Files to load, of 32-bit reals.
  void WriteFrame(const std::string& name, int columns, int rows,
                  const std::function<double(int column, int row)>& value) {
    const auto made = SessionIn(folder.path());
    SetFrame(*made, columns, rows, value);
    made->slot[slots::frame].savePixelType = -32;
    SaveFits2D(*made, name);
  }
  void WriteSpectrum(const std::string& name, const std::vector<double>& values) {
    const auto made = SessionIn(folder.path());
    SetSpectrum(*made, slots::object, values);
    made->slot[slots::object].savePixelType = -32;
    SaveFits1D(*made, slots::object, name);
  }

  // Gives a window the keyboard, and not one that stands above it.
  static void Activate(QWidget* window) {
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == window; }));
  }
  // Presses these buttons, one after the other. Not in the middle: an option button ends with its caption.
  template <class... Names>
  static void Press(QWidget* window, const char* name, Names... more) {
    auto* const button = Find<QAbstractButton>(window, name);
    QTest::mouseClick(button, Qt::LeftButton, {}, {10, button->height() / 2});
    (Press(window, more), ...);
  }
  static void Type(QWidget* window, const char* box, const QString& text) {
    auto* const edit = Find<QLineEdit>(window, box);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
  }
  static std::string BoxText(QWidget* window, const char* name) {
    return Find<QLineEdit>(window, name)->text().toStdString();
  }
  static std::string LabelText(QWidget* window, const char* name) {
    return Find<QLabel>(window, name)->text().toStdString();
  }
};

}  // namespace halmek::test
