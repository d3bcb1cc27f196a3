// The menus of the main window.
#pragma once

#include <QMainWindow>

#include "app/main_actions.h"

namespace halmek {

// Fills the menu bar of `window`; "Exit" closes it.
void AddMainMenu(QMainWindow& window, Actions& actions);

}  // namespace halmek
