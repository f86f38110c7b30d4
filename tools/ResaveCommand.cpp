#include "ResaveCommand.h"

#include "CliQuestions.h"
#include "document/CDrawDoc.h"

#include <QFileInfo>

QString ResaveCommand::Summary() const
{
    return QStringLiteral(
        "Opens a project of format 1.5, 1.6 or 1.7 and saves it as 1.7 under the second name\n"
        "(which may be the first). Nothing is written when the project fails to load. Exit code\n"
        "1 when loading or saving fails. Questions are answered No, or Yes with --yes.");
}

int ResaveCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QStringList rest = args;
    CliQuestions::Install(rest, err);
    if (rest.size() != 2 || rest[0].isEmpty() || rest[1].isEmpty() || rest[0].startsWith('-')
        || rest[1].startsWith('-')) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    // Opening changes the current folder to the project's; the target is taken before that.
    const QString target = QFileInfo(rest[1]).absoluteFilePath();
    CDrawDoc doc;
    if (!doc.OnOpenDocument(rest[0]))
        return ExitFailed;
    if (!doc.OnSaveDocument(target))
        return ExitFailed;
    out << target << '\n';
    return ExitOk;
}
