#include "platform/Folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString Folders::InstallDirectory()
{
    const QString exeDir = QCoreApplication::applicationDirPath();
    if (exeDir.isEmpty())
        return {};
    if (QFileInfo(exeDir + "/Templates").isDir())
        return exeDir + '/';
    const QString shared = QDir::cleanPath(exeDir + "/../share/tessarelle");
    if (QFileInfo(shared).isDir())
        return shared + '/';
    return exeDir + '/';
}

QString Folders::GetSpecialFolder(const QString& name, bool doubleSeparators)
{
    QString folder;
    if (name == QLatin1String("AppData")) {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    } else if (name == QLatin1String("Personal")) {
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        if (folder.isEmpty())
            folder = QDir::homePath();
    }
    if (folder.isEmpty())
        return {};
    folder += '/';
    if (doubleSeparators)
        folder.replace('/', "//");
    return folder;
}
