#include "GraphicsTestSupport.h"

#include "TestSupport.h"
#include "platform/graphics/SolidBrush.h"

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

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : type + data) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = crc & 1 ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
    }
    char length[4], sum[4];
    qToBigEndian(quint32(data.size()), length);
    qToBigEndian(~crc, sum);
    return QByteArray(length, 4) + type + data + QByteArray(sum, 4);
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

void expectError(const Image& image, Status status)
{
    EXPECT_EQ(image.GetLastStatus(), status);
    EXPECT_EQ(image.GetWidth(), 0u);
    EXPECT_EQ(image.GetHeight(), 0u);
}

} // namespace

TEST(Image, LoadsByContentWhateverTheNameAndKeepsPixelsPremultiplied)
{
    TestFolder folder;
    QImage sample = imageOf({"RGB", "YB#"}).convertToFormat(QImage::Format_ARGB32);
    sample.setPixel(0, 0, qRgba(200, 100, 50, 128));
    for (const char* name : {"sample.png", "photo.jpg"}) {
        const Image png(folder.write(name, pngBytes(sample)));
        ASSERT_EQ(png.GetLastStatus(), Status::Ok) << name;
        EXPECT_EQ(png.GetType(), ImageType::Bitmap);
        EXPECT_EQ(QSize(int(png.GetWidth()), int(png.GetHeight())), QSize(3, 2));
        EXPECT_EQ(png.image().format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(rowsOf(png.image()), (QStringList{"?GB", "YB#"}));
    }
}

TEST(Image, BadFilesGiveAnEmptyErrorImage)
{
    TestFolder folder;
    expectError(Image(folder.path() + "/missing.png"), Status::FileNotFound);
    expectError(Image(folder.path()), Status::FileNotFound);
    expectError(Image(QString()), Status::FileNotFound);
    expectError(Image(folder.write("empty.png", QByteArray())), Status::UnknownImageFormat);
    expectError(Image(folder.write("text.bmp", "this is no picture at all, just words")), Status::UnknownImageFormat);

    QByteArray noise(4096, '\0');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char((i * 7919 + 13) * 31 % 251);
    QImage big(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i)
        big.setPixel(i % 64, i / 64, qRgb(i * 4, i / 16, (i * i) & 255));
    const QByteArray whole = pngBytes(big);
    for (const QByteArray& bytes : {noise, whole.left(whole.size() / 2)}) {
        const Image broken(folder.write("broken.png", bytes));
        EXPECT_NE(broken.GetLastStatus(), Status::Ok);
        EXPECT_EQ(broken.GetWidth(), 0u);
        // Drawing an error image draws nothing.
        const Bitmap canvas = drawOn(4, 4, [&](Graphics& g) { g.DrawImage(broken, QRectF(0, 0, 4, 4)); });
        EXPECT_EQ(countPixels(canvas.image(), Qt::white), 16);
    }
}

TEST(Image, PicturesBeyondTheLimitFailBeforeDecoding)
{
    TestFolder folder;
    QElapsedTimer timer;
    timer.start();
    expectError(Image(folder.write("huge.png", pngDeclaring(60000, 60000))), Status::OutOfMemory);
    const Image wide(folder.write("wide.png", pngDeclaring(1u << 30, 1)));
    EXPECT_NE(wide.GetLastStatus(), Status::Ok);
    EXPECT_EQ(wide.GetWidth(), 0u);
    EXPECT_LT(timer.elapsed(), 2000);
    // Within the limit the size is accepted (the data here is bad, so it still fails, but not for its size).
    EXPECT_NE(Image(folder.write("fits.png", pngDeclaring(64, 64))).GetLastStatus(), Status::OutOfMemory);

    EXPECT_EQ(Bitmap(100000, 100000).GetLastStatus(), Status::OutOfMemory);
    EXPECT_EQ(Bitmap(0, 10).GetLastStatus(), Status::InvalidParameter);
}

TEST(Image, RotateFlipTurnsHalfWayAndMirrorsAcross)
{
    // The one turn the program asks for: upside down, left and right kept.
    Image image(imageOf({"R#G", "B#Y"}));
    image.RotateFlip(Rotate180FlipX);
    EXPECT_EQ(rowsOf(image.image()), (QStringList{"B#Y", "R#G"}));
}

TEST(Bitmap, ReadLockedBitsAreBgraNotPremultipliedAndLeaveTheBitmapAsItWas)
{
    Bitmap bitmap(3, 2);
    ASSERT_EQ(bitmap.GetLastStatus(), Status::Ok);
    EXPECT_EQ(countPixels(bitmap.image(), QColor(0, 0, 0, 0)), 6);
    Graphics(bitmap).FillRectangle(SolidBrush(Color(128, 200, 100, 50)), QRectF(0, 0, 1, 1));
    BitmapData data = bitmap.LockBits(ImageLockMode::Read);
    ASSERT_NE(data.Scan0, nullptr);
    EXPECT_EQ(QList<int>({data.Width, data.Height, data.Stride}), QList<int>({3, 2, 12}));
    // Blue, green, red (not premultiplied), alpha; then a clear pixel.
    const quint8* p = data.Scan0;
    EXPECT_TRUE(near(QColor(p[2], p[1], p[0], p[3]), QColor(200, 100, 50, 128), 1));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(p) + 4, 4), QByteArray(4, '\0'));
    data.Scan0[4] = 99;
    bitmap.UnlockBits(data);
    EXPECT_EQ(data.Scan0, nullptr);
    EXPECT_EQ(qAlpha(bitmap.image().pixel(0, 0)), 128);
    EXPECT_EQ(bitmap.image().pixel(1, 0), 0u);
}

