// The row plot's window.
#include "reduce/row_plot_window.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "files/whole_number.h"
#include "platform/accessible.h"
#include "platform/text.h"
#include "reduce/row_plot.h"
#include "reduce/zap.h"
#include "steps/clicks.h"

namespace halmek {
namespace {

constexpr PlotWindowNames names{
    .window = "frmPlot_Row",
    .plot = "Plot of a row",
    .keys =
        "Return marks an end of the zoom, Shift+Return selects a pixel to zap, Up and Down change the row."};

}  // namespace

RowPlotWindow::RowPlotWindow(Desk& desk) : PlotWindow(desk, names, desk.session().plotRow) {
  AddOptionsMenu();
  AddControls();
}

void RowPlotWindow::AddOptionsMenu() {
  QMenu* const options = menuBar()->addMenu("Options");
  options->setObjectName("mOptions");
  fullRowAfterZap_ = options->addAction("Full Row after Zap");
  fullRowAfterZap_->setObjectName("mRestoreAfterZap");
  fullRowAfterZap_->setCheckable(true);
  connect(fullRowAfterZap_, &QAction::triggered, this,
          [this](bool checked) { session().restoreAfterZap = checked ? -1 : 0; });
}

void RowPlotWindow::AddControls() {
  rows_ = AddRowScroll("VScroll1", "Row to plot");
  connect(rows_, &QScrollBar::valueChanged, this, [this](int value) {
    ScrollRows(session().rowPlot, value, Rows(session()));
    Redraw();
  });
  columns_ = AddColumnScroll("HScroll1", "Middle of the columns shown");
  connect(columns_, &QScrollBar::valueChanged, this, [this](int value) {
    ScrollColumns(session().rowPlot, value, Columns(session()));
    Redraw();
  });
  const auto zoomButton = [this](const char* name, const char* caption, void (*zoom)(RowPlot&, int)) {
    return NewButton(name, caption, [this, zoom] {
      zoom(session().rowPlot, Columns(session()));
      Redraw();
    });
  };
  QPushButton* const deselect = NewButton("Command5", "Deselect", [this] {
    Deselect(session().rowPlot);
    Redraw();
  });
  neighbours_ = NewNumberBox("Text1", "How many pixels on each side of the selection are averaged");
  neighbours_->setText(QString::number(session().rowPlot.zapNeighbours));
  QLabel* const meanOf = NewLabel("Label14", "Mean of ..");
  meanOf->setToolTip(neighbours_->toolTip());
  SetCaption(meanOf, neighbours_);
  QPushButton* const undo = NewButton("Command6", "Undo", [this] { Undo(); });
  undo->setToolTip("Put back the pixels of the last zap");
  deselect->setToolTip("Drop the pixels selected and a zoom begun");

  hint_ = surface().AddLabel("Label16", rowPlotHint);
  SetMeaning(hint_, "Hint");
  row_ = NewReadOut("Label7", "Row shown", "00000");
  column_ = NewReadOut("Label13", "Column pointed at", "000000");
  value_ = NewReadOut("Label10", "Value at the pointer", "00000000.00");
  band().AddGroup({NewLabel("Label11", "Zoom"), zoomButton("Command1", "IN", &ZoomIn),
                   zoomButton("Command2", "Out", &ZoomOut),
                   zoomButton("Command3", "Full row", &ShowFullRow)});
  band().AddGroup(
      {NewButton("Command4", "ZAP!", [this] { ZapSelection(); }), meanOf, neighbours_, deselect, undo});
  band().AddGroup({NewLabel("Label5", "Row"), row_, NewLabel("Label12", "Col"), column_,
                   NewLabel("Label9", "Pix val."), value_,
                   NewButton("Command7", "Return", [this] { Return(); })});
}

std::string RowPlotWindow::PictureName() const {
  return BaseName(DataName(session().slot[slots::frame])) + "_row" +
         std::to_string(session().rowPlot.plotRow);
}

std::optional<Drawing> RowPlotWindow::Draw(WindowSize size) {
  if (keepsScale_)
    return RepaintRowPlot(session(), size);
  RowPlot& plot = session().rowPlot;
  auto drawing = DrawRowPlot(session(), size);
  if (drawing || plot.lastDrawnRow == 0 || Columns(session()) <= 1)
    return drawing;
  // The last row that could be drawn stays, beside the reason.
  const std::string reason = plot.hint;
  drawing = DrawRowPlot(session(), size);
  plot.hint = reason;
  return drawing;
}

void RowPlotWindow::ShowState() {
  const RowPlot& plot = session().rowPlot;
  ShowScrollBar(columns_, plot.columnScroll);
  ShowScrollBar(rows_, plot.rowScroll);
  row_->setText(QString::number(plot.plotRow));
  fullRowAfterZap_->setChecked(session().restoreAfterZap != 0);
  ShowHint(hint_, Shown(plot.hint));
}

bool RowPlotWindow::Follow() {
  Session& s = session();
  if (!s.workflow.fixTraceEnabled)
    return false;
  if (s.rowPlot.lastDrawnRow != 0)
    return true;
  // Another frame has come, or this one was trimmed.
  OpenRowPlot(s, std::min(s.rowPlot.plotRow, Rows(s)));
  return DrawRowPlot(s, LayoutSize()).has_value();
}

void RowPlotWindow::Leaving() { ClearZapSelection(session().rowPlot); }

void RowPlotWindow::PointTo(double x, double y) { ShowReadOut(ReadOutRow(Frame(), x, y), column_, value_); }

void RowPlotWindow::ClickLeft(double x, double y) {
  if (!IsInside(Frame(), x, y))
    return;
  ClickForZoom(session(), x);
  Redraw();
}

void RowPlotWindow::ClickRight(double x, double y) {
  if (!IsInside(Frame(), x, y))
    return;
  ClickForZap(session(), x);
  Redraw();
}

// A click in the later half of a column's step means this column for the zap and, as an edge, for the zoom.
CursorTrack RowPlotWindow::Track() {
  return TrackOfSteps(Frame(), Frame().firstColumn, Frame().lastColumn, 0.75);
}

QScrollBar* RowPlotWindow::Scrolled(Qt::KeyboardModifiers modifiers) {
  return modifiers & Qt::ShiftModifier ? columns_ : rows_;
}

void RowPlotWindow::ZapSelection() {
  if (!session().rowPlot.zapSelected)
    return;
  int neighbours = 0;
  if (!desk().Try(this, [&] { neighbours = NeighboursFor(WholeNumber(Typed(neighbours_->text()))); }))
    return;
  neighbours_->setText(QString::number(neighbours));
  if (desk().Do(this, ZapStep(session(), neighbours)) && session().restoreAfterZap != 0) {
    ShowFullRow(session().rowPlot, Columns(session()));
    Redraw();
  }
}

void RowPlotWindow::Undo() {
  const RowPlot& plot = session().rowPlot;
  if (plot.undoRow == 0) {
    ClearZapSelection(session().rowPlot);
    Redraw();
    return;
  }
  // On the row that is shown the scale stays, so that one sees what has come back.
  keepsScale_ = plot.undoRow == plot.plotRow;
  desk().Do(this, steps::UndoZap{});
  keepsScale_ = false;
}

}  // namespace halmek
