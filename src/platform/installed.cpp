// What is installed.
#include "platform/installed.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "platform/text.h"

namespace halmek {
namespace {

QString Shared(const QString& name) {
  return QFileInfo(QCoreApplication::applicationDirPath() + "/../share/" + name).canonicalFilePath();
}

}  // namespace

std::string InstalledFolder() { return Typed(Shared("halmek")); }

QString ManualPage() { return Shared("doc/halmek/index.html"); }

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256})
    if (const QString file = Shared(QString("icons/hicolor/%1x%1/apps/halmek.png").arg(size));
        !file.isEmpty())
      icon.addFile(file);
  return icon;
}

}  // namespace halmek
