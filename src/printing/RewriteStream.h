#pragma once

#include <QByteArray>
#include <QString>

// Print-to-file streams of one disc printer model are corrected before the user sends them
// on: the fixed command 1B 30 0C 13 18 4B 92 44 goes right behind each marker
// 1B 21 00 00 00 00 00 21, and every copy of it elsewhere is dropped. Only as much of the stream
// is parsed as it takes to step over raw data, so picture bytes are never taken for commands.

// The device name whose streams are rewritten; any other is left alone.
inline const QString DiscPrinterDeviceName = QStringLiteral("Qn217 CD/DVD Printer");

// The rewritten stream. A command or a raw block cut off by the stream's end is copied as far
// as it goes, and the rewrite stops there.
QByteArray RewriteStreamBytes(const QByteArray& stream);

// Rewrites the file in place when deviceName is the disc printer's. The file is not truncated:
// a shorter result leaves the old tail behind it. Each failure shows its message and answers
// false; the file is then as it was, or as far as writing got.
bool RewriteStream(const QString& path, const QString& deviceName);
