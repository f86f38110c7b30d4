#include "controls/CColourPopupWnd.h"

#include "controls/CColourPicker.h"

#include <QColorDialog>
#include <QPainter>
#include <algorithm>
#include <array>

namespace {

struct TableEntry {
    gfx::COLORREF crColour;
    const char* szName;
};

// The name of 35 ends in a blank; the tooltip shows it as it always has.
constexpr std::array<TableEntry, CColourPopupWnd::ColourCount> g_colours = {{
    {gfx::RGB(0, 0, 0), "Black"},
    {gfx::RGB(165, 42, 0), "Brown"},
    {gfx::RGB(0, 64, 64), "Dark Olive Green"},
    {gfx::RGB(0, 85, 0), "Dark Green"},
    {gfx::RGB(0, 0, 94), "Dark Teal"},
    {gfx::RGB(0, 0, 139), "Dark blue"},
    {gfx::RGB(75, 0, 130), "Indigo"},
    {gfx::RGB(40, 40, 40), "Dark grey"},
    {gfx::RGB(139, 0, 0), "Dark red"},
    {gfx::RGB(255, 104, 32), "Orange"},
    {gfx::RGB(139, 139, 0), "Dark yellow"},
    {gfx::RGB(0, 147, 0), "Green"},
    {gfx::RGB(56, 142, 142), "Teal"},
    {gfx::RGB(0, 0, 255), "Blue"},
    {gfx::RGB(123, 123, 192), "Blue-grey"},
    {gfx::RGB(102, 102, 102), "Grey - 40"},
    {gfx::RGB(255, 0, 0), "Red"},
    {gfx::RGB(255, 173, 91), "Light orange"},
    {gfx::RGB(50, 205, 50), "Lime"},
    {gfx::RGB(60, 179, 113), "Sea green"},
    {gfx::RGB(127, 255, 212), "Aqua"},
    {gfx::RGB(125, 158, 192), "Light blue"},
    {gfx::RGB(128, 0, 128), "Violet"},
    {gfx::RGB(127, 127, 127), "Grey - 50"},
    {gfx::RGB(255, 192, 203), "Pink"},
    {gfx::RGB(255, 215, 0), "Gold"},
    {gfx::RGB(255, 255, 0), "Yellow"},
    {gfx::RGB(0, 255, 0), "Bright green"},
    {gfx::RGB(64, 224, 208), "Turquoise"},
    {gfx::RGB(192, 255, 255), "Skyblue"},
    {gfx::RGB(72, 0, 72), "Plum"},
    {gfx::RGB(192, 192, 192), "Light grey"},
    {gfx::RGB(255, 228, 225), "Rose"},
    {gfx::RGB(210, 180, 140), "Tan"},
    {gfx::RGB(255, 255, 224), "Light yellow"},
    {gfx::RGB(152, 251, 152), "Pale green "},
    {gfx::RGB(175, 238, 238), "Pale turquoise"},
    {gfx::RGB(104, 131, 139), "Pale blue"},
    {gfx::RGB(230, 230, 250), "Lavender"},
    {gfx::RGB(255, 255, 255), "White"},
}};

// The width of a 3-D edge, which the cells keep around their swatches.
constexpr int EdgeWidth = 2;

QColor FromCOLORREF(gfx::COLORREF crColour)
{
    return QColor(gfx::GetRValue(crColour), gfx::GetGValue(crColour), gfx::GetBValue(crColour));
}

} // namespace

CColourPopupWnd::CColourPopupWnd(CColourPicker* pPicker, gfx::COLORREF crColour, const QString& strDefaultText,
                                 const QString& strCustomText, const QString& strEffectText,
                                 const QString& strClearText)
    : CPickerPopupWnd(pPicker), m_pPicker(pPicker), m_crInitialColour(crColour), m_crColour(crColour),
      m_strDefaultText(strDefaultText), m_strCustomText(strCustomText), m_strEffectText(strEffectText),
      m_strClearText(strClearText), m_nMargin(EdgeWidth)
{
    setFont(pPicker->font());

    // A swatch narrower than 5 pixels couldn't be told from its edges.
    if (m_nBoxSize - 2 * m_nMargin - 2 < 5)
        m_nBoxSize = 2 * m_nMargin + 7;
    m_nRows = ColourCount / Columns + (ColourCount % Columns ? 1 : 0);

    SetWindowSize();
    FindCellFromColour();
    m_nCurrentSel = m_nChosenColourSel;
    ShowBelowPicker();
}

