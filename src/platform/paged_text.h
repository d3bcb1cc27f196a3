// Many lines of fixed-pitch text, a page of which is shown, and which can be selected and copied.
#pragma once

#include <QScrollBar>
#include <QStringList>
#include <QTextEdit>

#include "platform/controls.h"

namespace halmek {

// It does not scroll by itself: wheel, keys, and the mouse that draws a selection beyond an edge move the
// scroll bar that is given, whose owner shows the page.
class PagedText : public QTextEdit {
 public:
  // `lineHeight` is in pixels; the letters are as large as fit into it.
  PagedText(QWidget* parent, QScrollBar* scroll, int lineHeight);

  void SetLines(const QStringList& lines);

  // Puts a line, numbered from 1, to the top.
  void ShowFrom(int line);

  // The height of that many lines and the width of that many characters, margins included, in pixels.
  int HeightOf(int lines) const { return lines * lineHeight_; }
  int WidthOf(int characters) const;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Follow(int top);

  QScrollBar* scroll_;
  QStringList lines_;
  int lineHeight_;
  int pageTop_ = 0;  // in pixels from the first line
  WheelNotches wheel_;
};

}  // namespace halmek
