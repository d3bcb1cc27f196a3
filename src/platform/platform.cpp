// Message boxes, pointer, file and printer dialogs of the desktop.
#include "platform/platform.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <algorithm>

#include "files/text_records.h"
#include "platform/placement.h"
#include "platform/text.h"

namespace halmek {
namespace {

// As much of a text as one reads in a box.
QString Readable(const std::string& text) {
  constexpr int longest = 1000;
  QString shown;
  for (const std::string_view line : Lines(text))
    shown += (shown.isEmpty() ? "" : "\n") + Shown(line);
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

// A message box without its buttons.
void Fill(QMessageBox& box, const std::string& text, const std::string& detail, QMessageBox::Icon icon) {
  box.setWindowTitle("Halmek");
  box.setTextFormat(Qt::PlainText);
  box.setIcon(icon);
  box.setText(Readable(text));
  box.setInformativeText(Sentence(detail));
}

std::optional<std::string> AskForFile(QWidget* over, const FileQuestion& question,
                                      QFileDialog::AcceptMode mode) {
  QFileDialog dialog(over, Shown(question.title), QFile::decodeName(question.folder.c_str()));
  dialog.setAcceptMode(mode);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
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

std::string NamingFile(std::string detail, const std::string& file) {
  if (detail.ends_with('.'))
    detail.pop_back();
  return detail + (detail.empty() ? "the file is \"" : "; the file is \"") + file + "\"";
}

void QtPlatform::Show(QWidget* over, const Message& message) {
  QMessageBox box(over);
  Fill(box, message.text, message.detail, QMessageBox::Information);
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

size_t QtPlatform::Ask(QWidget* over, const Question& question) {
  QMessageBox box(over);
  Fill(box, question.text, question.detail, QMessageBox::Question);
  std::vector<QAbstractButton*> buttons;
  for (size_t i = 0; i < question.answers.size(); ++i) {
    const bool isLast = i + 1 == question.answers.size();
    QPushButton* const button =
        box.addButton(Shown(question.answers[i]), isLast ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
    buttons.push_back(button);
    if (i == question.usual)
      box.setDefaultButton(button);
    if (isLast)
      box.setEscapeButton(button);
  }
  box.exec();
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return std::min(static_cast<size_t>(clicked - buttons.begin()), buttons.size() - 1);
}

void QtPlatform::SetBusy(QWidget* window, bool busy) {
  if (busy)
    window->setCursor(Qt::WaitCursor);
  else
    window->unsetCursor();
}

std::optional<std::string> QtPlatform::FileToOpen(QWidget* over, const FileQuestion& question) {
  return AskForFile(over, question, QFileDialog::AcceptOpen);
}

std::optional<std::string> QtPlatform::FileToSave(QWidget* over, const FileQuestion& question) {
  return AskForFile(over, question, QFileDialog::AcceptSave);
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
