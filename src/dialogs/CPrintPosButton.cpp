#include "dialogs/CPrintPosButton.h"

#include "platform/RenderQuality.h"
#include "platform/graphics/Font.h"
#include "platform/graphics/FontFamily.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/Pen.h"
#include "platform/graphics/SolidBrush.h"

#include <QPainter>

namespace {

// One click of the offset, in inches.
constexpr float Click = 0.00375f;
constexpr float LetterSize = 150.0f;

// The letters' face. The program has always asked for "Ariel", which few machines have; where
// it is missing the scale would lose its letters, so the face it was meant to be stands in.
const gfx::FontFamily& LetterFamily()
{
    static const gfx::FontFamily family = [] {
        for (const char* name : {"Ariel", "Arial"}) {
            const gfx::FontFamily candidate{QString::fromLatin1(name)};
            if (candidate.IsAvailable())
                return candidate;
        }
        return gfx::FontFamily::GenericSansSerif();
    }();
    return family;
}

// The letter's outline centred both ways in the box, as a centred one-line layout places it.
void AddLetter(gfx::GraphicsPath& path, QChar letter, const QRectF& box)
{
    const gfx::Font font(LetterFamily(), LetterSize, gfx::FontStyleRegular);
    if (!font.IsAvailable())
        return;
    const QString text(letter);
    const qreal width = font.Advance(text) + 2 * font.Padding();
    const QPointF origin(box.left() + (box.width() - width) / 2, box.top() + (box.height() - font.LineSpacing()) / 2);
    path.AddString(text, LetterFamily(), gfx::FontStyleRegular, LetterSize, origin);
}

} // namespace

CPrintPosButton::CPrintPosButton(bool horizontal, QWidget* parent)
    : QWidget(parent), Horizontal(horizontal ? 1 : 0)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CPrintPosButton::sizeHint() const
{
    // Room for one cell around a letter of the scale's size.
    return QSize(160, 160);
}

void CPrintPosButton::paintEvent(QPaintEvent* /*event*/)
{
    const int W = width();
    const int H = height();
    gfx::Bitmap bitmap(W, H);
    {
        gfx::Graphics graphics(bitmap);
        RenderQuality::Apply(graphics);
        graphics.Clear(gfx::Color(255, 255, 255));

        const float s = Offset / Click;
        const QPointF C(W / 2.0, H / 2.0);
        const bool horizontal = Horizontal != 0;
        const double length = horizontal ? W : H;
        const double u = length / 16;
        const double b = (horizontal ? C.x() : C.y()) - u * s;
        const double q = length / 4;
        const gfx::SolidBrush bars[4] = {gfx::SolidBrush(gfx::Color(255, 255, 0)), gfx::SolidBrush(gfx::Color(255, 0, 0)),
                                         gfx::SolidBrush(gfx::Color(0, 0, 255)), gfx::SolidBrush(gfx::Color(0, 255, 0))};
        const gfx::SolidBrush white(gfx::Color(255, 255, 255));
        const gfx::Pen outline(gfx::Color(0, 0, 0), 2.0f);

        for (int i = 0; i <= 8; ++i) {
            // Where this cell's middle lies along the scale; its letter is C for i = 0.
            const double at = b + length * (i - 4);
            for (int bar = 0; bar < 4; ++bar) {
                const double start = at + (bar - 2) * q;
                graphics.FillRectangle(bars[bar], horizontal ? QRectF(start, 0, q, H) : QRectF(0, start, W, q));
            }
            gfx::GraphicsPath letter;
            AddLetter(letter, QChar(67 + i), horizontal ? QRectF(at - 2 * q, 0, W, H) : QRectF(0, at - 2 * q, W, H));
            graphics.FillPath(white, letter);
            graphics.DrawPath(outline, letter);
        }

        // The arrow's point on the middle, its tail toward the right or the bottom.
        static const QPointF vertical[7] = {{0, 0}, {40, 80}, {20, 80}, {20, 200}, {-20, 200}, {-20, 80}, {-40, 80}};
        QPointF points[7];
        for (int i = 0; i < 7; ++i) {
            const QPointF d = horizontal ? QPointF(vertical[i].y(), vertical[i].x()) : vertical[i];
            points[i] = C + d;
        }
        gfx::GraphicsPath arrow;
        arrow.AddLines(points, 7);
        arrow.CloseFigure();
        graphics.FillPath(gfx::SolidBrush(gfx::Color(0, 0, 0)), arrow);
    }
    QPainter painter(this);
    painter.drawImage(0, 0, bitmap.image());
}
