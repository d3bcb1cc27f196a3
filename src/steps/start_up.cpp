// Start-up and shut-down.
#include "steps/start_up.h"

#include "calib/wavelength_table.h"
#include "files/whole_number.h"

namespace halmek {
namespace {

void TakeOver(int16_t& field, std::string_view text) {
  try {
    field = WholeNumber(text);
  } catch (const RunTimeError&) {
    // The program is ending: the last good value is worth more than a message.
  }
}

}  // namespace

std::vector<std::string> StartUp(Session& session, const std::string& folder) {
  std::vector<std::string> messages;
  session.frameTrimmed = false;
  session.slot[slots::frame].naxis3Card = 0;
  session.dataFolder = folder;
  session.settingsPath = FullName(session, "Halmek8.ini");

  const SettingsRead read = ReadSettings(session.settingsPath);
  static_cast<Settings&>(session) = read.settings;
  if (!read.found)
    messages.emplace_back(defaultsMessage);

  session.arcCount = 2;
  session.workflow = {};
  try {
    LoadWavelengthTable(session, "WL_Table.txt");
  } catch (const Refusal& refusal) {
    messages.push_back(refusal.text());
  }
  return messages;
}

void ShutDown(Session& session, std::string_view startRowText, std::string_view badColumnText,
              WindowPlacement mainWindow) {
  TakeOver(session.startRow, startRowText);
  TakeOver(session.badColumn, badColumnText);
  session.mainWindow = mainWindow;
  WriteSettings(session.settingsPath, session, session.fileOperations);
}

}  // namespace halmek
