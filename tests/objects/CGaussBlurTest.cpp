#include "objects/CGaussBlur.h"

#include <gtest/gtest.h>

#include <QImage>
#include <vector>

namespace {

// A bitmap of opaque grey `background` with one pixel of value `value` in every colour
// channel, so that the alpha channel stays 255 and the locked bytes are exact.
gfx::Bitmap spot(int width, int height, int x, int y, int value = 255, int background = 0)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(qRgba(background, background, background, 255));
    image.setPixel(x, y, qRgba(value, value, value, 255));
    return gfx::Bitmap(image);
}

// Byte `channel` (0 blue .. 3 alpha) of every pixel of row y, or of column x when y < 0.
std::vector<int> line(gfx::Bitmap& bitmap, int channel, int y, int x = 0)
{
    gfx::BitmapData data = bitmap.LockBits(gfx::ImageLockMode::Read);
    std::vector<int> values;
    for (int i = 0; i < (y >= 0 ? data.Width : data.Height); ++i)
        values.push_back(data.Scan0[(y >= 0 ? y : i) * data.Stride + (y >= 0 ? i : x) * 4 + channel]);
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
    gfx::Bitmap bitmap = spot(5, 5, 2, 2, 200);
    // Sigma 1: n = round(6) | 1 = 7, centre weight round(e^4.5).
    ASSERT_NE(blur.Blur(bitmap, 1.0f, 15, true), nullptr);
    EXPECT_EQ(blur.Kernel(), (std::vector<unsigned>{1, 12, 55, 90, 55, 12, 1}));
    EXPECT_EQ(blur.KernelSum(), 226u);
    // Sigma 7 (a shadow blur of 224): 37 weights, the outermost still about 1.
    ASSERT_NE(blur.Blur(bitmap, 7.0f, 15, true), nullptr);
    EXPECT_EQ(blur.Kernel().size(), 37u);
    EXPECT_EQ(blur.Kernel().front(), 1u);
    EXPECT_EQ(blur.Kernel()[18], 27u);
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

TEST(CGaussBlur, LinesTakeTheKernelInTheMiddleAndOnlyWhatMeetsPixelsAtTheEnds)
{
    CGaussBlur blur;
    // One pixel high: the column pass leaves it alone, the row pass shows 255 x weight / 226.
    gfx::Bitmap middle = spot(21, 1, 10, 0);
    EXPECT_EQ(line(*blur.Blur(middle, 1.0f, 15, true), 1, 0), row(21, 7, {1, 13, 62, 101, 62, 13, 1}));
    // At the left end only the weights that meet pixels count, and one pixel fewer than at the
    // right end: pixel 0 sees pixels 0..2 (90, 55, 12), pixel 20 sees 17..20 (1, 12, 55, 90).
    gfx::Bitmap left = spot(21, 1, 0, 0), right = spot(21, 1, 20, 0);
    EXPECT_EQ(line(*blur.Blur(left, 1.0f, 15, true), 2, 0),
              row(21, 0, {255 * 90 / 157, 255 * 55 / 212, 255 * 12 / 224, 255 * 1 / 226}));
    EXPECT_EQ(line(*blur.Blur(right, 1.0f, 15, true), 2, 0),
              row(21, 17, {255 * 1 / 226, 255 * 12 / 225, 255 * 55 / 213, 255 * 90 / 158}));
    // So a pixel three away reaches the right end but not the left one.
    gfx::Bitmap nearLeft = spot(21, 1, 3, 0), nearRight = spot(21, 1, 17, 0);
    EXPECT_EQ(line(*blur.Blur(nearLeft, 1.0f, 15, true), 0, 0)[0], 0);
    EXPECT_EQ(line(*blur.Blur(nearRight, 1.0f, 15, true), 0, 0)[20], 1);
    // Columns follow the same rule from top to bottom.
    gfx::Bitmap top = spot(1, 21, 0, 0), bottom = spot(1, 21, 0, 20);
    const std::vector<int> down = line(*blur.Blur(top, 1.0f, 15, true), 1, -1);
    const std::vector<int> up = line(*blur.Blur(bottom, 1.0f, 15, true), 1, -1);
    EXPECT_EQ((std::vector<int>{down[0], down[1], up[20], up[19]}), (std::vector<int>{146, 66, 145, 65}));
}

TEST(CGaussBlur, MaskedChannelsAreBlurredAndTheOthersCopiedOrCleared)
{
    CGaussBlur blur;
    gfx::Bitmap bitmap = spot(15, 15, 7, 7, 200, 10);
    // Mask 14: green, red and alpha; blue keeps its sharp spot.
    const auto copied = blur.Blur(bitmap, 1.0f, 14, true);
    const std::vector<int> blue = line(*copied, 0, 7), green = line(*copied, 1, 7), red = line(*copied, 2, 7);
    EXPECT_EQ(blue[7], 200);
    EXPECT_EQ(blue[6], 10);
    EXPECT_EQ(red, green);
    // Truncated after each pass: across (10 x 136 + 200 x 90) / 226 = 85, then down
    // (10 x 136 + 85 x 90) / 226 = 39; beside it across 56, down 28.
    EXPECT_EQ(red[7], 39);
    EXPECT_EQ(red[6], 28);
    EXPECT_EQ(line(*copied, 3, 7), std::vector<int>(15, 255));
    // Without copying, blue is 0 everywhere.
    EXPECT_EQ(line(*blur.Blur(bitmap, 1.0f, 14, false), 0, 7), std::vector<int>(15, 0));
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
    // Tall enough to be worked in two halves: a spot on the row where the halves meet spreads
    // into both exactly as a small picture's does, 101 across, then 101 x weight / 226 down.
    gfx::Bitmap tall = spot(300, 300, 40, 150);
    EXPECT_EQ(line(*blur.Blur(tall, 1.0f, 15, true), 1, -1, 40), row(300, 147, {0, 5, 24, 40, 24, 5, 0}));
    // A cancelled blur gives nothing.
    blur.m_bCancel = true;
    EXPECT_EQ(blur.Blur(tall, 2.0f, 15, true), nullptr);
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
