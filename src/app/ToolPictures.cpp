#include "app/ToolPictures.h"

#include <QIconEngine>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// The command ids of the tool column's buttons.
enum Command {
    Selection = 32808,
    Text = 31846,
    Scribble = 1062,
    Picture = 32834,
    Curve = 1061,
    ClosedCurve = 1059,
    Rectangle = 32772,
    Polygon = 32785,
    RoundRect = 32773,
    Ellipse = 32764,
    Halo = 32831,
    Arc = 1054,
    Arrow = 32798,
    Line = 32771,
    ZoomOut = 32830,
    ZoomIn = 32829,
    UnZoom = 1080,
    ShowGrid = 1084,
};

constexpr Command Commands[] = {Selection, Text,    Scribble, Picture, Curve, ClosedCurve,
                                Rectangle, Polygon, RoundRect, Ellipse, Halo, Arc,
                                Arrow,     Line,    ZoomOut,  ZoomIn,  UnZoom, ShowGrid};

// Pictures are drawn on a grid of 16 by 16 units. A stroke is one unit wide, rounded to whole
// device pixels, and straight strokes along the grid are moved onto whole pixels, so that
// small pictures stay sharp.
class Sketch {
public:
    Sketch(QPainter& painter, qreal devicePerUnit, bool disabled)
        : p(painter), m_devicePerUnit(devicePerUnit), m_bDisabled(disabled)
    {
    }

    QPainter& p;

    // The width in units of a stroke of the given nominal width, in whole device pixels.
    qreal width(qreal units = 1) const
    {
        return std::max(1.0, std::round(units * m_devicePerUnit)) / m_devicePerUnit;
    }
    // A coordinate moved to where a straight stroke along it covers whole device pixels.
    qreal snap(qreal c) const
    {
        const qreal d = c * m_devicePerUnit;
        const bool odd = static_cast<int>(std::round(width() * m_devicePerUnit)) % 2 != 0;
        return (odd ? std::floor(d) + 0.5 : std::round(d)) / m_devicePerUnit;
    }
    QRectF snapped(qreal left, qreal top, qreal right, qreal bottom) const
    {
        return QRectF(QPointF(snap(left), snap(top)), QPointF(snap(right), snap(bottom)));
    }

    // Disabled pictures lose their colour and most of their contrast.
    QColor colour(QRgb rgb) const
    {
        if (!m_bDisabled)
            return QColor(rgb);
        const int grey = 150 + qGray(rgb) * 105 / 255;
        return QColor(grey, grey, grey);
    }
    QColor ink() const { return colour(0x2f3642); }
    QColor fill() const { return colour(0xcfe2f7); }
    QColor paper() const { return colour(0xffffff); }

    QPen pen(qreal units = 1, Qt::PenJoinStyle join = Qt::RoundJoin, Qt::PenCapStyle cap = Qt::RoundCap) const
    {
        return QPen(ink(), width(units), Qt::SolidLine, cap, join);
    }
    // A filled shape with its outline.
    void shape(const QPainterPath& path, const QColor& fill, Qt::PenJoinStyle join = Qt::RoundJoin) const
    {
        p.setPen(pen(1, join));
        p.setBrush(fill);
        p.drawPath(path);
    }
    void stroke(const QPainterPath& path) const
    {
        p.setPen(pen());
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
    }

private:
    qreal m_devicePerUnit;
    bool m_bDisabled;
};

QPainterPath polygon(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    return path;
}

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    return path;
}

// A lens with its handle; the sign or frame inside is the caller's.
void drawMagnifier(const Sketch& s)
{
    s.p.setPen(s.pen(2.5, Qt::RoundJoin, Qt::RoundCap));
    s.p.drawLine(QPointF(10.2, 10.2), QPointF(13.6, 13.6));
    QPainterPath lens;
    lens.addEllipse(QPointF(6.6, 6.6), 5, 5);
    s.shape(lens, s.paper());
}

