// The lists of a file chooser.
#pragma once

#include <QListWidget>
#include <functional>
#include <string>

namespace halmek {

// A list of names that leaves the window's own keys to the window, and whose arrow keys begin at the row with
// the focus where none is selected.
class NameList : public QListWidget {
 public:
  // `takesKey` may do something with Return (Qt::Key_Return, never Key_Enter) or Backspace, and says whether
  // it did.
  explicit NameList(const char* name, std::function<bool(int key)> takesKey = {});

  // Hands keys that type a text to another control, instead of going to the name that begins with it.
  void TypeInto(QWidget* control) { typedInto_ = control; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::function<bool(int key)> takesKey_;
  QWidget* typedInto_ = nullptr;
};

// Folders as an indented path.
class FolderList : public NameList {
 public:
  FolderList(const char* name, std::function<bool(int key)> takesKey);

  // Adds a row, shifted to the right by `depth`.
  void Add(const QIcon& icon, const QString& name, int depth);
};

}  // namespace halmek
