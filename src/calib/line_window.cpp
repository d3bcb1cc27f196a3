// The identification of a line.
#include "calib/line_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "calib/line_list.h"
#include "numeric/number_prefix.h"
#include "platform/accessible.h"
#include "platform/placement.h"
#include "platform/text.h"
#include "steps/clicks.h"

namespace halmek {
namespace {

QLabel* NewNumber(const char* name) {
  QLabel* const label = NewLabel(name, {});
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  KeepRoomFor(label, "00000.00000 ");
  return label;
}

// A caption, and its number at the right.
void AddRow(QGridLayout& grid, int row, int column, QLabel* caption, QLabel* number) {
  SetCaption(caption, number);
  grid.addWidget(caption, row, column, 1, 2 - column);
  grid.addWidget(number, row, 2);
}
void AddRow(QGridLayout& grid, QLabel* caption, QLabel* number) {
  AddRow(grid, grid.rowCount(), 0, caption, number);
}

}  // namespace

LineWindow::LineWindow(Desk& desk) : desk_(desk) {
  setObjectName("frmClickMax");
  setWindowTitle("Click Max");
  setWindowFlag(Qt::Dialog);
  auto* const grid = new QGridLayout(this);
  grid->setSizeConstraint(QLayout::SetFixedSize);
  grid->setHorizontalSpacing(14);
  AddLine(*grid);
  AddWavelength(*grid);
  AddQuality(*grid);
  AddButtons(*grid);
  setTabOrder(wavelength_, table_);
  desk_.AddView(*this);
}

LineWindow::~LineWindow() { desk_.RemoveView(*this); }

void LineWindow::AddLine(QGridLayout& grid) {
  QLabel* const title = NewLabel("Label1", "Peak Centroiding and Identification");
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  grid.addWidget(title, 0, 0, 1, 3);
  peak_ = NewNumber("Label3");
  centroid_ = NewNumber("Label5");
  error_ = NewNumber("Label16");
  grid.addWidget(NewLabel("Label2", "Column Number"), 1, 0);
  AddRow(grid, 1, 1, NewLabel("Label4", "Max. Pix"), peak_);
  AddRow(grid, 2, 1, NewLabel("Label6", "Centroided"), centroid_);
  AddRow(grid, 3, 1, NewLabel("Label15", "Error"), error_);
}

void LineWindow::AddWavelength(QGridLayout& grid) {
  estimate_ = NewNumber("Label8");
  AddRow(grid, NewLabel("Label7", "Estimated Wavelength (Angstroms)*"), estimate_);
  QLabel* const note = NewLabel("Label10", "* From Linfit, ONLY after two peaks have been identified");
  grid.addWidget(note, grid.rowCount(), 0, 1, 3);

  wavelength_ = new EntryBox("Text1");
  wavelength_->setAlignment(Qt::AlignRight);
  wavelength_->setFixedWidth(wavelength_->fontMetrics().horizontalAdvance("0000000.00000 "));
  connect(wavelength_, &QLineEdit::textEdited, this, [this](const QString& text) {
    ShowTypedWavelength(desk_.session(), Typed(text));
    ShowFit();
  });
  wavelength_->setToolTip("The laboratory wavelength in Angstroms, from 3000 to 9000");
  table_ = new QScrollBar(Qt::Vertical);
  table_->setObjectName("VScroll1");
  table_->setAccessibleName("Line of the wavelength table");
  table_->setFocusPolicy(Qt::StrongFocus);
  table_->setFixedHeight(2 * wavelength_->sizeHint().height());
  table_->setToolTip("The lines of the wavelength table; also with the arrow keys and the wheel");
  connect(table_, &QScrollBar::valueChanged, this, [this](int entry) { ScrollTo(entry); });
  connect(table_, &QScrollBar::actionTriggered, this, [this] {
    if (!desk_.session().linePanel.wavelengthText.empty())
      return;
    table_->setSliderPosition(table_->value());
    Walk(1);
  });
  name_ = new ElidedLabel("Label17");
  SetMeaning(name_, "Name in the wavelength table");
  name_->setFixedWidth(wavelength_->width());
  auto* const box = new QVBoxLayout;
  box->setSpacing(2);
  box->addWidget(wavelength_);
  box->addWidget(name_);
  auto* const choice = new QHBoxLayout;
  choice->setSpacing(4);
  choice->addStretch();
  choice->addLayout(box);
  choice->addWidget(table_);
  state_ = NewReadOut("labelState", "State", "This line is identified as 00000.00000.");
  auto* const captions = new QVBoxLayout;
  captions->setSpacing(2);
  QLabel* const caption = NewLabel("Label9", "Type Table Wavelength or Accept");
  SetCaption(caption, wavelength_);
  captions->addWidget(caption);
  captions->addWidget(state_);
  const int row = grid.rowCount();
  grid.addLayout(captions, row, 0, 1, 2);
  grid.addLayout(choice, row, 2);
}

void LineWindow::AddQuality(QGridLayout& grid) {
  deviation_ = NewNumber("Label12");
  rms_ = NewNumber("Label14");
  count_ = NewNumber("Label19");
  AddRow(grid, NewLabel("Label11", "Deviation for this Peak (Est'd - Tables)"), deviation_);
  AddRow(grid, NewLabel("Label13", "RMS Deviation for Overall Linear Fit"), rms_);
  AddRow(grid, NewLabel("Label18", "Number of terms used for fit"), count_);
}

void LineWindow::AddButtons(QGridLayout& grid) {
  QPushButton* const update = NewButton("Command1", "Update Fit", [this] { Update(); });
  update->setToolTip("Give the line this wavelength, and stay to see the fit");
  QPushButton* const remove = NewButton("Command2", "Delete Entry", [this] { Delete(); });
  remove->setToolTip("Drop the wavelength of this line");
  QPushButton* const done = NewButton("Command3", "Update/Done", [this] { UpdateAndClose(); });
  done->setToolTip("Give the line this wavelength (Return)");
  done->setDefault(true);
  QPushButton* const cancel = NewButton("Command4", "Cancel", [this] { Leave(); });
  cancel->setToolTip("Close, and leave the line as it is (Escape)");
  auto* const buttons = new QHBoxLayout;
  for (QPushButton* button : {update, remove, done, cancel})
    buttons->addWidget(button);
  grid.addLayout(buttons, grid.rowCount(), 0, 1, 3);
}

void LineWindow::Open(QWidget* over, const QRect& free) {
  const LinePanel& panel = desk_.session().linePanel;
  arc_ = panel.arc;
  clicked_ = panel.column;
  if (over_ != over)
    Leave();
  ShowPanel();
  const bool isOpen = isVisible();
  // Made anew each time: Qt forgets the frame of a hidden window, and would move it to a wrong place.
  if (!isOpen)
    destroy();
  Place(free, *over->screen());
  if (!isOpen)
    AttachTo(over);
  BringToFront(*this);
  wavelength_->setFocus();
  wavelength_->selectAll();
}

// It stays above the arc's window, and goes with it.
void LineWindow::AttachTo(QWidget* over) {
  if (over_ != over)
    over->installEventFilter(this);
  over_ = over;
  winId();
  windowHandle()->setTransientParent(over->windowHandle());
}

void LineWindow::Place(const QRect& free, const QScreen& screen) {
  WindowPlacement& placement = desk_.session().clickMax;
  adjustSize();
  if (!isVisible())
    halmek::Place(*this, placement);
  const QRect outer(pos(), size().grownBy(FrameMargins(*this)));
  const QRect clear = ClearOf(outer, free, screen.availableGeometry());
  if (clear == outer)
    return;
  StorePlacement();
  move(clear.topLeft());
  movedTo_ = pos();
}

void LineWindow::StorePlacement() {
  if (isVisible() && pos() != movedTo_)
    Store(desk_.session().clickMax, *this);
}

void LineWindow::Refresh() {
  if (!isVisible())
    return;
  const Session& s = desk_.session();
  const bool isTheSame = s.linePanel.arc == arc_ && s.linePanel.column == clicked_;
  if (!isTheSame || s.arc[arc_].PixelCentroid(s.peakPixel) == 0)
    Leave();
  else {
    ShowTable();
    ShowFit();
  }
}

// All of it, as a click has filled it.
void LineWindow::ShowPanel() {
  const LinePanel& panel = desk_.session().linePanel;
  peak_->setText(Shown(panel.peakText));
  centroid_->setText(Shown(panel.centroidText));
  error_->setText(Shown(panel.errorText));
  wavelength_->setText(Shown(panel.wavelengthText).trimmed());
  ShowTable();
  ShowFit();
  const QSignalBlocker silent(table_);
  table_->setValue(panel.tableEntry);
}

// Another table may have been loaded.
void LineWindow::ShowTable() {
  const QSignalBlocker silent(table_);
  const int entries = desk_.session().wavelengthTable.wlCount;
  table_->setEnabled(entries > 0);
  table_->setRange(1, std::max(1, entries));
  table_->setSingleStep(1);
  table_->setPageStep(10);
}

// What changes with the fit; what was typed stays.
void LineWindow::ShowFit() {
  const LinePanel& panel = desk_.session().linePanel;
  estimate_->setText(Shown(panel.estimateText));
  name_->SetText(Shown(panel.nameText));
  deviation_->setText(Shown(panel.deviationText));
  rms_->setText(Shown(panel.rmsText));
  count_->setText(Shown(panel.countText));
  state_->setText(Shown(panel.stateText));
}

void LineWindow::ScrollTo(int entry) {
  ShowTableEntry(desk_.session(), entry);
  ShowPanel();
}

// Where no entry is shown yet, the first step shows the one at which the bar stands.
void LineWindow::Walk(int entries) {
  if (!table_->isEnabled())
    return;
  if (desk_.session().linePanel.wavelengthText.empty())
    ScrollTo(table_->value());
  else
    table_->setValue(table_->value() + entries);
}

void LineWindow::Update() {
  const Session& s = desk_.session();
  if (const auto step = IdentifyStep(s, NumericPrefix(Typed(wavelength_->text()))))
    desk_.Do(this, *step);
  wavelength_->setFocus();
  wavelength_->selectAll();
}

void LineWindow::UpdateAndClose() {
  Update();
  Leave();
}

void LineWindow::Delete() {
  if (const auto step = DeleteLineStep(desk_.session()))
    desk_.Do(this, *step);
  Leave();
}

void LineWindow::Leave() {
  StorePlacement();
  hide();
}

void LineWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* const button = qobject_cast<QPushButton*>(focusWidget()))
        button->click();
      else
        UpdateAndClose();
      break;
    case Qt::Key_Escape:
      Leave();
      break;
    case Qt::Key_Up:
      Walk(-1);
      break;
    case Qt::Key_Down:
      Walk(+1);
      break;
    case Qt::Key_PageUp:
      Walk(-table_->pageStep());
      break;
    case Qt::Key_PageDown:
      Walk(+table_->pageStep());
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void LineWindow::wheelEvent(QWheelEvent* event) {
  if (const int notches = wheel_.Take(*event); notches != 0)
    Walk(-notches);
}

void LineWindow::closeEvent(QCloseEvent* event) {
  StorePlacement();
  QWidget::closeEvent(event);
}

bool LineWindow::eventFilter(QObject* watched, QEvent* event) {
  // A window that is minimised keeps it, and brings it back.
  if (watched == over_ && event->type() == QEvent::Hide && !event->spontaneous())
    Leave();
  return QWidget::eventFilter(watched, event);
}

}  // namespace halmek
