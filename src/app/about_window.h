// The window that says what this program is.
#pragma once

#include <QWidget>

#include "platform/desk.h"

namespace halmek {

// `frmAbout`.
class AboutWindow : public QWidget {
 public:
  explicit AboutWindow(Desk& desk);

  void Open();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  Desk& desk_;
};

}  // namespace halmek
