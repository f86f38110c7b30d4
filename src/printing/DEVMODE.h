#pragma once

#include "platform/Spooler.h"

#include <QByteArray>

// The record that sets a printer up: the queue's job options as "name=value" lines in UTF-8,
// each ending in a line feed. The line "copies" plays the copies field; a record without it
// has no copies to offer.
class DEVMODE {
public:
    static QByteArray Build(const QList<SpoolerOption>& options);
    // The record of a queue: its default job options.
    static QByteArray For(const SpoolerPrinter& printer) { return Build(printer.jobOptions); }
    static QList<SpoolerOption> Options(const QByteArray& record);

    // One option's value; empty when the record doesn't hold it.
    static QString Option(const QByteArray& record, const QString& name);
    // Sets an option, in its place when the record holds it, else at the end.
    static void SetOption(QByteArray& record, const QString& name, const QString& value);

    // Whether the record carries copies, their number (1 without), and a new number.
    static bool HasCopies(const QByteArray& record);
    static int Copies(const QByteArray& record);
    static void SetCopies(QByteArray& record, int copies);

    // Dots per inch of the queue's default resolution ("printer-resolution", else a driver's
    // "Resolution", such as "600dpi" or "600x300dpi" for 600), 300 when it names none.
    static int Resolution(const QByteArray& record);
};
