#include "controls/CRealValidate.h"

QString CRealValidate::Validate(QString& text)
{
    if (text.isEmpty())
        text = QStringLiteral("0");
    if (text.count(QLatin1Char('.')) >= 2)
        return QStringLiteral("Error: too many decimal points");
    if (text.indexOf(QLatin1Char('-'), 1) >= 0)
        return QStringLiteral("Error: invalid use of '-'");
    return {};
}
