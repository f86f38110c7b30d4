// Opening and saving a project of 10,000 objects spread over the three labels: rectangles of
// every shape with picture paths, and polygons and curves of 12 points. The aim is open plus
// save under 150 ms.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>

namespace {

constexpr int ObjectCount = 10000;

void fill(CDrawDoc& doc)
{
    for (int i = 0; i < ObjectCount; ++i) {
        doc.SetCurLabel(i % CDrawDoc::LabelCount);
        const int x = (i * 37) % 1400 - 700;
        const int y = (i * 91) % 1400 - 700;
        if (i % 3 == 2) {
            auto poly = std::make_unique<CDrawPoly>();
            std::vector<CPoint> points;
            for (int p = 0; p < 12; ++p)
                points.push_back(CPoint(x + p * 13, y + (p * p) % 40));
            poly->SetPoints(std::move(points), 20);
            poly->m_polyKind = std::uint8_t(i % 4);
            doc.Add(std::move(poly));
        } else {
            auto rect = std::make_unique<CDrawRect>(CRect(x, y + 120, x + 200, y));
            rect->m_shape = i % 5;
            if (i % 7 == 0) {
                rect->m_fillKind = 2;
                rect->m_pictureFile = QStringLiteral("/home/user/Pictures/Clip Art/picture %1.png").arg(i);
            }
            doc.Add(std::move(rect));
        }
    }
    g_dataFields.resize(6);
}

QString projectPath()
{
    static const QString path = [] {
        const QString file = QDir(scratch().path()).filePath(QStringLiteral("large.dst"));
        CDrawDoc doc;
        fill(doc);
        doc.OnSaveDocument(file);
        g_dataFields.clear();
        return file;
    }();
    return path;
}

void BM_Open(benchmark::State& state)
{
    const QString file = projectPath();
    CDrawDoc doc;
    for (auto _ : state) {
        g_dataFields.clear();
        if (!doc.OnOpenDocument(file))
            state.SkipWithError("open failed");
    }
    state.counters["objects"] = double(doc.GetObjects(0).GetCount() + doc.GetObjects(1).GetCount()
                                       + doc.GetObjects(2).GetCount());
}

void BM_Save(benchmark::State& state)
{
    CDrawDoc doc;
    doc.OnOpenDocument(projectPath());
    const QString target = QDir(scratch().path()).filePath(QStringLiteral("saved.dst"));
    for (auto _ : state) {
        if (!doc.OnSaveDocument(target))
            state.SkipWithError("save failed");
    }
    state.counters["bytes"] = double(QFileInfo(target).size());
}

void BM_OpenAndSave(benchmark::State& state)
{
    const QString file = projectPath();
    const QString target = QDir(scratch().path()).filePath(QStringLiteral("resaved.dst"));
    CDrawDoc doc;
    for (auto _ : state) {
        g_dataFields.clear();
        if (!doc.OnOpenDocument(file) || !doc.OnSaveDocument(target))
            state.SkipWithError("open or save failed");
    }
}

BENCHMARK(BM_Open)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_Save)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_OpenAndSave)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
