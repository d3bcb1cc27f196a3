// The plot's surface.
#include "platform/plot_surface.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "platform/controls.h"
#include "platform/painting.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "plot/picture.h"

namespace halmek {
namespace {

constexpr std::string_view spacingLabel = "Label8";

}  // namespace

PlotSurface::PlotSurface(QWidget* parent) : QWidget(parent) {
  setObjectName("surface");
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  // Paper is white, ink is black, whatever the desktop's colours.
  QPalette paper = palette();
  paper.setColor(QPalette::Window, Qt::white);
  paper.setColor(QPalette::WindowText, Qt::black);
  paper.setColor(QPalette::Disabled, QPalette::WindowText, Qt::darkGray);
  setPalette(paper);
}

void PlotSurface::Show(Drawing drawing) {
  drawing_ = std::move(drawing);
  ShowTexts();
  update();
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
  if (name == spacingLabel) {
    // It is no value of the axis, among values.
    label->setEnabled(false);
    label->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    label->setToolTip("Distance of the grid lines");
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
}

void PlotSurface::mouseMoveEvent(QMouseEvent* event) {
  if (handlers_.move)
    handlers_.move(TwipsOf(event->position().x()), TwipsOf(event->position().y()));
}

void PlotSurface::mousePressEvent(QMouseEvent* event) {
  const double x = TwipsOf(event->position().x()), y = TwipsOf(event->position().y());
  // What is clicked is what the read-outs show.
  if (handlers_.move)
    handlers_.move(x, y);
  const bool isLeft = event->button() == Qt::LeftButton, isRight = event->button() == Qt::RightButton;
  const auto& click = isLeft ? handlers_.leftClick : isRight ? handlers_.rightClick : handlers_.otherClick;
  if (click)
    click(x, y);
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
