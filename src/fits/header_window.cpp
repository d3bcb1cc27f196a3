// The header viewer's window.
#include "fits/header_window.h"

#include <QResizeEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "fits/header.h"
#include "fits/header_page.h"
#include "platform/accessible.h"
#include "platform/placement.h"
#include "platform/text.h"
#include "platform/twips.h"

namespace halmek {
namespace {

// In twips.
constexpr int openingHeight = 9000;
constexpr int belowScroll = 500, rightOfScroll = 360;

QStringList CardsOf(const Slot& slot) {
  QStringList cards;
  for (int k = 1; k <= slot.cardCount; ++k)
    cards.push_back(Shown(slot.card(k)));
  return cards;
}

}  // namespace

HeaderWindow::HeaderWindow(Desk& desk) : desk_(desk) {
  setObjectName("frmDisplayHdr_2D");
  setWindowTitle("Display Fits Hdr - 2D Spectrum");
  CloseOnEscape(*this);
  scroll_ = new QScrollBar(Qt::Vertical, this);
  scroll_->setObjectName("VScroll1");
  scroll_->setAccessibleName("First card shown");
  scroll_->setFocusPolicy(Qt::StrongFocus);
  connect(scroll_, &QScrollBar::valueChanged, this, [this] { ShowPage(); });
  cards_ = new PagedText(this, scroll_, PixelsOf(headerLineHeight));
  cards_->setObjectName("textCards");
  NameArea(cards_, "Header cards");
  cards_->setPlaceholderText("This header has no cards.");
  scroll_->raise();
  setTabOrder(cards_, scroll_);
  QPalette paper = palette();
  paper.setColor(QPalette::Window, paper.color(QPalette::Base));
  setPalette(paper);
  desk_.AddView(*this);
}

HeaderWindow::~HeaderWindow() { desk_.RemoveView(*this); }

void HeaderWindow::Open() {
  if (!isVisible()) {
    framed_ = false;
    Load();
  }
  TakeOpeningHeight();
  scroll_->setValue(scroll_->minimum());
  ShowPage();
  BringToFront(*this);
}

void HeaderWindow::TakeOpeningHeight() {
  const QMargins frame = FrameMargins(*this);
  wantedHeight_ = std::max(1, PixelsOf(openingHeight) - frame.top() - frame.bottom());
  LayOut();
}

void HeaderWindow::Load() {
  headerBusy_ = true;
  SizedPlacement placement = desk_.session().displayHeader;
  // A width that nobody has chosen yet is that of a card.
  if (placement.width == Settings{}.displayHeader.width) {
    const QMargins frame = FrameMargins(*this);
    const int card = cards_->WidthOf(cardLength) + frame.left() + frame.right();
    placement.width = static_cast<int16_t>(TwipsOf(card) + rightOfScroll + 1);
  }
  Place(*this, placement);
  headerBusy_ = false;
}

int HeaderWindow::OuterHeight() const { return static_cast<int>(OuterTwips(*this).height()); }

void HeaderWindow::LayOut() {
  const int count = CurrentSlot().cardCount;
  const QMargins frame = FrameMargins(*this);
  // Where it ends inside a pixel, the window needs the whole of it.
  const int most = static_cast<int>(std::ceil(HeightOfAllCards(count) * PixelsPerTwip() - 0.01));
  setMaximumHeight(std::max(1, most - frame.top() - frame.bottom()));
  resize(width(), std::min(wantedHeight_, maximumHeight()));

  const int outerHeight = OuterHeight();
  ScrollBar state = HeaderScroll(outerHeight, count);
  state.value = scroll_->value();
  ShowScrollBar(scroll_, state);
  const bool scrolls = height() < maximumHeight();
  const int outerWidth = static_cast<int>(OuterTwips(*this).width());
  const int barLeft = std::max(1, PixelsOf(outerWidth - rightOfScroll));
  const int barHeight = std::min(height(), PixelsOf(outerHeight - belowScroll));
  scroll_->setGeometry(barLeft, 0, std::min(scroll_->sizeHint().width(), std::max(1, width() - barLeft)),
                       std::max(1, barHeight));
  scroll_->setVisible(scrolls);
  cards_->setGeometry(0, 0, scrolls ? barLeft : width(),
                      std::min(height(), cards_->HeightOf(LinesOfPage(outerHeight))));
}

void HeaderWindow::ShowPage() {
  const Slot& slot = CurrentSlot();
  cards_->SetLines(CardsOf(slot));
  ScrollBar state;
  state.min = scroll_->minimum();
  state.value = scroll_->value();
  cards_->ShowFrom(PageAt(OuterHeight(), slot.cardCount, state).first);
}

void HeaderWindow::Refresh() {
  if (!isVisible())
    return;
  LayOut();
  ShowPage();
}

void HeaderWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (headerBusy_ || !isVisible())
    return;
  // Where all cards fit, the user may have wanted more.
  wantedHeight_ = height() < maximumHeight() ? height() : std::max(wantedHeight_, height());
  Store(desk_.session().displayHeader, *this);
  LayOut();
  ShowPage();
}

void HeaderWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  if (event->spontaneous() && IsFramed(*this) && !std::exchange(framed_, true)) {
    Load();
    TakeOpeningHeight();
    ShowPage();
  }
}

void HeaderWindow::closeEvent(QCloseEvent* event) {
  Store(desk_.session().displayHeader, *this);
  QWidget::closeEvent(event);
}

}  // namespace halmek
