#pragma once

#include "CliCommand.h"

// "thumbnail -s SIZE PROJECT.dst OUT.png": the project's first label as it would print, SIZE
// pixels on its longer side, transparent beyond the label's outline. File managers run it as
// the thumbnailer of projects, in a sandbox that holds only its arguments: it depends on
// nothing else (no display, no profile, no saved printer), writes nothing but the picture,
// shows no message and gives up on its own after CpuLimitMs of work or WallLimitMs of waiting.
class ThumbnailCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("thumbnail"); }
    QString Arguments() const override { return QStringLiteral("-s SIZE PROJECT.dst OUT.png"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    // Before the application object exists: the offscreen platform whatever the environment
    // asks for, a profile that can be neither read nor written, and the time limit running.
    static void Confine();

    // Work is measured in processor time, so that a busy machine doesn't fail a good project
    // (a file manager remembers a failure until the file changes); waiting has a clock of its own.
    static constexpr int CpuLimitMs = 2000;
    static constexpr int WallLimitMs = 5000;
    static constexpr int MaxSize = 2048;
};
