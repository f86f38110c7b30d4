#include "platform/graphics/Image.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPoint>
#include <QTransform>
#include <QtEndian>

#include <libwmf/api.h>
#include <libwmf/ipa.h>
#include <libwmf/gd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <optional>

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

// ---- Windows metafiles ----------------------------------------------------------------------

constexpr quint32 PlaceableKey = 0x9AC6CDD7;
constexpr int PlaceableSize = 22; // bytes before the metafile header in a placeable file
constexpr int HeaderSize = 18;
constexpr qint64 MaxMetafileBytes = 64LL * 1024 * 1024;
constexpr double RasterDpi = 96.0;
constexpr int PlayMilliseconds = 10000; // a metafile that plays longer than this is given up

quint16 word(const QByteArray& bytes, qint64 at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

qint16 signedWord(const QByteArray& bytes, qint64 at)
{
    return qFromLittleEndian<qint16>(bytes.constData() + at);
}

quint32 dword(const QByteArray& bytes, qint64 at)
{
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

// Whether the bytes begin as a Windows metafile does: the placeable key, or a metafile header
// (in memory or on disk, nine words long, for Windows 2 or 3).
bool looksLikeMetafile(const QByteArray& head)
{
    if (head.size() >= 4 && dword(head, 0) == PlaceableKey)
        return true;
    if (head.size() < HeaderSize)
        return false;
    const quint16 type = word(head, 0), size = word(head, 2), version = word(head, 4);
    return (type == 1 || type == 2) && size == 9 && (version == 0x0100 || version == 0x0300);
}

// What the program needs to know about a metafile before playing it.
struct MetafileFrame {
    bool placeable = false;
    QRect bounds; // placeable: the picture's frame in logical units
    int unitsPerInch = 0;
    QPoint windowOrigin; // the first window origin the records set
};

// Checks the header and walks the records, so that a truncated or garbled file is refused before
// the player sees it: every record must be at least three words and lie within the file.
std::optional<MetafileFrame> readFrame(const QByteArray& bytes)
{
    MetafileFrame frame;
    qint64 at = 0;
    if (bytes.size() >= 4 && dword(bytes, 0) == PlaceableKey) {
        if (bytes.size() < PlaceableSize + HeaderSize)
            return std::nullopt;
        frame.placeable = true;
        const int left = signedWord(bytes, 6), top = signedWord(bytes, 8);
        const int right = signedWord(bytes, 10), bottom = signedWord(bytes, 12);
        frame.bounds = QRect(QPoint(std::min(left, right), std::min(top, bottom)),
                             QPoint(std::max(left, right) - 1, std::max(top, bottom) - 1));
        frame.unitsPerInch = word(bytes, 14);
        if (frame.bounds.isEmpty() || frame.unitsPerInch == 0)
            return std::nullopt;
        at = PlaceableSize;
    }
    if (!looksLikeMetafile(bytes.mid(at, HeaderSize)))
        return std::nullopt;
    at += HeaderSize;
    bool originSeen = false;
    while (at < bytes.size()) {
        if (bytes.size() - at < 6)
            return std::nullopt;
        const quint32 words = dword(bytes, at);
        const quint16 function = word(bytes, at + 4);
        if (words < 3 || qint64(words) * 2 > bytes.size() - at)
            return std::nullopt;
        if (function == 0x0000)
            return frame; // the end record
        if (function == 0x020B && !originSeen && words >= 5) { // SetWindowOrg(y, x)
            frame.windowOrigin = QPoint(signedWord(bytes, at + 8), signedWord(bytes, at + 6));
            originSeen = true;
        }
        at += qint64(words) * 2;
    }
    return std::nullopt; // no end record
}

// libwmf's raster back-end starts every picture on opaque white, where a metafile leaves its
// background untouched. The back-end's begin step is wrapped to clear the new picture to
// transparent. The picture is the first member of the back-end's private data: checked by the
// metafile tests, which see transparency around a drawn rectangle.
std::atomic<void (*)(wmfAPI*)> rasterBegin{nullptr};

void beginTransparent(wmfAPI* api)
{
    rasterBegin.load()(api);
    if (api->err != wmf_E_None)
        return;
    const wmf_gd_t* data = WMF_GD_GetData(api);
    if (!data->gd_data)
        return;
    void* picture = *static_cast<void**>(data->gd_data);
    if (!picture)
        return;
    int* pixels = wmf_gd_image_pixels(picture);
    if (!pixels)
        return;
    constexpr int Transparent = 0x7F000000; // the back-end's alpha is 7 bits, 127 = clear
    std::fill(pixels, pixels + qint64(data->width) * data->height, Transparent);
}

struct PlayClock {
    QElapsedTimer timer;
};

int keepPlaying(void* context, float)
{
    return static_cast<PlayClock*>(context)->timer.elapsed() > PlayMilliseconds ? 1 : 0;
}

// The raster size: a placeable picture's frame at 96 dpi, anything else at one pixel per logical
// unit of what it draws; scaled down to fit the pixel limit, keeping the aspect.
QSize rasterSize(double width, double height)
{
    if (!(width > 0) || !(height > 0) || !std::isfinite(width) || !std::isfinite(height))
        return {};
    const double fit = std::sqrt(double(Image::MaxPixels) / (width * height));
    const double scale = std::min({1.0, fit, 32767.0 / width, 32767.0 / height});
    return QSize(std::max(1, int(std::floor(width * scale))), std::max(1, int(std::floor(height * scale))));
}

// Plays the metafile through libwmf's raster back-end. Errors leave the status set and a null
// picture; the library's own messages are silenced.
QImage renderMetafile(QByteArray bytes, Status& status)
{
    status = Status::GenericError;
    const std::optional<MetafileFrame> frame = readFrame(bytes);
    if (!frame)
        return {};

    wmfAPI_Options options{};
    options.function = wmf_gd_function;
    const unsigned long flags = WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL | WMF_OPT_NO_ERROR | WMF_OPT_NO_DEBUG;
    wmfAPI* api = nullptr;
    if (wmf_api_create(&api, flags, &options) != wmf_E_None || !api) {
        if (api)
            wmf_api_destroy(api);
        return {};
    }
    struct Release {
        wmfAPI* api;
        bool open = false;
        ~Release()
        {
            if (open)
                wmf_mem_close(api);
            wmf_api_destroy(api);
        }
    } release{api};

    auto* functions = static_cast<wmfFunctionReference*>(api->function_reference);
    if (!functions || !functions->device_begin)
        return {};
    if (functions->device_begin != beginTransparent) {
        rasterBegin = functions->device_begin;
        functions->device_begin = beginTransparent;
    }
    PlayClock clock;
    clock.timer.start();
    wmf_status_function(api, &clock, keepPlaying);

    if (wmf_mem_open(api, reinterpret_cast<unsigned char*>(bytes.data()), long(bytes.size())) != wmf_E_None)
        return {};
    release.open = true;
    wmfD_Rect box{};
    if (wmf_scan(api, 0, &box) != wmf_E_None)
        return {};

    QSize size;
    if (frame->placeable) {
        // The player works in points from the window origin, the frame in its own units.
        const double points = 72.0 / frame->unitsPerInch;
        const QRect b = frame->bounds;
        box.TL.x = float((b.left() - frame->windowOrigin.x()) * points);
        box.TL.y = float((b.top() - frame->windowOrigin.y()) * points);
        box.BR.x = float((b.left() + b.width() - frame->windowOrigin.x()) * points);
        box.BR.y = float((b.top() + b.height() - frame->windowOrigin.y()) * points);
        size = rasterSize(b.width() * RasterDpi / frame->unitsPerInch, b.height() * RasterDpi / frame->unitsPerInch);
    } else {
        size = rasterSize(std::ceil(box.BR.x - box.TL.x), std::ceil(box.BR.y - box.TL.y));
    }
    if (size.isEmpty() || !(box.BR.x > box.TL.x) || !(box.BR.y > box.TL.y))
        return {};

    wmf_gd_t* device = WMF_GD_GetData(api);
    device->type = wmf_gd_image;
    device->bbox = box;
    device->width = unsigned(size.width());
    device->height = unsigned(size.height());
    if (wmf_play(api, 0, &box) != wmf_E_None || !device->gd_image)
        return {};
    const int* pixels = wmf_gd_image_pixels(device->gd_image);
    if (!pixels)
        return {};

    QImage image(size, QImage::Format_ARGB32);
    if (image.isNull()) {
        status = Status::OutOfMemory;
        return {};
    }
    for (int y = 0; y < size.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const int* row = pixels + qint64(y) * size.width();
        for (int x = 0; x < size.width(); ++x) {
            const int clear = (row[x] >> 24) & 0x7F; // 0 opaque .. 127 transparent
            line[x] = (QRgb(row[x]) & 0xFFFFFF) | QRgb((127 - clear) * 255 / 127) << 24;
        }
    }
    status = Status::Ok;
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

Image::Image(const QString& path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile()) {
        m_status = Status::FileNotFound;
        return;
    }
    // Metafiles are told by their content, whatever the file is called.
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && looksLikeMetafile(file.peek(HeaderSize))) {
        if (file.size() > MaxMetafileBytes) {
            m_status = Status::OutOfMemory;
            return;
        }
        QImage picture = renderMetafile(file.readAll(), m_status);
        if (m_status == Status::Ok) {
            m_image = std::move(picture);
            m_type = ImageType::Metafile;
        }
        return;
    }
    file.close();

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
    // Metafiles are left as they are: the program mirrors the world transform for them instead
    // of relying on this, which only makes sense if turning a metafile has no effect.
    if (m_image.isNull() || m_type == ImageType::Metafile)
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

BitmapData Bitmap::LockBits(ImageLockMode mode)
{
    if (m_image.isNull())
        return {};
    // Format_ARGB32 is B, G, R, A in memory on little-endian machines, as locked bits are.
    m_lockMode = mode;
    if (mode == ImageLockMode::Write)
        m_locked = QImage(m_image.size(), QImage::Format_ARGB32);
    else
        m_locked = m_image.convertToFormat(QImage::Format_ARGB32);
    if (m_locked.isNull())
        return {};
    return {m_locked.width(), m_locked.height(), int(m_locked.bytesPerLine()), m_locked.bits()};
}

void Bitmap::UnlockBits(BitmapData& data)
{
    if (m_locked.isNull() || data.Scan0 != m_locked.constBits())
        return;
    if (m_lockMode != ImageLockMode::Read)
        m_image = m_locked.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_locked = QImage();
    data = {};
}

} // namespace gfx
