#include "objects/CGaussBlur.h"

#include <gtest/gtest.h>

#include <QImage>
#include <vector>

namespace {

// Opaque black with one white pixel: the alpha channel stays 255, so the locked bytes are exact.
gfx::Bitmap spot(int width, int height, int x, int y)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 0, 255));
    image.setPixel(x, y, qRgba(255, 255, 255, 255));
    return gfx::Bitmap(image);
}

// Byte `channel` (0 blue .. 3 alpha) of every pixel of row y, or of column 0 when y < 0.
std::vector<int> line(gfx::Bitmap& bitmap, int channel, int y)
{
    gfx::BitmapData data = bitmap.LockBits(gfx::ImageLockMode::Read);
    std::vector<int> values;
    for (int i = 0; i < (y >= 0 ? data.Width : data.Height); ++i)
        values.push_back(data.Scan0[(y >= 0 ? y : i) * data.Stride + (y >= 0 ? i : 0) * 4 + channel]);
    bitmap.UnlockBits(data);
    return values;
}

// A row of n zeros with the given values from index `at` on.
std::vector<int> row(int n, int at, std::initializer_list<int> values)
{
    std::vector<int> result(std::size_t(n), 0);
    std::copy(values.begin(), values.end(), result.begin() + at);
    return result;
}

} // namespace

TEST(CGaussBlur, KernelIsRoundedGaussianScaledSoTheOuterWeightIsAboutOne)
{
    CGaussBlur blur;
    gfx::Bitmap bitmap = spot(5, 5, 2, 2);
    // Sigma 1: n = round(6) | 1 = 7, centre weight round(e^4.5).
    ASSERT_NE(blur.Blur(bitmap, 1.0f, 15, true), nullptr);
    EXPECT_EQ(blur.Kernel(), (std::vector<unsigned>{1, 12, 55, 90, 55, 12, 1}));
    // Sigma 7 (a shadow blur of 224): 37 weights, the outermost still about 1.
    ASSERT_NE(blur.Blur(bitmap, 7.0f, 15, true), nullptr);
    EXPECT_EQ(std::tuple(blur.Kernel().size(), blur.Kernel().front(), blur.Kernel()[18]), std::tuple(37u, 1u, 27u));
    // Beyond 251 weights (sigma above 50) there is no bitmap; sigma 50 itself still works.
    EXPECT_NE(blur.Blur(bitmap, 50.0f, 15, true), nullptr);
    EXPECT_EQ(blur.Blur(bitmap, 50.2f, 15, true), nullptr);
    EXPECT_EQ(blur.Blur(bitmap, std::nanf(""), 15, true), nullptr);
    // Too small a sigma gives a plain copy.
    for (float sigma : {0.0f, 0.09f, -3.0f}) {
        const auto copy = blur.Blur(bitmap, sigma, 14, false);
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->image().convertToFormat(QImage::Format_ARGB32),
                  bitmap.image().convertToFormat(QImage::Format_ARGB32));
    }
}

TEST(CGaussBlur, LinesShorterThanTheKernelAcrossAreLeftAlone)
{
    // One pixel high: the column pass leaves it alone, the row pass shows 255 x weight / 226.
    // One pixel wide: the same the other way round, the ends taking only the weights that meet
    // pixels, one fewer at the top (the plain blur below holds the ends of longer pictures).
    CGaussBlur blur;
    gfx::Bitmap middle = spot(21, 1, 10, 0), top = spot(1, 21, 0, 0), bottom = spot(1, 21, 0, 20);
    EXPECT_EQ(line(*blur.Blur(middle, 1.0f, 15, true), 1, 0), row(21, 7, {1, 13, 62, 101, 62, 13, 1}));
    const std::vector<int> down = line(*blur.Blur(top, 1.0f, 15, true), 1, -1);
    const std::vector<int> up = line(*blur.Blur(bottom, 1.0f, 15, true), 1, -1);
    EXPECT_EQ((std::vector<int>{down[0], down[1], up[20], up[19]}), (std::vector<int>{146, 66, 145, 65}));
}