gfx::COLORREF CColourPopupWnd::TableColour(int nIndex)
{
    return nIndex >= 0 && nIndex < ColourCount ? g_colours[std::size_t(nIndex)].crColour : 0;
}

QString CColourPopupWnd::TableName(int nIndex)
{
    return nIndex >= 0 && nIndex < ColourCount ? QString::fromLatin1(g_colours[std::size_t(nIndex)].szName) : QString();
}

QColor CColourPopupWnd::GetSysColor(const QWidget* pWidget, int nIndex)
{
    const QPalette& palette = pWidget->palette();
    switch (nIndex) {
    case 16:
        return palette.color(QPalette::Dark);
    case 18:
        return palette.color(QPalette::ButtonText);
    case 20:
        return palette.color(QPalette::Light);
    case 22:
        return palette.color(QPalette::Midlight);
    default:
        return palette.color(QPalette::Button);
    }
}

void CColourPopupWnd::DrawEdge(QPainter& painter, const QRect& rect, int nEdge)
{
    // A one-pixel bevel: light above and left, dark below and right when raised, the reverse
    // when sunken.
    const QWidget* pWidget = dynamic_cast<const QWidget*>(painter.device());
    const QColor light = pWidget ? GetSysColor(pWidget, 20) : QColor(Qt::white);
    const QColor dark = pWidget ? GetSysColor(pWidget, 16) : QColor(Qt::darkGray);
    const QColor& topLeft = nEdge == RaisedInner ? light : dark;
    const QColor& bottomRight = nEdge == RaisedInner ? dark : light;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(topLeft);
    painter.drawLine(rect.topLeft(), rect.topRight());
    painter.drawLine(rect.topLeft(), rect.bottomLeft());
    painter.setPen(bottomRight);
    painter.drawLine(rect.bottomLeft(), rect.bottomRight());
    painter.drawLine(rect.topRight(), rect.bottomRight());
    painter.restore();
}

bool CColourPopupWnd::HasCell(int nCell) const
{
    switch (nCell) {
    case CustomCell:
        return !m_strCustomText.isEmpty();
    case DefaultCell:
        return !m_strDefaultText.isEmpty();
    case EffectCell:
        return !m_strEffectText.isEmpty();
    case ClearCell:
        return !m_strClearText.isEmpty();
    default:
        return nCell >= 0 && nCell < ColourCount;
    }
}

void CColourPopupWnd::SetWindowSize()
{
    const QFontMetrics metrics = fontMetrics();
    const int nGridWidth = Columns * m_nBoxSize + 2 * m_nMargin;
    const int nGridHeight = m_nRows * m_nBoxSize + 2 * m_nMargin;
    int nTextWidth = 0;
    for (const QString* pText : {&m_strDefaultText, &m_strCustomText, &m_strEffectText, &m_strClearText}) {
        if (!pText->isEmpty())
            nTextWidth = std::max(nTextWidth, metrics.horizontalAdvance(*pText) + 6 * m_nMargin);
    }
    const int nWidth = std::max(nGridWidth, nTextWidth);
    const int nTextHeight = metrics.height() + 2 * m_nMargin;

    // Clear and default above the grid, custom and effect below it, each across the window.
    int y = 0;
    auto stack = [&](QRect& rect, const QString& strText, int nHeight) {
        if (strText.isEmpty()) {
            rect = QRect();
            return;
        }
        rect = QRect(0, y, nWidth, nHeight);
        y += nHeight;
    };
    stack(m_rectClear, m_strClearText, nTextHeight);
    stack(m_rectDefault, m_strDefaultText, nTextHeight);
    // A grid narrower than the texts stands in the middle.
    m_rectGrid = QRect((nWidth - nGridWidth) / 2, y, nGridWidth, nGridHeight);
    y += nGridHeight;
    stack(m_rectCustom, m_strCustomText, nTextHeight);
    stack(m_rectEffect, m_strEffectText, nTextHeight);
    setFixedSize(nWidth, y);
}

