// Start-up and shut-down of a session at the screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/session.h"

namespace halmek {

// Makes the session ready in `folder`, which becomes the data folder: reads the settings file in it or takes
// the defaults, then loads the wavelength table "WL_Table.txt". Returns the messages to be shown, in order.
std::vector<std::string> StartUp(Session& session, const std::string& folder);

// Takes over the start row, the bad column and the main window's place, and writes the settings file to the
// folder of the start. A number beyond 16 bits leaves its field as it was. Throws RunTimeError where the file
// cannot be written.
void ShutDown(Session& session, std::string_view startRowText, std::string_view badColumnText,
              WindowPlacement mainWindow);

}  // namespace halmek
