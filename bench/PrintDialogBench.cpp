// The print dialog on examples/sample.dst: from its construction until its preview has painted
// (aim: 300 ms), and one step of the gamma slider, which stores the value for the printer and
// repaints the preview through the new adjustment (aim: 10 ms). The spooler is a scheduler of
// the benchmark's own with two queues, as the printing tests run it.
#include "BenchSupport.h"
#include "PrivateCups.h"
#include "dialogs/CAdjustColorButton.h"
#include "dialogs/CMyPrintDialog.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "templates/CTemplateFile.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QSlider>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

struct Sample {
    Sample()
    {
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        g_dataFields.clear();
        opened = doc.OnOpenDocument(QStringLiteral(TESSARELLE_EXAMPLES_DIR "/sample.dst"));
        doc.GetPrinter().Load(QStringLiteral("Raw"));
    }
    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
    bool opened = false;
};

QSlider* gammaSlider(CMyPrintDialog& dialog)
{
    for (QSlider* slider : dialog.findChildren<QSlider*>()) {
        if (slider->accessibleName() == QLatin1String("Gamm"))
            return slider;
    }
    return nullptr;
}

void BM_OpenPrintDialogUntilThePreviewShows(benchmark::State& state)
{
    Sample sample;
    if (!sample.opened || !PrivateCups::Instance().Running()) {
        state.SkipWithError("no sample or no scheduler");
        return;
    }
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        double shown = 0;
        CMyPrintDialog dialog(CMyPrintDialog::Print);
        dialog.SetDocument(&sample.doc);
        QTimer::singleShot(0, &dialog, [&] {
            dialog.findChild<CAdjustColorButton*>()->repaint();
            shown = timer.nsecsElapsed() / 1e9;
            dialog.reject();
        });
        dialog.exec();
        state.SetIterationTime(shown);
    }
}
BENCHMARK(BM_OpenPrintDialogUntilThePreviewShows)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_GammaSliderStep(benchmark::State& state)
{
    Sample sample;
    if (!sample.opened || !PrivateCups::Instance().Running()) {
        state.SkipWithError("no sample or no scheduler");
        return;
    }
    CMyPrintDialog dialog(CMyPrintDialog::Print);
    dialog.SetDocument(&sample.doc);
    QTimer::singleShot(0, &dialog, [&] {
        QSlider* slider = gammaSlider(dialog);
        int step = 0;
        for (auto _ : state) {
            // Up and down in steps of 0.05 around 1.00, each one repainting the preview.
            slider->triggerAction(step++ % 2 ? QAbstractSlider::SliderSingleStepSub
                                             : QAbstractSlider::SliderSingleStepAdd);
        }
        dialog.reject();
    });
    dialog.exec();
}
BENCHMARK(BM_GammaSliderStep)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks<QApplication>(argc, argv, [] { MessageBox::SetPresenter(nullptr); },
                                       [] { PrivateCups::Shutdown(); });
}
