#include "PrivateCups.h"

#include "platform/Spooler.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

namespace {

class SpoolerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
        cups.UseAgain();
    }

    QString option(const SpoolerPrinter& printer, const QString& name)
    {
        for (const SpoolerOption& entry : printer.jobOptions)
            if (entry.first == name)
                return entry.second;
        return QStringLiteral("<none>");
    }

    // Waits for a job to reach one of the final states.
    Spooler::JobState finalState(const QString& queue, int job)
    {
        const QDeadlineTimer deadline(30000);
        Spooler::JobState state = Spooler::Gone;
        while (!deadline.hasExpired()) {
            if (!Spooler::GetJobState(queue, job, &state))
                return Spooler::Gone;
            if (state >= Spooler::Canceled || state == Spooler::Gone)
                return state;
            QThread::msleep(50);
        }
        return state;
    }

    PrivateCups& cups = PrivateCups::Instance();
};

TEST_F(SpoolerTest, QueuesTheirAttributesAndTheDefault)
{
    QList<SpoolerPrinter> printers;
    ASSERT_TRUE(Spooler::Destinations(&printers));
    QStringList names;
    for (const SpoolerPrinter& printer : printers) {
        names << printer.name;
        EXPECT_EQ(printer.isDefault, printer.name == QLatin1String("Raw")) << printer.name.toStdString();
    }
    names.sort();
    EXPECT_EQ(names, QStringList({"PDF", "Raw"}));

    QString name;
    ASSERT_TRUE(Spooler::DefaultDestination(&name));
    EXPECT_EQ(name, "Raw");

    // A queue is found by its name, whatever the case, or by its description.
    QString queue;
    EXPECT_TRUE(Spooler::FindPrinter("pdf", &queue));
    EXPECT_EQ(queue, "PDF");
    EXPECT_TRUE(Spooler::FindPrinter("PDF printer", &queue));
    EXPECT_EQ(queue, "PDF");
    int error = 0;
    EXPECT_FALSE(Spooler::FindPrinter("Nowhere", &queue, &error));
    EXPECT_EQ(error, Spooler::ErrorNotFound);
    EXPECT_FALSE(Spooler::FindPrinter(QString(), &queue));

    SpoolerPrinter pdf;
    ASSERT_TRUE(Spooler::GetPrinter("PDF", &pdf));
    EXPECT_EQ(pdf.name, "PDF");
    EXPECT_EQ(pdf.info, "PDF printer");
    EXPECT_EQ(pdf.makeAndModel, "Generic CUPS-PDF Printer (w/ options)");
    EXPECT_EQ(pdf.deviceUri, "cups-pdf:/");
    EXPECT_EQ(pdf.state, 3);
    EXPECT_TRUE(pdf.acceptingJobs);
    // Job defaults and the driver's own options, sorted by name.
    EXPECT_EQ(option(pdf, "copies"), "1");
    EXPECT_EQ(option(pdf, "Resolution"), "300dpi");
    EXPECT_EQ(option(pdf, "PageSize"), "A4");
    EXPECT_TRUE(std::is_sorted(pdf.jobOptions.begin(), pdf.jobOptions.end(),
                               [](const SpoolerOption& a, const SpoolerOption& b) { return a.first < b.first; }));

    SpoolerPrinter raw;
    ASSERT_TRUE(Spooler::GetPrinter("Raw", &raw));
    EXPECT_EQ(raw.deviceUri, QStringLiteral("socket://127.0.0.1:%1").arg(cups.RawPrinter().Port()));
    EXPECT_EQ(raw.makeAndModel, "Local Raw Printer");
    EXPECT_EQ(option(raw, "copies"), "1");
    EXPECT_EQ(option(raw, "Resolution"), "<none>");
    EXPECT_FALSE(Spooler::GetPrinter("Nowhere", &raw, &error));
    EXPECT_EQ(error, Spooler::ErrorNotFound);
}

