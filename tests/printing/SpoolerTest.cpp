#include "PrintSupport.h"

#include <QElapsedTimer>

namespace {

using SpoolerTest = PrintingTest;

QString option(const SpoolerPrinter& printer, const QString& name)
{
    for (const SpoolerOption& entry : printer.jobOptions)
        if (entry.first == name)
            return entry.second;
    return QStringLiteral("<none>");
}

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
    for (const char* wanted : {"pdf", "PDF printer"}) {
        EXPECT_TRUE(Spooler::FindPrinter(wanted, &name));
        EXPECT_EQ(name, "PDF");
    }
    int error = 0;
    EXPECT_FALSE(Spooler::FindPrinter("Nowhere", &name, &error));
    EXPECT_EQ(error, Spooler::ErrorNotFound);
    EXPECT_FALSE(Spooler::FindPrinter(QString(), &name));

    // Job defaults and the driver's own options, sorted by name; the rest of what is read shows
    // in the printer records (see PrinterSettingsTest).
    SpoolerPrinter pdf, raw;
    ASSERT_TRUE(Spooler::GetPrinter("PDF", &pdf));
    EXPECT_EQ(QStringList({option(pdf, "copies"), option(pdf, "Resolution"), option(pdf, "PageSize")}),
              QStringList({"1", "300dpi", "A4"}));
    EXPECT_TRUE(std::is_sorted(pdf.jobOptions.begin(), pdf.jobOptions.end(),
                               [](const SpoolerOption& a, const SpoolerOption& b) { return a.first < b.first; }));
    ASSERT_TRUE(Spooler::GetPrinter("Raw", &raw));
    EXPECT_EQ(option(raw, "Resolution"), "<none>");
    EXPECT_FALSE(Spooler::GetPrinter("Nowhere", &raw, &error));
    EXPECT_EQ(error, Spooler::ErrorNotFound);
}

TEST_F(SpoolerTest, JobsReachTheSocketPrinterOrAreCancelled)
{
    QByteArray document;
    for (int i = 0; i < 200000; ++i)
        document.append(char(i * 7));
    const int job = Spooler::CreateJob("Raw", "Tessarelle Label ", {});
    ASSERT_GT(job, 0) << Spooler::ErrorText().toStdString();
    ASSERT_TRUE(Spooler::SendDocument("Raw", job, "Tessarelle Label ", document)) << Spooler::ErrorText().toStdString();
    EXPECT_EQ(received(1), document);
    EXPECT_EQ(finalState("Raw", job), Spooler::Completed);

    // A queue's own defaults, driver options and all, are good options for a job on it; a
    // held job is cancelled before it prints.
    SpoolerPrinter pdf;
    ASSERT_TRUE(Spooler::GetPrinter("PDF", &pdf));
    QList<SpoolerOption> options = pdf.jobOptions;
    for (SpoolerOption& entry : options)
        if (entry.first == QLatin1String("job-hold-until"))
            entry.second = QStringLiteral("indefinite");
    for (const auto& [queue, jobOptions] : {std::pair{QString("Raw"), QList<SpoolerOption>{{"job-hold-until", "indefinite"}}},
                                            std::pair{QString("PDF"), options}}) {
        const int held = Spooler::CreateJob(queue, "held", jobOptions);
        ASSERT_GT(held, 0) << Spooler::ErrorText().toStdString();
        Spooler::JobState state = Spooler::Gone;
        ASSERT_TRUE(Spooler::GetJobState(queue, held, &state));
        EXPECT_EQ(state, Spooler::Held);
        EXPECT_TRUE(Spooler::CancelJob(queue, held));
        EXPECT_EQ(finalState(queue, held), Spooler::Canceled);
    }
    EXPECT_EQ(cups.RawPrinter().Jobs().size(), 1);
    Spooler::JobState state = Spooler::Held;
    EXPECT_TRUE(Spooler::GetJobState("Raw", 999999, &state));
    EXPECT_EQ(state, Spooler::Gone);

    // A spooler that is gone fails at once.
    Spooler::UseServer("127.0.0.1:1");
    QElapsedTimer timer;
    timer.start();
    QList<SpoolerPrinter> printers;
    QString name;
    int errors[3] = {};
    EXPECT_FALSE(Spooler::Destinations(&printers, &errors[0]));
    EXPECT_FALSE(Spooler::DefaultDestination(&name, &errors[1]));
    EXPECT_EQ(Spooler::CreateJob("Raw", "none", {}, &errors[2]), 0);
    for (int error : errors)
        EXPECT_EQ(error, Spooler::ErrorUnavailable);
    EXPECT_FALSE(Spooler::GetJobState("Raw", 1, &state));
    EXPECT_LT(timer.elapsed(), 10000);
}

} // namespace
