#include "RewriteCommand.h"

#include "printing/RewriteStream.h"

#include <QFileInfo>

QString RewriteCommand::Summary() const
{
    return QStringLiteral(
        "Rewrites a print-to-file stream in place as the print job does: for the device\n"
        "\"%1\" the fixed command goes right behind each marker and its other\n"
        "copies are dropped; any other device name leaves the file as it is. The file is not\n"
        "truncated. Exit code 1 when the file can't be read or written.")
        .arg(DiscPrinterDeviceName);
}

int RewriteCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.size() != 2 || args[0].isEmpty()) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    const QString& path = args[0];
    const QString& device = args[1];
    const qint64 before = QFileInfo(path).size();
    // The routine's own messages go to standard error.
    if (!RewriteStream(path, device))
        return ExitFailed;
    if (device != DiscPrinterDeviceName) {
        out << path << ": left as it is, \"" << device << "\" is not the disc printer\n";
        return ExitOk;
    }
    out << path << ": rewritten, " << before << " bytes, " << QFileInfo(path).size() << " bytes now\n";
    return ExitOk;
}
