#include "platform/Profile.h"

#include <QSettings>
#include <QStandardPaths>

QString Profile::FilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/Tessarelle/Tessarelle.conf";
}

int Profile::GetInt(const QString& section, const QString& key, int defaultValue)
{
    QSettings settings(FilePath(), QSettings::IniFormat);
    settings.beginGroup(section);
    bool ok = false;
    const int value = settings.value(key).toString().trimmed().toInt(&ok);
    return ok ? value : defaultValue;
}

void Profile::WriteInt(const QString& section, const QString& key, int value)
{
    QSettings settings(FilePath(), QSettings::IniFormat);
    settings.beginGroup(section);
    settings.setValue(key, value);
}

QString Profile::GetString(const QString& section, const QString& key, const QString& defaultValue)
{
    QSettings settings(FilePath(), QSettings::IniFormat);
    settings.beginGroup(section);
    const QVariant value = settings.value(key);
    return value.isValid() ? value.toString() : defaultValue;
}

void Profile::WriteString(const QString& section, const QString& key, const QString& value)
{
    QSettings settings(FilePath(), QSettings::IniFormat);
    settings.beginGroup(section);
    settings.setValue(key, value);
}
