// Text shown page by page.
#include "platform/paged_text.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>

namespace halmek {
namespace {

constexpr int sideMargin = 4, linesOfNotch = 3;

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

PagedText::PagedText(QWidget* parent, QScrollBar* scroll, int lineHeight)
    : QTextEdit(parent), scroll_(scroll), lineHeight_(lineHeight) {
  setFrameShape(QFrame::NoFrame);
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QTextEdit::NoWrap);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFont(FixedFont(lineHeight_));
  setCursorWidth(0);
  document()->setDocumentMargin(0);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int top) { Follow(top); });
}

void PagedText::SetLines(const QStringList& lines) {
  // What is selected stays so, where the lines are the same.
  if (lines == lines_)
    return;
  lines_ = lines;
  const QSignalBlocker silent(verticalScrollBar());
  setPlainText(lines.join('\n'));

  QTextBlockFormat line;
  line.setLineHeight(lineHeight_, QTextBlockFormat::FixedHeight);
  QTextCursor all(document());
  all.select(QTextCursor::Document);
  all.mergeBlockFormat(line);
  // Below is room enough for any line to stand at the top.
  QTextFrameFormat margins = document()->rootFrame()->frameFormat();
  margins.setLeftMargin(sideMargin);
  margins.setBottomMargin(HeightOf(static_cast<int>(lines.size())));
  document()->rootFrame()->setFrameFormat(margins);
  verticalScrollBar()->setSingleStep(lineHeight_);
}

void PagedText::ShowFrom(int line) {
  pageTop_ = HeightOf(line - 1);
  verticalScrollBar()->setValue(pageTop_);
}

int PagedText::WidthOf(int characters) const {
  return qRound(QFontMetricsF(font()).horizontalAdvance(QString(characters, '0'))) + 2 * sideMargin;
}

// The text has been scrolled by a selection that was drawn beyond the edge: the page goes along.
void PagedText::Follow(int top) {
  if (top == pageTop_)
    return;
  const int before = pageTop_, lines = (top - pageTop_) / lineHeight_;
  const int direction = top > pageTop_ ? 1 : -1;
  scroll_->setValue(scroll_->value() + (lines == 0 ? direction : lines));
  if (pageTop_ == before)
    verticalScrollBar()->setValue(pageTop_);
}

void PagedText::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() == Qt::ShiftModifier || event->angleDelta().y() == 0)
    return QTextEdit::wheelEvent(event);
  scroll_->setValue(scroll_->value() - linesOfNotch * wheel_.Take(*event));
}

void PagedText::keyPressEvent(QKeyEvent* event) {
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
