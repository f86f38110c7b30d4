// The canvas under the mouse, in the real view on the offscreen platform at full zoom (the label
// fitted into an 800 by 800 window): a frame of a drag (one mouse move of a move-drag and the
// repaint it causes) on a label of 1,000 plain shapes and on examples/sample.dst, and a mouse
// move with nothing pressed over 1,000 objects. Aims: a drag frame within 8 ms on the shapes and
// 16 ms on the sample, a move with nothing pressed within 1 ms.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/DefaultProperties.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineF>
#include <QMouseEvent>
#include <QTest>
#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int WindowSize = 800;

// Counts the paint events a widget gets.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
    long long paints = 0;
};

// The real view over a real document with the program's templates, shown and fitted.
struct Canvas {
    Canvas()
    {
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
        ResetDefaultProperties();
        doc = std::make_unique<CDrawDoc>();
        doc->SetTemplates(&templates);
        doc->OnNewDocument();
        doc->SetTemplate(0);
    }
    // Shows the view once the document holds its label.
    bool Show()
    {
        view = std::make_unique<CNetworkView>(*doc);
        view->resize(WindowSize, WindowSize);
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            return false;
        view->SetLogicalSizes();
        view->ZoomFull();
        g_currentTool = CDrawTool::Selection;
        // Objects pick by the outline they last drew.
        canvas()->repaint();
        return true;
    }
    QWidget* canvas() const { return view->viewport(); }
    QPoint At(CPoint p) const
    {
        const CPoint d = view->ViewLPtoDP(p);
        return QPoint(d.x, d.y);
    }
    // A move with the buttons given, delivered as the window system's would be.
    void Move(QPoint p, Qt::MouseButtons buttons)
    {
        QMouseEvent event(QEvent::MouseMove, p, canvas()->mapToGlobal(p), Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(canvas(), &event);
    }
    // The repaint the last input asked for, as the event loop would do it next.
    static void Paint() { QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest); }

    // In this order, so that the view goes before its document and the document before its
    // templates.
    std::vector<CTemplateFile> templates;
    std::unique_ptr<CDrawDoc> doc;
    std::unique_ptr<CNetworkView> view;
};

// A thousand plain shapes (rectangles, rounded rectangles and ellipses, filled and outlined in
// solid colours) spread over the disc.
void addPlainShapes(CDrawDoc& doc, int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> place(-650, 650);
    std::uniform_int_distribution<int> size(30, 200);
    std::uniform_int_distribution<int> channel(0, 255);
    const int shapes[] = {CDrawRect::Rectangle, CDrawRect::RoundRectangle, CDrawRect::Ellipse};
    for (int i = 0; i < count; ++i) {
        const int x = place(random), y = place(random), w = size(random), h = size(random);
        auto shape = std::make_unique<CDrawRect>(CRect(x, y + h, x + w, y));
        shape->m_shape = shapes[i % 3];
        shape->m_flags = 3;
        shape->m_fillColor1 = gfx::Color(255, channel(random), channel(random), channel(random));
        shape->m_lineColor1 = gfx::Color(255, channel(random), channel(random), channel(random));
        shape->m_lineWidth = std::uint8_t(1 + i % 4);
        doc.Add(std::move(shape));
    }
}

// Drags the object under `grip` to the point across the label's centre and back, one iteration a
// frame: a move of four pixels and the repaint of what it invalidated.
void dragFrames(benchmark::State& state, Canvas& c, CPoint grip)
{
    const QPoint start = c.At(grip);
    const QPoint across = c.At(CPoint(-grip.x, -grip.y));
    c.canvas()->repaint();
    QTest::mousePress(c.canvas(), Qt::LeftButton, Qt::NoModifier, start);
    if (c.view->m_selection.size() != 1) {
        state.SkipWithError("the press did not pick one object");
        return;
    }
    const CDrawObj* dragged = c.view->m_selection.front();
    const CRect before = dragged->GetRect();
    const int steps = std::max(1, int(QLineF(start, across).length() / 4));
    int step = 0, direction = 1;
    QPoint at = start;
    PaintCounter counter(c.canvas());
    for (auto _ : state) {
        step += direction;
        if (step == steps || step == 0)
            direction = -direction;
        at = start + (across - start) * step / steps;
        c.Move(at, Qt::LeftButton);
        Canvas::Paint();
    }
    QTest::mouseRelease(c.canvas(), Qt::LeftButton, Qt::NoModifier, at);
    // One repaint a frame, or the figure would not be a frame's.
    state.counters["paints per frame"] = double(counter.paints) / double(state.iterations());
    if (dragged->GetRect() == before && at != start)
        state.SkipWithError("the object did not move");
}

void BM_DragOneOf1000Shapes(benchmark::State& state)
{
    Canvas c;
    addPlainShapes(*c.doc, 999, 11);
    // The dragged one, on top, left of the hole.
    auto grip = std::make_unique<CDrawRect>(CRect(-530, 280, -370, 120));
    grip->m_flags = 3;
    grip->m_fillColor1 = gfx::Color(255, 40, 90, 200);
    c.doc->Add(std::move(grip));
    if (!c.Show()) {
        state.SkipWithError("the view was not shown");
        return;
    }
    dragFrames(state, c, CPoint(-450, 200));
}

void BM_DragStarOfSample(benchmark::State& state)
{
    Canvas c;
    g_dataFields.clear();
    if (!c.doc->OnOpenDocument(QStringLiteral(TESSARELLE_EXAMPLES_DIR "/sample.dst")) || !c.Show()) {
        state.SkipWithError("the sample did not open");
        return;
    }
    // The largest of the three stars, centred at (420, -150).
    dragFrames(state, c, CPoint(420, -150));
}

// Mouse moves with nothing pressed over a grid of points on the label: 0 with no selection, 1
// with one object selected, whose handles are then asked at every move, 2 with no selection
// and the object under the mouse picked at every move, as a press there would pick it.
void BM_MoveOver1000Objects(benchmark::State& state)
{
    Canvas c;
    addPlainShapes(*c.doc, 1000, 23);
    if (!c.Show()) {
        state.SkipWithError("the view was not shown");
        return;
    }
    if (state.range(0) == 1)
        c.view->Select(c.doc->GetObjects().GetAt(500), false);
    std::vector<QPoint> points;
    for (int y = -600; y <= 600; y += 75)
        for (int x = -600; x <= 600; x += 75)
            points.push_back(c.At(CPoint(x, y)));
    size_t next = 0;
    for (auto _ : state) {
        c.Move(points[next], Qt::NoButton);
        if (state.range(0) == 2) {
            CPoint logical(points[next].x(), points[next].y());
            c.view->ClientToDoc(logical);
            benchmark::DoNotOptimize(c.doc->ObjectAt(logical));
        }
        next = (next + 1) % points.size();
    }
    Canvas::Paint();
}

BENCHMARK(BM_DragOneOf1000Shapes)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
// The glow and shadow blurs spread over two threads: judge by the wall clock.
BENCHMARK(BM_DragStarOfSample)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_MoveOver1000Objects)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks<QApplication>(argc, argv, ResetDefaultProperties);
}
