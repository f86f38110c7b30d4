#pragma once

#include "CliCommand.h"

// "datafile FILE [--delimiter line|comma|semicolon]": shows how the data file reader sees a
// file (its encoding and lines) and the records a Data File field picks from it by index.
class DatafileCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("datafile"); }
    QString Arguments() const override { return QStringLiteral("FILE [--delimiter line|comma|semicolon]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
