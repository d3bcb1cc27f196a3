// Message boxes, pointer and file dialogs of the desktop.
#include "platform/platform.h"

#include <QFileDialog>
#include <QMessageBox>

#include "platform/text.h"

namespace halmek {
namespace {

std::optional<std::string> Answer(const QString& file) {
  return file.isEmpty() ? std::nullopt : std::optional(Typed(file));
}

QString StartOf(const FileQuestion& question) {
  return QFile::decodeName((question.folder + "/" + question.name).c_str());
}

QString FilterOf(const FileQuestion& question) {
  return Shown(question.pattern) + " (" + Shown(question.pattern) + ");;*";
}

}  // namespace

void QtPlatform::Show(QWidget* over, const Message& message) {
  QMessageBox box(over);
  box.setWindowTitle("Halmek");
  box.setTextFormat(Qt::PlainText);
  box.setText(Shown(message.text));
  box.setInformativeText(Shown(message.detail));
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

void QtPlatform::SetBusy(QWidget* window, bool busy) {
  if (busy)
    window->setCursor(Qt::WaitCursor);
  else
    window->unsetCursor();
}

std::optional<std::string> QtPlatform::FileToOpen(QWidget* over, const FileQuestion& question) {
  return Answer(
      QFileDialog::getOpenFileName(over, Shown(question.title), StartOf(question), FilterOf(question)));
}

std::optional<std::string> QtPlatform::FileToSave(QWidget* over, const FileQuestion& question) {
  return Answer(
      QFileDialog::getSaveFileName(over, Shown(question.title), StartOf(question), FilterOf(question)));
}

}  // namespace halmek
