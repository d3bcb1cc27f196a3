// Printing, and pictures of plots in files.
#include <gtest/gtest.h>

#include <QImage>
#include <QPrinter>
#include <regex>

#include "plot/plot_page.h"
#include "plot/svg.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class PrintingTest : public Part2Test {
 protected:
  // All seven plot windows, with what each of them prints by.
  struct Printed {
    QWidget* window;
    const char *setup, *print;
  };
  std::vector<Printed> OpenAll() {
    LoadFrame(200, 60);
    QWidget* const continuum = OpenContinuum();
    QWidget* const row = OpenRowPlot("30");
    OpenSlice();
    for (int a : {1, 2}) {
      OpenArc(a, {100, 200, 300, 400, 500, 600});
      IdentifyLines(a, 1, 6);
      Press(ArcPlot(a), "Command1");
    }
    return {{row, "mPrintSetup", "mPrint"},          {Window("frmPlot_Column"), "mPrintSetup", "mPrint"},
            {continuum, "mPrintSetup", "mPrint"},    {ArcPlot(1), "nPrintSetup", "nPrint"},
            {ArcPlot(2), "m2Printsetup", "mPrint"},  {Deviations(1), "mPrintSetup", "mPrint"},
            {Deviations(2), "mPrintSetup", "mPrint"}};
  }

  // Answers the printer dialog by a PDF file.
  void ChooseFile(const std::string& name, QPageLayout::Orientation orientation, int copies) {
    platform.setUpPrinter = [this, name, orientation, copies](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(folder.File(name)));
      printer.setPageOrientation(orientation);
      printer.setCopyCount(copies);
      return true;
    };
  }

  static int Count(const std::string& text, const std::string& what) {
    const std::regex pattern(what);
    return static_cast<int>(std::distance(std::sregex_iterator(text.begin(), text.end(), pattern), {}));
  }
  // The width and height of the pages in points.
  static std::pair<int, int> PageSize(const std::string& pdf) {
    std::smatch box;
    EXPECT_TRUE(std::regex_search(pdf, box, std::regex("MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)")));
    return {std::stoi(box[1]), std::stoi(box[2])};
  }
};

TEST_F(PrintingTest, EveryPlotPrintsItsCopiesInEitherOrientationAsVectors) {
  for (const auto orientation : {QPageLayout::Landscape, QPageLayout::Portrait}) {
    session->currentSlot = 0;
    int number = 0;
    for (const Printed& p : OpenAll()) {
      const std::string name = "page" + std::to_string(++number) + ".pdf";
      ChooseFile(name, orientation, 2);
      Trigger(p.window, p.setup);
      Trigger(p.window, p.print);
      EXPECT_EQ(platform.TakeMessages(), Texts{"The page is in the file " + name + "."});
      const std::string pdf = ReadFile(folder.File(name));
      EXPECT_TRUE(pdf.starts_with("%PDF")) << name;
      EXPECT_EQ(Count(pdf, "/Type /Page\\b(?!s)"), 2) << name;
      EXPECT_EQ(Count(pdf, "/Subtype /Image"), 0) << name;
      EXPECT_GT(Count(pdf, "/FontFile"), 0) << name;
      const auto [width, height] = PageSize(pdf);
      EXPECT_EQ(width > height, orientation == QPageLayout::Landscape) << name;
    }
  }
}

TEST_F(PrintingTest, ThePageHoldsWhatStandsInTheWindow) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  PlotSurface& surface = SurfaceOf(row);
  const auto paint = [&](const QSize& size, const QString& title) {
    QImage page(size, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    PaintPage(painter, page.rect(), *surface.parentWidget(), surface, title);
    return page;
  };
  const auto inked = [](const QImage& page) {
    QRect ink;
    for (int y = 0; y < page.height(); ++y)
      for (int x = 0; x < page.width(); ++x)
        if (page.pixelColor(x, y) != Qt::white)
          ink |= QRect(x, y, 1, 1);
    return ink;
  };
  const double ratio = 1.0 * surface.parentWidget()->width() / surface.parentWidget()->height();
  for (const QSize& size : {QSize(1400, 1000), QSize(1000, 1400), QSize(1400, 300)}) {
    const QRect ink = inked(paint(size, "A title"));
    const double width = std::min(size.width() * 1.0, size.height() * ratio);
    EXPECT_GT(ink.width(), 0.94 * width) << "as large as fits";
    EXPECT_LE(ink.width(), width + 1);
    EXPECT_LE(ink.height(), width / ratio + 1);
    EXPECT_NEAR(ink.center().x(), size.width() / 2.0, 0.04 * width) << "in the middle";
  }

  // Each text is there: the page changes where it changes.
  const QSize size(1400, 1000);
  const QImage before = paint(size, "A title");
  EXPECT_NE(paint(size, ""), before);
  for (QLabel* label : row->findChildren<QLabel*>())
    if (label->isVisible() && !label->text().isEmpty()) {
      const QString text = label->text();
      label->setText("");
      EXPECT_NE(paint(size, "A title"), before) << label->objectName().toStdString();
      label->setText(text);
    }
  for (QPushButton* button : row->findChildren<QPushButton*>()) {
    button->setVisible(false);
    EXPECT_NE(paint(size, "A title"), before) << button->objectName().toStdString();
    button->setVisible(true);
  }
  EXPECT_EQ(paint(size, "A title"), before);
}

