// The common part of the plot windows.
#include "plot/plot_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QWheelEvent>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/picture_file.h"
#include "platform/placement.h"
#include "platform/plot_page.h"
#include "platform/text.h"
#include "platform/twips.h"

namespace halmek {
namespace {

// Twips up from the lower edge of the layout to where the band of controls begins, below the axis title.
constexpr int bandTop = 1550;

constexpr const char* cursorKeys =
    "Left and Right move the cursor by one, with Shift by ten, Home and End to the ends.  ";

}  // namespace

PlotWindow::PlotWindow(Desk& desk, const PlotWindowNames& names, SizedPlacement& placement)
    : desk_(desk),
      placement_(placement),
      keys_(QString(cursorKeys) + names.keys),
      area_(new QWidget(this)),
      surface_(new PlotSurface(area_)),
      band_(new ControlBand(area_)) {
  setObjectName(names.window);
  setCentralWidget(area_);
  // Any size is allowed; what does not fit is cut off.
  area_->setMinimumSize(1, 1);
  area_->installEventFilter(this);
  AddFileMenu(names);
  surface_->setAccessibleName(names.plot);
  surface_->SetKeyHint(keys_);
  surface_->SetHandlers(
      {.move = [this](double x, double y) { MovePointer(x, y); },
       .leftClick = [this](double x, double y) { ClickLeft(x, y); },
       .rightClick = [this](double x, double y) { ClickRight(x, y); },
       .otherClick = [this](double x, double y) { ClickOther(x, y); },
       .leave = [this] { MovePointer(-1, -1); },
       .wheel = [this](QWheelEvent* e) { Scroll(wheel_.Take(*e), e->modifiers()); },
       .scroll = [this](int notches, Qt::KeyboardModifiers modifiers) { Scroll(notches, modifiers); },
       .toolTip = [this](double x, double y) { return ToolTipAt(x, y); }});
  desk_.AddView(*this);
}

PlotWindow::~PlotWindow() {
  desk_.RemoveView(*this);
  // The surface may lose the keyboard as it goes, after what it would tell.
  surface_->SetHandlers({});
}

void PlotWindow::AddFileMenu(const PlotWindowNames& names) {
  QMenu* const file = menuBar()->addMenu("File");
  file->setObjectName(names.fileMenu);
  file->addAction("Print Setup ...", this,
                  [this] { desk_.printing().SetUp(desk_.platform(), this, session().dataFolder); })
      ->setObjectName(names.printSetup);
  file->addAction("Print", QKeySequence::Print, this, [this] { Print(); })->setObjectName(names.print);
  file->addAction("Save Picture As ...", this, [this] { SavePictureAs(); })->setObjectName("mSavePicture");
  file->addSeparator()->setObjectName("mDash");
  file->addAction("Exit", QKeySequence::Close, this, [this] { Return(); })->setObjectName("mExit");
}

void PlotWindow::Print() {
  std::string file;
  const bool isPrinted = desk_.Try(this, [&] {
    file = desk_.printing().Print(windowTitle(), [this](QPainter& painter, const QRectF& page) {
      PaintPage(painter, page, *area_, *surface_, windowTitle());
    });
  });
  if (isPrinted && !file.empty())
    desk_.Tell(this, "The page is in the file " + LeafName(file) + ".",
               "in the folder " + std::filesystem::path(file).parent_path().string());
}

void PlotWindow::SavePictureAs() {
  const auto output = desk_.FileToSave(this,
                                       {.title = "Save Picture As",
                                        .folder = session().dataFolder,
                                        .name = PictureName() + ".png",
                                        .patterns = {"*.png", "*.svg", "*.pdf"}},
                                       KindOfPicture);
  if (output && surface_->drawing())
    desk_.TryWith(output->file, this,
                  [&] { WriteOutput(session(), *output, PictureBytes(*surface_->drawing(), output->file)); });
}

bool PlotWindow::Open() {
  const bool opens = !std::exchange(loaded_, true);
  if (opens) {
    framed_ = false;
    Loading();
    Place(*this, placement_);
    ArrangeParts();
  }
  auto drawing = Draw(LayoutSize());
  if (!drawing) {
    if (!isVisible())
      loaded_ = false;
    ShowState();
    return false;
  }
  // Showing raises resizes, which must not draw in the midst of this.
  Frame().plotBusy = true;
  show();
  Frame().plotBusy = false;
  Redraw();
  BringToFront(*this);
  return true;
}

void PlotWindow::Refresh() {
  if (!isVisible())
    return;
  if (Follow())
    Redraw();
  else
    close();
}

void PlotWindow::Redraw() {
  if (auto drawing = Draw(LayoutSize())) {
    setWindowTitle(Shown(drawing->caption));
    surface_->Show(*std::move(drawing), Track());
    DescribePlot();
  }
  ArrangeParts();
  ShowState();
  // The cursor stays on its column, the mouse at its place.
  if (const auto cursor = surface_->cursor())
    MovePointer(cursor->x, cursor->y);
  else
    PointTo(pointerX_, pointerY_);
}

void PlotWindow::DescribePlot() {
  const PlotFrame& f = Frame();
  const CursorTrack track = Track();
  surface_->setAccessibleDescription(QString("%1: from %2 to %3, values from %4 to %5.  %6")
                                         .arg(windowTitle(), QString::number(track.first),
                                              QString::number(track.last), QString::number(f.yMin),
                                              QString::number(f.yMax), keys_));
}

void PlotWindow::Scroll(int notches, Qt::KeyboardModifiers modifiers) {
  if (QScrollBar* const bar = Scrolled(modifiers))
    bar->setValue(bar->value() - notches * bar->singleStep());
}

void PlotWindow::MovePointer(double x, double y) {
  pointerX_ = x;
  pointerY_ = y;
  PointTo(x, y);
}

void PlotWindow::Return() {
  Leaving();
  Store(placement_, *this);
  hide();
}

WindowSize PlotWindow::LayoutSize() const {
  const QSizeF outer = OuterTwips(*this);
  const int columnScroll = columnScroll_ == nullptr ? 0 : columnScroll_->sizeHint().height();
  const int bandHeight = band_->HeightFor(area_->width()) + columnScroll;
  const double fits = TwipsOf(area_->height() - bandHeight) + bandTop;
  return {.width = static_cast<int>(outer.width()),
          .height = static_cast<int>(std::min(outer.height(), fits))};
}

// The band lies below the axis title; what is above is the surface.
void PlotWindow::ArrangeParts() {
  const WindowSize layout = LayoutSize();
  const int top = std::max(0, PixelsOf(layout.height - bandTop));
  surface_->setGeometry(0, 0, area_->width(), top);
  int y = top;
  if (columnScroll_ != nullptr) {
    const int left = PixelsOf(800), right = PixelsOf(layout.width - 415);
    columnScroll_->setGeometry(left, y, std::max(1, right - left), columnScroll_->sizeHint().height());
    y += columnScroll_->height();
  }
  band_->setGeometry(0, y, area_->width(), std::max(0, area_->height() - y));
  if (rowScroll_ != nullptr) {
    const int left = PixelsOf(layout.width - 415) + 4;
    const int width = std::min(rowScroll_->sizeHint().width(), std::max(1, area_->width() - left));
    rowScroll_->setGeometry(left, PixelsOf(300), width, std::max(1, PixelsOf(layout.height - 2350)));
    rowScroll_->raise();
  }
}

void PlotWindow::ShowReadOut(const ReadOut& at, QLabel* column, QLabel* value) {
  surface_->SetPointsInside(at.inside);
  if (!at.inside)
    return;
  column->setText(Shown(at.columnText));
  value->setText(Shown(at.valueText));
}

void PlotWindow::ShowHint(QLabel* hint, const QString& text) {
  hint->setText(text);
  const WindowSize layout = LayoutSize();
  const int left = PixelsOf(800), axisTitle = PixelsOf(0.9 * layout.width);
  const QSize size = hint->sizeHint();
  hint->setGeometry(left, PixelsOf(layout.height - 1790), std::clamp(axisTitle - left - 6, 0, size.width()),
                    size.height());
}

QScrollBar* PlotWindow::AddColumnScroll(const char* name, const char* meaning) {
  columnScroll_ = new QScrollBar(Qt::Horizontal, area_);
  columnScroll_->setObjectName(name);
  columnScroll_->setAccessibleName(meaning);
  columnScroll_->setFocusPolicy(Qt::StrongFocus);
  return columnScroll_;
}

QScrollBar* PlotWindow::AddRowScroll(const char* name, const char* meaning) {
  rowScroll_ = new QScrollBar(Qt::Vertical, area_);
  rowScroll_->setObjectName(name);
  rowScroll_->setAccessibleName(meaning);
  rowScroll_->setFocusPolicy(Qt::StrongFocus);
  return rowScroll_;
}

void PlotWindow::closeEvent(QCloseEvent* event) {
  Leaving();
  Unloading();
  Store(placement_, *this);
  loaded_ = false;
  event->accept();
}

void PlotWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  if (!isVisible() || !event->spontaneous())
    return;
  if (IsFramed(*this) && !std::exchange(framed_, true))
    Place(*this, placement_);
  Store(placement_, *this);
}

bool PlotWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == area_ && event->type() == QEvent::Resize)
    Resized();
  return QMainWindow::eventFilter(watched, event);
}

void PlotWindow::Resized() {
  if (!loaded_ || !isVisible() || Frame().plotBusy) {
    ArrangeParts();
    return;
  }
  Store(placement_, *this);
  Redraw();
}

}  // namespace halmek
