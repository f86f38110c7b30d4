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
    const int count = y >= 0 ? data.Width : data.Height;
    for (int i = 0; i < count; ++i) {
        const int px = y >= 0 ? i : x, py = y >= 0 ? y : i;
        values.push_back(data.Scan0[py * data.Stride + px * 4 + channel]);
    }
    bitmap.UnlockBits(data);
    return values;
}

std::vector<int> zeros(int n)
{
    return std::vector<int>(std::size_t(n), 0);
}

} // namespace

TEST(CGaussBlur, KernelIsRoundedGaussianScaledSoTheOuterWeightIsAboutOne)
{
    CGaussBlur blur;
    gfx::Bitmap bitmap = spot(4, 4, 1, 1);
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
}

TEST(CGaussBlur, TooSmallASigmaGivesAPlainCopy)
{
    CGaussBlur blur;
    gfx::Bitmap bitmap = spot(5, 5, 2, 2, 200);
    for (float sigma : {0.0f, 0.09f, -3.0f}) {
        const auto copy = blur.Blur(bitmap, sigma, 14, false);
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->image().convertToFormat(QImage::Format_ARGB32),
                  bitmap.image().convertToFormat(QImage::Format_ARGB32));
    }
}

TEST(CGaussBlur, RowsTakeTheKernelInTheMiddleAndOnlyWhatMeetsPixelsAtTheEnds)
{
    CGaussBlur blur;
    // A one-pixel-high picture: the column pass leaves it alone, the row pass shows its weights.
    gfx::Bitmap middle = spot(21, 1, 10, 0);
    auto out = blur.Blur(middle, 1.0f, 15, true);
    std::vector<int> expected = zeros(21);
    // 255 x weight / 226, truncated.
    expected[7] = expected[13] = 1;
    expected[8] = expected[12] = 13;
    expected[9] = expected[11] = 62;
    expected[10] = 101;
    EXPECT_EQ(line(*out, 1, 0), expected);

    // At the left end only the weights that meet pixels count, and one pixel fewer than at the
    // right end: pixel 0 sees pixels 0..2 (90, 55, 12), pixel 20 sees 17..20 (1, 12, 55, 90).
    gfx::Bitmap left = spot(21, 1, 0, 0);
    out = blur.Blur(left, 1.0f, 15, true);
    expected = zeros(21);
    expected[0] = 255 * 90 / 157;
    expected[1] = 255 * 55 / 212;
    expected[2] = 255 * 12 / 224;
    expected[3] = 255 * 1 / 226;
    EXPECT_EQ(line(*out, 2, 0), expected);
    gfx::Bitmap right = spot(21, 1, 20, 0);
    out = blur.Blur(right, 1.0f, 15, true);
    expected = zeros(21);
    expected[20] = 255 * 90 / 158;
    expected[19] = 255 * 55 / 213;
    expected[18] = 255 * 12 / 225;
    expected[17] = 255 * 1 / 226;
    EXPECT_EQ(line(*out, 2, 0), expected);
    // So a pixel three away reaches the right end but not the left one.
    gfx::Bitmap nearLeft = spot(21, 1, 3, 0), nearRight = spot(21, 1, 17, 0);
    EXPECT_EQ(line(*blur.Blur(nearLeft, 1.0f, 15, true), 0, 0)[0], 0);
    EXPECT_EQ(line(*blur.Blur(nearRight, 1.0f, 15, true), 0, 0)[20], 1);
}

TEST(CGaussBlur, ColumnsFollowTheSameRuleFromTopToBottom)
{
    CGaussBlur blur;
    gfx::Bitmap top = spot(1, 21, 0, 0), bottom = spot(1, 21, 0, 20);
    const std::vector<int> down = line(*blur.Blur(top, 1.0f, 15, true), 1, -1);
    const std::vector<int> up = line(*blur.Blur(bottom, 1.0f, 15, true), 1, -1);
    EXPECT_EQ(down[0], 146);
    EXPECT_EQ(down[1], 66);
    EXPECT_EQ(up[20], 145);
    EXPECT_EQ(up[19], 65);
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
    const auto cleared = blur.Blur(bitmap, 1.0f, 14, false);
    EXPECT_EQ(line(*cleared, 0, 7), zeros(15));
}

TEST(CGaussBlur, EvenFieldsStayEvenEndsIncludedAndLinesShorterThanTheKernelAreSafe)
{
    CGaussBlur blur;
    // A sigma whose kernel is far wider than the picture: every line is shorter than the
    // kernel, which is then cut to the line.
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
    gfx::Bitmap bitmap = spot(8, 8, 3, 3);
    EXPECT_EQ(blur.Blur(bitmap, 2.0f, 15, true), nullptr);
}
