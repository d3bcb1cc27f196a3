// Header cards as text.
#include "fits/card_view.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>

#include "platform/twips.h"

namespace halmek {
namespace {

constexpr int cardLength = 80, leftMargin = 4, linesOfNotch = 3;

// The largest fixed-pitch font whose lines are no higher than that.
QFont FixedFont(int lineHeight) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setStyleHint(QFont::Monospace);
  int size = lineHeight;
  for (font.setPixelSize(size); size > 1 && QFontMetricsF(font).height() > lineHeight; --size)
    font.setPixelSize(size - 1);
  return font;
}

}  // namespace

CardView::CardView(QWidget* parent, QScrollBar* scroll)
    : QTextEdit(parent), scroll_(scroll), lineHeight_(PixelsOf(headerLineHeight)) {
  setObjectName("textCards");
  setAccessibleName("Header cards");
  setFrameShape(QFrame::NoFrame);
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QTextEdit::NoWrap);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFont(FixedFont(lineHeight_));
  setCursorWidth(0);
  setPlaceholderText("This header has no cards.");
  document()->setDocumentMargin(0);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int top) { Follow(top); });
}

void CardView::SetCards(const QStringList& cards) {
  // What is selected stays so, where the cards are the same.
  if (cards == cards_)
    return;
  cards_ = cards;
  const QSignalBlocker silent(verticalScrollBar());
  setPlainText(cards.join('\n'));

  QTextBlockFormat line;
  line.setLineHeight(lineHeight_, QTextBlockFormat::FixedHeight);
  QTextCursor all(document());
  all.select(QTextCursor::Document);
  all.mergeBlockFormat(line);
  // Below is room enough for any card to stand at the top.
  QTextFrameFormat margins = document()->rootFrame()->frameFormat();
  margins.setLeftMargin(leftMargin);
  margins.setBottomMargin(HeightOf(static_cast<int>(cards.size())));
  document()->rootFrame()->setFrameFormat(margins);
  verticalScrollBar()->setSingleStep(lineHeight_);
}

void CardView::ShowPage(const HeaderPage& page) {
  pageTop_ = HeightOf(page.first - 1);
  verticalScrollBar()->setValue(pageTop_);
}

int CardView::CardWidth() const {
  return leftMargin + qRound(QFontMetricsF(font()).horizontalAdvance(QString(cardLength, '0'))) + leftMargin;
}

// The text has been scrolled by a selection that was drawn beyond the edge: the page goes along.
void CardView::Follow(int top) {
  if (top == pageTop_)
    return;
  const int before = pageTop_, cards = (top - pageTop_) / lineHeight_;
  const int direction = top > pageTop_ ? 1 : -1;
  scroll_->setValue(scroll_->value() + (cards == 0 ? direction : cards));
  if (pageTop_ == before)
    verticalScrollBar()->setValue(pageTop_);
}

void CardView::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() == Qt::ShiftModifier || event->angleDelta().y() == 0)
    return QTextEdit::wheelEvent(event);
  scroll_->setValue(scroll_->value() - linesOfNotch * wheel_.Take(*event));
}

void CardView::keyPressEvent(QKeyEvent* event) {
  if (event->modifiers() & Qt::ShiftModifier)
    return QTextEdit::keyPressEvent(event);
  switch (event->key()) {
    case Qt::Key_Up:
      return scroll_->triggerAction(QScrollBar::SliderSingleStepSub);
    case Qt::Key_Down:
      return scroll_->triggerAction(QScrollBar::SliderSingleStepAdd);
    case Qt::Key_Left:
      return horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepSub);
    case Qt::Key_Right:
      return horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepAdd);
    case Qt::Key_PageUp:
      return scroll_->triggerAction(QScrollBar::SliderPageStepSub);
    case Qt::Key_PageDown:
    case Qt::Key_Space:
      return scroll_->triggerAction(QScrollBar::SliderPageStepAdd);
    case Qt::Key_Home:
      return scroll_->triggerAction(QScrollBar::SliderToMinimum);
    case Qt::Key_End:
      return scroll_->triggerAction(QScrollBar::SliderToMaximum);
    default:
      QTextEdit::keyPressEvent(event);
  }
}

}  // namespace halmek
