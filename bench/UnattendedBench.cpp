// One unattended print of a disc project with a background picture and a curved, glowing text
// with shadow, the whole way from the project file to the job's PDF written through print to
// file: templates read, project opened (its text laid out), the tray composed at 300 dots per
// inch, the page painted and compressed into the PDF. The pieces are timed apart as well, and
// the program itself is started as a process that opens the project and ends (a printer that
// does not exist), so that start-up and exit show beside the composing.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "platform/Folders.h"
#include "platform/FontCollection.h"
#include "printing/CPrintView.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "templates/CTemplateFile.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>

namespace {

QString projectPath() { return scratch().path() + "/bench label.dst"; }
QString outputPath() { return scratch().path() + "/bench label.prn"; }

std::vector<CTemplateFile> loadTemplates()
{
    return CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
}

// The disc project: a 1417 pixel photo-like picture as the background and a Disc field.
void writeProject()
{
    QImage picture(1417, 1417, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb((x * 255) / 1417, (y * 255) / 1417, ((x ^ y) & 0x7F) + 64));
    const QString picturePath = scratch().path() + "/background.jpg";
    picture.save(picturePath, "JPEG", 90);

    g_dataFields.clear();
    DATAFIELD disc;
    disc.Tag = QStringLiteral("/*TAG1*/");
    disc.Type = DATAFIELD::Disc;
    disc.DiscTotal = 100;
    g_dataFields.push_back(disc);

    const std::vector<CTemplateFile> templates = loadTemplates();
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    doc.OnNewDocument();
    doc.SetImageFile(picturePath);
    if (!doc.OnSaveDocument(projectPath()))
        std::abort();
    g_dataFields.clear();
}

// Text objects are not stored in project files yet: the curved text with glow and shadow,
// blurred at 255, joins the label once it is open, laid out as opening would lay it out.
void openProject(CDrawDoc& doc)
{
    doc.OnOpenDocument(projectPath());
    auto text = std::make_unique<CDrawText>(CRect(-660, 660, 660, -660));
    text->m_text = QStringLiteral("Tessarelle disc labels, disc /*TAG1*/, 23 Nov 2026 ........").left(60);
    text->m_textPathKind = CDrawText::CurvedCW;
    text->m_fontSize = 24;
    text->SetEffects(gfx::Color(255, 250, 220, 40), CDrawText::Glowing, 6, 255, 0, 1, 12, 12, 255, 30);
    text->Layout();
    doc.Add(std::move(text));
}

// The print dialog answered with a 300 dpi printer on A4 and print to file, as a user who
// prints to a file would answer it.
class FileView : public CPrintView {
public:
    using CPrintView::CPrintView;

protected:
    bool DoPrintDialog(PRINTDLG& pd) override
    {
        pd.hDevMode = DEVMODE::Build({{QStringLiteral("copies"), QStringLiteral("1")},
                                      {QStringLiteral("media"), QStringLiteral("iso_a4_210x297mm")},
                                      {QStringLiteral("printer-resolution"), QStringLiteral("300dpi")}});
        pd.hDevNames = DEVNAMES::Build(QStringLiteral("Driver"), QStringLiteral("Bench Printer"),
                                       QStringLiteral("file:"));
        pd.Flags |= PRINTDLG::PD_PRINTTOFILE;
        return true;
    }
    bool GetPrintToFileName(QString* path) override
    {
        *path = outputPath();
        return true;
    }
};

void BM_UnattendedRunInProcess(benchmark::State& state)
{
    for (auto _ : state) {
        g_dataFields.clear();
        const std::vector<CTemplateFile> templates = loadTemplates();
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        openProject(doc);
        FileView view(doc);
        if (view.PrintJob(QString(), QString(), false) != 1)
            state.SkipWithError("the print to file failed");
    }
    state.counters["PDF kB"] = double(QFile(outputPath()).size()) / 1024.0;
}

void BM_ReadTemplates(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(loadTemplates().size());
}

void BM_OpenProject(benchmark::State& state)
{
    const std::vector<CTemplateFile> templates = loadTemplates();
    for (auto _ : state) {
        g_dataFields.clear();
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        openProject(doc);
        benchmark::DoNotOptimize(doc.GetObjects().GetCount());
    }
}

void BM_ComposeTray(benchmark::State& state)
{
    const std::vector<CTemplateFile> templates = loadTemplates();
    g_dataFields.clear();
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    openProject(doc);
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.RenderBitmap(300, 300, true, false));
}

void BM_PrintToFileOfAnOpenProject(benchmark::State& state)
{
    const std::vector<CTemplateFile> templates = loadTemplates();
    g_dataFields.clear();
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    openProject(doc);
    FileView view(doc);
    for (auto _ : state)
        benchmark::DoNotOptimize(view.PrintJob(QString(), QString(), false));
}

// The program as a process: start, fonts, templates, printer, the project opened, the unknown
// printer reported, exit. Everything of a run but the text's layout, the composing and the PDF.
void BM_ProgramStartOpenAndExit(benchmark::State& state)
{
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/tessarelle");
    if (!QFile::exists(program)) {
        state.SkipWithError("build the tessarelle target first");
        return;
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("CUPS_SERVER"), QStringLiteral("127.0.0.1:1"));
    for (auto _ : state) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(program, {QStringLiteral("-PRINTER"), QStringLiteral("Nowhere"), QStringLiteral("-PRINT"),
                                projectPath()});
        if (!process.waitForFinished(30000) || process.exitCode() != 255)
            state.SkipWithError("the program did not end as expected");
    }
}

BENCHMARK(BM_UnattendedRunInProcess)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReadTemplates)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenProject)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ComposeTray)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PrintToFileOfAnOpenProject)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ProgramStartOpenAndExit)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QByteArray home = scratch().path().toLocal8Bit();
    setenv("XDG_CONFIG_HOME", home.constData(), 1);
    setenv("XDG_DATA_HOME", home.constData(), 1);
    // No scheduler: a print to file needs none, and asking for the default printer fails at once.
    setenv("CUPS_SERVER", "127.0.0.1:1", 1);
    QGuiApplication app(argc, argv);
    FontCollection fonts;
    fonts.AddFontFiles(Folders::InstallDirectory() + QStringLiteral("fonts/"));
    FontCollection::Publish(&fonts);
    ResetDefaultProperties();
    writeProject();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    FontCollection::Publish(nullptr);
    return 0;
}