QRect CColourPopupWnd::CellRect(int nCell) const
{
    switch (nCell) {
    case CustomCell:
        return m_rectCustom;
    case DefaultCell:
        return m_rectDefault;
    case EffectCell:
        return m_rectEffect;
    case ClearCell:
        return m_rectClear;
    default:
        if (nCell < 0 || nCell >= ColourCount)
            return {};
        return QRect(m_rectGrid.x() + m_nMargin + (nCell % Columns) * m_nBoxSize,
                     m_rectGrid.y() + m_nMargin + (nCell / Columns) * m_nBoxSize, m_nBoxSize, m_nBoxSize);
    }
}

void CColourPopupWnd::FindCellFromColour()
{
    if (m_crInitialColour == CColourPicker::CLR_DEFAULT && !m_strDefaultText.isEmpty()) {
        m_nChosenColourSel = DefaultCell;
        return;
    }
    for (int i = 0; i < ColourCount; ++i) {
        if (TableColour(i) == m_crInitialColour) {
            m_nChosenColourSel = i;
            return;
        }
    }
    m_nChosenColourSel = m_strCustomText.isEmpty() ? NoCell : CustomCell;
}

int CColourPopupWnd::HitTest(QPoint point) const
{
    for (int nCell : {ClearCell, CustomCell, DefaultCell, EffectCell}) {
        if (HasCell(nCell) && CellRect(nCell).contains(point))
            return nCell;
    }
    const QPoint inGrid = point - m_rectGrid.topLeft() - QPoint(m_nMargin, m_nMargin);
    if (inGrid.x() < 0 || inGrid.y() < 0)
        return NoCell;
    const int nColumn = inGrid.x() / m_nBoxSize;
    const int nRow = inGrid.y() / m_nBoxSize;
    if (nColumn >= Columns || nRow >= m_nRows)
        return NoCell;
    const int nCell = nRow * Columns + nColumn;
    return nCell < ColourCount ? nCell : NoCell;
}

void CColourPopupWnd::TrackCell(int nCell)
{
    if (nCell == m_nCurrentSel)
        return;
    update(CellRect(m_nCurrentSel));
    m_nCurrentSel = nCell;
    update(CellRect(m_nCurrentSel));
    if (nCell >= 0)
        m_crColour = TableColour(nCell);
    else if (nCell == DefaultCell)
        m_crColour = CColourPicker::CLR_DEFAULT;
    else
        m_crColour = m_crInitialColour;
    emit SelChange(m_crColour);
}

void CColourPopupWnd::OnEndSelection(bool bCancelled)
{
    if (!bCancelled) {
        switch (m_nCurrentSel) {
        case CustomCell: {
            const QColor colour = QColorDialog::getColor(FromCOLORREF(m_crInitialColour), m_pPicker->window());
            if (colour.isValid()) {
                m_crColour = gfx::RGB(colour.red(), colour.green(), colour.blue());
                m_pPicker->ChooseSolid();
            } else {
                bCancelled = true;
            }
            break;
        }
        case EffectCell:
            if (!m_pPicker->RunEffectHandler())
                bCancelled = true;
            break;
        case ClearCell:
            m_crColour = gfx::RGB(255, 255, 255);
            m_pPicker->ChooseClear();
            break;
        default:
            m_pPicker->ChooseSolid();
            break;
        }
    }
    if (bCancelled) {
        m_crColour = m_crInitialColour;
        emit SelEndCancel(m_crColour);
    } else {
        emit SelEndOK(m_crColour);
    }
}

