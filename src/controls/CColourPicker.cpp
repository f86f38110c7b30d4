#include "controls/CColourPicker.h"

#include "controls/CColourPopupWnd.h"
#include "controls/CToolTipDialog.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"
#include "platform/graphics/SolidBrush.h"
#include "platform/graphics/TextureBrush.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

gfx::COLORREF ToCOLORREF(const QColor& colour)
{
    return gfx::RGB(colour.red(), colour.green(), colour.blue());
}

} // namespace

CColourPicker::CColourPicker(QWidget* pParent)
    : QAbstractButton(pParent), m_crColourBk(ToCOLORREF(palette().color(QPalette::Button))),
      m_crColourText(ToCOLORREF(palette().color(QPalette::ButtonText))),
      m_strCustomText(QStringLiteral("More Colors...")), m_strEffectText(QStringLiteral("Picture/Gradient/Pattern")),
      m_strClearText(QStringLiteral("Clear"))
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, &CColourPicker::OnClicked);
}

void CColourPicker::SetColour(gfx::COLORREF crColour)
{
    const int nSum = gfx::GetRValue(crColour) + gfx::GetGValue(crColour) + gfx::GetBValue(crColour);
    m_crColourText = nSum < 385 ? gfx::RGB(255, 255, 255) : gfx::RGB(0, 0, 0);
    m_crColourBk = crColour;
    update();
}

void CColourPicker::SetNoFill(bool bNoFill)
{
    m_bNoFill = bNoFill;
    update();
}

void CColourPicker::SetFill(const EffectFill& fill)
{
    m_fill = fill;
    m_picture.reset();
    update();
}

void CColourPicker::SetDefaultText(const QString& strText)
{
    m_strDefaultText = strText;
}

void CColourPicker::SetCustomText(const QString& strText)
{
    m_strCustomText = strText;
}

void CColourPicker::SetEffectHandler(EffectHandler handler)
{
    m_effectHandler = std::move(handler);
}

QSize CColourPicker::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int nArrow = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const int nText = text().isEmpty() ? 24 : metrics.horizontalAdvance(text()) + 12;
    return {nText + nArrow + 8, metrics.height() + 10};
}

void CColourPicker::OnClicked()
{
    if (m_bPopupOpen)
        return;
    m_bPopupOpen = true;
    // The popup is a window of its own, deleted when it ends (or with the picker).
    auto* pPopup = new CColourPopupWnd(this, m_crColourBk, m_strDefaultText, m_strCustomText,
                                       m_effectHandler ? m_strEffectText : QString(), m_strClearText);
    connect(pPopup, &CColourPopupWnd::SelChange, this, &CColourPicker::OnPopupSelChange);
    connect(pPopup, &CColourPopupWnd::SelEndOK, this, &CColourPicker::OnPopupSelEndOK);
    connect(pPopup, &CColourPopupWnd::SelEndCancel, this, &CColourPicker::OnPopupSelEndCancel);
    emit DropDown(m_crColourBk, ControlId(this));
}

void CColourPicker::OnPopupSelChange(gfx::COLORREF crColour)
{
    if (m_bTrackSelection)
        SetColour(crColour);
}

void CColourPicker::OnPopupSelEndOK(gfx::COLORREF crColour)
{
    m_bPopupOpen = false;
    SetColour(crColour);
    emit SelEndOK(crColour, ControlId(this));
}

void CColourPicker::OnPopupSelEndCancel(gfx::COLORREF crColour)
{
    m_bPopupOpen = false;
    SetColour(crColour);
}

void CColourPicker::ChooseSolid()
{
    m_fill.m_fillKind = 0;
    m_fill.m_pictureFile.clear();
    m_picture.reset();
    m_bNoFill = false;
}

void CColourPicker::ChooseClear()
{
    m_fill.m_fillKind = 0;
    m_fill.m_color1 = gfx::Color(255, 255, 255);
    m_fill.m_color2 = gfx::Color(255, 255, 255);
    m_fill.m_pictureFile.clear();
    m_picture.reset();
    m_bNoFill = true;
    update();
}

bool CColourPicker::RunEffectHandler()
{
    if (!m_effectHandler || !m_effectHandler(*this))
        return false;
    update();
    return true;
}

