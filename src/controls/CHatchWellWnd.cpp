#include "controls/CHatchWellWnd.h"

#include "controls/CColourPopupWnd.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/HatchBrush.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int EdgeWidth = 2;

// Indexed by hatch style, with the row for "no pattern" after the last. The repeats and the
// spelling are the program's own and stay.
const char* const g_hatchNames[gfx::HatchStyleTotal + 1] = {
    "Horizontal", "Vertical", "ForwardDiagonal", "BackwardDiagonal", "Cross", "CrossDiagonal", "4DotsDiagonal",
    "3DotsDiagonal", "2DotsDiagonal", "1DotsDiagonal", "SmallCrossDiagonal", "DitherDotsDiagonal", "Dither",
    "ReverseSmallCrossDiagonal", "Reverse1DotsDiagonal", "Reverse2DotsDiagonal", "Reverse3DotsDiagonal",
    "Reverse4DotsDiagonal", "RightDiagonalStripe", "LeftDiagonalStripe", "ReverseRightDiagonalStripe",
    "ReverseLeftDiagonalStripe", "ThickRightDiagonalStripe", "ThickLeftDiagonalStripe", "ThickVerticalStripe",
    "ThickHorizontalStripe", "VerticalStripe", "HorizontalStripe", "ThickVerticalStripe", "ThickHorizontalStripe",
    "RightDiagonalDash", "LeftDiagonalDash", "HorizontalDash", "VerticalDash", "SmallJumble", "LargeJumble",
    "StraightWaves", "CruvedWaves", "DiagonalBrick", "Brick", "DiagonalWeave", "Weave", "Birds", "Grid",
    "DiagonalGrid", "DiagonalTile", "SmallBrick", "Bubbles", "SmallGrid", "SmallCheckers", "Checkers",
    "DiagonalGrid", "DiagonalCheckers", "No"};

constexpr int Rows = gfx::HatchStyleTotal / CHatchWellWnd::Columns + (gfx::HatchStyleTotal % CHatchWellWnd::Columns ? 1 : 0);

} // namespace

CHatchWellWnd::CHatchWellWnd(QWidget* pParent) : QWidget(pParent), m_nMargin(EdgeWidth)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void CHatchWellWnd::SetHatchStyle(int nStyle)
{
    update(CellRect(m_nChosen));
    m_nChosen = nStyle;
    update(CellRect(m_nChosen));
}

void CHatchWellWnd::SetColours(gfx::Color foreground, gfx::Color background)
{
    m_foreground = foreground;
    m_background = background;
    update();
}

QString CHatchWellWnd::HatchName(int nStyle)
{
    return nStyle >= 0 && nStyle <= gfx::HatchStyleTotal ? QString::fromLatin1(g_hatchNames[nStyle]) : QString();
}

QRect CHatchWellWnd::CellRect(int nStyle) const
{
    if (nStyle < 0 || nStyle >= gfx::HatchStyleTotal)
        return {};
    return QRect(m_nMargin + nStyle % Columns * CellSize, m_nMargin + nStyle / Columns * CellSize, CellSize, CellSize);
}

QSize CHatchWellWnd::sizeHint() const
{
    return {Columns * CellSize + 2 * m_nMargin, Rows * CellSize + 2 * m_nMargin};
}

int CHatchWellWnd::HitTest(QPoint point) const
{
    const QPoint inGrid = point - QPoint(m_nMargin, m_nMargin);
    if (inGrid.x() < 0 || inGrid.y() < 0 || inGrid.x() >= Columns * CellSize)
        return -1;
    const int nStyle = inGrid.y() / CellSize * Columns + inGrid.x() / CellSize;
    return nStyle < gfx::HatchStyleTotal ? nStyle : -1;
}

void CHatchWellWnd::SetCurrent(int nStyle)
{
    if (nStyle == m_nCurrent)
        return;
    update(CellRect(m_nCurrent));
    m_nCurrent = nStyle;
    update(CellRect(m_nCurrent));
}

void CHatchWellWnd::Choose(int nStyle)
{
    SetHatchStyle(nStyle);
    emit SelEndOK(nStyle);
}

void CHatchWellWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    SetCurrent(HitTest(pEvent->position().toPoint()));
}

void CHatchWellWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    if (const int nStyle = HitTest(pEvent->position().toPoint()); nStyle >= 0)
        Choose(nStyle);
}

void CHatchWellWnd::leaveEvent(QEvent* pEvent)
{
    SetCurrent(-1);
    QWidget::leaveEvent(pEvent);
}

void CHatchWellWnd::keyPressEvent(QKeyEvent* pEvent)
{
    const int nTotal = gfx::HatchStyleTotal;
    const int nFrom = m_nCurrent >= 0 ? m_nCurrent : m_nChosen >= 0 ? m_nChosen : 0;
    auto move = [&](int nStep) { SetCurrent(((nFrom + nStep) % nTotal + nTotal) % nTotal); };
    switch (pEvent->key()) {
    case Qt::Key_Right:
        move(1);
        break;
    case Qt::Key_Left:
        move(-1);
        break;
    case Qt::Key_Down:
        move(Columns);
        break;
    case Qt::Key_Up:
        move(-Columns);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (m_nCurrent >= 0)
            Choose(m_nCurrent);
        break;
    case Qt::Key_Escape:
        // Escape stays here: a dialog around the well would otherwise close on it.
        SetCurrent(-1);
        emit SelEndCancel(m_nChosen);
        break;
    default:
        QWidget::keyPressEvent(pEvent);
        break;
    }
}

bool CHatchWellWnd::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const int nStyle = HitTest(pHelp->pos());
        if (nStyle >= 0)
            QToolTip::showText(pHelp->globalPos(), HatchName(nStyle), this, CellRect(nStyle));
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(pEvent);
}

void CHatchWellWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CColourPopupWnd::GetSysColor(this, 15));
    {
        // The cells take the brush the label is drawn with, anchored at the well's corner.
        gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
        gfx::Graphics graphics(dc);
        for (int nStyle = 0; nStyle < gfx::HatchStyleTotal; ++nStyle) {
            const QRect swatch = CellRect(nStyle).adjusted(m_nMargin + 1, m_nMargin + 1, -m_nMargin - 1, -m_nMargin - 1);
            graphics.FillRectangle(gfx::HatchBrush(nStyle, m_foreground, m_background), QRectF(swatch));
        }
    }
    for (int nStyle = 0; nStyle < gfx::HatchStyleTotal; ++nStyle) {
        if (nStyle == m_nCurrent)
            CColourPopupWnd::DrawEdge(painter, CellRect(nStyle), CColourPopupWnd::RaisedInner);
        else if (nStyle == m_nChosen)
            CColourPopupWnd::DrawEdge(painter, CellRect(nStyle), CColourPopupWnd::SunkenOuter);
    }
    // The well's own border, sunk into the page.
    CColourPopupWnd::DrawEdge(painter, rect(), CColourPopupWnd::SunkenOuter);
    if (hasFocus() && m_nCurrent >= 0) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawRect(CellRect(m_nCurrent).adjusted(1, 1, -2, -2));
    }
}
