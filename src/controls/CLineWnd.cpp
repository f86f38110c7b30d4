#include "controls/CLineWnd.h"

#include "controls/CLinePicker.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Pen.h"

#include <QPainter>

namespace {

const char* const g_styleNames[CLinePicker::StyleCount] = {"Solid", "Dash", "Dot", "Dash Dot", "Dash Dot Dot"};

} // namespace

CLineWnd::CLineWnd(CLinePicker* pPicker, int nIndex)
    : CIndexPopupWnd(pPicker, nIndex, CLinePicker::StyleCount, 1, QSize(RowWidth, RowHeight))
{
    ShowBelowPicker();
}

void CLineWnd::DrawLine(QPainter& painter, const QRect& rect, int nDashStyle)
{
    gfx::DeviceContext dc(painter, 96, 96, false);
    gfx::Graphics graphics(dc);
    graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
    gfx::Pen pen(gfx::Color(0, 0, 0), 3.0f);
    pen.SetDashStyle(gfx::DashStyle(nDashStyle));
    pen.SetDashCap(gfx::DashCap::Flat);
    const float y = float(rect.top()) + float(rect.height()) / 2;
    graphics.DrawLine(pen, QPointF(rect.left(), y), QPointF(rect.right() + 1, y));
}

QString CLineWnd::CellName(int nCell) const
{
    return QString::fromLatin1(g_styleNames[nCell]);
}

void CLineWnd::DrawCell(QPainter& painter, const QRect& cell, int nCell) const
{
    DrawLine(painter, cell.adjusted(4, 0, -4, 0), nCell);
}
