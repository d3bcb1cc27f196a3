// The main window.
#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMoveEvent>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

#include "app/main_menu.h"
#include "platform/accessible.h"
#include "platform/placement.h"
#include "platform/text.h"
#include "steps/start_up.h"
#include "steps/unsaved_work.h"

namespace halmek {
namespace {

constexpr int widthInTwips = 10920, heightInTwips = 7950;

QLabel* NewTitle() {
  QLabel* const title = NewLabel("Label15", "Halmek  -- Radial Velocity Reductions (intermediate steps)");
  QFont large = title->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * 1.2);
  title->setFont(large);
  title->setAlignment(Qt::AlignHCenter);
  return title;
}

}  // namespace

MainWindow::MainWindow(Desk& desk)
    : desk_(desk),
      actions_(desk, this, [this] { part1_->ShowSettings(desk_.session()); }),
      part1_(new Part1Panel(actions_)),
      part2_(new Part2Panel(actions_)) {
  setObjectName("frmMain");
  auto* const panels = new QHBoxLayout;
  panels->addWidget(part1_, 1);
  panels->addWidget(part2_, 1);
  auto* const body = new QWidget;
  auto* const column = new QVBoxLayout(body);
  column->setContentsMargins(8, 4, 8, 8);
  column->setSpacing(4);
  column->addWidget(NewTitle());
  column->addLayout(panels, 1);
  // It scrolls where the text is larger than the screen has room for.
  auto* const area = new QScrollArea;
  area->setObjectName("area");
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  area->setWidget(body);
  NameArea(area, "Steps");
  setCentralWidget(area);
  AddMainMenu(*this, actions_);
  desk_.SetMainWindow(this);
  desk_.AddView(*this);
}

MainWindow::~MainWindow() {
  desk_.RemoveView(*this);
  desk_.SetMainWindow(nullptr);
}

void MainWindow::Open() {
  FixSize();
  Place(*this, desk_.session().mainWindow);
  part1_->ShowSettings(desk_.session());
  Refresh();
  show();
}

void MainWindow::FixSize() { FixOuterSize(*this, widthInTwips, heightInTwips); }

void MainWindow::Refresh() {
  const Session& session = desk_.session();
  setWindowTitle(Shown(session.workflow.title));
  part1_->Render(session.workflow);
  part2_->Render(session);
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  FixSize();
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  if (!event->spontaneous() || !IsFramed(*this))
    return;
  FixSize();
  if (!std::exchange(framed_, true))
    Place(*this, desk_.session().mainWindow);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  Session& session = desk_.session();
  if (!desk_.MayLose(this, UnsavedWork(session), "Quit")) {
    event->ignore();
    return;
  }
  WindowPlacement placement = session.mainWindow;
  Store(placement, *this);
  desk_.Try(
      this, [&] { ShutDown(session, Typed(part1_->startRow()), Typed(part1_->badColumn()), placement); },
      "the settings are not saved: " + session.settingsPath);
  event->accept();
  // The other windows end with the program.
  QApplication::exit(0);
}

}  // namespace halmek
