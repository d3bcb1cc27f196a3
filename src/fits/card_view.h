// Header cards as lines of text that can be selected and copied.
#pragma once

#include <QScrollBar>
#include <QStringList>
#include <QTextEdit>

#include "fits/header_page.h"
#include "platform/controls.h"

namespace halmek {

// Holds all cards of a header and shows a page of them. It does not scroll by itself: wheel, keys, and the
// mouse that draws a selection beyond an edge move the scroll bar that is given, whose owner shows the page.
class CardView : public QTextEdit {
 public:
  CardView(QWidget* parent, QScrollBar* scroll);

  void SetCards(const QStringList& cards);
  void ShowPage(const HeaderPage& page);

  // The height of that many cards and the width of a whole one, in pixels.
  int HeightOf(int cards) const { return cards * lineHeight_; }
  int CardWidth() const;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Follow(int top);

  QScrollBar* scroll_;
  QStringList cards_;
  int lineHeight_;
  int pageTop_ = 0;  // in pixels from the first card
  WheelNotches wheel_;
};

}  // namespace halmek
