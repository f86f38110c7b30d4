// Typing into the text panel while the label shows the result: one keystroke in the Format
// page's text, on a curved glowing text of 60 characters added to examples/sample.dst, up to the
// repainted label in the real view (offscreen, the label fitted into 800 by 800). A step types a
// character or takes it back again, so the text stays at 60 or 61 characters. Aim: within 50 ms
// from the key to the painted label. The counters split a keystroke into the panel's work (the
// step of the history and the layout of the text) and the repaint it asked for.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "panels/CTextForm.h"
#include "panels/CTextFormatPage.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTest>
#include <memory>
#include <vector>

namespace {

constexpr int WindowSize = 800;

void BM_TypeIntoCurvedGlowingText(benchmark::State& state)
{
    // In this order, so that the view goes before its document and the document before its
    // templates.
    std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
    ResetDefaultProperties();
    g_dataFields.clear();
    auto doc = std::make_unique<CDrawDoc>();
    doc->SetTemplates(&templates);
    if (!doc->OnOpenDocument(QStringLiteral(TESSARELLE_EXAMPLES_DIR "/sample.dst"))) {
        state.SkipWithError("the sample did not open");
        return;
    }
    const int half = int(doc->GetOuterDia() * 300) / 2;
    auto curved = std::make_unique<CDrawText>(CRect(-half, half, half, -half));
    curved->SetFont(QStringLiteral("Arial"), 18, 1);
    curved->SetEffects(gfx::Color(255, 255, 200, 0), CDrawText::Glowing, 6, 60, 0, 0, 0, 0, 0, 0);
    curved->SetTextProperties(QStringLiteral("Sixty characters that run round the rim of a glowing disc!!!"),
                              CDrawText::CurvedCW, CDrawText::Centered, gfx::Color(255, 20, 20, 120), 0, 90, 0, 0);
    if (curved->m_text.size() != 60) {
        state.SkipWithError("the text is not 60 characters long");
        return;
    }
    CDrawText* text = static_cast<CDrawText*>(doc->Add(std::move(curved)));

    auto view = std::make_unique<CNetworkView>(*doc);
    view->resize(WindowSize, WindowSize);
    view->show();
    if (!QTest::qWaitForWindowExposed(view.get())) {
        state.SkipWithError("the view was not shown");
        return;
    }
    view->SetLogicalSizes();
    view->ZoomFull();
    g_currentTool = CDrawTool::Selection;
    CTextForm form;
    form.SetView(view.get());
    form.show();
    view->Select(text, false);
    form.LoadFromObject(text);
    QPlainTextEdit* edit = form.FormatPage()->TextEdit();
    edit->moveCursor(QTextCursor::End);
    view->viewport()->repaint();

    QElapsedTimer clock;
    qint64 panelNs = 0, paintNs = 0;
    bool typed = false;
    for (auto _ : state) {
        clock.start();
        if (typed)
            QTest::keyClick(edit, Qt::Key_Backspace);
        else
            QTest::keyClick(edit, Qt::Key_X);
        typed = !typed;
        panelNs += clock.nsecsElapsed();
        clock.start();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
        paintNs += clock.nsecsElapsed();
    }
    const double n = double(state.iterations());
    state.counters["panel ms"] = double(panelNs) / n / 1e6;
    state.counters["repaint ms"] = double(paintNs) / n / 1e6;
    if (text->m_text.size() < 60 || text->m_text.size() > 61)
        state.SkipWithError("the keystrokes did not reach the text");
}

// The glow's blur spreads over two threads: judge by the wall clock.
BENCHMARK(BM_TypeIntoCurvedGlowingText)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks<QApplication>(argc, argv, ResetDefaultProperties);
}
