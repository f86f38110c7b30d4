// Drawing a busy label and picking on it: 200 shapes of every fill kind, dashed and gradient
// outlines and arrow lines on a 4.7 inch disc at 300 units per inch (1410 by 1410 pixels), and
// a point hit-tested against 1,000 objects.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/DefaultProperties.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Graphics.h"
#include "templates/CTemplateFile.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int LabelSize = 1410;

QString picture()
{
    const QString path = scratch().filePath("clip.png");
    if (QFile::exists(path))
        return path;
    QImage image(120, 90, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 2, y * 2, (x ^ y) & 0xFF));
    image.save(path);
    return path;
}

gfx::Color randomColor(std::mt19937& random)
{
    std::uniform_int_distribution<int> channel(0, 255);
    return gfx::Color(255, channel(random), channel(random), channel(random));
}

// One of each kind in turn: the rectangle family's shapes with every fill kind and outline, the
// two line objects with dashes and arrow heads, and every fifth a poly.
std::unique_ptr<CDrawObj> makeShape(int index, std::mt19937& random, int extent)
{
    std::uniform_int_distribution<int> place(-extent, extent);
    std::uniform_int_distribution<int> size(40, 260);
    const int x = place(random), y = place(random);
    const int w = size(random), h = size(random);
    std::unique_ptr<CDrawObj> object;
    if (index % 5 == 4) {
        auto poly = std::make_unique<CDrawPoly>(CRect(x, y, x, y));
        poly->m_polyKind = std::uint8_t(index / 5 % 4);
        for (int i = 0; i < 6; ++i)
            poly->AddPoint(CPoint(x + place(random) / 8, y + place(random) / 8), nullptr);
        object = std::move(poly);
    } else {
        const int shapes[] = {CDrawRect::Rectangle, CDrawRect::RoundRectangle, CDrawRect::Ellipse, CDrawRect::Arc,
                              CDrawRect::Halo,      CDrawRect::Line,           CDrawRect::ArrowLine};
        auto rect = std::make_unique<CDrawRect>(CRect(x, y + h, x + w, y));
        rect->m_shape = shapes[index % 7];
        rect->m_startAngle = float(index * 37 % 360);
        rect->m_endAngle = float(index * 91 % 360);
        rect->m_ringX = float(w / 6);
        rect->m_ringY = float(h / 6);
        rect->m_startArrow = ShapeAppearance::ArrowCodeAt(index % 6);
        rect->m_endArrow = ShapeAppearance::ArrowCodeAt((index / 6) % 6);
        object = std::move(rect);
    }
    // Every fill kind on every kind of shape: the fill turns once more on each round of five.
    object->m_fillKind = (index + index / 5) % 5;
    object->m_fillColor1 = randomColor(random);
    object->m_fillColor2 = randomColor(random);
    object->m_lineColor1 = randomColor(random);
    object->m_lineColor2 = randomColor(random);
    object->m_hatchStyle = index % 53;
    object->m_transparency = std::uint8_t(index % 3 * 30);
    object->m_gradientStyle = index % 4;
    object->m_gradientSwap = std::uint8_t(index % 2);
    object->m_lineWidth = std::uint8_t(1 + index % 9);
    object->m_dashStyle = index % 3 == 0 ? index / 3 % 5 : 0;
    object->m_dashCap = (index / 3) % 3 == 0 ? 0 : (index / 3) % 3 + 1; // flat, round, triangle
    object->m_lineKind = index % 4 == 0 ? 4 : 0;
    object->m_lineGradientMode = index % 4;
    if (object->m_fillKind == 2) {
        object->m_pictureFile = picture();
        object->m_wrapMode = (index / 5) % 5;
        object->m_pictureScale = std::uint8_t(index % 3);
    }
    return object;
}

CTemplateFile trayTemplate()
{
    const QString path = scratch().filePath("tray.tmp");
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write("PRINTER\nTray\n\n4.7\n4.7\n0\n0\nDISC\n1\nDisc\n2.35\n2.35\n4.7\n0\nENDOBJECT\nEND\n");
    file.close();
    CTemplateFile result;
    result.LoadTemplate(path);
    return result;
}

