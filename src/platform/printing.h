// The printer of the process, and pages printed on it.
#pragma once

#include <QPainter>
#include <QString>
#include <functional>
#include <memory>
#include <string>

class QPrinter;
class QWidget;

namespace halmek {

class Platform;
struct FileOperations;

// What is chosen holds until the process ends; it is stored nowhere.
class Printing {
 public:
  explicit Printing(const FileOperations& system);
  ~Printing();

  // Lets the user choose the printer and its settings in the platform's dialog. Nothing changes where the
  // dialog is cancelled. Of a printer that is not installed only the settings are taken. `folder` is proposed
  // for the file, where the printer is one.
  void SetUp(Platform& platform, QWidget* over, const std::string& folder);

  // Paints on what can be printed on of a page, in units of the painter.
  using PaintPage = std::function<void(QPainter& painter, const QRectF& page)>;

  // Prints one page, as often as copies are wanted. Where the printer is a PDF file, the first page goes to
  // the file chosen, and each further one to a file of its own, numbered where the name is taken; returns its
  // full name, which is empty on paper. Throws Refusal, whose text is the number and the text of a run-time
  // error: 68 where there is no printer, others where the page cannot be printed.
  std::string Print(const QString& title, const PaintPage& paint);

 private:
  QPrinter& Current();
  std::string PrintToFile(const QString& title, const PaintPage& paint);
  void PrintOnPaper(const QString& title, const PaintPage& paint);

  const FileOperations& system_;
  std::unique_ptr<QPrinter> printer_;
  bool isFileUsed_ = false;  // a page was printed to the file chosen
};

}  // namespace halmek
