#pragma once

#include "CliCommand.h"

// "print PROJECT.dst --printer NAME [--discs N] [--to-file OUT.pdf] [--yes]": a series of
// discs in one job, each showing its own data field values, with the counters saved back into
// the project once at the end. A line per disc on standard error, a JSON summary on standard
// output. SIGINT and SIGTERM stop the series after the disc being drawn and cancel the job;
// the counters of the discs drawn are still saved, and the exit code is 128 + the signal.
class PrintCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("print"); }
    QString Arguments() const override
    {
        return QStringLiteral("PROJECT.dst --printer NAME [--discs N] [--to-file OUT.pdf] [--yes]");
    }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    // The job's document is held in memory until it is sent: a photo label takes about a
    // megabyte a disc.
    static constexpr int MaxDiscs = 1000;
};
