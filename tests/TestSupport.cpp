#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdlib>

TestFolder::TestFolder() = default;

QString TestFolder::write(const QString& name, const QByteArray& bytes) const
{
    const QString full = m_dir.filePath(name);
    QDir().mkpath(QFileInfo(full).absolutePath());
    QFile file(full);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return full;
}

int countPixels(const QImage& image, QColor color, int tolerance)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < argb.height(); ++y) {
        const QRgb* row = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const QRgb p = row[x];
            if (std::abs(qRed(p) - color.red()) <= tolerance && std::abs(qGreen(p) - color.green()) <= tolerance
                && std::abs(qBlue(p) - color.blue()) <= tolerance && std::abs(qAlpha(p) - color.alpha()) <= tolerance)
                ++count;
        }
    }
    return count;
}
