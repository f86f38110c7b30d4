// The designer's start: from the process's start to the first painted window with the default
// label (aim: within 0.5 s), broken down into the program's fonts, the templates and the window;
// and opening examples/sample.dst as the File menu does, up to its first paint (aim: 150 ms).
// The start is measured once, cold, as a user meets it; the open is repeated.
#include "BenchSupport.h"
#include "app/CSendrillApp.h"
#include "app/CSendrillDlg.h"
#include "platform/FontCollection.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Spooler.h"
#include "templates/CTemplateFile.h"
#include "view/CNetworkView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

// Milliseconds since the kernel started this process, from its start time in /proc.
double SinceProcessStart()
{
    std::ifstream stat("/proc/self/stat");
    std::string field;
    for (int i = 0; i < 22 && stat >> field; ++i) {
    }
    const double startTicks = std::stod(field);
    std::ifstream uptime("/proc/uptime");
    double up = 0;
    uptime >> up;
    return (up - startTicks / double(sysconf(_SC_CLK_TCK))) * 1000.0;
}

std::unique_ptr<CSendrillApp> g_app;
std::unique_ptr<CSendrillDlg> g_dialog;

// The copy of the sample the open benchmark reads, beside the scratch profile.
QString SampleCopy()
{
    return scratch().path() + QStringLiteral("/sample.dst");
}

void StartWindow(double atMain, double applicationMs)
{
    QElapsedTimer timer;
    timer.start();
    // The pieces, measured cold on their own first: they are what the window's start does first.
    FontCollection fonts;
    fonts.AddFontFiles(Folders::InstallDirectory() + QStringLiteral("fonts/"));
    const double fontsMs = timer.nsecsElapsed() / 1e6;
    timer.restart();
    const auto templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
    const double templatesMs = timer.nsecsElapsed() / 1e6;

    timer.restart();
    g_app = std::make_unique<CSendrillApp>();
    g_app->SetUpFolders();
    g_app->ReadVersion();
    g_dialog = std::make_unique<CSendrillDlg>(*g_app);
    g_dialog->OnInitDialog();
    g_dialog->show();
    (void)QTest::qWaitForWindowExposed(g_dialog.get());
    g_dialog->GetView()->viewport()->repaint();
    const double windowMs = timer.nsecsElapsed() / 1e6;

    std::printf("Start to the first painted window: %.0f ms (aim 500 ms)\n", SinceProcessStart());
    std::printf("  process start to main: %.0f ms\n", atMain);
    std::printf("  application object: %.1f ms\n", applicationMs);
    std::printf("  program fonts (%d files): %.1f ms\n", fonts.AddedCount(), fontsMs);
    std::printf("  templates (%d): %.1f ms\n", int(templates.size()), templatesMs);
    std::printf("  window, its initialisation (fonts and templates again, warm) and first paint: %.1f ms\n",
                windowMs);
    std::fflush(stdout);
}

void OpenSample(benchmark::State& state)
{
    CNetworkView* view = g_dialog->GetView();
    for (auto _ : state) {
        g_dialog->OpenFromOutside(SampleCopy());
        view->viewport()->repaint();
    }
    state.SetLabel("open from the File menu to the first paint; aim 150 ms");
}
BENCHMARK(OpenSample)->Unit(benchmark::kMillisecond)->Iterations(10);

} // namespace

int main(int argc, char** argv)
{
    const double atMain = SinceProcessStart();
    QElapsedTimer timer;
    timer.start();
    // No spooler is asked: the default printer's set-up would wait on the network.
    Spooler::UseServer(QStringLiteral("127.0.0.1:1"));
    MessageBox::SetPresenter([](const QString&, int style) { return MessageBox::DefaultAnswer(style); });
    return RunBenchmarks<QApplication>(argc, argv, [&] {
        StartWindow(atMain, timer.nsecsElapsed() / 1e6);
        QFile::copy(QStringLiteral(TESSARELLE_EXAMPLES_DIR "/sample.dst"), SampleCopy());
    }, [] {
        g_dialog.reset();
        g_app.reset();
    });
}
