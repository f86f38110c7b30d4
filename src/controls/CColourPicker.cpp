#include "controls/CColourPicker.h"

#include "controls/CColourPopupWnd.h"

CColourPicker::CColourPicker(QWidget* pParent)
    : QAbstractButton(pParent), m_crColourBk(0xFFFFFF), m_crColourText(0), m_strCustomText(QStringLiteral("More Colors...")),
      m_strEffectText(QStringLiteral("Picture/Gradient/Pattern")), m_strClearText(QStringLiteral("Clear"))
{
}

CColourPicker::~CColourPicker() = default;

void CColourPicker::SetColour(gfx::COLORREF crColour)
{
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
    return {60, 22};
}

void CColourPicker::paintEvent(QPaintEvent*)
{
}
