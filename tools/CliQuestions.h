#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

// What the program would show in message boxes while a command runs: messages go to standard
// error, and questions are answered No, or Yes when the command was given --yes.
class CliQuestions {
public:
    // Takes --yes out of the arguments and installs the answers for the rest of the run.
    static void Install(QStringList& args, QTextStream& err);
    // The last message shown, empty if none.
    static QString LastMessage();
};
