// Message boxes, pointer, file and printer dialogs of the desktop.
#include "platform/platform.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

#include "platform/placement.h"
#include "platform/text.h"

namespace halmek {
namespace {

// As much of a text as one reads in a box.
QString Readable(const std::string& text) {
  constexpr int longest = 1000;
  const QString shown = Shown(text);
  return shown.size() <= longest ? shown : shown.left(longest) + " ...";
}

// A detail as a sentence.
QString Sentence(const std::string& detail) {
  QString text = Readable(detail);
  if (text.isEmpty())
    return text;
  text[0] = text[0].toUpper();
  return text.endsWith('.') ? text : text + '.';
}

std::optional<std::string> Ask(QWidget* over, const FileQuestion& question, QFileDialog::AcceptMode mode) {
  QFileDialog dialog(over, Shown(question.title), QFile::decodeName(question.folder.c_str()));
  dialog.setAcceptMode(mode);
  dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  QStringList filters;
  for (const std::string& pattern : question.patterns)
    filters.push_back(Shown(pattern));
  const auto suffixOf = [](const QString& filter) { return filter.section('.', -1); };
  dialog.setDefaultSuffix(suffixOf(filters.front()));
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
    if (filter != "*")
      dialog.setDefaultSuffix(suffixOf(filter));
  });
  filters.push_back("*");
  dialog.setNameFilters(filters);
  dialog.selectFile(QFile::decodeName(question.name.c_str()));
  SetInnerSize(dialog, 12000, 6500);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    return std::nullopt;
  return Typed(dialog.selectedFiles().front());
}

}  // namespace

void QtPlatform::Show(QWidget* over, const Message& message) {
  QMessageBox box(over);
  box.setWindowTitle("Halmek");
  box.setTextFormat(Qt::PlainText);
  box.setIcon(QMessageBox::Information);
  box.setText(Readable(message.text));
  box.setInformativeText(Sentence(message.detail));
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
  return Ask(over, question, QFileDialog::AcceptOpen);
}

std::optional<std::string> QtPlatform::FileToSave(QWidget* over, const FileQuestion& question) {
  return Ask(over, question, QFileDialog::AcceptSave);
}

bool QtPlatform::SetUpPrinter(QWidget* over, QPrinter& printer) {
  QPrintDialog dialog(&printer, over);
  dialog.setWindowTitle("Print Setup");
  // What is printed is one page, of which no range can be chosen. The dialog shows the choice whatever its
  // options.
  dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
  if (auto* const range = dialog.findChild<QWidget*>("gbPrintRange"))
    range->setEnabled(false);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace halmek
