#include "platform/NumberText.h"

#include <QByteArray>
#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>

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
    // from_chars never looks at the locale; it takes no leading blanks or '+', so skip them here.
    const QByteArray bytes = text.toLatin1();
    const char* first = bytes.constData();
    const char* last = first + bytes.size();
    while (first < last && (*first == ' ' || (*first >= '\t' && *first <= '\r')))
        ++first;
    if (first < last && *first == '+' && !(first + 1 < last && (first[1] == '-' || first[1] == '+')))
        ++first;
    double value = 0.0;
    const auto result = std::from_chars(first, last, value, std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        // Like strtod: overflow gives a huge value, underflow gives zero, each with its sign.
        const bool negative = *first == '-';
        const char* exponent = std::find_if(first, result.ptr, [](char c) { return c == 'e' || c == 'E'; });
        const bool underflow = exponent != result.ptr && exponent + 1 < result.ptr && exponent[1] == '-';
        const double magnitude = underflow ? 0.0 : HUGE_VAL;
        return negative ? -magnitude : magnitude;
    }
    return result.ec == std::errc() ? value : 0.0;
}

} // namespace NumberText
