#include "printing/DEVNAMES.h"

#include <QtEndian>

namespace {

void appendWord(QByteArray& record, quint16 value)
{
    record.append(char(value & 0xFF));
    record.append(char(value >> 8));
}

void appendName(QByteArray& record, const QString& name)
{
    for (const QChar c : name)
        appendWord(record, c.unicode());
    appendWord(record, 0);
}

} // namespace

QByteArray DEVNAMES::Build(const QString& driver, const QString& device, const QString& output, quint16 wDefault)
{
    const quint16 wDriverOffset = 4;
    const quint16 wDeviceOffset = quint16(wDriverOffset + driver.size() + 1);
    const quint16 wOutputOffset = quint16(wDeviceOffset + device.size() + 1);
    QByteArray record;
    appendWord(record, wDriverOffset);
    appendWord(record, wDeviceOffset);
    appendWord(record, wOutputOffset);
    appendWord(record, wDefault);
    appendName(record, driver);
    appendName(record, device);
    appendName(record, output);
    return record;
}

QByteArray DEVNAMES::For(const SpoolerPrinter& printer, quint16 wDefault)
{
    return Build(printer.makeAndModel, printer.info.isEmpty() ? printer.name : printer.info, printer.deviceUri,
                 wDefault);
}

void DEVNAMES::SetDefault(QByteArray& record, quint16 wDefault)
{
    if (record.size() >= 8)
        qToLittleEndian<quint16>(wDefault, record.data() + 6);
}

quint16 DEVNAMES::Word(const QByteArray& record, int index)
{
    if (record.size() < 2 * (index + 1))
        return 0;
    return qFromLittleEndian<quint16>(record.constData() + 2 * index);
}

QString DEVNAMES::NameAt(const QByteArray& record, int offsetIndex)
{
    if (record.size() < 8)
        return {};
    QString name;
    for (qsizetype at = 2 * qsizetype(Word(record, offsetIndex)); at + 1 < record.size(); at += 2) {
        const quint16 c = qFromLittleEndian<quint16>(record.constData() + at);
        if (c == 0)
            break;
        name.append(QChar(c));
    }
    return name;
}
