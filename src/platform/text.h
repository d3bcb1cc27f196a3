// Names and texts of the library, which are bytes, and those of the windows.
#pragma once

#include <QFile>
#include <QString>
#include <string>
#include <string_view>

#include "plot/text_encoding.h"

namespace halmek {

// As a window shows it.
inline QString Shown(std::string_view text) { return QString::fromStdString(Utf8Of(text)); }

// What was typed, as the bytes of a file name or a number.
inline std::string Typed(const QString& text) { return QFile::encodeName(text).toStdString(); }

}  // namespace halmek
