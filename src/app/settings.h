// What is remembered between runs, and the settings file "Halmek8.ini" that holds it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/file_operations.h"

namespace halmek {

// Where a window stands, in twips.
struct WindowPlacement {
  int16_t left = 500, top = 500;
};

// Where a resizable window stands and how large it is, in twips.
struct SizedPlacement {
  int16_t left = 500, top = 500, width = 14000, height = 6000;
};

struct Settings {
  int16_t badColumn = 1397;
  int16_t trimCol1 = 1, trimRow1 = 1, trimCol2 = 1748, trimRow2 = 140;  // the rectangle kept by a trim
  int16_t startRow = 50;                                                // first row to plot
  int16_t restoreAfterZap = 0;  // -1: back to the full row after a zap
  int16_t manualFit = 0;        // -1: continuum points by hand

  WindowPlacement mainWindow, about, help, clickMax;
  WindowPlacement loadDatafiles, loadMask, loadWLtable;
  WindowPlacement saveDatafiles, save1DText, save2DText, saveMask;
  SizedPlacement displayHeader{500, 500, 6000, 9000};
  SizedPlacement plotRow, plotColumn, plotContinuum;
  std::array<SizedPlacement, 5> plot1D;      // 1 and 2: the arcs; 3 and 4 are only kept
  std::array<SizedPlacement, 3> plotWLDiff;  // 1 and 2: the deviations of each arc
};

// The text of the settings file, 30 lines ended by CR LF.
std::string SettingsText(const Settings& settings);

// The settings that `text` holds. Labels are not checked. Throws RunTimeError 62 where a line or a field is
// missing, 321 where a field is no number or a line has more fields, and 6 where a number exceeds 16 bits.
Settings ParseSettings(const std::string& text);

// The settings in the file, or the defaults, all of them, where it is missing or malformed: `found` says
// which.
struct SettingsRead {
  Settings settings;
  bool found = false;
};
SettingsRead ReadSettings(const std::string& path);

// Replaces the settings file as a whole. Throws RunTimeError.
void WriteSettings(const std::string& path, const Settings& settings, const FileOperations& system = {});

// The message that is shown where the settings file could not be used.
inline constexpr const char* defaultsMessage = "Default values are being loaded.";

}  // namespace halmek
