// Shared controls.
#include "platform/controls.h"

#include <QAction>
#include <QFocusEvent>
#include <QFontInfo>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "platform/accessible.h"

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

QLabel* NewReadOut(const QString& name, const QString& meaning, const char* widest) {
  QLabel* const label = NewLabel(name, {});
  SetMeaning(label, meaning);
  KeepRoomFor(label, widest);
  return label;
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

void ShowScrollBar(QScrollBar* bar, const ScrollBar& state) {
  const QSignalBlocker silent(bar);
  bar->setRange(state.min, std::max(state.min, state.max));
  bar->setSingleStep(std::max(1, state.smallChange));
  bar->setPageStep(std::max(1, state.largeChange));
  bar->setValue(state.value);
}

void CloseOnEscape(QWidget& window) {
  auto* const close = new QAction(&window);
  close->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
  QObject::connect(close, &QAction::triggered, &window, [&window] { window.close(); });
  window.addAction(close);
}

QFont TitleFont(double scale) {
  QFont font("Arial");
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(qRound(QFontInfo(QFont()).pixelSize() * scale));
  font.setBold(true);
  return font;
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

QPushButton* NewButtonNamed(const QString& accessibleName, const QString& name, const QString& caption,
                            const std::function<void()>& action) {
  QPushButton* const button = NewButton(name, caption, action);
  button->setAccessibleName(accessibleName);
  return button;
}

}  // namespace halmek
