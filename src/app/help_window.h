// The window with the help pages.
#pragma once

#include <QLabel>
#include <QScrollArea>
#include <vector>

#include "app/help_pages.h"
#include "platform/desk.h"

namespace halmek {

// `frmHelp`. It is as high as its page where the screen has room for it, otherwise the page scrolls; the user
// chooses its width.
class HelpWindow : public QWidget {
 public:
  explicit HelpWindow(Desk& desk);

  // Shows a page, in place of the one before, and brings the window to the front.
  void Open(HelpTopic topic);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QLabel* Paragraph(size_t index);
  void LayOut();

  Desk& desk_;
  QScrollArea* area_;
  QWidget* page_;
  QLabel* title_;
  std::vector<QLabel*> paragraphs_;
};

}  // namespace halmek
