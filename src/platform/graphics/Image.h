#pragma once

#include <QImage>
#include <QString>

namespace gfx {

enum class Status { Ok = 0, GenericError = 1, InvalidParameter = 2, OutOfMemory = 3, FileNotFound = 10, UnknownImageFormat = 13 };
enum class ImageType { Unknown = 0, Bitmap = 1, Metafile = 2 };

// Rotate-flip codes; 6 (Rotate180FlipX) reverses the rows and keeps the columns.
enum RotateFlipType { RotateNoneFlipNone = 0, Rotate90FlipNone = 1, Rotate180FlipNone = 2, Rotate270FlipNone = 3,
                      RotateNoneFlipX = 4, Rotate90FlipX = 5, Rotate180FlipX = 6, Rotate270FlipX = 7 };

// A picture. Loading never throws and never reports: a file that is missing, empty, of an
// unknown format or too large gives an image in an error state with size 0, and drawing it
// draws nothing. Pixels are kept premultiplied for fast drawing. A Windows metafile (.wmf, told
// by its content) is rasterised on loading, a placeable one at 96 dpi, with a transparent
// background, and keeps the metafile type.
class Image {
public:
    Image() = default; // an error image of size 0
    explicit Image(const QString& path);
    explicit Image(QImage image, ImageType type = ImageType::Bitmap);
    virtual ~Image() = default;

    unsigned GetWidth() const { return unsigned(m_image.width()); }
    unsigned GetHeight() const { return unsigned(m_image.height()); }
    Status GetLastStatus() const { return m_status; }
    ImageType GetType() const { return m_type; }
    // Turns and mirrors a bitmap; a metafile is left unchanged.
    void RotateFlip(RotateFlipType type);

    const QImage& image() const { return m_image; }

    // The largest picture the program decodes, in pixels of 4 bytes; larger ones fail to load.
    static constexpr qint64 MaxPixels = 256LL * 1024 * 1024 / 4;

protected:
    QImage m_image;
    Status m_status = Status::InvalidParameter;
    ImageType m_type = ImageType::Unknown;
};

// The bytes of a locked bitmap: rows of B, G, R, A (not premultiplied), stride 4 * width.
struct BitmapData {
    int Width = 0;
    int Height = 0;
    int Stride = 0;
    unsigned char* Scan0 = nullptr;
};

// What a lock is for: bits locked for reading only are not taken back, and bits locked for
// writing only start undefined, so neither pays for a conversion it doesn't need.
enum class ImageLockMode { Read = 1, Write = 2, ReadWrite = 3 };

// A bitmap to draw on, 32 bits per pixel with alpha; a new bitmap is all transparent.
class Bitmap : public Image {
public:
    Bitmap(int width, int height);
    explicit Bitmap(QImage image);

    // LockBits hands out non-premultiplied bytes; UnlockBits takes them back.
    BitmapData LockBits() { return LockBits(ImageLockMode::ReadWrite); }
    BitmapData LockBits(ImageLockMode mode);
    void UnlockBits(BitmapData& data);

    QImage& image() { return m_image; }
    using Image::image;

private:
    QImage m_locked; // the non-premultiplied copy handed out between LockBits and UnlockBits
    ImageLockMode m_lockMode = ImageLockMode::ReadWrite;
};

} // namespace gfx
