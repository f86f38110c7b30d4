#include "dialogs/CFillPatternDlg.h"

#include "controls/CColourPicker.h"
#include "controls/CHatchWellWnd.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CSampleButton.h"
#include "platform/MessageBox.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/HatchBrush.h"

#include <QGridLayout>
#include <QLabel>

CFillPatternDlg::CFillPatternDlg(QWidget* parent) : CFillPage(parent)
{
    auto* layout = new QGridLayout(this);

    m_pWell = new CHatchWellWnd(this);
    SetControlId(m_pWell, 1087);
    m_pWell->setAccessibleName(QStringLiteral("Patterns"));
    connect(m_pWell, &CHatchWellWnd::SelEndOK, this, &CFillPatternDlg::OnPatternChosen);

    m_pName = new QLabel(this);
    SetControlId(m_pName, 1164);
    m_pName->setAccessibleName(QStringLiteral("Pattern name"));

    auto* foregroundLabel = new QLabel(QStringLiteral("&Foreground:"), this);
    m_pForeground = new CColourPicker(this);
    SetControlId(m_pForeground, 1088);
    m_pForeground->setAccessibleName(QStringLiteral("Foreground"));
    foregroundLabel->setBuddy(m_pForeground);
    auto* backgroundLabel = new QLabel(QStringLiteral("&Background:"), this);
    m_pBackground = new CColourPicker(this);
    SetControlId(m_pBackground, 1090);
    m_pBackground->setAccessibleName(QStringLiteral("Background"));
    backgroundLabel->setBuddy(m_pBackground);
    connect(m_pForeground, &CColourPicker::SelEndOK, this, &CFillPatternDlg::OnColourChosen);
    connect(m_pBackground, &CColourPicker::SelEndOK, this, &CFillPatternDlg::OnColourChosen);

    m_pSample = new CSampleButton(this);
    SetControlId(m_pSample, 1092);

    layout->addWidget(m_pWell, 0, 0, 1, 3, Qt::AlignHCenter);
    layout->addWidget(m_pName, 1, 0, 1, 3);
    layout->addWidget(foregroundLabel, 2, 0);
    layout->addWidget(m_pForeground, 2, 1);
    layout->addWidget(backgroundLabel, 3, 0);
    layout->addWidget(m_pBackground, 3, 1);
    layout->addWidget(m_pSample, 2, 2, 3, 1);
    layout->setRowStretch(4, 1);
    layout->setColumnStretch(2, 1);
}

QString CFillPatternDlg::Caption() const
{
    return QStringLiteral("Pattern");
}

bool CFillPatternDlg::OnInitDialog()
{
    if (!m_pColor1 || !m_pColor2 || !m_pFillKind || !m_pHatchStyle) {
        MessageBox::Show(QStringLiteral("Invalid pointers in CFillPattern"));
        return false;
    }
    m_pForeground->SetColour(m_pColor1->ToCOLORREF());
    m_pBackground->SetColour(m_pColor2->ToCOLORREF());
    m_pWell->SetColours(gfx::Color::FromCOLORREF(m_pForeground->GetColour()),
                        gfx::Color::FromCOLORREF(m_pBackground->GetColour()));
    m_pWell->SetHatchStyle(*m_pHatchStyle);
    m_pName->setText(CHatchWellWnd::HatchName(*m_pHatchStyle));
    return true;
}

void CFillPatternDlg::WriteBack()
{
    // Written only once the user chooses here: the colours may carry a gradient's transparency,
    // which the gradient page of the same dialog must keep while this page is merely looked at.
    // A chosen pattern is opaque; a hatch's transparency is the object's own setting.
    *m_pColor1 = gfx::Color::FromCOLORREF(m_pForeground->GetColour());
    *m_pColor2 = gfx::Color::FromCOLORREF(m_pBackground->GetColour());
    *m_pHatchStyle = m_pWell->GetHatchStyle();
}

void CFillPatternDlg::OnColourChosen()
{
    m_pWell->SetColours(gfx::Color::FromCOLORREF(m_pForeground->GetColour()),
                        gfx::Color::FromCOLORREF(m_pBackground->GetColour()));
    *m_pFillKind = 1;
    WriteBack();
    m_pSample->update();
}

void CFillPatternDlg::OnPatternChosen()
{
    // Choosing a pattern makes the fill a pattern, as choosing its colours does: in the tabbed
    // dialog this page's choice would otherwise be lost to the fill kind from before.
    *m_pFillKind = 1;
    WriteBack();
    m_pName->setText(CHatchWellWnd::HatchName(m_pWell->GetHatchStyle()));
    m_pSample->update();
    setFocus();
}

void CFillPatternDlg::DrawSample(QPainter& painter, const QRect& rect)
{
    gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
    gfx::Graphics graphics(dc);
    const gfx::HatchBrush brush(m_pWell->GetHatchStyle(), m_pWell->GetForeground(), m_pWell->GetBackground());
    graphics.FillRectangle(brush, QRectF(rect));
}
