// The plot's surface.
#include "platform/plot_surface.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "platform/accessible.h"
#include "platform/controls.h"
#include "platform/painting.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "plot/picture.h"

namespace halmek {
namespace {

constexpr std::string_view spacingLabel = "Label8";

// What the labels of the axes are, which read as bare numbers.
QString MeaningOf(std::string_view label) {
  const std::pair<std::string_view, const char*> meanings[] = {{"Label1", "First number of the lower axis"},
                                                               {"Label2", "Last number of the lower axis"},
                                                               {"Label3", "Upper number of the left axis"},
                                                               {"Label4", "Lower number of the left axis"},
                                                               {"Label6", "Lower axis"},
                                                               {spacingLabel, "Distance of the grid lines"}};
  for (const auto& [name, meaning] : meanings)
    if (name == label)
      return meaning;
  return "Legend";
}

}  // namespace

PlotSurface::PlotSurface(QWidget* parent) : QWidget(parent) {
  setObjectName("surface");
  setMouseTracking(true);
  // A click leaves the keyboard where it is.
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  // Paper is white, ink is black, whatever the desktop's colours.
  QPalette paper = palette();
  paper.setColor(QPalette::Window, Qt::white);
  paper.setColor(QPalette::WindowText, Qt::black);
  paper.setColor(QPalette::Disabled, QPalette::WindowText, Qt::darkGray);
  setPalette(paper);
}

void PlotSurface::Show(Drawing drawing, const CursorTrack& track) {
  drawing_ = std::move(drawing);
  track_ = track;
  ShowTexts();
  update();
}

int PlotSurface::cursorColumn() const {
  return std::clamp(column_.value_or((track_.first + track_.last) / 2), track_.first, track_.last);
}

void PlotSurface::PutCursor(int column) {
  column_ = std::clamp(column, track_.first, track_.last);
  TellCursor();
}

std::optional<Point> PlotSurface::cursor() const {
  if (!column_ || !drawing_ || !hasFocus())
    return std::nullopt;
  return CursorAt(*drawing_, track_, cursorColumn());
}

QLabel* PlotSurface::AddLabel(const char* name, const QString& text) {
  QLabel* const label = NewLabel(name, text, this);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  return label;
}

QLabel* PlotSurface::LabelNamed(std::string_view name) {
  const auto found = axisLabels_.find(name);
  if (found != axisLabels_.end())
    return found->second;
  const std::string key(name);
  QLabel* const label = axisLabels_[key] = AddLabel(key.c_str(), {});
  SetMeaning(label, MeaningOf(name));
  if (name == spacingLabel) {
    // It is no value of the axis, among values.
    label->setEnabled(false);
    label->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    label->setToolTip(MeaningOf(name));
  }
  return label;
}

void PlotSurface::ShowTexts() {
  for (const auto& [name, label] : axisLabels_)
    label->hide();
  for (const DrawingItem& item : drawing_->items) {
    const Text* const text = std::get_if<Text>(&item);
    if (text == nullptr)
      continue;
    QLabel* const label = LabelNamed(text->control);
    label->setText(Shown(text->text));
    label->adjustSize();
    label->move(PixelsOf(LeftOf(*text, static_cast<float>(TwipsOf(label->width())))),
                PixelsOf(text->topLeft.y));
    label->show();
  }
}

void PlotSurface::SetPointsInside(bool inside) {
  if (inside)
    setCursor(Qt::CrossCursor);
  else
    unsetCursor();
}

bool PlotSurface::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !handlers_.toolTip)
    return QWidget::event(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const QString text = handlers_.toolTip(TwipsOf(help->pos().x()), TwipsOf(help->pos().y()));
  if (text.isEmpty())
    QToolTip::hideText();
  else
    QToolTip::showText(help->globalPos(), text, this);
  return true;
}

void PlotSurface::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  if (drawing_)
    PaintDrawing(painter, *drawing_, PixelsPerTwip());
  if (const auto at = cursor())
    PaintCursor(painter, *at);
}

