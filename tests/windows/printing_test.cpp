// Printing, and pictures of plots in files.
#include <gtest/gtest.h>

#include <QImage>
#include <QPrinter>
#include <regex>

#include "platform/plot_page.h"
#include "plot/svg.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class PrintingTest : public Part2Test {
 protected:
  // All seven plot windows, with what each of them prints by.
  struct Printed {
    QWidget* window;
    const char *setup = "mPrintSetup", *print = "mPrint";
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
    const Printed arc1{ArcPlot(1), "nPrintSetup", "nPrint"}, arc2{ArcPlot(2), "m2Printsetup"};
    return {{row}, {Window("frmPlot_Column")}, {continuum}, arc1, arc2, {Deviations(1)}, {Deviations(2)}};
  }

  // What is told of a page that is printed after the printer was set up.
  Texts PrintFrom(const Printed& p) {
    Trigger(p.window, p.setup);
    Trigger(p.window, p.print);
    return platform.TakeMessages();
  }

  static ptrdiff_t Count(const std::string& text, const std::string& what) {
    const std::regex pattern(what);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), pattern), {});
  }
  // What stands in a window, as it is printed on a page of that size.
  static QImage Page(QWidget* client, const QSize& size, const QString& title = "A title") {
    QImage page(size, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    PaintPage(painter, page.rect(), *client, SurfaceOf(client), title);
    return page;
  }
  // The bounds of the pixels that are not white, or of those that are wanted.
  static QRect InkOf(const QImage& image, const std::function<bool(QColor)>& isWanted) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        if (const QColor c = image.pixelColor(x, y); c != Qt::white && (!isWanted || isWanted(c)))
          ink |= QRect(x, y, 1, 1);
    return ink;
  }
  static bool IsWide(const std::string& pdf) {
    std::smatch box;
    EXPECT_TRUE(std::regex_search(pdf, box, std::regex("MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)")));
    return std::stoi(box[1]) > std::stoi(box[2]);
  }
};

TEST_F(PrintingTest, EveryPlotPrintsItsCopiesInEitherOrientationAsVectors) {
  int number = 0;
  for (const Printed& p : OpenAll()) {
    const std::string name = "page" + std::to_string(++number) + ".pdf";
    const bool isWide = number % 2 == 0;
    platform.PrintInto(folder.File(name), isWide ? QPageLayout::Landscape : QPageLayout::Portrait, 2);
    EXPECT_EQ(PrintFrom(p), Texts{"The page is in the file " + name + "."});
    const std::string pdf = ReadFile(folder.File(name));
    EXPECT_EQ(Count(pdf, "/Type /Page\\b(?!s)"), 2) << name;
    EXPECT_EQ(Count(pdf, "/Subtype /Image"), 0) << name;
    EXPECT_GT(Count(pdf, "/FontFile"), 0) << name;
    EXPECT_EQ(IsWide(pdf), isWide) << name;
  }
}

TEST_F(PrintingTest, ThePageIsFilledWithoutDistortion) {
  LoadFrame(200, 60);
  QWidget* const client = SurfaceOf(OpenRowPlot("30")).parentWidget();
  const double ratio = 1.0 * client->width() / client->height();
  for (const QSize& size : {QSize(1000, 1400), QSize(1400, 300)}) {
    const QRect ink = InkOf(Page(client, size), nullptr);
    const double width = std::min(size.width() * 1.0, size.height() * ratio);
    EXPECT_GT(ink.width(), 0.94 * width) << "as large as fits";
    EXPECT_LE(ink.width(), width + 1);
    EXPECT_LE(ink.height(), width / ratio + 1);
  }
}

TEST_F(PrintingTest, ThePageHoldsWhatStandsInTheWindow) {
  const std::pair<const char*, QVariant> changes[] = {{"text", "77"}, {"currentIndex", 3}, {"maximum", 500}};
  for (const Printed& p : OpenAll()) {
    QWidget* const client = SurfaceOf(p.window).parentWidget();
    const auto page = [&] { return Page(client, client->size()); };
    const auto isCurve = [](QColor c) { return c.red() > c.green() + 40 && c.red() > c.blue() + 40; };
    const QRect printed = InkOf(page(), isCurve), shown = InkOf(client->grab().toImage(), isCurve);
    for (const auto edge : {&QRect::left, &QRect::right, &QRect::top, &QRect::bottom})
      EXPECT_NEAR((printed.*edge)(), (shown.*edge)(), 2) << p.window->objectName().toStdString();
    EXPECT_NE(Page(client, client->size(), ""), page()) << "the caption";
    // What is changed in a control changes the page.
    for (QWidget* control : client->findChildren<QWidget*>())
      for (const auto& [property, value] : changes) {
        if (!control->isVisible() || control->property(property).toString().isEmpty())
          continue;
        const QSignalBlocker silent(control);
        const QImage before = page();
        control->setProperty(property, value);
        EXPECT_NE(page(), before) << (p.window->objectName() + " " + control->objectName()).toStdString();
      }
  }
}