TEST_F(PrintingTest, NoPageReplacesAnotherAndFailuresAreToldByNumber) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  Trigger(row, "mPrint");
  EXPECT_EQ(platform.TakeMessages(), Texts{"68 Error: Device unavailable."}) << "there is no printer";

  WriteFile(folder.File("a.pdf"), "the user has agreed to replace this");
  WriteFile(folder.File("a-2.pdf"), "and not this");
  ChooseFile("a.pdf", QPageLayout::Portrait, 1);
  Trigger(row, "mPrintSetup");
  for (const char* name : {"a.pdf", "a-3.pdf", "a-4.pdf"}) {
    Trigger(row, "mPrint");
    EXPECT_EQ(platform.TakeMessages(), Texts{std::string("The page is in the file ") + name + "."});
    EXPECT_TRUE(ReadFile(folder.File(name)).starts_with("%PDF")) << name;
  }
  EXPECT_EQ(ReadFile(folder.File("a-2.pdf")), "and not this");

  // A dialog that is cancelled changes nothing, whatever was done in it.
  platform.setUpPrinter = [this](QPrinter& printer) {
    EXPECT_EQ(printer.outputFileName().toStdString(), folder.File("a.pdf")) << "what was chosen is preset";
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Portrait);
    printer.setOutputFileName(QString::fromStdString(folder.File("never.pdf")));
    printer.setPageOrientation(QPageLayout::Landscape);
    return false;
  };
  Trigger(row, "mPrintSetup");
  Trigger(row, "mPrint");
  EXPECT_EQ(platform.TakeMessages(), Texts{"The page is in the file a-5.pdf."});
  const auto [width, height] = PageSize(ReadFile(folder.File("a-5.pdf")));
  EXPECT_LT(width, height);

  const struct {
    std::string file;
    const char* message;
  } failures[] = {{"gone/a.pdf", "76 Error: Path not found."}, {"a.pdf/b.pdf", "76 Error: Path not found."}};
  for (const auto& f : failures) {
    ChooseFile(f.file, QPageLayout::Portrait, 1);
    Trigger(row, "mPrintSetup");
    Trigger(row, "mPrint");
    EXPECT_EQ(platform.TakeMessages(), Texts{f.message}) << f.file;
  }
  EXPECT_TRUE(row->isVisible());
}

TEST_F(PrintingTest, APrinterThatIsNotInstalledGivesOnlyItsSettings) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  ChooseFile("a.pdf", QPageLayout::Portrait, 1);
  Trigger(row, "mPrintSetup");
  platform.setUpPrinter = [](QPrinter& printer) {
    printer.setOutputFormat(QPrinter::NativeFormat);
    printer.setPrinterName("No such printer");
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setCopyCount(3);
    return true;
  };
  Trigger(row, "mPrintSetup");
  Trigger(row, "mPrint");
  EXPECT_EQ(platform.TakeMessages(), Texts{"The page is in the file a.pdf."});
  const std::string pdf = ReadFile(folder.File("a.pdf"));
  EXPECT_EQ(Count(pdf, "/Type /Page\\b(?!s)"), 3);
  const auto [width, height] = PageSize(pdf);
  EXPECT_GT(width, height);
}

TEST_F(PrintingTest, PicturesAreOfTheKindThatTheirNameEndsIn) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  const auto save = [&](const std::string& file) {
    platform.fileToSave = folder.File(file);
    Trigger(row, "mSavePicture");
    return platform.TakeMessages();
  };
  EXPECT_EQ(save("a.png"), Texts{});
  EXPECT_EQ(platform.questions.back().name, "star_row30.png");
  const QImage png(QString::fromStdString(folder.File("a.png")));
  EXPECT_NEAR(png.width(), 2 * row->frameGeometry().width(), 2);
  int red = 0, black = 0;
  for (int y = 0; y < png.height(); ++y)
    for (int x = 0; x < png.width(); ++x) {
      red += png.pixelColor(x, y) == Qt::red;
      black += png.pixelColor(x, y) == Qt::black && y < PixelsOf(2 * 250);
    }
  EXPECT_GT(red, png.width()) << "the curve";
  EXPECT_GT(black, 100) << "the caption, above the plot";

  EXPECT_EQ(save("a.SVG"), Texts{});
  EXPECT_EQ(ReadFile(folder.File("a.SVG")), SvgOf(*SurfaceOf(row).drawing()));
  EXPECT_EQ(save("a.pdf"), Texts{});
  const std::string pdf = ReadFile(folder.File("a.pdf"));
  EXPECT_EQ(Count(pdf, "/Subtype /Image"), 0);
  EXPECT_EQ(Count(pdf, "/Type /Page\\b(?!s)"), 1);

  const Texts before = FilesIn(folder.path());
  constexpr auto unknown = "Sorry, a picture's name must end in .png, .svg or .pdf.  Please try again.";
  for (const char* name : {"a.jpg", "a", ".png", "a.pdf.old"})
    EXPECT_EQ(save(name), Texts{unknown}) << name;
  EXPECT_EQ(save("gone/a.png"), Texts{"Error: 76  Error: Path not found."});
  platform.fileToSave.reset();
  Trigger(row, "mSavePicture");
  EXPECT_EQ(platform.TakeMessages(), Texts{});
  EXPECT_EQ(FilesIn(folder.path()), before);
}

}  // namespace
}  // namespace halmek::test
