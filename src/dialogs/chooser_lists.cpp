// Lists with the keys of a file chooser.
#include "dialogs/chooser_lists.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

namespace halmek {
namespace {

constexpr int depthRole = Qt::UserRole;

// Draws rows shifted to the right by their depth.
class IndentingDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem shifted = option;
    shifted.rect.setLeft(option.rect.left() + Shift(option, index));
    QStyledItemDelegate::paint(painter, shifted, index);
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(Shift(option, index), 0);
  }

 private:
  // Half a line a step, and less where the path is so deep that its names would be pushed out of sight.
  static int Shift(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QAbstractItemModel* const model = index.model();
    const int deepest = std::max(1, model->index(model->rowCount() - 1, 0).data(depthRole).toInt());
    const int room = option.widget == nullptr ? 0 : option.widget->width() / 3;
    return index.data(depthRole).toInt() * std::min(option.fontMetrics.height() / 2, room / deepest);
  }
};

}  // namespace

NameList::NameList(const char* name, std::function<bool(int)> takesKey) : takesKey_(std::move(takesKey)) {
  setObjectName(name);
}

void NameList::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Backspace: {
      const int key = event->key() == Qt::Key_Enter ? Qt::Key_Return : event->key();
      event->setAccepted(takesKey_ && takesKey_(key));
      return;
    }
    case Qt::Key_Escape:
      event->ignore();
      return;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (selectedItems().isEmpty() && count() > 0) {
        setCurrentRow(std::max(0, currentRow()));
        return;
      }
      break;
    default:
      break;
  }
  const bool isShortcut = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (typedInto_ != nullptr && !isShortcut && !event->text().isEmpty() && event->text()[0].isPrint()) {
    typedInto_->setFocus(Qt::TabFocusReason);  // which selects what stands there
    QCoreApplication::sendEvent(typedInto_, event);
    return;
  }
  QListWidget::keyPressEvent(event);
}

FolderList::FolderList(const char* name, std::function<bool(int)> takesKey)
    : NameList(name, std::move(takesKey)) {
  setItemDelegate(new IndentingDelegate(this));
  setResizeMode(QListView::Adjust);
}

void FolderList::Add(const QIcon& icon, const QString& name, int depth) {
  auto* const row = new QListWidgetItem(icon, name, this);
  row->setData(depthRole, depth);
}

}  // namespace halmek
