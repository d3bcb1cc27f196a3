// Printing by the platform's printer interface.
#include "platform/printing.h"

#include <QFile>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>

#include "files/atomic_write.h"
#include "files/failure.h"
#include "files/known_file.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

bool IsFile(const QPrinter& printer) { return printer.outputFormat() == QPrinter::PdfFormat; }

// The settings of a page, and how many times it is printed.
void CopySettings(const QPrinter& from, QPrinter& to) {
  to.setCopyCount(from.copyCount());
  to.setCollateCopies(from.collateCopies());
  to.setPageLayout(from.pageLayout());
  to.setColorMode(from.colorMode());
  to.setDuplex(from.duplex());
  to.setPaperSource(from.paperSource());
  to.setResolution(from.resolution());
}

// Makes the printer that was chosen the current one, if it is installed. Names that differ in case only are
// the same.
void TakePrinter(const QPrinter& chosen, QPrinter& current) {
  if (IsFile(chosen)) {
    current.setOutputFormat(QPrinter::PdfFormat);
    current.setOutputFileName(chosen.outputFileName());
    return;
  }
  const auto isChosen = [&](const QString& name) {
    return name.compare(chosen.printerName(), Qt::CaseInsensitive) == 0;
  };
  if (!IsFile(current) && isChosen(current.printerName()))
    return;
  for (const QString& name : QPrinterInfo::availablePrinterNames()) {
    if (isChosen(name)) {
      current.setOutputFileName({});
      current.setOutputFormat(QPrinter::NativeFormat);
      current.setPrinterName(name);
      return;
    }
  }
}

void PaintCopies(QPrinter& printer, const Printing::PaintPage& paint) {
  const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
  QPainter painter;
  if (!painter.begin(&printer))
    throw RunTimeError(run_time_error::deviceIo);
  for (int copy = 1; copy <= copies; ++copy) {
    if (copy > 1 && !printer.newPage())
      throw RunTimeError(run_time_error::deviceIo);
    painter.save();
    paint(painter, painter.viewport());
    painter.restore();
  }
  if (!painter.end() || printer.printerState() == QPrinter::Error)
    throw RunTimeError(run_time_error::deviceIo);
}

// The bytes of a PDF file with the page.
std::string PdfPage(const QPrinter& settings, const QString& title, const Printing::PaintPage& paint) {
  // The platform writes files itself and does not tell where it failed, so that it gets one of its own.
  const QTemporaryDir folder;
  if (!folder.isValid())
    throw RunTimeError(run_time_error::pathAccess, "the folder for temporary files cannot be written");
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(folder.filePath("page.pdf"));
  CopySettings(settings, printer);
  printer.setDocName(title);
  printer.setCreator("Halmek");
  PaintCopies(printer, paint);

  QFile file(printer.outputFileName());
  const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  if (!bytes.trimmed().endsWith("%%EOF"))
    throw RunTimeError(run_time_error::diskFull, "the page was lost in the folder for temporary files");
  return bytes.toStdString();
}

// `file`, or where there is one already, the first free name of "file-2.pdf", "file-3.pdf" and so on.
std::string FreeName(const std::string& file) {
  const fs::path path(file);
  fs::path name = path;
  std::error_code ignored;
  for (int number = 2; fs::exists(name, ignored); ++number)
    name = path.parent_path() /
           (path.stem().string() + "-" + std::to_string(number) + path.extension().string());
  return name.string();
}

void WritePage(const std::string& file, const std::string& pdf, const FileOperations& system) {
  try {
    AtomicWrite(file, pdf, system);
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.number(), NamingFile(error.detail(), file));
  }
}

}  // namespace

Printing::Printing(const FileOperations& system) : system_(system) {}
Printing::~Printing() = default;

QPrinter& Printing::Current() {
  if (!printer_) {
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer_->setPageOrientation(QPageLayout::Landscape);
  }
  return *printer_;
}

void Printing::SetUp(Platform& platform, QWidget* over, const std::string& folder) {
  QPrinter& current = Current();
  // The dialog works on a copy: it changes its printer while it is open.
  QPrinter chosen(QPrinter::HighResolution);
  if (IsFile(current)) {
    chosen.setOutputFormat(QPrinter::PdfFormat);
    const QString proposed = QFile::decodeName((fs::path(folder) / "print.pdf").c_str());
    chosen.setOutputFileName(current.outputFileName().isEmpty() ? proposed : current.outputFileName());
  } else {
    chosen.setPrinterName(current.printerName());
  }
  CopySettings(current, chosen);
  if (!platform.SetUpPrinter(over, chosen))
    return;
  TakePrinter(chosen, current);
  CopySettings(chosen, current);
  // The dialog has asked about a file that is there.
  if (IsFile(chosen))
    isFileUsed_ = false;
}

std::string Printing::Print(const QString& title, const PaintPage& paint) {
  try {
    if (IsFile(Current()))
      return PrintToFile(title, paint);
    PrintOnPaper(title, paint);
    return {};
  } catch (const RunTimeError& error) {
    throw Refusal(std::to_string(error.number()) + " " + std::string(ErrorText(error.number())),
                  error.detail());
  }
}

std::string Printing::PrintToFile(const QString& title, const PaintPage& paint) {
  const std::string chosen = Typed(Current().outputFileName());
  if (chosen.empty())
    throw RunTimeError(run_time_error::deviceUnavailable,
                       "there is no printer; File > Print Setup ... lets you choose one, or a PDF file");
  std::error_code noCurrentFolder;
  const fs::path whole = fs::absolute(chosen, noCurrentFolder);
  const std::string name = noCurrentFolder ? chosen : whole.string();
  const std::string file = isFileUsed_ ? FreeName(name) : name;
  // The dialog has asked about a file that is there, but not said what it is.
  if (const auto known = LookAtFile(file);
      known && known->kind != FileKind::picture && known->kind != FileKind::other)
    throw Refusal("This would replace a " + known->description +
                  ".  File > Print Setup ... lets you choose another file.");
  WritePage(file, PdfPage(Current(), title, paint), system_);
  isFileUsed_ = true;
  return file;
}

void Printing::PrintOnPaper(const QString& title, const PaintPage& paint) {
  QPrinter& printer = Current();
  if (QPrinterInfo::printerInfo(printer.printerName()).isNull())
    throw RunTimeError(run_time_error::deviceUnavailable,
                       "the printer " + Typed(printer.printerName()) + " cannot be reached");
  printer.setDocName(title);
  printer.setCreator("Halmek");
  PaintCopies(printer, paint);
}

}  // namespace halmek
