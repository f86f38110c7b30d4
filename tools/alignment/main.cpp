// Draws the alignment pictures of the print position dialog at 300 dots per inch, one pixel per
// unit of the printed page. Each shows the dialog's scale of letters C to K at its true size:
// one cell of four bars (yellow, red, blue, green) is 16 clicks of 0.00375 inch, 0.06 inch or
// 18 pixels, and the cell of G is centred on the place where a print without error puts it.
// The user reads which cell a physical edge cuts and sets that letter, and that bar, under the
// dialog's arrow.
//
//   printpos1.jpg  a 120 mm disc: the scales at the hub hole's edge (X left of the hole, Y below
//                  it), rings every 5 mm, a centre cross, an arrow pointing away from the centre;
//   printpos2.jpg  the same disc printed again after it was put back turned: its arrow points
//                  the other way, so that on a well centred print the two arrows lie on one
//                  another and the rings of both prints coincide; its scales land where the
//                  first print left room;
//   printpos3.jpg  a label sheet, for a page of Letter or A4: scales across the page's centre
//                  lines, read where the sheet folds when its edges are laid together.
//
// Usage: tessarelle-alignment-images OUTPUT_FOLDER

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>

#include <cmath>

namespace {

constexpr double Dpi = 300.0;
constexpr double CellPx = 0.06 * Dpi; // 16 clicks of 0.00375 inch
constexpr double StripPx = 3.0 / 25.4 * Dpi;

double Mm(double millimetres)
{
    return millimetres / 25.4 * Dpi;
}

QFont Face(double pixels, bool bold)
{
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(int(std::lround(pixels)));
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// Text centred on a point.
void Centred(QPainter& painter, QPointF centre, const QString& text)
{
    const QFontMetricsF metrics(painter.font());
    const QRectF box(centre.x() - 2000, centre.y() - metrics.height() / 2, 4000, metrics.height());
    painter.drawText(box, Qt::AlignCenter, text);
}

// The letters C to K along an axis, G's cell centred on the point: left to right across a
// horizontal strip, top to bottom along a vertical one, each cell's letter beside the strip on
// the side given (-1 above or left, +1 below or right).
void Scale(QPainter& painter, QPointF g, bool horizontal, int letterSide)
{
    static const QColor bars[4] = {QColor(255, 255, 0), QColor(255, 0, 0), QColor(0, 0, 255), QColor(0, 255, 0)};
    painter.save();
    painter.setPen(Qt::NoPen);
    const double barPx = CellPx / 4;
    painter.setFont(Face(17, true));
    for (int i = 0; i <= 8; ++i) {
        const double centre = (horizontal ? g.x() : g.y()) + (i - 4) * CellPx;
        for (int bar = 0; bar < 4; ++bar) {
            const double start = centre + (bar - 2) * barPx;
            painter.setBrush(bars[bar]);
            painter.drawRect(horizontal ? QRectF(start, g.y() - StripPx / 2, barPx, StripPx)
                                        : QRectF(g.x() - StripPx / 2, start, StripPx, barPx));
        }
        const double beside = StripPx / 2 + 12;
        painter.setPen(Qt::black);
        Centred(painter,
                horizontal ? QPointF(centre, g.y() + letterSide * beside) : QPointF(g.x() + letterSide * beside, centre),
                QString(QChar('C' + i)));
        painter.setPen(Qt::NoPen);
    }
    // A tick on G's middle, the red and blue bars' edge, on the side away from the letters: where
    // the edge lies when the print has no error.
    painter.setPen(QPen(Qt::black, 2));
    const double from = StripPx / 2 + 2;
    const double to = from + 16;
    if (horizontal)
        painter.drawLine(QPointF(g.x(), g.y() - letterSide * from), QPointF(g.x(), g.y() - letterSide * to));
    else
        painter.drawLine(QPointF(g.x() - letterSide * from, g.y()), QPointF(g.x() - letterSide * to, g.y()));
    painter.restore();
}

// The axis a scale is read for, at the end of it.
void AxisName(QPainter& painter, QPointF at, const QString& name)
{
    painter.save();
    painter.setPen(Qt::black);
    painter.setFont(Face(26, true));
    Centred(painter, at, name);
    painter.restore();
}

// A filled arrow from the tail to the point.
void Arrow(QPainter& painter, QPointF tail, QPointF point, double width)
{
    const QPointF along = (point - tail) / std::hypot(point.x() - tail.x(), point.y() - tail.y());
    const QPointF across(-along.y(), along.x());
    const QPointF neck = point - along * width * 1.6;
    const QPointF shape[7] = {point,
                              neck + across * width,
                              neck + across * width / 2,
                              tail + across * width / 2,
                              tail - across * width / 2,
                              neck - across * width / 2,
                              neck - across * width};
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawPolygon(shape, 7);
    painter.restore();
}

QImage Page(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    // 300 dots per inch, which the printed picture's size is read from.
    image.setDotsPerMeterX(int(std::lround(Dpi / 0.0254)));
    image.setDotsPerMeterY(int(std::lround(Dpi / 0.0254)));
    return image;
}

// One of the two disc prints; second: the print after the disc was turned.
QImage Disc(bool second)
{
    const int size = int(std::lround(Mm(120)));
    QImage image = Page(size, size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF c(size / 2.0, size / 2.0);

    // Rings every 5 mm from the hub outward, and a cross that shows where the centre printed.
    painter.setPen(QPen(QColor(140, 140, 140), 2));
    for (int r = 10; r <= 55; r += 5)
        painter.drawEllipse(c, Mm(r), Mm(r));
    painter.setPen(QPen(QColor(90, 90, 90), 2));
    for (const QPointF d : {QPointF(1, 0), QPointF(0, 1)}) {
        painter.drawLine(c + d * Mm(17), c + d * Mm(57));
        painter.drawLine(c - d * Mm(17), c - d * Mm(57));
        painter.drawLine(c - d * Mm(2), c + d * Mm(2));
    }
    painter.setPen(QPen(QColor(140, 140, 140), 2));
    painter.setFont(Face(26, false));
    for (int r = 10; r <= 55; r += 5) {
        const QPointF at = c + QPointF(Mm(r) - Mm(2.5), -Mm(2));
        Centred(painter, at, QString::number(r));
    }

    // The scales across the hub hole's edge, 7.5 mm from the centre: left of the hole and below
    // it, which leaves the right and the top free for the turned disc's first print.
    Scale(painter, c + QPointF(-Mm(7.5), 0), true, -1);
    AxisName(painter, c + QPointF(-Mm(7.5) - 5.5 * CellPx, 0), QStringLiteral("X"));
    Scale(painter, c + QPointF(0, Mm(7.5)), false, 1);
    AxisName(painter, c + QPointF(0, Mm(7.5) + 5.5 * CellPx), QStringLiteral("Y"));

    // The first print's arrow points up, the second's down; the disc was turned between them.
    const double side = second ? 1 : -1;
    Arrow(painter, c + QPointF(0, side * Mm(27)), c + QPointF(0, side * Mm(52)), Mm(4));
    painter.setPen(Qt::black);
    painter.setFont(Face(Mm(6), true));
    Centred(painter, c + QPointF(Mm(9), side * Mm(40)), second ? QStringLiteral("2") : QStringLiteral("1"));

    if (!second) {
        painter.setFont(Face(34, false));
        const QStringList lines = {QStringLiteral("Alignment print 1 of 2"),
                                   QStringLiteral("Read the letter, and the bar, where the"),
                                   QStringLiteral("hole's edge cuts each scale. In Printer"),
                                   QStringLiteral("Alignment, set that letter and bar"),
                                   QStringLiteral("under the arrow of its axis.")};
        for (int i = 0; i < lines.size(); ++i)
            Centred(painter, c + QPointF(0, Mm(24) + i * 40), lines[i]);
    }
    return image;
}

// The label sheet: 6 by 8 inches, inside both Letter and A4 with room for any printer's margins.
QImage Sheet()
{
    QImage image = Page(int(6 * Dpi), int(8 * Dpi));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF c(image.width() / 2.0, image.height() / 2.0);

    // Only the centre is marked: a printed fold line would invite folding on it instead of
    // laying the edges together.
    painter.setPen(QPen(Qt::black, 3));
    painter.drawLine(c - QPointF(Mm(4), 0), c + QPointF(Mm(4), 0));
    painter.drawLine(c - QPointF(0, Mm(4)), c + QPointF(0, Mm(4)));

    // Two scales on each fold, far apart, so that a skewed sheet shows as two readings.
    for (const double dy : {-2.5 * Dpi, 2.5 * Dpi}) {
        Scale(painter, c + QPointF(0, dy), true, -1);
        AxisName(painter, c + QPointF(-5.5 * CellPx, dy), QStringLiteral("X"));
    }
    for (const double dx : {-2.0 * Dpi, 2.0 * Dpi}) {
        Scale(painter, c + QPointF(dx, 0), false, -1);
        AxisName(painter, c + QPointF(dx, 5.5 * CellPx), QStringLiteral("Y"));
    }

    painter.setPen(Qt::black);
    painter.setFont(Face(60, true));
    Centred(painter, QPointF(c.x(), 0.35 * Dpi), QStringLiteral("Print alignment for label sheets"));
    painter.setFont(Face(40, false));
    const QStringList lines = {QStringLiteral("Fold the sheet in half with its side edges laid exactly together,"),
                               QStringLiteral("and again with its top and bottom edges together. Read the letter,"),
                               QStringLiteral("and the bar, where each fold crosses a scale; in Printer Alignment,"),
                               QStringLiteral("set that letter and bar under the arrow of its axis.")};
    for (int i = 0; i < lines.size(); ++i)
        Centred(painter, QPointF(c.x(), 0.6 * Dpi + i * 48), lines[i]);
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = QGuiApplication::arguments().mid(1);
    if (args.size() != 1) {
        err << "usage: tessarelle-alignment-images OUTPUT_FOLDER\n";
        return 2;
    }
    const QDir folder(args.first());
    const struct {
        const char* name;
        QImage image;
    } pictures[] = {{"printpos1.jpg", Disc(false)}, {"printpos2.jpg", Disc(true)}, {"printpos3.jpg", Sheet()}};
    for (const auto& picture : pictures) {
        const QString path = folder.filePath(QString::fromLatin1(picture.name));
        if (!picture.image.save(path, "JPEG", 92)) {
            err << "cannot write " << path << '\n';
            return 1;
        }
    }
    return 0;
}
