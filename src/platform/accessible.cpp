// Accessible labels, lists and plots.
#include "platform/accessible.h"

#include <QAccessibleWidget>
#include <QScrollBar>
#include <QVariant>

#include "platform/plot_surface.h"

namespace halmek {
namespace {

constexpr const char* meaningProperty = "meaning";

// A label that shows a value. It has no accessible name of its own, so that QLabel tells each change of its
// text as one of its name.
class AccessibleLabel : public QAccessibleWidget {
 public:
  explicit AccessibleLabel(QLabel* label) : QAccessibleWidget(label, QAccessible::StaticText) {}

  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name)
      return QAccessibleWidget::text(kind);
    const QString meaning = object()->property(meaningProperty).toString();
    const QString shown = static_cast<QLabel*>(object())->text().trimmed();
    return meaning + ": " + (shown.isEmpty() ? "none" : shown);
  }
};

// Its value is the column of the keyboard's cursor.
class AccessiblePlot : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessiblePlot(PlotSurface* surface)
      : QAccessibleWidget(surface, QAccessible::Chart), surface_(surface) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return surface_->cursorColumn(); }
  void setCurrentValue(const QVariant& value) override { surface_->PutCursor(value.toInt()); }
  QVariant minimumValue() const override { return surface_->track().first; }
  QVariant maximumValue() const override { return surface_->track().last; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  PlotSurface* surface_;
};

QAccessibleInterface* NewInterface(const QString& className, QObject* object) {
  if (className == "QLabel" && object->property(meaningProperty).isValid())
    return new AccessibleLabel(static_cast<QLabel*>(object));
  // A page that scrolls; Qt tells of it as of nothing in particular.
  if (className == "QScrollArea")
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Document);
  // A panel; Qt tells of it as of a window.
  if (className == "QFrame" && !static_cast<QWidget*>(object)->accessibleName().isEmpty())
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
  if (className == "QWidget")
    if (auto* const surface = dynamic_cast<PlotSurface*>(object))
      return new AccessiblePlot(surface);
  return nullptr;
}

}  // namespace

void InstallAccessibility() { QAccessible::installFactory(NewInterface); }

void SetMeaning(QLabel* label, const QString& meaning) {
  label->setProperty(meaningProperty, meaning);
  // Qt keeps what it made when the label was first given a text.
  QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(label)));
}

void SetCaption(QLabel* caption, QWidget* field) {
  caption->setBuddy(field);
  if (auto* const value = qobject_cast<QLabel*>(field)) {
    const QString text = caption->text().trimmed();
    SetMeaning(value, text.endsWith(':') ? text.chopped(1) : text);
  }
}

void NameArea(QAbstractScrollArea* area, const QString& name) {
  area->setAccessibleName(name);
  area->verticalScrollBar()->setAccessibleName("Scroll " + name);
  area->horizontalScrollBar()->setAccessibleName("Scroll " + name + " sideways");
}

}  // namespace halmek
