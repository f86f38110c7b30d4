#include "controls/CIntValidate.h"

QString CIntValidate::Validate(QString& text)
{
    if (text.isEmpty())
        text = QStringLiteral("0");
    if (text.indexOf(QLatin1Char('-'), 1) >= 0)
        return QStringLiteral("Error: invalid use of '-'");
    return {};
}
