#include "JsonWriter.h"

#include <QLocale>
#include <cmath>

JsonWriter& JsonWriter::Key(const QString& key)
{
    BeforeValue();
    m_out << Quoted(key) << ": ";
    m_afterKey = true;
    return *this;
}

void JsonWriter::Value(const QString& text)
{
    BeforeValue();
    m_out << Quoted(text);
}

void JsonWriter::Value(double number)
{
    BeforeValue();
    m_out << Number(number);
}

void JsonWriter::Value(int number)
{
    BeforeValue();
    m_out << number;
}

void JsonWriter::Value(quint64 number)
{
    BeforeValue();
    m_out << number;
}

void JsonWriter::Value(bool flag)
{
    BeforeValue();
    m_out << (flag ? "true" : "false");
}

void JsonWriter::Null()
{
    BeforeValue();
    m_out << "null";
}

void JsonWriter::Open(char bracket)
{
    BeforeValue();
    m_out << bracket;
    m_levels.push_back({bracket == '{', 0});
}

void JsonWriter::Close(char bracket)
{
    const bool empty = m_levels.empty() || m_levels.back().count == 0;
    if (!m_levels.empty())
        m_levels.pop_back();
    if (!empty)
        Indent();
    m_out << bracket;
    if (m_levels.empty())
        m_out << '\n';
}

// Puts the comma and line break in front of a value, except right behind its key.
void JsonWriter::BeforeValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_levels.empty())
        return;
    if (m_levels.back().count++ > 0)
        m_out << ',';
    Indent();
}

void JsonWriter::Indent()
{
    m_out << '\n' << QString(int(m_levels.size()) * 2, QLatin1Char(' '));
}

QString JsonWriter::Quoted(const QString& text)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '"': quoted += QStringLiteral("\\\""); break;
        case '\\': quoted += QStringLiteral("\\\\"); break;
        case '\b': quoted += QStringLiteral("\\b"); break;
        case '\f': quoted += QStringLiteral("\\f"); break;
        case '\n': quoted += QStringLiteral("\\n"); break;
        case '\r': quoted += QStringLiteral("\\r"); break;
        case '\t': quoted += QStringLiteral("\\t"); break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7f)
                quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                quoted += c;
        }
    }
    return quoted + QLatin1Char('"');
}

QString JsonWriter::Number(double number)
{
    if (!std::isfinite(number))
        return QStringLiteral("null");
    // The shortest text that reads back as the same double.
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}
