// The window that shows the steps done so far as the recipe that would do them again.
#pragma once

#include <QPlainTextEdit>

#include "platform/desk.h"

namespace halmek {

// `frmRecipe`. It grows as one works; its text can be selected and copied.
class RecipeWindow : public QWidget, public View {
 public:
  explicit RecipeWindow(Desk& desk);
  ~RecipeWindow() override;

  void Open();
  void Refresh() override;

 private:
  Desk& desk_;
  QPlainTextEdit* text_;
  size_t linesShown_ = 0;
};

}  // namespace halmek