bool CColourPopupWnd::MoveByKey(int nKey)
{
    const bool bHasDefault = HasCell(DefaultCell);
    const bool bHasCustom = HasCell(CustomCell);
    const int nLast = ColourCount - 1;
    // Past the end of the grid come the custom button, the default button, then the grid again.
    auto afterGrid = [&] { return bHasCustom ? int(CustomCell) : bHasDefault ? int(DefaultCell) : 0; };
    auto beforeGrid = [&] { return bHasDefault ? int(DefaultCell) : bHasCustom ? int(CustomCell) : nLast; };
    const int nCell = m_nCurrentSel;
    const bool bInGrid = nCell >= 0;

    switch (nKey) {
    case Qt::Key_Down:
        if (bInGrid)
            TrackCell(nCell + Columns <= nLast ? nCell + Columns : afterGrid());
        else if (nCell == CustomCell)
            TrackCell(bHasDefault ? int(DefaultCell) : 0);
        else
            TrackCell(0);
        break;
    case Qt::Key_Up:
        if (bInGrid)
            TrackCell(nCell - Columns >= 0 ? nCell - Columns : beforeGrid());
        else if (nCell == DefaultCell)
            TrackCell(bHasCustom ? int(CustomCell) : nLast);
        else
            TrackCell(nLast);
        break;
    case Qt::Key_Right:
        if (bInGrid)
            TrackCell(nCell < nLast ? nCell + 1 : afterGrid());
        else if (nCell == CustomCell)
            TrackCell(bHasDefault ? int(DefaultCell) : 0);
        else
            TrackCell(0);
        break;
    case Qt::Key_Left:
        if (bInGrid)
            TrackCell(nCell > 0 ? nCell - 1 : beforeGrid());
        else if (nCell == DefaultCell)
            TrackCell(bHasCustom ? int(CustomCell) : nLast);
        else
            TrackCell(nLast);
        break;
    default:
        return false;
    }
    return true;
}

QString CColourPopupWnd::CellName(int nCell) const
{
    return TableName(nCell);
}

void CColourPopupWnd::DrawCell(QPainter& painter, int nCell)
{
    const QRect rect = CellRect(nCell);
    if (rect.isEmpty())
        return;
    const bool bHot = nCell == m_nCurrentSel;
    const bool bChosen = nCell == m_nChosenColourSel;

    if (nCell < 0) {
        const QString& strText = nCell == CustomCell ? m_strCustomText
                                 : nCell == DefaultCell ? m_strDefaultText
                                 : nCell == EffectCell  ? m_strEffectText
                                                        : m_strClearText;
        // The button's face sits inside the window's margin, with a separator towards the grid.
        const QRect face = rect.adjusted(m_nMargin, m_nMargin, -m_nMargin, -m_nMargin);
        painter.fillRect(face, GetSysColor(this, bChosen && !bHot ? 22 : 15));
        painter.setPen(GetSysColor(this, 18));
        painter.drawText(face, Qt::AlignCenter, strText);
        const bool bAboveGrid = rect.top() < m_rectGrid.top();
        const int y = bAboveGrid ? rect.bottom() - 1 : rect.top();
        painter.setPen(GetSysColor(this, 16));
        painter.drawLine(face.left(), y, face.right(), y);
        painter.setPen(GetSysColor(this, 20));
        painter.drawLine(face.left(), y + 1, face.right(), y + 1);
        if (bHot)
            DrawEdge(painter, face, RaisedInner);
        else if (bChosen)
            DrawEdge(painter, face, SunkenOuter);
        return;
    }

    painter.fillRect(rect, GetSysColor(this, 15));
    if (bHot)
        DrawEdge(painter, rect, RaisedInner);
    else if (bChosen)
        DrawEdge(painter, rect, SunkenOuter);
    const QRect swatch = rect.adjusted(m_nMargin + 1, m_nMargin + 1, -m_nMargin - 1, -m_nMargin - 1);
    painter.fillRect(swatch, FromCOLORREF(TableColour(nCell)));
    painter.setPen(GetSysColor(this, 16));
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}

void CColourPopupWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), GetSysColor(this, 15));
    for (int nCell = ClearCell; nCell < ColourCount; ++nCell) {
        if (nCell != NoCell)
            DrawCell(painter, nCell);
    }
    // The popup has no frame of its own.
    DrawEdge(painter, rect(), RaisedInner);
}
