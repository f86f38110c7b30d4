#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

struct CliRun {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
    // Standard output as JSON; output that is not JSON fails the test.
    QJsonDocument json() const
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(out, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << out.constData();
        return document;
    }
};

// Runs a program beside this test (the tool unless named) as a script would: without a display,
// with nothing on its input, and with the given variables added to its environment.
inline CliRun runCli(const QStringList& args, const QString& program = "tessarelle-cli",
                     const QProcessEnvironment& extra = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(extra);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + '/' + program, args);
    CliRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << program.toStdString() << " did not finish";
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every element of a JSON array as a string.
inline QStringList strings(const QJsonValue& value)
{
    return QVariant(value.toArray().toVariantList()).toStringList();
}
