// The controls that several windows use.
#pragma once

#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QWheelEvent>
#include <functional>

#include "plot/scroll_bar.h"

namespace halmek {

// A text box whose text is selected when it gets the focus, by the keyboard or by a click.
class EntryBox : public QLineEdit {
 public:
  explicit EntryBox(const QString& name, QWidget* parent = nullptr);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  bool focusedByClick_ = false;
};

// A list to choose from that the wheel changes only where it has the focus, not in passing.
class ChoiceBox : public QComboBox {
 public:
  explicit ChoiceBox(const QString& name, QWidget* parent = nullptr);

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

// Counts the notches by which the wheel turns, also where a finer device tells parts of one. Away from the
// user is positive.
class WheelNotches {
 public:
  int Take(const QWheelEvent& event);

 private:
  int angle_ = 0;  // turned since the last whole notch
};

// A label that shows as much of its text as fits, with an ellipsis in the middle, and the whole in its
// tooltip. `text()` is the whole text.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(const QString& name, QWidget* parent = nullptr);
  void SetText(const QString& text);
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

// A label that shows a value: its meaning, for screen readers, and the room of the widest text that it will
// show.
QLabel* NewReadOut(const QString& name, const QString& meaning, const char* widest);

// Gives a label the room of the widest text that it will show.
void KeepRoomFor(QLabel* label, const char* widest);

// A box for a number of up to five digits, with a tooltip.
EntryBox* NewNumberBox(const QString& name, const QString& tip);

// Puts a scroll bar to a state without telling its handler.
void ShowScrollBar(QScrollBar* bar, const ScrollBar& state);

// Lets the escape key, and the desktop's key for it, close a window.
void CloseOnEscape(QWidget& window);

// The font of titles, `scale` times the size of the usual one.
QFont TitleFont(double scale);

// Controls with their object names. Captions are shown as they stand: an "&" is no mnemonic.
QLabel* NewLabel(const QString& name, const QString& text, QWidget* parent = nullptr);
QPushButton* NewButton(const QString& name, const QString& caption, const std::function<void()>& action,
                       QWidget* parent = nullptr);

// A button whose name for screen readers tells it from others of the same caption. Who speaks to the computer
// says what is seen, so that the name begins with the caption's word.
QPushButton* NewButtonNamed(const QString& accessibleName, const QString& name, const QString& caption,
                            const std::function<void()>& action);

}  // namespace halmek
