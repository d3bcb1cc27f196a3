// The about window.
#include "app/about_window.h"

#include <QVBoxLayout>

#include "app/version.h"
#include "platform/controls.h"
#include "platform/placement.h"

namespace halmek {

AboutWindow::AboutWindow(Desk& desk) : desk_(desk) {
  setObjectName("frmAbout");
  setWindowTitle("About");
  CloseOnEscape(*this);

  auto* const column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->setContentsMargins(36, 20, 36, 20);
  const auto add = [&](const char* name, const QString& text) {
    QLabel* const label = NewLabel(name, text);
    label->setAlignment(Qt::AlignHCenter);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(label);
    return label;
  };
  add("Label1", "Halmek")->setFont(TitleFont(2.2));
  add("Label2", "(Radial Velocity Reductions)");
  add("Label6", "Intermediate steps for reducing spectral images");
  add("Label8", "------------------------------");
  add("Label9", QString("This is version %1 of %2").arg(programVersion, releaseDate));
  column->addSpacing(12);
  add("Label4", "Something went wrong, or could be better?");
  add("Label5", "Please report it to the project's issue tracker.");
}

void AboutWindow::Open() {
  if (!isVisible()) {
    adjustSize();
    Place(*this, desk_.session().about);
  }
  BringToFront(*this);
}

void AboutWindow::closeEvent(QCloseEvent* event) {
  Store(desk_.session().about, *this);
  QWidget::closeEvent(event);
}

}  // namespace halmek
