#pragma once

#include "PrivateCups.h"
#include "TestSupport.h"
#include "tools/CliRun.h"

#include "platform/Spooler.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QStringList>

class CDrawDoc;

// What a printed PDF holds, read with poppler's tools: its pages (-1: no PDF) and the first
// page's size in points, and the first page rendered at a resolution.
namespace PrintOutput {
int PageCount(const QByteArray& pdf, QSizeF* pageSize = nullptr);
QImage Render(const QByteArray& pdf, int dpi);
// The first column of the row that is reddish; -1 when there is none.
int FirstRedColumn(const QImage& image, int row);
} // namespace PrintOutput

// Waits (at most 30 s) for the job to be cancelled, aborted or completed; Gone when it vanished.
Spooler::JobState finalState(const QString& queue, int job);
// The application's printer now, by its device name ("" when there is none).
QString appPrinter();
// A red inch square right of the disc's centre, below its middle line.
void addRedSquare(CDrawDoc& doc);
// A blue picture of 300 pixels square written into the folder; its path.
QString writeBluePicture(const TestFolder& folder);

// Keeps the messages shown while it lives instead of showing them.
class CaughtMessages : public QStringList {
public:
    CaughtMessages();
    ~CaughtMessages();
};

// Every printing test runs on the private scheduler with no saved printer, an empty profile,
// the application's printer not yet chosen, and the messages kept instead of shown; a test
// that expects messages clears them once checked, any other fails it.
class PrintingTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // The document the raw printer received as the count-th job (from 1).
    QByteArray received(int count);

    PrivateCups& cups = PrivateCups::Instance();
    TestFolder folder;
    CaughtMessages messages;
};
