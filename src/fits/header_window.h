// The header viewer.
#pragma once

#include <QScrollBar>

#include "platform/desk.h"
#include "platform/paged_text.h"

namespace halmek {

// `frmDisplayHdr_2D`: the cards of the current slot, one a line.
class HeaderWindow : public QWidget, public View {
 public:
  explicit HeaderWindow(Desk& desk);
  ~HeaderWindow() override;

  // Shows the header of the current slot from its first card on.
  void Open();

  // Shows the page anew, of the slot that is current now.
  void Refresh() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  const Slot& CurrentSlot() const { return desk_.session().slot[desk_.session().currentSlot]; }
  int OuterHeight() const;  // in twips
  void Load();
  void TakeOpeningHeight();
  void LayOut();
  void ShowPage();

  Desk& desk_;
  PagedText* cards_;
  QScrollBar* scroll_;
  bool headerBusy_ = false;  // the window is being loaded
  bool framed_ = false;      // the desktop has put the window into its frame
  int wantedHeight_ = 0;     // in pixels, where the cards are enough for it
};

}  // namespace halmek
