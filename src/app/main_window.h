// The window in which the observer works from start to exit.
#pragma once

#include <QMainWindow>

#include "app/main_actions.h"
#include "app/main_part1_panel.h"
#include "app/main_part2_panel.h"

namespace halmek {

// `frmMain`: two panels of numbered steps, and the menus. It renders the session's Workflow. Closing it
// writes the settings file and ends the program.
class MainWindow : public QMainWindow, public View {
 public:
  explicit MainWindow(Desk& desk);
  ~MainWindow() override;

  // Shows the window where it stood last.
  void Open();

  void Refresh() override;

  Actions& actions() { return actions_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void moveEvent(QMoveEvent* event) override;

 private:
  void FixSize();

  Desk& desk_;
  Actions actions_;
  Part1Panel* part1_;
  Part2Panel* part2_;
  bool framed_ = false;  // the desktop has put the window into its frame
};

}  // namespace halmek
