#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

// One command of tessarelle-cli. Exit codes: 0 success, 1 the work failed, 2 bad arguments.
class CliCommand {
public:
    virtual ~CliCommand() = default;

    virtual QString Name() const = 0;
    // The arguments after the name, as the usage text shows them.
    virtual QString Arguments() const = 0;
    virtual QString Summary() const = 0;

    // Runs with the arguments that follow the command's name.
    virtual int Run(const QStringList& args, QTextStream& out, QTextStream& err) = 0;

    static constexpr int ExitOk = 0;
    static constexpr int ExitFailed = 1;
    static constexpr int ExitUsage = 2;
};
