#include "GraphicsTestSupport.h"

#include "TestSupport.h"
#include "platform/graphics/ImageAttributes.h"
#include "platform/graphics/SolidBrush.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QtEndian>

using namespace gfx;

namespace {

QByteArray pngBytes(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

quint32 crc32(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : bytes) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = crc & 1 ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
    }
    return ~crc;
}

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    char length[4], crc[4];
    qToBigEndian(quint32(data.size()), length);
    qToBigEndian(crc32(type + data), crc);
    return QByteArray(length, 4) + type + data + QByteArray(crc, 4);
}

// A well-formed PNG that declares the given size and holds a few bytes of pixel data only.
QByteArray pngDeclaring(quint32 width, quint32 height)
{
    char size[8];
    qToBigEndian(width, size);
    qToBigEndian(height, size + 4);
    const QByteArray header = QByteArray(size, 8) + QByteArray("\x08\x06\x00\x00\x00", 5); // 8 bits, RGBA
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header)
           + pngChunk("IDAT", QByteArray::fromHex("789c636000000001000100")) + pngChunk("IEND", {});
}

QImage sample()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(qRgba(10, 20, 30, 255));
    image.setPixel(0, 0, qRgba(200, 100, 50, 128));
    image.setPixel(2, 1, qRgba(0, 0, 255, 255));
    return image;
}

void expectError(const Image& image, Status status)
{
    EXPECT_EQ(image.GetLastStatus(), status);
    EXPECT_EQ(image.GetWidth(), 0u);
    EXPECT_EQ(image.GetHeight(), 0u);
}

} // namespace

