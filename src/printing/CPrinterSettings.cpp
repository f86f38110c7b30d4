#include "printing/CPrinterSettings.h"

QString CPrinterSettings::SanitiseName(QString name)
{
    name.replace('\\', '_');
    name.replace('/', '_');
    return name;
}
