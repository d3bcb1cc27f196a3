// The help window.
#include "app/help_window.h"

#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

#include "app/help_layout.h"
#include "platform/accessible.h"
#include "platform/controls.h"
#include "platform/placement.h"
#include "platform/text.h"
#include "platform/twips.h"

namespace halmek {
namespace {

// In twips.
constexpr int usualWidth = 9000, leastWidth = 3600;
constexpr int leftMargin = 200, titleTop = 90;

}  // namespace

HelpWindow::HelpWindow(Desk& desk) : desk_(desk), area_(new QScrollArea(this)), page_(new QWidget) {
  setObjectName("frmHelp");
  setWindowTitle("Help");
  CloseOnEscape(*this);
  area_->setObjectName("area");
  NameArea(area_, "Help page");
  area_->setFrameShape(QFrame::NoFrame);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area_->setWidget(page_);
  title_ = NewLabel("Label0", {}, page_);
  title_->setFont(TitleFont(1.4));
  title_->move(PixelsOf(leftMargin), PixelsOf(titleTop));
  title_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  setMinimumWidth(PixelsOf(leastWidth));
}

QLabel* HelpWindow::Paragraph(size_t index) {
  if (index == paragraphs_.size()) {
    QLabel* const label = NewLabel(QString("Label1(%1)").arg(index + 1), {}, page_);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    paragraphs_.push_back(label);
  }
  return paragraphs_[index];
}

void HelpWindow::Open(HelpTopic topic) {
  const HelpPage page = PageAbout(topic);
  TakeHelpPage(desk_.session(), page);
  title_->setText(Shown(page.title));
  title_->adjustSize();
  for (QLabel* label : paragraphs_)
    label->hide();
  for (size_t k = 0; k < static_cast<size_t>(desk_.session().helpParagraphCount); ++k) {
    Paragraph(k)->setText(Shown(page.paragraphs[k]));
    Paragraph(k)->show();
  }

  const bool opens = !isVisible();
  if (opens)
    resize(PixelsOf(usualWidth), height());
  LayOut();
  area_->verticalScrollBar()->setValue(0);
  if (opens) {
    Place(*this, desk_.session().help);
    LayOut();
  }
  BringToFront(*this);
}

void HelpWindow::LayOut() {
  const QMargins frame = FrameMargins(*this);
  const int windowWidth = static_cast<int>(OuterTwips(*this).width());
  const int labelWidth = PixelsOf(HelpLabelWidth(windowWidth));
  const size_t count = static_cast<size_t>(desk_.session().helpParagraphCount);
  std::vector<int> textHeights;
  for (size_t k = 0; k < count; ++k)
    textHeights.push_back(static_cast<int>(TwipsOf(Paragraph(k)->heightForWidth(labelWidth)) + 1));

  const int titleEnd = static_cast<int>(TwipsOf(title_->geometry().bottom() + 1) + 1);
  const HelpLayout layout = LayoutHelp(desk_.session(), windowWidth, titleEnd, textHeights);
  for (size_t k = 0; k < count; ++k)
    Paragraph(k)->setGeometry(PixelsOf(leftMargin), PixelsOf(layout.tops[k]), labelWidth,
                              PixelsOf(textHeights[k]));
  const int content = PixelsOf(layout.contentHeight);
  page_->resize(width(), content);

  // The window just holds the page; below its place on the screen there may be less room.
  const QRect screen = this->screen()->availableGeometry();
  const int room = std::max(screen.bottom() - y() + 1, screen.height() / 2) - frame.top() - frame.bottom();
  const int wanted = std::max(PixelsOf(layout.windowHeight) - frame.top() - frame.bottom(), content);
  setFixedHeight(std::clamp(wanted, 1, std::max(1, room)));
  area_->setGeometry(rect());
}

void HelpWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (event->size().width() != event->oldSize().width())
    LayOut();
  area_->setGeometry(rect());
}

void HelpWindow::closeEvent(QCloseEvent* event) {
  Store(desk_.session().help, *this);
  QWidget::closeEvent(event);
}

}  // namespace halmek
