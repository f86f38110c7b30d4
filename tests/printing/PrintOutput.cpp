#include "PrintOutput.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

QString pdfInfo(const QByteArray& pdf)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("in.pdf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
        return {};
    file.close();
    QProcess tool;
    tool.start("pdfinfo", {file.fileName()});
    if (!tool.waitForFinished(30000))
        tool.kill();
    return QString::fromLocal8Bit(tool.readAllStandardOutput());
}

} // namespace

int PrintOutput::PageCount(const QByteArray& pdf)
{
    static const QRegularExpression pages(QStringLiteral("^Pages:\\s+(\\d+)"), QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = pages.match(pdfInfo(pdf));
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

QSizeF PrintOutput::PageSizePoints(const QByteArray& pdf)
{
    static const QRegularExpression size(QStringLiteral("^Page size:\\s+([\\d.]+) x ([\\d.]+) pts"),
                                         QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = size.match(pdfInfo(pdf));
    return match.hasMatch() ? QSizeF(match.captured(1).toDouble(), match.captured(2).toDouble()) : QSizeF();
}

QImage PrintOutput::Render(const QByteArray& pdf, int dpi, int page)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("in.pdf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
        return {};
    file.close();
    QProcess tool;
    tool.start("pdftoppm", {"-r", QString::number(dpi), "-f", QString::number(page), "-l", QString::number(page),
                            "-png", "-singlefile", file.fileName(), dir.filePath("out")});
    if (!tool.waitForFinished(60000))
        tool.kill();
    return QImage(dir.filePath("out.png")).convertToFormat(QImage::Format_RGB32);
}

int PrintOutput::FirstRedColumn(const QImage& image, int row)
{
    if (row < 0 || row >= image.height())
        return -1;
    for (int x = 0; x < image.width(); ++x) {
        const QColor c = image.pixelColor(x, row);
        if (c.red() > 200 && c.green() < 80 && c.blue() < 80)
            return x;
    }
    return -1;
}
