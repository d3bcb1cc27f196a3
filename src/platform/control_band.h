// A band of controls that breaks into further lines where the window is narrow.
#pragma once

#include <QHBoxLayout>
#include <QLayout>
#include <QWidget>

namespace halmek {

// Lays its groups out like words: from left to right, on the next line what does not fit.
class WordLayout : public QLayout {
 public:
  explicit WordLayout(QWidget* parent);
  ~WordLayout() override;

  void addItem(QLayoutItem* item) override { items_.push_back(item); }
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override { return items_.value(index); }
  QLayoutItem* takeAt(int index) override {
    return index >= 0 && index < count() ? items_.takeAt(index) : nullptr;
  }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return Arrange(QRect(0, 0, width, 0), false); }
  QSize sizeHint() const override { return minimumSize(); }
  QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;

 private:
  // Returns the height that the lines take; moves the items only where told to.
  int Arrange(const QRect& rect, bool moves) const;

  QList<QLayoutItem*> items_;
};

class ControlBand : public QWidget {
 public:
  explicit ControlBand(QWidget* parent);

  // Adds controls that stay together on one line.
  void AddGroup(const QList<QWidget*>& controls);

  int HeightFor(int width) const;

 private:
  WordLayout* words_;
};

}  // namespace halmek