void drawPicture(const Sketch& s, int command)
{
    switch (command) {
    case Selection:
        s.shape(polygon({{4, 1.5}, {4, 13.2}, {6.8, 10.6}, {8.8, 14.8}, {10.8, 13.9}, {8.8, 9.8}, {12.4, 9.8}}),
                s.paper());
        break;
    case Text: {
        // A bold "A" drawn as a shape, so that it looks the same whatever fonts are installed.
        QPainterPath letter = polygon({{6.8, 1.8}, {9.2, 1.8}, {13.8, 14.2}, {11.3, 14.2}, {10.2, 11.1},
                                       {5.8, 11.1}, {4.7, 14.2}, {2.2, 14.2}});
        letter.addPath(polygon({{6.5, 8.9}, {9.5, 8.9}, {8, 4.6}}));
        s.p.setPen(Qt::NoPen);
        s.p.setBrush(s.ink());
        s.p.drawPath(letter);
        break;
    }
    case Scribble: {
        const std::initializer_list<QPointF> points = {{2, 12.5}, {5.5, 4}, {9.5, 11.5}, {14, 3.5}};
        s.stroke(polyline(points));
        s.p.setPen(Qt::NoPen);
        s.p.setBrush(s.ink());
        for (const QPointF& point : points)
            s.p.drawEllipse(point, 1.3, 1.3);
        break;
    }
    case Picture: {
        const QRectF frame = s.snapped(1.5, 3, 14.5, 13);
        s.p.setPen(Qt::NoPen);
        s.p.setBrush(s.fill());
        s.p.drawRect(frame);
        s.p.save();
        s.p.setClipRect(frame);
        s.p.setBrush(s.colour(0xffd24d));
        s.p.drawEllipse(QPointF(11, 6.2), 1.6, 1.6);
        s.p.setPen(s.pen());
        s.p.setBrush(s.colour(0x9fd39a));
        s.p.drawPath(polygon({{0, 14}, {0, 13}, {6, 7.2}, {9, 10.2}, {11, 8.4}, {16, 12.6}, {16, 14}}));
        s.p.restore();
        s.p.setPen(s.pen(1, Qt::MiterJoin));
        s.p.setBrush(Qt::NoBrush);
        s.p.drawRect(frame);
        break;
    }
    case Curve: {
        QPainterPath path(QPointF(2, 13));
        path.cubicTo(4, 0, 12, 16, 14, 3);
        s.stroke(path);
        break;
    }
    case ClosedCurve: {
        QPainterPath path(QPointF(2.5, 8));
        path.cubicTo(2, 3, 8, 1.5, 10, 4);
        path.cubicTo(11.5, 6, 15, 6, 14, 10);
        path.cubicTo(13, 14.5, 3, 14.5, 2.5, 8);
        s.shape(path, s.fill());
        break;
    }
    case Rectangle: {
        QPainterPath path;
        path.addRect(s.snapped(2, 3.5, 14, 12.5));
        s.shape(path, s.fill(), Qt::MiterJoin);
        break;
    }
    case Polygon: {
        // A regular pentagon standing on its base.
        QPainterPath path;
        for (int i = 0; i < 5; ++i) {
            const double angle = -std::numbers::pi / 2 + i * 2 * std::numbers::pi / 5;
            const QPointF point(8 + 6.6 * std::cos(angle), 8.8 + 6.6 * std::sin(angle));
            if (i == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
        path.closeSubpath();
        s.shape(path, s.fill());
        break;
    }
    case RoundRect: {
        QPainterPath path;
        path.addRoundedRect(s.snapped(2, 3.5, 14, 12.5), 3, 3);
        s.shape(path, s.fill());
        break;
    }
    case Ellipse: {
        QPainterPath path;
        path.addEllipse(QRectF(1.5, 3.5, 13, 9));
        s.shape(path, s.fill());
        break;
    }
    case Halo: {
        QPainterPath path;
        path.addEllipse(QPointF(8, 8), 6.5, 6.5);
        path.addEllipse(QPointF(8, 8), 3, 3);
        s.shape(path, s.fill());
        break;
    }
    case Arc: {
        // The upper half of a thick ring.
        const QPointF centre(8, 11.5);
        const QRectF outer(centre - QPointF(7, 7), QSizeF(14, 14));
        const QRectF inner(centre - QPointF(3.5, 3.5), QSizeF(7, 7));
        QPainterPath path;
        path.arcMoveTo(outer, 0);
        path.arcTo(outer, 0, 180);
        path.arcTo(inner, 180, -180);
        path.closeSubpath();
        s.shape(path, s.fill());
        break;
    }
    case Arrow: {
        s.p.setPen(s.pen());
        s.p.drawLine(QPointF(2.5, 13.5), QPointF(10, 6));
        s.p.setBrush(s.ink());
        s.p.drawPolygon(QPolygonF({{13.8, 2.2}, {12.2, 7.8}, {8.2, 3.8}}));
        break;
    }
    case Line:
        s.p.setPen(s.pen());
        s.p.drawLine(QPointF(2.5, 13.5), QPointF(13.5, 2.5));
        break;
    case ZoomOut:
    case ZoomIn:
        drawMagnifier(s);
        s.p.setPen(s.pen(1, Qt::MiterJoin, Qt::FlatCap));
        s.p.drawLine(QPointF(4.2, s.snap(6.6)), QPointF(9, s.snap(6.6)));
        if (command == ZoomIn)
            s.p.drawLine(QPointF(s.snap(6.6), 4.2), QPointF(s.snap(6.6), 9));
        break;
    case UnZoom:
        // The whole label framed in the lens.
        drawMagnifier(s);
        s.p.setPen(s.pen(1, Qt::MiterJoin));
        s.p.setBrush(s.fill());
        s.p.drawRect(s.snapped(4.3, 4.8, 8.9, 8.4));
        break;
    case ShowGrid: {
        const QRectF frame = s.snapped(2, 2, 14, 14);
        s.p.setPen(s.pen(1, Qt::MiterJoin, Qt::FlatCap));
        s.p.setBrush(s.fill());
        s.p.drawRect(frame);
        for (const qreal c : {6.0, 10.0}) {
            s.p.drawLine(QPointF(s.snap(c), frame.top()), QPointF(s.snap(c), frame.bottom()));
            s.p.drawLine(QPointF(frame.left(), s.snap(c)), QPointF(frame.right(), s.snap(c)));
        }
        break;
    }
    }
}

class PictureEngine : public QIconEngine {
public:
    explicit PictureEngine(int command) : m_nCommand(command) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const int side = std::min(rect.width(), rect.height());
        if (side <= 0)
            return;
        const qreal unit = side / 16.0;
        const qreal dpr = painter->device()->devicePixelRatioF();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(unit, unit);
        const qreal devicePerUnit = dpr * std::sqrt(std::abs(painter->transform().determinant()));
        drawPicture(Sketch(*painter, devicePerUnit, mode == QIcon::Disabled), m_nCommand);
        painter->restore();
    }

    // The ground is transparent, where the default pixmap would be uninitialised.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new PictureEngine(m_nCommand); }
    QString key() const override { return QStringLiteral("ToolPictures"); }

private:
    int m_nCommand;
};

} // namespace

QIcon ToolPictures::Icon(int commandId)
{
    if (std::find(std::begin(Commands), std::end(Commands), commandId) == std::end(Commands))
        return QIcon();
    return QIcon(new PictureEngine(commandId));
}
