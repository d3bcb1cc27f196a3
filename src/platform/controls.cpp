// Shared controls.
#include "platform/controls.h"

#include <QFocusEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

namespace halmek {

EntryBox::EntryBox(const QString& name, QWidget* parent) : QLineEdit(parent) { setObjectName(name); }

void EntryBox::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  selectAll();
  // The click that gives the focus would put the cursor into the text and drop the selection.
  focusedByClick_ = event->reason() == Qt::MouseFocusReason;
}

void EntryBox::mousePressEvent(QMouseEvent* event) {
  QLineEdit::mousePressEvent(event);
  if (std::exchange(focusedByClick_, false))
    selectAll();
}

ChoiceBox::ChoiceBox(const QString& name, QWidget* parent) : QComboBox(parent) {
  setObjectName(name);
  setFocusPolicy(Qt::StrongFocus);
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
  if (hasFocus())
    QComboBox::wheelEvent(event);
  else
    event->ignore();
}

int WheelNotches::Take(const QWheelEvent& event) {
  constexpr int notch = 120;
  const QPoint turned = event.angleDelta();
  angle_ += turned.y() != 0 ? turned.y() : turned.x();
  const int notches = angle_ / notch;
  angle_ -= notches * notch;
  return notches;
}

ElidedLabel::ElidedLabel(const QString& name, QWidget* parent) : QLabel(parent) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::SetText(const QString& text) {
  setText(text);
  setToolTip(text.toHtmlEscaped());
}

QSize ElidedLabel::minimumSizeHint() const { return {0, fontMetrics().height()}; }

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width()));
}

void KeepRoomFor(QLabel* label, const char* widest) {
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
}

EntryBox* NewNumberBox(const QString& name, const QString& tip) {
  auto* const box = new EntryBox(name);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance("0000000"));
  box->setToolTip(tip);
  return box;
}

QLabel* NewLabel(const QString& name, const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QPushButton* NewButton(const QString& name, const QString& caption, const std::function<void()>& action,
                       QWidget* parent) {
  QString shown = caption;
  auto* const button = new QPushButton(shown.replace("&", "&&"), parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, button, [action] { action(); });
  return button;
}

}  // namespace halmek
