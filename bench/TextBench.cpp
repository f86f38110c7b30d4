// Text at 300 units per inch: laying out a 60-character curved text and a 20-line straight
// text, drawing a Glowing text with a shadow blurred at 255 around a 4.7 inch disc (1410 by 1410
// pixels) after an edit (both blurs composed anew) and unchanged (both kept), and the blur alone
// on a 1410 by 1410 bitmap at sigma 7.
#include "BenchSupport.h"
#include "objects/CDrawText.h"
#include "objects/CGaussBlur.h"
#include "objects/DefaultProperties.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Graphics.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>

namespace {

constexpr int LabelSize = 1410;

std::unique_ptr<CDrawText> makeText(const QString& content, int kind, const CRect& position)
{
    auto text = std::make_unique<CDrawText>(position);
    text->m_text = content;
    text->m_textPathKind = kind;
    text->Layout();
    return text;
}

QString sixtyCharacters()
{
    return QStringLiteral("Tessarelle disc labels, track list and date: 23 Nov 2026 ..").left(60);
}

void BM_LayoutCurved60(benchmark::State& state)
{
    auto text = makeText(sixtyCharacters(), CDrawText::CurvedCW, CRect(-700, 700, 700, -700));
    for (auto _ : state) {
        text->Layout();
        benchmark::DoNotOptimize(text->m_textPath.GetPointCount());
    }
}

void BM_LayoutStraight20Lines(benchmark::State& state)
{
    QStringList lines;
    for (int i = 1; i <= 20; ++i)
        lines << QStringLiteral("%1. Track title number %1").arg(i);
    auto text = makeText(lines.join(QStringLiteral("\r\n")), CDrawText::Straight, CRect(-300, 300, 300, -300));
    for (auto _ : state) {
        text->Layout();
        benchmark::DoNotOptimize(text->m_textPath.GetPointCount());
    }
}

void BM_DrawGlowingWithShadow(benchmark::State& state)
{
    // Around the whole disc, the glow and the shadow both blurred at 255 (sigma 8).
    auto text = makeText(sixtyCharacters(), CDrawText::CurvedCW, CRect(-705, 705, 705, -705));
    text->m_fontSize = 24;
    text->SetEffects(gfx::Color(255, 250, 220, 40), CDrawText::Glowing, 6, 255, 0, 1, 12, 12, 255, 30);
    text->Layout();
    gfx::Bitmap label(LabelSize, LabelSize);
    gfx::Graphics graphics(label);
    RenderQuality::Apply(graphics);
    graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, LabelSize / 2.0f, LabelSize / 2.0f));
    int edits = 0;
    for (auto _ : state) {
        if (state.range(0) == 0) {
            // The least edit that touches both blurs.
            ++edits;
            text->m_edgeColor = gfx::Color(255, 250, 220, std::uint8_t(40 + edits % 2));
            text->m_shadowTransparency = std::uint8_t(30 + edits % 2);
        }
        graphics.Clear(gfx::Color(255, 255, 255, 255));
        text->Draw(graphics, 300, 300, nullptr);
    }
}

void BM_Blur1410Sigma7(benchmark::State& state)
{
    QImage image(LabelSize, LabelSize, QImage::Format_ARGB32);
    for (int y = 0; y < LabelSize; ++y)
        for (int x = 0; x < LabelSize; ++x)
            image.setPixel(x, y, qRgba(x & 0xFF, y & 0xFF, (x ^ y) & 0xFF, 255));
    gfx::Bitmap bitmap(image);
    CGaussBlur blur;
    for (auto _ : state)
        benchmark::DoNotOptimize(blur.Blur(bitmap, 7.0f, 14, true));
    // Two passes over every pixel.
    state.counters["Mpixel/s per pass"] =
        benchmark::Counter(2.0 * LabelSize * LabelSize * double(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

BENCHMARK(BM_LayoutCurved60)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayoutStraight20Lines)->Unit(benchmark::kMillisecond);
// Both blur passes share rows out between two threads: judge these by the wall clock.
// 0: composed anew after an edit, 1: drawn again unchanged.
BENCHMARK(BM_DrawGlowingWithShadow)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Blur1410Sigma7)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv, ResetDefaultProperties);
}
