#include "platform/graphics/ImageAttributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <thread>
#include <vector>

namespace gfx {

namespace {

// What one input component value adds to the four outputs (red, green, blue, alpha), in fixed
// point with 8 fraction bits: element (i, j) times the value.
struct Contribution {
    int out[4];
};
using InputTable = std::array<Contribution, 256>;

bool isIdentity(const ColorMatrix& m)
{
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            if (m.m[i][j] != (i == j ? 1.0f : 0.0f))
                return false;
    return true;
}

inline int toByte(int fixed)
{
    return std::clamp((fixed + 128) >> 8, 0, 255);
}

// Adjusts rows [first, last) of an ARGB32 image in place.
struct Adjuster {
    bool useMatrix = false;
    bool useGamma = false;
    bool keepAlpha = true; // the alpha column is the identity
    int inputCount = 0; // inputs with any non-zero element
    int inputs[4] = {};
    int offset[4] = {};
    std::array<InputTable, 4> tables;
    std::array<std::uint8_t, 256> gamma;

    void run(uchar* bits, qsizetype stride, int width, int first, int last) const
    {
        for (int y = first; y < last; ++y) {
            QRgb* line = reinterpret_cast<QRgb*>(bits + y * stride);
            for (int x = 0; x < width; ++x) {
                const QRgb p = line[x];
                const int in[4] = {qRed(p), qGreen(p), qBlue(p), qAlpha(p)};
                int r = in[0], g = in[1], b = in[2], a = in[3];
                if (useMatrix) {
                    int sum[4] = {offset[0], offset[1], offset[2], offset[3]};
                    for (int k = 0; k < inputCount; ++k) {
                        const Contribution& c = tables[inputs[k]][in[inputs[k]]];
                        sum[0] += c.out[0];
                        sum[1] += c.out[1];
                        sum[2] += c.out[2];
                        sum[3] += c.out[3];
                    }
                    r = toByte(sum[0]);
                    g = toByte(sum[1]);
                    b = toByte(sum[2]);
                    if (!keepAlpha)
                        a = toByte(sum[3]);
                }
                if (useGamma) {
                    r = gamma[r];
                    g = gamma[g];
                    b = gamma[b];
                }
                line[x] = qRgba(r, g, b, a);
            }
        }
    }
};

} // namespace

QImage ImageAttributes::Apply(const QImage& image) const
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
    if (result.isNull())
        return result;
    auto adjuster = std::make_unique<Adjuster>();
    Adjuster& a = *adjuster;
    a.useMatrix = m_matrix && !isIdentity(*m_matrix);
    a.useGamma = m_gamma && *m_gamma != 1.0f && *m_gamma > 0.0f;
    if (!a.useMatrix && !a.useGamma)
        return result;

    if (a.useMatrix) {
        const ColorMatrix& m = *m_matrix;
        a.keepAlpha = m.m[0][3] == 0 && m.m[1][3] == 0 && m.m[2][3] == 0 && m.m[3][3] == 1 && m.m[4][3] == 0;
        for (int j = 0; j < 4; ++j)
            a.offset[j] = int(std::lround(m.m[4][j] * 255.0 * 256.0));
        for (int i = 0; i < 4; ++i) {
            const bool used = m.m[i][0] != 0 || m.m[i][1] != 0 || m.m[i][2] != 0 || (!a.keepAlpha && m.m[i][3] != 0);
            if (!used)
                continue;
            a.inputs[a.inputCount++] = i;
            for (int v = 0; v < 256; ++v)
                for (int j = 0; j < 4; ++j)
                    a.tables[i][v].out[j] = int(std::lround(double(m.m[i][j]) * v * 256.0));
        }
    }
    if (a.useGamma) {
        for (int v = 0; v < 256; ++v)
            a.gamma[v] =
                std::uint8_t(std::clamp(std::lround(255.0 * std::pow(v / 255.0, double(*m_gamma))), 0L, 255L));
    }

    // A whole printed sheet is millions of pixels: share the rows out among the cores.
    const int height = result.height();
    const qint64 pixels = qint64(result.width()) * height;
    const int threads = pixels < 1000000 ? 1 : int(std::clamp(std::thread::hardware_concurrency(), 1u, 8u));
    uchar* bits = result.bits();
    const qsizetype stride = result.bytesPerLine();
    const int width = result.width();
    if (threads == 1) {
        a.run(bits, stride, width, 0, height);
        return result;
    }
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        const int first = height * t / threads, last = height * (t + 1) / threads;
        workers.emplace_back([&a, bits, stride, width, first, last] { a.run(bits, stride, width, first, last); });
    }
    for (std::thread& w : workers)
        w.join();
    return result;
}

} // namespace gfx