TEST_F(SpoolerTest, StoppedAndRejectingQueues)
{
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Stopped", "-v", "socket://127.0.0.1:9"}));
    ASSERT_TRUE(cups.Run("cupsreject", {"Stopped"}));
    ASSERT_TRUE(cups.Run("cupsdisable", {"Stopped"}));
    SpoolerPrinter printer;
    ASSERT_TRUE(Spooler::GetPrinter("Stopped", &printer));
    EXPECT_EQ(printer.state, 5);
    EXPECT_FALSE(printer.acceptingJobs);
    int error = 0;
    EXPECT_EQ(Spooler::CreateJob("Stopped", "refused", {}, &error), 0);
    EXPECT_NE(error, 0);
    EXPECT_FALSE(Spooler::ErrorText().isEmpty());
    EXPECT_TRUE(cups.Run("lpadmin", {"-x", "Stopped"}));
}

TEST_F(SpoolerTest, JobsReachTheSocketPrinterOrAreCancelled)
{
    cups.RawPrinter().Clear();
    QByteArray document;
    for (int i = 0; i < 200000; ++i)
        document.append(char(i * 7));
    const int job = Spooler::CreateJob("Raw", "Tessarelle Label ", {});
    ASSERT_GT(job, 0) << Spooler::ErrorText().toStdString();
    ASSERT_TRUE(Spooler::SendDocument("Raw", job, "Tessarelle Label ", document)) << Spooler::ErrorText().toStdString();
    ASSERT_TRUE(cups.RawPrinter().WaitForJobs(1, 30000)) << cups.ErrorLog().toStdString();
    EXPECT_EQ(cups.RawPrinter().Jobs().value(0), document);
    EXPECT_EQ(finalState("Raw", job), Spooler::Completed);

    // A held job is cancelled before it prints.
    const int held = Spooler::CreateJob("Raw", "held", {{"job-hold-until", "indefinite"}});
    ASSERT_GT(held, 0);
    Spooler::JobState state = Spooler::Gone;
    ASSERT_TRUE(Spooler::GetJobState("Raw", held, &state));
    EXPECT_EQ(state, Spooler::Held);
    EXPECT_TRUE(Spooler::CancelJob("Raw", held));
    EXPECT_EQ(finalState("Raw", held), Spooler::Canceled);
    EXPECT_EQ(cups.RawPrinter().Jobs().size(), 1);

    // A queue's own defaults, driver options and all, are good options for a job on it.
    SpoolerPrinter pdf;
    ASSERT_TRUE(Spooler::GetPrinter("PDF", &pdf));
    QList<SpoolerOption> options = pdf.jobOptions;
    for (SpoolerOption& entry : options)
        if (entry.first == QLatin1String("job-hold-until"))
            entry.second = QStringLiteral("indefinite");
    const int withOptions = Spooler::CreateJob("PDF", "options", options);
    ASSERT_GT(withOptions, 0) << Spooler::ErrorText().toStdString();
    ASSERT_TRUE(Spooler::GetJobState("PDF", withOptions, &state));
    EXPECT_EQ(state, Spooler::Held);
    EXPECT_TRUE(Spooler::CancelJob("PDF", withOptions));

    ASSERT_TRUE(Spooler::GetJobState("Raw", 999999, &state));
    EXPECT_EQ(state, Spooler::Gone);
}

TEST_F(SpoolerTest, ASpoolerThatIsGoneFailsAtOnce)
{
    Spooler::UseServer(QStringLiteral("127.0.0.1:%1").arg(1));
    QElapsedTimer timer;
    timer.start();
    QList<SpoolerPrinter> printers;
    int error = 0;
    EXPECT_FALSE(Spooler::Destinations(&printers, &error));
    EXPECT_EQ(error, Spooler::ErrorUnavailable);
    QString name;
    EXPECT_FALSE(Spooler::DefaultDestination(&name, &error));
    EXPECT_EQ(error, Spooler::ErrorUnavailable);
    EXPECT_EQ(Spooler::CreateJob("Raw", "none", {}, &error), 0);
    EXPECT_EQ(error, Spooler::ErrorUnavailable);
    Spooler::JobState state;
    EXPECT_FALSE(Spooler::GetJobState("Raw", 1, &state));
    EXPECT_LT(timer.elapsed(), 10000);
    cups.UseAgain();
}

} // namespace
