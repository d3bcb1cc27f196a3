// The main window with arcs to load, and the windows in which they are calibrated.
#pragma once

#include "calib/synthetic_arc.h"
#include "windows/part1_test.h"

namespace halmek::test {

inline constexpr auto noMaximum = "There is no maximum in this range.  Please try again.";
inline constexpr auto tooFewPeaks = "Hey, you need to identify three or more peaks first!";

class Part2Test : public Part1Test {
 protected:
  Part2Test() {
    for (int a : {1, 2})
      session->plot1D[a] = session->plotWLDiff[a] = {300, 300, 11000, 6000};
  }

  // A spectrum of these values, written and loaded.
  void LoadValues(const std::string& what, const std::vector<double>& values) {
    WriteSpectrum(what + ".fts", values);
    Load(what + ".fts", what);
  }
  // An arc of 1000 pixels with lines at these columns, and its plot.
  QWidget* OpenArc(int a, const std::vector<double>& columns) {
    LoadValues(a == 1 ? "arc1" : "arc2", ArcOf(1000, columns));
    return PlotArc(a);
  }
  QWidget* PlotArc(int a) {
    Press(a == 1 ? "Command7" : "Command14");
    return ArcPlot(a);
  }
  static QWidget* ArcPlot(int a) { return Window(a == 1 ? "frmPlot_Arc1" : "frmPlot_Arc2"); }
  static QWidget* Deviations(int a) { return Window(a == 1 ? "frmPlot_WL_Diff1" : "frmPlot_WL_Diff2"); }
  static QWidget* Line() { return Window("frmClickMax"); }
  static bool IsLineOpen() { return IsOpen("frmClickMax"); }

  // A press at a position in twips, to a fraction of a pixel.
  static void PressAt(QWidget* window, Qt::MouseButton button, double x, double y) {
    PlotSurface& surface = SurfaceOf(window);
    const QPointF at(x * PixelsPerTwip(), y * PixelsPerTwip());
    QMouseEvent event(QEvent::MouseButtonPress, at, surface.mapToGlobal(at), button, button, {});
    QApplication::sendEvent(&surface, &event);
  }
  void ClickColumn(int a, int column, Qt::MouseButton button = Qt::LeftButton) {
    const PlotFrame& f = session->arc[a].plotFrame;
    const double x = std::clamp(ScreenX(f, column), f.plotLeft + 1.0, f.plotRight - 1.0);
    PressAt(ArcPlot(a), button, x, (f.plotTop + f.plotBottom) / 2.0);
  }

  // Clicks a line, types a wavelength and presses Return.
  void Identify(int a, int column, double wavelength) {
    ClickColumn(a, column);
    Type(Line(), "Text1", QString::number(wavelength, 'f', 4));
    QTest::keyClick(Find<QLineEdit>(Line(), "Text1"), Qt::Key_Return);
  }
  // The lines `from` to `to` of an arc whose lines stand at 100, 200, ..., on a curve that no parabola
  // follows.
  void IdentifyLines(int a, int from, int to) {
    for (double c = 100 * from; c <= 100 * to; c += 100)
      Identify(a, static_cast<int>(c), 5000 + 0.6 * c + 2e-5 * c * c - 1e-8 * c * c * c);
  }
  // Fits by that power in the window of the deviations, which is opened first.
  void Fit(int a, int power = 4) {
    Press(ArcPlot(a), "Command1");
    FitAgain(a, power);
  }
  void FitAgain(int a, int power) {
    Choose(Deviations(a), "Combo1", power - 2);
    Press(Deviations(a), "Command1");
  }
  void Delete(int a, int column) {
    ClickColumn(a, column);
    Press(Line(), "Command2");
  }

  void LoadMask(const std::string& lines) {
    WriteFile(folder.File("m.dat"), "Mask\r\n" + lines);
    Load("m.dat", "mask");
  }
  void LoadTable(const std::string& lines) {
    WriteFile(folder.File("t.txt"), "head\r\n" + lines);
    Load("t.txt", "table");
  }

  std::vector<double> Columns(int a) const {
    std::vector<double> columns = Values(session->arc[a].ArcLineColumn.Range(1, session->arc[a].LineCount));
    for (double& column : columns)
      column = std::round(column);
    return columns;
  }
  // How many lines are marked at the top of an arc's plot.
  static int MarkCount(int a) { return static_cast<int>(Marks(ArcPlot(a)).size()) - 1; }
};

}  // namespace halmek::test
