#include "printing/DEVMODE.h"

#include <QRegularExpression>

namespace {

const QString CopiesName = QStringLiteral("copies");

QString value(const QList<SpoolerOption>& options, const QString& name)
{
    for (const SpoolerOption& option : options)
        if (option.first == name)
            return option.second;
    return {};
}

int dotsPerInch(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*(\\d+)(x\\d+)?\\s*dpi"));
    const QRegularExpressionMatch match = pattern.match(text);
    const int dpi = match.hasMatch() ? match.captured(1).toInt() : 0;
    return dpi > 0 ? dpi : 0;
}

} // namespace

QByteArray DEVMODE::Build(const QList<SpoolerOption>& options)
{
    QByteArray record;
    for (const SpoolerOption& option : options)
        record += option.first.toUtf8() + '=' + option.second.toUtf8() + '\n';
    return record;
}

QList<SpoolerOption> DEVMODE::Options(const QByteArray& record)
{
    QList<SpoolerOption> options;
    for (const QByteArray& line : record.split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0)
            options.append({QString::fromUtf8(line.left(equals)), QString::fromUtf8(line.mid(equals + 1))});
    }
    return options;
}

bool DEVMODE::HasCopies(const QByteArray& record)
{
    for (const SpoolerOption& option : Options(record))
        if (option.first == CopiesName)
            return true;
    return false;
}

int DEVMODE::Copies(const QByteArray& record)
{
    bool ok = false;
    const int copies = value(Options(record), CopiesName).toInt(&ok);
    return ok ? copies : 1;
}

void DEVMODE::SetCopies(QByteArray& record, int copies)
{
    SetOption(record, CopiesName, QString::number(copies));
}

QString DEVMODE::Option(const QByteArray& record, const QString& name)
{
    return value(Options(record), name);
}

void DEVMODE::SetOption(QByteArray& record, const QString& name, const QString& value)
{
    QList<SpoolerOption> options = Options(record);
    bool found = false;
    for (SpoolerOption& option : options) {
        if (option.first == name) {
            option.second = value;
            found = true;
        }
    }
    if (!found)
        options.append({name, value});
    record = Build(options);
}

int DEVMODE::Resolution(const QByteArray& record)
{
    const QList<SpoolerOption> options = Options(record);
    if (const int dpi = dotsPerInch(value(options, QStringLiteral("printer-resolution"))))
        return dpi;
    if (const int dpi = dotsPerInch(value(options, QStringLiteral("Resolution"))))
        return dpi;
    return 300;
}
