// The recipe's window.
#include "app/recipe_window.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/accessible.h"
#include "platform/controls.h"
#include "platform/placement.h"
#include "platform/text.h"

namespace halmek {

RecipeWindow::RecipeWindow(Desk& desk) : desk_(desk), text_(new QPlainTextEdit(this)) {
  setObjectName("frmRecipe");
  setWindowTitle("Recipe");
  SetInnerSize(*this, 9000, 7000);

  text_->setObjectName("textRecipe");
  NameArea(text_, "Recipe");
  text_->setReadOnly(true);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setPlaceholderText("Each step that is done appears here, as the line of a recipe.");

  QPushButton* const copy = NewButton(
      "commandCopy", "Copy All", [this] { QGuiApplication::clipboard()->setText(text_->toPlainText()); });
  QPushButton* const close = NewButton("commandClose", "Close", [this] { this->close(); });
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(copy);
  buttons->addWidget(close);
  auto* const column = new QVBoxLayout(this);
  column->addWidget(text_);
  column->addLayout(buttons);

  CloseOnEscape(*this);
  desk_.AddView(*this);
}

RecipeWindow::~RecipeWindow() { desk_.RemoveView(*this); }

void RecipeWindow::Open() {
  Refresh();
  BringToFront(*this);
}

void RecipeWindow::Refresh() {
  const auto& journal = desk_.session().journal;
  for (; linesShown_ < journal.size(); ++linesShown_)
    text_->appendPlainText(Shown(journal[linesShown_]));
}

}  // namespace halmek