// The cross through the plot, and a frame that says where the keyboard is.
void PlotSurface::PaintCursor(QPainter& painter, Point at) {
  constexpr int frame = 2;
  painter.setPen(QPen(Qt::black, 1, Qt::DashLine));
  const int x = PixelsOf(at.x), y = PixelsOf(at.y);
  painter.drawLine(x, PixelsOf(drawing_->plotTopLeft.y), x, PixelsOf(drawing_->plotBottomRight.y));
  painter.drawLine(PixelsOf(drawing_->plotTopLeft.x), y, PixelsOf(drawing_->plotBottomRight.x), y);
  painter.setPen(QPen(ColourOf(colours::blue), frame));
  painter.drawRect(QRectF(rect()).adjusted(frame / 2.0, frame / 2.0, -frame / 2.0, -frame / 2.0));
}

void PlotSurface::mouseMoveEvent(QMouseEvent* event) {
  if (handlers_.move)
    handlers_.move(TwipsOf(event->position().x()), TwipsOf(event->position().y()));
}

void PlotSurface::mousePressEvent(QMouseEvent* event) {
  column_.reset();
  update();
  Click(event->button(), TwipsOf(event->position().x()), TwipsOf(event->position().y()));
}

void PlotSurface::Click(Qt::MouseButton button, double x, double y) {
  // What is clicked is what the read-outs show.
  if (handlers_.move)
    handlers_.move(x, y);
  const bool isLeft = button == Qt::LeftButton, isRight = button == Qt::RightButton;
  const auto& click = isLeft ? handlers_.leftClick : isRight ? handlers_.rightClick : handlers_.otherClick;
  if (click)
    click(x, y);
}

void PlotSurface::keyPressEvent(QKeyEvent* event) {
  if (!drawing_ || !TakeKey(*event))
    QWidget::keyPressEvent(event);
}

bool PlotSurface::TakeKey(const QKeyEvent& event) {
  // With others the keys belong to the desktop.
  if (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier))
    return false;
  constexpr int far = 10;
  const bool isShifted = event.modifiers() & Qt::ShiftModifier;
  const int step = isShifted ? far : 1;
  switch (event.key()) {
    case Qt::Key_Left:
      PutCursor(cursorColumn() - step);
      return true;
    case Qt::Key_Right:
      PutCursor(cursorColumn() + step);
      return true;
    case Qt::Key_PageUp:
      PutCursor(cursorColumn() - far);
      return true;
    case Qt::Key_PageDown:
      PutCursor(cursorColumn() + far);
      return true;
    case Qt::Key_Home:
      PutCursor(track_.first);
      return true;
    case Qt::Key_End:
      PutCursor(track_.last);
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (handlers_.scroll)
        handlers_.scroll(event.key() == Qt::Key_Up ? 1 : -1, event.modifiers());
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      // Nothing is clicked where no cursor was seen.
      if (const auto at = cursor())
        Click(isShifted ? Qt::RightButton : Qt::LeftButton, at->x, at->y);
      else
        PutCursor(cursorColumn());
      return true;
    default:
      return false;
  }
}

void PlotSurface::TellCursor() {
  update();
  const auto at = cursor();
  if (!at)
    return;
  if (handlers_.move)
    handlers_.move(at->x, at->y);
  QAccessibleValueChangeEvent moved(this, cursorColumn());
  QAccessible::updateAccessibility(&moved);
  // What the mouse reads over a mark at the upper edge.
  const float top = drawing_->plotTopLeft.y;
  if (const QString text = handlers_.toolTip ? handlers_.toolTip(at->x, top) : QString(); !text.isEmpty())
    QToolTip::showText(mapToGlobal(QPoint(PixelsOf(at->x), PixelsOf(top))), text, this);
  else
    QToolTip::hideText();
}

void PlotSurface::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  const bool isByTab = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  if (isByTab && !column_)
    column_ = cursorColumn();
  TellCursor();
  if (isByTab)
    QToolTip::showText(mapToGlobal(rect().bottomLeft()), keyHint_, this);
}

void PlotSurface::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  if (column_ && handlers_.leave)
    handlers_.leave();
  update();
}

void PlotSurface::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  column_.reset();
}

void PlotSurface::leaveEvent(QEvent*) {
  if (handlers_.leave)
    handlers_.leave();
}

void PlotSurface::wheelEvent(QWheelEvent* event) {
  if (handlers_.wheel)
    handlers_.wheel(event);
}

}  // namespace halmek