void CColourPicker::DrawFill(gfx::Graphics& graphics, const QRectF& rect)
{
    switch (m_fill.m_fillKind) {
    case 1:
        graphics.FillRectangle(gfx::HatchBrush(m_fill.m_hatchStyle, m_fill.m_color1, m_fill.m_color2), rect);
        break;
    case 2: {
        if (!m_picture || m_picture->first != m_fill.m_pictureFile)
            m_picture.emplace(m_fill.m_pictureFile, gfx::Image(m_fill.m_pictureFile));
        const gfx::Image& image = m_picture->second;
        if (image.GetWidth() == 0 || image.GetHeight() == 0)
            break;
        const bool bTiled = m_fill.m_pictureScale == 0 && m_fill.m_wrapMode >= 0 && m_fill.m_wrapMode < 4;
        if (bTiled) {
            gfx::TextureBrush brush(image, gfx::WrapMode(m_fill.m_wrapMode));
            brush.TranslateTransform(float(rect.x()), float(rect.y()));
            graphics.FillRectangle(brush, rect);
        } else {
            graphics.DrawImage(image, rect);
        }
        break;
    }
    case 3: {
        // From corner has the first colour in the centre, From center the second.
        gfx::GraphicsPath path;
        path.AddRectangle(rect);
        gfx::PathGradientBrush brush(path);
        const bool bSwap = m_fill.m_gradientSwap != 0;
        brush.SetCenterColor(bSwap ? m_fill.m_color2 : m_fill.m_color1);
        const gfx::Color surround = bSwap ? m_fill.m_color1 : m_fill.m_color2;
        int nCount = 1;
        brush.SetSurroundColors(&surround, &nCount);
        graphics.FillRectangle(brush, rect);
        break;
    }
    case 4: {
        // As the label draws it: every style but the first starts from the second colour.
        static constexpr gfx::LinearGradientMode modes[] = {
            gfx::LinearGradientMode::Horizontal, gfx::LinearGradientMode::Vertical,
            gfx::LinearGradientMode::BackwardDiagonal, gfx::LinearGradientMode::ForwardDiagonal};
        const int nStyle = m_fill.m_gradientStyle >= 0 && m_fill.m_gradientStyle < 3 ? m_fill.m_gradientStyle : 3;
        const bool bFirstStarts = nStyle == 0;
        graphics.FillRectangle(gfx::LinearGradientBrush(rect, bFirstStarts ? m_fill.m_color1 : m_fill.m_color2,
                                                        bFirstStarts ? m_fill.m_color2 : m_fill.m_color1,
                                                        modes[nStyle]),
                               rect);
        break;
    }
    default:
        graphics.FillRectangle(gfx::SolidBrush(gfx::Color::FromCOLORREF(m_crColourBk)), rect);
        break;
    }
}

void CColourPicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionButton option;
    option.initFrom(this);
    if (isDown() || m_bPopupOpen)
        option.state |= QStyle::State_Sunken;
    else
        option.state |= QStyle::State_Raised;
    style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);

    // The drop-down arrow on the right, the sample in the rest.
    const int nArrow = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const QRect arrow(width() - nArrow - 3, 0, nArrow, height());
    QStyleOption arrowOption;
    arrowOption.initFrom(this);
    arrowOption.rect = arrow.adjusted(2, height() / 2 - 5, -2, -(height() / 2 - 5));
    style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrowOption, &painter, this);

    const QRect swatch(4, 4, arrow.left() - 6, height() - 8);
    const bool bEnabled = isEnabled();
    if (bEnabled && !m_bNoFill && m_crColourBk != CLR_DEFAULT) {
        gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
        gfx::Graphics graphics(dc);
        graphics.SetClip(QRectF(swatch));
        DrawFill(graphics, QRectF(swatch));
    }
    painter.setPen(palette().color(bEnabled ? QPalette::Active : QPalette::Disabled, QPalette::Dark));
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));

    if (!text().isEmpty()) {
        const QColor colour = bEnabled ? QColor(gfx::GetRValue(m_crColourText), gfx::GetGValue(m_crColourText),
                                                gfx::GetBValue(m_crColourText))
                                       : palette().color(QPalette::Disabled, QPalette::ButtonText);
        painter.setPen(colour);
        painter.drawText(swatch, Qt::AlignCenter | Qt::TextShowMnemonic, text());
    }
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = swatch.adjusted(-2, -2, 2, 2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}