TEST(Image, LoadsByExtensionOrElseByContentAndKeepsPixelsPremultiplied)
{
    TestFolder folder;
    const Image png(folder.write("sample.png", pngBytes(sample())));
    ASSERT_EQ(png.GetLastStatus(), Status::Ok);
    EXPECT_EQ(png.GetType(), ImageType::Bitmap);
    EXPECT_EQ(png.GetWidth(), 3u);
    EXPECT_EQ(png.GetHeight(), 2u);
    EXPECT_EQ(png.image().format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(png.image().pixel(2, 1), qRgb(0, 0, 255));

    // PNG bytes under a JPEG name still load.
    const Image misnamed(folder.write("photo.jpg", pngBytes(sample())));
    EXPECT_EQ(misnamed.GetLastStatus(), Status::Ok);
    EXPECT_EQ(misnamed.GetWidth(), 3u);
}

TEST(Image, BadFilesGiveAnEmptyErrorImage)
{
    TestFolder folder;
    expectError(Image(folder.path() + "/missing.png"), Status::FileNotFound);
    expectError(Image(folder.path()), Status::FileNotFound);
    expectError(Image(QString()), Status::FileNotFound);
    expectError(Image(folder.write("empty.png", QByteArray())), Status::UnknownImageFormat);
    expectError(Image(folder.write("text.bmp", QByteArray("this is no picture at all, just words"))),
                Status::UnknownImageFormat);

    QByteArray noise(4096, '\0');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char((i * 7919 + 13) * 31 % 251);
    const Image random(folder.write("noise.png", noise));
    EXPECT_NE(random.GetLastStatus(), Status::Ok);
    EXPECT_EQ(random.GetWidth(), 0u);

    QImage big(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            big.setPixel(x, y, qRgb(x * 4, y * 4, (x * y) & 255));
    const QByteArray whole = pngBytes(big);
    const Image truncated(folder.write("truncated.png", whole.left(whole.size() / 2)));
    EXPECT_NE(truncated.GetLastStatus(), Status::Ok);
    EXPECT_EQ(truncated.GetWidth(), 0u);

    // Drawing an error image draws nothing.
    Bitmap canvas = makeCanvas(4, 4);
    Graphics g(canvas);
    g.DrawImage(truncated, QRectF(0, 0, 4, 4));
    EXPECT_EQ(countPixels(canvas.image(), Qt::white), 16);
}

TEST(Image, PicturesBeyondTheLimitFailBeforeDecoding)
{
    TestFolder folder;
    QElapsedTimer timer;
    timer.start();
    const Image huge(folder.write("huge.png", pngDeclaring(60000, 60000)));
    expectError(huge, Status::OutOfMemory);
    const Image wide(folder.write("wide.png", pngDeclaring(1u << 30, 1)));
    EXPECT_NE(wide.GetLastStatus(), Status::Ok);
    EXPECT_EQ(wide.GetWidth(), 0u);
    EXPECT_LT(timer.elapsed(), 2000);

    // Just within the limit is accepted as a size (the data here is bad, so it still fails,
    // but not for its size).
    const Image fits(folder.write("fits.png", pngDeclaring(64, 64)));
    EXPECT_NE(fits.GetLastStatus(), Status::OutOfMemory);

    EXPECT_EQ(Bitmap(100000, 100000).GetLastStatus(), Status::OutOfMemory);
    EXPECT_EQ(Bitmap(0, 10).GetLastStatus(), Status::InvalidParameter);
}

TEST(Image, RotateFlipMovesPixelsAsNamed)
{
    const QRgb red = qRgb(255, 0, 0), green = qRgb(0, 255, 0), blue = qRgb(0, 0, 255), yellow = qRgb(255, 255, 0);
    QImage source(3, 2, QImage::Format_RGB32);
    source.fill(qRgb(0, 0, 0));
    source.setPixel(0, 0, red);
    source.setPixel(2, 0, green);
    source.setPixel(0, 1, blue);
    source.setPixel(2, 1, yellow);
    // Top left, top right, bottom left, bottom right; and the size.
    const auto turned = [&](RotateFlipType type) {
        Image image(source);
        image.RotateFlip(type);
        const QImage& i = image.image();
        return std::make_pair(QList<QRgb>{i.pixel(0, 0), i.pixel(i.width() - 1, 0), i.pixel(0, i.height() - 1),
                                          i.pixel(i.width() - 1, i.height() - 1)},
                              i.size());
    };
    using Corners = QList<QRgb>;
    EXPECT_EQ(turned(Rotate180FlipX), std::make_pair(Corners{blue, yellow, red, green}, QSize(3, 2)));
    EXPECT_EQ(turned(RotateNoneFlipX), std::make_pair(Corners{green, red, yellow, blue}, QSize(3, 2)));
    EXPECT_EQ(turned(Rotate180FlipNone), std::make_pair(Corners{yellow, blue, green, red}, QSize(3, 2)));
    EXPECT_EQ(turned(Rotate90FlipNone), std::make_pair(Corners{blue, red, yellow, green}, QSize(2, 3)));
    EXPECT_EQ(turned(Rotate270FlipNone), std::make_pair(Corners{green, yellow, red, blue}, QSize(2, 3)));
    EXPECT_EQ(turned(Rotate90FlipX), std::make_pair(Corners{red, blue, green, yellow}, QSize(2, 3)));
    EXPECT_EQ(turned(RotateNoneFlipNone), std::make_pair(Corners{red, green, blue, yellow}, QSize(3, 2)));
}

TEST(Bitmap, LockedBitsAreBgraNotPremultipliedAndComeBack)
{
    Bitmap bitmap(3, 2);
    ASSERT_EQ(bitmap.GetLastStatus(), Status::Ok);
    EXPECT_EQ(countPixels(bitmap.image(), QColor(0, 0, 0, 0)), 6);
    {
        Graphics g(bitmap);
        g.FillRectangle(SolidBrush(Color(128, 200, 100, 50)), QRectF(0, 0, 1, 1));
    }
    BitmapData data = bitmap.LockBits();
    ASSERT_NE(data.Scan0, nullptr);
    EXPECT_EQ(data.Width, 3);
    EXPECT_EQ(data.Height, 2);
    EXPECT_EQ(data.Stride, 12);
    const unsigned char* p = data.Scan0;
    EXPECT_NEAR(p[0], 50, 1); // blue
    EXPECT_NEAR(p[1], 100, 1); // green
    EXPECT_NEAR(p[2], 200, 1); // red, not premultiplied
    EXPECT_EQ(p[3], 128); // alpha
    EXPECT_EQ(p[4] | p[5] | p[6] | p[7], 0);

    // Write an opaque pixel into the second row and give the bits back.
    unsigned char* q = data.Scan0 + data.Stride + 2 * 4;
    q[0] = 10;
    q[1] = 20;
    q[2] = 30;
    q[3] = 255;
    bitmap.UnlockBits(data);
    EXPECT_EQ(data.Scan0, nullptr);
    EXPECT_EQ(bitmap.image().format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(bitmap.image().pixel(2, 1), qRgb(30, 20, 10));
    EXPECT_EQ(qAlpha(bitmap.image().pixel(0, 0)), 128);
}

TEST(ImageAttributes, SaturationMatrixAndGammaOnKnownPixels)
{
    QImage image(4, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(255, 0, 0, 255));
    image.setPixel(1, 0, qRgba(0, 255, 0, 255));
    image.setPixel(2, 0, qRgba(128, 128, 128, 255));
    image.setPixel(3, 0, qRgba(200, 100, 0, 128));

    ImageAttributes none;
    EXPECT_FALSE(none.HasAdjustment());
    EXPECT_EQ(none.Apply(image), image);

    // Saturation 0 about the luminance weights: every colour becomes its grey.
    ColorMatrix grey{};
    for (int j = 0; j < 3; ++j) {
        grey.m[0][j] = 0.3086f;
        grey.m[1][j] = 0.6094f;
        grey.m[2][j] = 0.0820f;
    }
    grey.m[3][3] = grey.m[4][4] = 1;
    ImageAttributes saturation;
    saturation.SetColorMatrix(grey);
    const QImage g = saturation.Apply(image);
    EXPECT_EQ(g.format(), QImage::Format_ARGB32);
    EXPECT_EQ(g.pixel(0, 0), qRgb(79, 79, 79));
    EXPECT_EQ(g.pixel(1, 0), qRgb(155, 155, 155));
    EXPECT_EQ(g.pixel(2, 0), qRgb(128, 128, 128));
    EXPECT_EQ(g.pixel(3, 0), qRgba(123, 123, 123, 128)); // stored colour, alpha kept

    // Gamma above 1 darkens, below 1 lightens; the ends and alpha stay.
    ImageAttributes darker;
    darker.SetGamma(2.0f);
    const QImage d = darker.Apply(image);
    EXPECT_EQ(d.pixel(2, 0), qRgb(64, 64, 64));
    EXPECT_EQ(d.pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_EQ(d.pixel(3, 0), qRgba(157, 39, 0, 128));
    ImageAttributes lighter;
    lighter.SetGamma(0.5f);
    EXPECT_EQ(lighter.Apply(image).pixel(2, 0), qRgb(181, 181, 181));

    // The matrix comes first, then gamma; results are clamped.
    ColorMatrix shift{};
    shift.m[0][0] = 2;
    shift.m[1][1] = shift.m[2][2] = shift.m[3][3] = shift.m[4][4] = 1;
    shift.m[4][2] = 0.5f; // add half to blue
    ImageAttributes both;
    both.SetColorMatrix(shift);
    both.SetGamma(2.0f);
    const QImage b = both.Apply(image);
    EXPECT_EQ(b.pixel(0, 0), qRgb(255, 0, 64)); // red doubled and clamped; blue 0 + 128, then squared
    EXPECT_EQ(b.pixel(2, 0), qRgb(255, 64, 255));
    both.ClearColorMatrix();
    both.ClearGamma();
    EXPECT_FALSE(both.HasAdjustment());
}

TEST(ImageAttributes, LargeImagesAreAdjustedInEveryRow)
{
    // Large enough to be shared out among threads; every row must come out the same.
    QImage image(1201, 1001, QImage::Format_ARGB32_Premultiplied);
    image.fill(qRgba(128, 128, 128, 255));
    ImageAttributes darker;
    darker.SetGamma(2.0f);
    const QImage result = darker.Apply(image);
    EXPECT_EQ(countPixels(result, QColor(64, 64, 64)), 1201 * 1001);
    EXPECT_EQ(image.pixel(0, 1000), qRgb(128, 128, 128));
}