TEST(ImageAttributes, MatrixThenGammaOnKnownPixelsInEveryRow)
{
    const QRgb pixels[] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(128, 128, 128), qRgba(200, 100, 0, 128)};
    const QImage image = QImage(reinterpret_cast<const uchar*>(pixels), 4, 1, QImage::Format_ARGB32).copy();
    const auto apply = [&](const ColorMatrix* matrix, float gamma) {
        ImageAttributes attributes;
        if (matrix)
            attributes.SetColorMatrix(*matrix);
        if (gamma)
            attributes.SetGamma(gamma);
        const QImage result = attributes.Apply(image);
        EXPECT_EQ(result.format(), QImage::Format_ARGB32);
        return QList<QRgb>{result.pixel(0, 0), result.pixel(1, 0), result.pixel(2, 0), result.pixel(3, 0)};
    };
    EXPECT_EQ(apply(nullptr, 0), QList<QRgb>(std::begin(pixels), std::end(pixels)));
    // Every colour becomes its grey; alpha stays.
    const ColorMatrix grey = greyMatrix();
    EXPECT_EQ(apply(&grey, 0), (QList<QRgb>{qRgb(79, 79, 79), qRgb(155, 155, 155), qRgb(128, 128, 128),
                                            qRgba(123, 123, 123, 128)}));
    // Gamma above 1 darkens, below 1 lightens; the ends and alpha stay.
    EXPECT_EQ(apply(nullptr, 2), (QList<QRgb>{pixels[0], pixels[1], qRgb(64, 64, 64), qRgba(157, 39, 0, 128)}));
    EXPECT_EQ(apply(nullptr, 0.5f)[2], qRgb(181, 181, 181));
    // The matrix comes first, then gamma; results are clamped: red doubled, blue 0 + 128 then squared.
    ColorMatrix shift{};
    shift.m[0][0] = 2;
    shift.m[1][1] = shift.m[2][2] = shift.m[3][3] = shift.m[4][4] = 1;
    shift.m[4][2] = 0.5f;
    EXPECT_EQ(apply(&shift, 2).mid(0, 3), (QList<QRgb>{qRgb(255, 0, 64), qRgb(0, 255, 64), qRgb(255, 64, 255)}));

    // Large enough to be shared out among threads; every row must come out the same.
    QImage large(1201, 1001, QImage::Format_ARGB32_Premultiplied);
    large.fill(qRgba(128, 128, 128, 255));
    ImageAttributes darker;
    darker.SetGamma(2.0f);
    EXPECT_EQ(countPixels(darker.Apply(large), QColor(64, 64, 64)), 1201 * 1001);
    EXPECT_EQ(large.pixel(0, 1000), qRgb(128, 128, 128));
}
