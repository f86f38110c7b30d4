#include "platform/graphics/Image.h"

#include <QFileInfo>
#include <QImageReader>
#include <QTransform>

namespace gfx {

namespace {

// Drawing is fastest from premultiplied pixels; opaque pictures stay in RGB32, which is both.
QImage toDrawingFormat(QImage image)
{
    switch (image.format()) {
    case QImage::Format_Invalid:
    case QImage::Format_ARGB32_Premultiplied:
    case QImage::Format_RGB32:
        return image;
    default:
        return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                             : QImage::Format_RGB32);
    }
}

bool tooLarge(QSize size)
{
    return qint64(size.width()) * size.height() > Image::MaxPixels;
}

} // namespace

Image::Image(const QString& path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile()) {
        m_status = Status::FileNotFound;
        return;
    }
    // Qt refuses large pictures by default; let through what the program can hold and no more.
    QImageReader::setAllocationLimit(int(MaxPixels * 4 / (1024 * 1024)) + 1);
    QImageReader reader(path); // the extension first, then the content
    reader.setAutoTransform(false);
    if (!reader.canRead()) {
        m_status = Status::UnknownImageFormat;
        return;
    }
    // Refuse a picture that declares a size beyond the limit before decoding anything.
    const QSize declared = reader.size();
    if (declared.isValid() && tooLarge(declared)) {
        m_status = Status::OutOfMemory;
        return;
    }
    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        m_status = reader.error() == QImageReader::UnsupportedFormatError ? Status::UnknownImageFormat
                                                                          : Status::GenericError;
        return;
    }
    if (tooLarge(image.size())) {
        m_status = Status::OutOfMemory;
        return;
    }
    m_image = toDrawingFormat(std::move(image));
    if (m_image.isNull()) {
        m_status = Status::OutOfMemory;
        return;
    }
    m_status = Status::Ok;
    m_type = ImageType::Bitmap;
}

Image::Image(QImage image, ImageType type)
{
    if (image.isNull()) {
        m_status = Status::InvalidParameter;
        return;
    }
    m_image = toDrawingFormat(std::move(image));
    m_status = m_image.isNull() ? Status::OutOfMemory : Status::Ok;
    m_type = m_image.isNull() ? ImageType::Unknown : type;
}

void Image::RotateFlip(RotateFlipType type)
{
    if (m_image.isNull())
        return;
    const int quarterTurns = int(type) & 3;
    bool flipX = (int(type) & 4) != 0;
    bool flipY = false;
    if (quarterTurns == 2) {
        // A half turn is both mirrors; with the extra X flip only the rows stay reversed.
        flipX = !flipX;
        flipY = true;
    } else if (quarterTurns != 0) {
        m_image = m_image.transformed(QTransform().rotate(90.0 * quarterTurns));
    }
    if (flipX || flipY)
        m_image = m_image.mirrored(flipX, flipY);
}

Bitmap::Bitmap(int width, int height)
{
    if (width <= 0 || height <= 0) {
        m_status = Status::InvalidParameter;
        return;
    }
    if (tooLarge(QSize(width, height))) {
        m_status = Status::OutOfMemory;
        return;
    }
    m_image = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
    if (m_image.isNull()) {
        m_status = Status::OutOfMemory;
        return;
    }
    m_image.fill(Qt::transparent);
    m_status = Status::Ok;
    m_type = ImageType::Bitmap;
}

Bitmap::Bitmap(QImage image) : Image(std::move(image), ImageType::Bitmap)
{
    // A bitmap is drawn on, so it always carries alpha.
    if (!m_image.isNull() && m_image.format() != QImage::Format_ARGB32_Premultiplied)
        m_image = m_image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

BitmapData Bitmap::LockBits()
{
    if (m_image.isNull())
        return {};
    // Format_ARGB32 is B, G, R, A in memory on little-endian machines, as locked bits are.
    m_locked = m_image.convertToFormat(QImage::Format_ARGB32);
    return {m_locked.width(), m_locked.height(), int(m_locked.bytesPerLine()), m_locked.bits()};
}

void Bitmap::UnlockBits(BitmapData& data)
{
    if (m_locked.isNull() || data.Scan0 != m_locked.constBits())
        return;
    m_image = m_locked.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_locked = QImage();
    data = {};
}

} // namespace gfx
