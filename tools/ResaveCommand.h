#pragma once

#include "CliCommand.h"

// "resave IN.dst OUT.dst [--yes]": opens a project of any format and saves it in the current
// one, as the program's Open and Save As would.
class ResaveCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("resave"); }
    QString Arguments() const override { return QStringLiteral("IN.dst OUT.dst [--yes]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