TEST(CGaussBlur, EvenFieldsStayEvenAndLinesShorterThanTheKernelAreSafe)
{
    CGaussBlur blur;
    // A kernel far wider than the picture is cut to each line.
    for (const QSize size : {QSize(3, 2), QSize(1, 1), QSize(40, 7)}) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(qRgba(77, 77, 77, 255));
        gfx::Bitmap bitmap(image);
        const auto out = blur.Blur(bitmap, 7.97f, 15, true);
        ASSERT_NE(out, nullptr);
        for (int y = 0; y < size.height(); ++y)
            EXPECT_EQ(line(*out, 1, y), std::vector<int>(std::size_t(size.width()), 77)) << size.width();
    }
    // A cancelled blur gives nothing.
    blur.m_bCancel = true;
    gfx::Bitmap bitmap = spot(300, 300, 40, 150);
    EXPECT_EQ(blur.Blur(bitmap, 2.0f, 15, true), nullptr);
}

// The blur written out plainly, pixel by pixel, for lines at least as long as the kernel:
// position i takes pixels i - r .. i + r that exist, but for one pixel fewer at the left (top)
// end, each by its kernel weight, divided by the sum of the weights taken, truncated.
QImage plainBlur(const QImage& source, const std::vector<unsigned>& kernel, int channels, bool copyOthers)
{
    const int r = int(kernel.size()) / 2;
    const auto pass = [&](const QImage& in, bool alongRows) {
        QImage out(in.size(), QImage::Format_ARGB32);
        const int length = alongRows ? in.width() : in.height();
        for (int y = 0; y < in.height(); ++y)
            for (int x = 0; x < in.width(); ++x) {
                const int i = alongRows ? x : y;
                std::uint8_t* target = out.scanLine(y) + 4 * x;
                for (int c = 0; c < 4; ++c) {
                    const std::uint8_t own = in.constScanLine(y)[4 * x + c];
                    if (!(channels >> c & 1)) {
                        target[c] = copyOthers ? own : 0;
                        continue;
                    }
                    std::uint64_t sum = 0, weights = 0;
                    const int last = i < r ? i + r - 1 : std::min(i + r, length - 1);
                    for (int p = std::max(i - r, 0); p <= last; ++p) {
                        const std::uint8_t value = alongRows ? in.constScanLine(y)[4 * p + c] : in.constScanLine(p)[4 * x + c];
                        sum += kernel[std::size_t(p - i + r)] * value;
                        weights += kernel[std::size_t(p - i + r)];
                    }
                    target[c] = std::uint8_t(std::min<std::uint64_t>(sum / weights, 255));
                }
            }
        return out;
    };
    return pass(pass(source, true), false);
}

TEST(CGaussBlur, EveryPixelIsThePlainWeightedSumOfItsWindow)
{
    // Noise in the colours, opaque, so that the premultiplied result reads back exactly; sizes
    // that fill no whole number of the blur's blocks, and one tall enough for two threads.
    std::uint32_t seed = 12345;
    const auto noise = [&seed] { return (seed = seed * 1664525u + 1013904223u) >> 24; };
    struct Case {
        QSize size;
        float sigma;
        int channels;
        bool copyOthers;
    };
    for (const Case& c : {Case{{203, 71}, 1.0f, 7, true}, Case{{143, 300}, 3.0f, 14, true},
                          Case{{150, 97}, 7.0f, 6, false}, Case{{211, 70}, 12.5f, 15, true}}) {
        QImage image(c.size, QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgba(int(noise()), int(noise()), int(noise()), 255));
        gfx::Bitmap bitmap(image);
        CGaussBlur blur;
        const auto blurred = blur.Blur(bitmap, c.sigma, c.channels | 8, c.copyOthers);
        ASSERT_NE(blurred, nullptr);
        ASSERT_LE(blur.Kernel().size(), std::size_t(std::min(c.size.width(), c.size.height())));
        EXPECT_EQ(blurred->image().convertToFormat(QImage::Format_ARGB32),
                  plainBlur(image, blur.Kernel(), c.channels | 8, c.copyOthers))
            << "sigma " << c.sigma;
    }
}
