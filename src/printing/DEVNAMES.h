#pragma once

#include "platform/Spooler.h"

#include <QByteArray>
#include <QString>

// The record that names a printer: four 16-bit words (the offsets of the driver, device and
// port names, counted in 16-bit units from the record's start, and the default flag), then the
// three names in UTF-16 with their terminating zeros. All numbers are little-endian.
// On CUPS the driver is the queue's make and model, the device its description (or its name),
// the port its device URI.
class DEVNAMES {
public:
    static constexpr quint16 DN_DEFAULTPRN = 0x0001;

    static QByteArray Build(const QString& driver, const QString& device, const QString& output,
                            quint16 wDefault = 0);
    // The record of a queue: make and model, description (its name when it has none), URI.
    static QByteArray For(const SpoolerPrinter& printer, quint16 wDefault = 0);

    // The names at the three offsets; a record too short for one gives an empty name.
    static QString Driver(const QByteArray& record) { return NameAt(record, 0); }
    static QString Device(const QByteArray& record) { return NameAt(record, 1); }
    static QString Output(const QByteArray& record) { return NameAt(record, 2); }

    static quint16 Default(const QByteArray& record) { return Word(record, 3); }
    static void SetDefault(QByteArray& record, quint16 wDefault);

private:
    static quint16 Word(const QByteArray& record, int index);
    static QString NameAt(const QByteArray& record, int offsetIndex);
};
