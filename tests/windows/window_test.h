// What tests of windows share: a platform that keeps what it is told and answers at once, and controls found
// by name.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QtTest/QTest>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/desk.h"
#include "support/test_session.h"

namespace halmek::test {

class FakePlatform : public Platform {
 public:
  std::vector<std::string> messages;                  // the texts of the boxes, in order
  std::string detail;                                 // of the last box
  std::vector<FileQuestion> questions;                // of the file dialogs
  std::optional<std::string> fileToOpen, fileToSave;  // their answers
  // What the user does in the printer dialog, and whether it is confirmed.
  std::function<bool(QPrinter&)> setUpPrinter;
  int busyCount = 0;  // how often the busy pointer was shown
  bool isBusy = false;

  void Show(QWidget*, const Message& message) override {
    messages.push_back(message.text);
    detail = message.detail;
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

  // The messages since the last call.
  std::vector<std::string> TakeMessages() { return std::exchange(messages, {}); }
};

// A session in an empty folder, and a desk on it.
class WindowTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  FakePlatform platform;
  Desk desk{*session, platform};
};

// The control of that name in a window; fails the test where there is none.
template <class Control>
Control* Find(QWidget* window, const char* name) {
  auto* const control = window->findChild<Control*>(name);
  EXPECT_NE(control, nullptr) << name;
  return control;
}

}  // namespace halmek::test
