#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
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

// Runs the tool beside this test, without a display and with nothing on its input.
inline CliRun runCli(const QStringList& args)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(name));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + "/tessarelle-cli", args);
    CliRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "tessarelle-cli did not finish";
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

// Every element of a JSON array as a string.
inline QStringList strings(const QJsonValue& value)
{
    return QVariant(value.toArray().toVariantList()).toStringList();
}
