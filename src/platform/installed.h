// What is installed beside the programs: bin/halmek has its data in share/.
#pragma once

#include <QIcon>
#include <QString>
#include <string>

namespace halmek {

// The folder of the wavelength tables and of the sample night, and the first page of the manual: full names,
// empty where they are not there.
std::string InstalledFolder();
QString ManualPage();

// The icon of all windows; none where it is not there.
QIcon ProgramIcon();

}  // namespace halmek
