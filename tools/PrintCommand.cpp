#include "PrintCommand.h"

#include "CliQuestions.h"
#include "JsonWriter.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/FontCollection.h"
#include "printing/CSeriesJob.h"
#include "templates/CTemplateFile.h"

#include <QFileInfo>

#include <atomic>
#include <csignal>
#include <signal.h>

namespace {

// The signal that asked the series to stop, 0 while none has. A lock-free atomic is all a
// handler may touch.
std::atomic<int> g_stopSignal{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onStopSignal(int signal)
{
    g_stopSignal.store(signal);
}

// Later signals are taken the same way, so that pressing Ctrl+C again can't end the run
// before the counters of what was drawn are saved. Blocking calls restart after a signal: the
// series looks at the flag between discs.
void catchStopSignals()
{
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

// The counters as a project keeps them, under the names the dump command gives them.
void writeCounters(JsonWriter& json)
{
    json.Key(QStringLiteral("fields")).BeginArray();
    for (const DATAFIELD& field : g_dataFields) {
        const char* name = field.Type == DATAFIELD::Disc           ? "DiscNumber"
                           : field.Type == DATAFIELD::SerialNumber ? "Serial"
                           : field.Type == DATAFIELD::DataFile     ? "FileIndex"
                                                                   : nullptr;
        if (!name)
            continue;
        json.BeginObject();
        json.Member(QStringLiteral("Tag"), field.Tag);
        json.Member(QStringLiteral("Type"), field.Type);
        const quint64 value = field.Type == DATAFIELD::Disc           ? field.DiscNumber
                              : field.Type == DATAFIELD::SerialNumber ? field.Serial
                                                                      : field.FileIndex;
        json.Key(QString::fromLatin1(name)).Value(value);
        json.EndObject();
    }
    json.EndArray();
}

} // namespace

QString PrintCommand::Summary() const
{
    return QStringLiteral(
        "Prints N discs (1 unless given, at most 1000) of a project in one job, one page each, on\n"
        "the named printer (a queue's name or description) with the printer's saved set-up and,\n"
        "for a disc template, on the queue's disc tray; or writes that job as a PDF with --to-file\n"
        "and sends nothing. Each disc is laid out anew, so each shows its\n"
        "own counter, serial number and record; the counters are saved into the project once,\n"
        "when at least one disc was drawn. \"disc I of N\" goes to standard error after each\n"
        "disc; a JSON summary (job, pages, the counters' final values) to standard output once a\n"
        "job was tried. Ctrl+C or SIGTERM stops after the disc being drawn and cancels the job.\n"
        "Exit code 1 when the project can't be read, the printer isn't found or the job fails,\n"
        "128 + the signal when stopped by one.");
}

int PrintCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QStringList rest = args;
    CliQuestions::Install(rest, err);
    QString project;
    QString printer;
    QString outputFile;
    int discs = 1;
    bool usage = false;
    for (qsizetype i = 0; i < rest.size() && !usage; ++i) {
        const QString& arg = rest[i];
        const bool hasValue = i + 1 < rest.size();
        if (arg == QLatin1String("--printer") && hasValue) {
            printer = rest[++i];
        } else if (arg == QLatin1String("--discs") && hasValue) {
            bool ok = false;
            discs = rest[++i].toInt(&ok);
            usage = !ok || discs < 1 || discs > MaxDiscs;
        } else if (arg == QLatin1String("--to-file") && hasValue) {
            outputFile = rest[++i];
            usage = outputFile.isEmpty();
        } else if (project.isEmpty() && !arg.isEmpty() && !arg.startsWith('-')) {
            project = arg;
        } else {
            usage = true;
        }
    }
    if (usage || project.isEmpty() || printer.isEmpty()) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    // Opening the project makes its folder the current one.
    project = QFileInfo(project).absoluteFilePath();
    if (!outputFile.isEmpty())
        outputFile = QFileInfo(outputFile).absoluteFilePath();

    // The fonts the program ships print as they do from the window.
    FontCollection fonts;
    fonts.AddFontFiles(Folders::InstallDirectory() + QStringLiteral("fonts/"));
    const std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    // A file of another kind opens as an empty document once the question whether to read it
    // anyway is answered: printing that, and saving it over the file, would help nobody.
    if (!doc.OnOpenDocument(project) || !doc.m_strFileId.startsWith(QLatin1String("Tessarelle"))) {
        err << "tessarelle-cli: " << project << " can't be read as a project; nothing was printed\n";
        return ExitFailed;
    }
    CSeriesJob series(doc);
    if (!series.SelectPrinter(printer)) {
        err << "tessarelle-cli: no printer " << printer << "; nothing was printed\n";
        return ExitFailed;
    }

    series.m_onDisc = [&err](int disc, int total) {
        err << "disc " << disc << " of " << total << '\n';
        err.flush();
    };
    series.m_stopRequested = [] { return g_stopSignal.load() != 0; };
    catchStopSignals();
    const CSeriesJob::Outcome outcome = series.Print(discs, outputFile);

    // Whatever ended the series, the counters of the discs drawn are kept, so that no serial
    // number or record is ever printed twice.
    bool saved = false;
    if (series.Pages() > 0) {
        saved = doc.OnSaveDocument(project);
        if (!saved)
            err << "tessarelle-cli: the counters could not be saved into " << project << '\n';
    }

    const int signal = g_stopSignal.load();
    if (outcome == CSeriesJob::Stopped)
        err << "tessarelle-cli: stopped after " << series.Pages() << " of " << discs
            << " discs; the job was cancelled\n";
    else if (outcome == CSeriesJob::Failed)
        err << "tessarelle-cli: " << series.Error() << '\n';
    else if (outcome == CSeriesJob::NotStarted)
        err << "tessarelle-cli: the job on " << printer << " could not start; nothing was printed\n";

    static const char* const OutcomeNames[] = {"printed", "stopped", "not started", "failed"};
    JsonWriter json(out);
    json.BeginObject();
    json.Member(QStringLiteral("project"), project);
    json.Member(QStringLiteral("printer"), doc.GetPrinter().GetName(false));
    if (!outputFile.isEmpty())
        json.Member(QStringLiteral("output"), outputFile);
    json.Key(QStringLiteral("jobs")).BeginArray();
    if (series.Job() > 0)
        json.Value(series.Job());
    json.EndArray();
    json.Member(QStringLiteral("discs"), discs);
    json.Member(QStringLiteral("pages"), series.Pages());
    json.Member(QStringLiteral("outcome"), OutcomeNames[outcome]);
    json.Member(QStringLiteral("saved"), saved);
    writeCounters(json);
    json.EndObject();

    if (outcome == CSeriesJob::Stopped)
        return 128 + (signal > 0 ? signal : SIGINT);
    return outcome == CSeriesJob::Printed && saved ? ExitOk : ExitFailed;
}
