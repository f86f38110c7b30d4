#include "platform/NumberText.h"

#include <QByteArray>
#include <climits>
#include <cstdlib>
#include <locale.h>

namespace NumberText {

int ToInt(const QString& text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
        ++i;
    bool negative = false;
    if (i < n && (text[i] == '+' || text[i] == '-'))
        negative = text[i++] == '-';
    long long value = 0;
    while (i < n && text[i] >= '0' && text[i] <= '9') {
        value = value * 10 + (text[i++].unicode() - '0');
        if (value > static_cast<long long>(INT_MAX) + 1)
            value = static_cast<long long>(INT_MAX) + 1;
    }
    if (negative)
        value = -value;
    if (value > INT_MAX)
        return INT_MAX;
    return static_cast<int>(value);
}

double ToDouble(const QString& text)
{
    // strtod itself, but in the "C" locale whatever locale the process runs in.
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    const QByteArray bytes = text.toLatin1();
    return strtod_l(bytes.constData(), nullptr, cLocale);
}

} // namespace NumberText
