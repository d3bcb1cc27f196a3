// The band of controls.
#include "platform/control_band.h"

#include <algorithm>

namespace halmek {
namespace {

constexpr int betweenGroups = 14, betweenLines = 4, betweenControls = 4;

}  // namespace

WordLayout::WordLayout(QWidget* parent) : QLayout(parent) {}

WordLayout::~WordLayout() { qDeleteAll(items_); }

QSize WordLayout::minimumSize() const {
  QSize size;
  for (const QLayoutItem* item : items_)
    size = size.expandedTo(item->minimumSize());
  return size.grownBy(contentsMargins());
}

void WordLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  Arrange(rect, true);
}

int WordLayout::Arrange(const QRect& rect, bool moves) const {
  const QRect area = rect.marginsRemoved(contentsMargins());
  int x = area.left(), y = area.top(), lineHeight = 0;
  for (qsizetype first = 0; first < items_.size();) {
    // The items of this line, then their places: centred on the line's height.
    qsizetype end = first;
    lineHeight = 0;
    int width = 0;
    while (end < items_.size()) {
      const QSize size = items_[end]->sizeHint();
      const int wider = width + (end == first ? 0 : betweenGroups) + size.width();
      if (end > first && wider > area.width())
        break;
      width = wider;
      lineHeight = std::max(lineHeight, size.height());
      ++end;
    }
    x = area.left();
    for (; first < end; ++first) {
      const QSize size = items_[first]->sizeHint();
      if (moves)
        items_[first]->setGeometry({QPoint(x, y + (lineHeight - size.height()) / 2), size});
      x += size.width() + betweenGroups;
    }
    if (first < items_.size())
      y += lineHeight + betweenLines;
  }
  return y + lineHeight - area.top() + contentsMargins().top() + contentsMargins().bottom();
}

ControlBand::ControlBand(QWidget* parent) : QWidget(parent), words_(new WordLayout(this)) {
  words_->setContentsMargins(8, 2, 8, 4);
}

void ControlBand::AddGroup(const QList<QWidget*>& controls) {
  auto* const group = new QWidget(this);
  auto* const line = new QHBoxLayout(group);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(betweenControls);
  for (QWidget* control : controls)
    line->addWidget(control);
  words_->addWidget(group);
}

int ControlBand::HeightFor(int width) const { return words_->heightForWidth(width); }

}  // namespace halmek