// The label composed for print: the 200 shapes on a 4.7 inch disc of a printer tray, through
// the same call that prints and saves pictures. With range(0) below 5, only the shapes of that
// fill kind (about 40), to see where the time goes.
void BM_Draw200Shapes(benchmark::State& state)
{
    ResetDefaultProperties();
    const std::vector<CTemplateFile> templates{trayTemplate()};
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    doc.SetTemplate(0);
    std::mt19937 random(42);
    for (int i = 0; i < 200; ++i) {
        auto object = makeShape(i, random, 560);
        if (state.range(0) == 5 || object->m_fillKind == state.range(0))
            doc.Add(std::move(object));
    }
    std::unique_ptr<gfx::Bitmap> label;
    for (auto _ : state)
        label = doc.RenderBitmap(300, 300, true, true);
    if (!label || label->GetWidth() != LabelSize)
        state.SkipWithError("the label was not composed at 1410 by 1410");
    else if (const char* out = std::getenv("TESSARELLE_BENCH_PICTURE"))
        label->image().save(QString::fromLocal8Bit(out));
}

void BM_HitTest1000Objects(benchmark::State& state)
{
    ResetDefaultProperties();
    CDrawDoc doc;
    std::mt19937 random(7);
    {
        // Picking reads the outline of the last Draw, so the label is drawn once first.
        gfx::Bitmap bitmap(LabelSize, LabelSize);
        gfx::Graphics graphics(bitmap);
        graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, LabelSize / 2.0f, LabelSize / 2.0f));
        for (int i = 0; i < 1000; ++i) {
            CDrawObj* object = doc.Add(makeShape(i, random, 600));
            object->m_fillKind = object->m_fillKind == 2 ? 0 : object->m_fillKind;
            object->Draw(graphics, 300, 300, nullptr);
        }
    }
    // Points all over the label: most pass many objects' rectangles before a hit, some miss all.
    std::vector<CPoint> points;
    std::uniform_int_distribution<int> place(-700, 700);
    for (int i = 0; i < 64; ++i)
        points.emplace_back(place(random), place(random));
    size_t next = 0;
    int hits = 0;
    for (auto _ : state) {
        hits += doc.ObjectAt(points[next]) != nullptr;
        next = (next + 1) % points.size();
    }
    benchmark::DoNotOptimize(hits);
}

// The worst case for picking: a point outside every object, so all 1,000 are asked.
void BM_HitTestMissAll1000(benchmark::State& state)
{
    ResetDefaultProperties();
    CDrawDoc doc;
    std::mt19937 random(9);
    gfx::Bitmap bitmap(64, 64);
    gfx::Graphics graphics(bitmap);
    for (int i = 0; i < 1000; ++i)
        doc.Add(makeShape(i, random, 500))->Draw(graphics, 300, 300, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.ObjectAt(CPoint(5000, 5000)));
}

// The hardest case: a point inside every object's rectangle and on none of them, the middle of
// 1,000 rings around it, so every object's outline is asked.
void BM_HitTestInsideEveryRing1000(benchmark::State& state)
{
    ResetDefaultProperties();
    CDrawDoc doc;
    gfx::Bitmap bitmap(64, 64);
    gfx::Graphics graphics(bitmap);
    for (int i = 0; i < 1000; ++i) {
        const int r = 100 + i / 2;
        auto ring = std::make_unique<CDrawRect>(CRect(-r, r, r, -r));
        ring->m_shape = CDrawRect::Halo;
        ring->m_ringX = ring->m_ringY = 20;
        doc.Add(std::move(ring))->Draw(graphics, 300, 300, nullptr);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.ObjectAt(CPoint(0, 0)));
}

// Painting runs on a thread of its own while the caller waits: judge these by the wall clock.
BENCHMARK(BM_Draw200Shapes)->Arg(5)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_Draw200Shapes)->DenseRange(0, 4)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_HitTest1000Objects)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HitTestMissAll1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HitTestInsideEveryRing1000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
