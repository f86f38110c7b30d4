#pragma once

#include "CliCommand.h"

// "rewrite FILE DEVICE": applies the disc printer's stream rewrite to a file that was printed
// to a file, as the print job does right after such a job, for a user who sends the file on
// later.
class RewriteCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("rewrite"); }
    QString Arguments() const override { return QStringLiteral("FILE \"DEVICE NAME\""); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