TEST_F(PrintingTest, NoPageReplacesAnotherAndFailuresAreToldByNumber) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  Trigger(row, "mPrint");
  EXPECT_EQ(platform.TakeMessages(), Texts{"68 Error: Device unavailable."}) << "there is no printer";

  WriteFile(folder.File("a.pdf"), "the user has agreed to replace this");
  WriteFile(folder.File("a-2.pdf"), "and not this");
  platform.PrintInto(folder.File("a.pdf"));
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
    printer.setOutputFileName(QString::fromStdString(folder.File("never.pdf")));
    printer.setPageOrientation(QPageLayout::Landscape);
    return false;
  };
  EXPECT_EQ(PrintFrom({row}), Texts{"The page is in the file a-5.pdf."});
  EXPECT_FALSE(IsWide(ReadFile(folder.File("a-5.pdf"))));
  platform.PrintInto(folder.File("gone/a.pdf"));
  EXPECT_EQ(PrintFrom({row}), Texts{"76 Error: Path not found."});
}

TEST_F(PrintingTest, TheDialogIsPresetAndItsSettingsReachThePrinter) {
  Printing printing(session->fileOperations);
  platform.setUpPrinter = [this](QPrinter& printer) {
    EXPECT_EQ(printer.outputFileName().toStdString(), folder.File("print.pdf"));
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);
    printer.setColorMode(QPrinter::GrayScale);
    return true;
  };
  printing.SetUp(platform, nullptr, folder.path());
  printing.Print("A title", [](QPainter& painter, const QRectF&) {
    EXPECT_EQ(dynamic_cast<const QPrinter&>(*painter.device()).colorMode(), QPrinter::GrayScale);
  });
}

TEST_F(PrintingTest, PicturesAreOfTheKindThatTheirNameEndsIn) {
  LoadFrame(200, 60);
  QWidget* const row = OpenRowPlot("30");
  const auto save = [&](const std::string& file) {
    platform.fileToSave = folder.File(file);
    Trigger(row, "mSavePicture");
    return platform.TakeMessages();
  };
  for (const char* name : {"a.png", "a.SVG", "a.pdf"})
    EXPECT_EQ(save(name), Texts{}) << name;
  EXPECT_EQ(platform.questions.back().name, "star_row30.png");
  const QImage png(QString::fromStdString(folder.File("a.png")));
  EXPECT_NEAR(png.width(), 2 * row->frameGeometry().width(), 2);
  const auto inkOf = [&](QColor colour) { return InkOf(png, [=](QColor c) { return c == colour; }); };
  const PlotFrame& f = session->rowPlot.rowFrame;
  EXPECT_NEAR(inkOf(Qt::red).left(), 2 * PixelsOf(f.plotLeft), 3) << "the curve begins where the plot does";
  EXPECT_NEAR(inkOf(Qt::red).right(), 2 * PixelsOf(f.plotRight), 3);
  EXPECT_LT(inkOf(Qt::black).top(), 2 * PixelsOf(250)) << "the caption, above the plot";
  EXPECT_LT(inkOf(Qt::black).left(), 2 * PixelsOf(750)) << "the numbers, left of it";
  EXPECT_EQ(ReadFile(folder.File("a.SVG")), SvgOf(*SurfaceOf(row).drawing()));
  const std::string pdf = ReadFile(folder.File("a.pdf"));
  EXPECT_EQ(Count(pdf, "/Subtype /Image"), 0);
  EXPECT_EQ(Count(pdf, "/Type /Page\\b(?!s)"), 1);
  EXPECT_GT(Count(pdf, "/FontFile"), 0);

  const Texts before = FilesIn(folder.path());
  for (const char* name : {"a.jpg", "a", ".png", "a.pdf.old"})
    EXPECT_EQ(save(name), Texts{"Sorry, a picture's name must end in .png, .svg or .pdf.  Please try again."})
        << name;
  EXPECT_EQ(save("gone/a.png"), Texts{"Error: 76  Error: Path not found."});
  platform.fileToSave.reset();
  Trigger(row, "mSavePicture");
  EXPECT_EQ(FilesIn(folder.path()), before);
}

}  // namespace
}  // namespace halmek::test
