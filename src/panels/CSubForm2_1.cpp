#include "panels/CSubForm2_1.h"

#include "controls/CColourPicker.h"
#include "dialogs/CEffectDlg.h"
#include "document/CDrawDoc.h"
#include "panels/PanelSupport.h"
#include "undo/CPaperAction.h"
#include "view/CNetworkView.h"

#include <QApplication>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr std::uint32_t BackgroundLabel = 61463;
constexpr int ColourId = 1000;

// The fill kinds of the picker's effect fill.
constexpr int SolidFill = 0;
constexpr int PatternFill = 1;
constexpr int PictureFill = 2;

} // namespace

CSubForm2_1::CSubForm2_1(QWidget* parent)
    : CToolTipDialog(parent)
{
    setWindowFlags(Qt::Widget);
    auto* image = new QPushButton(QStringLiteral("Background Image"), this);
    SetControlId(image, 1003);
    auto* pattern = new QPushButton(QStringLiteral("Background Pattern"), this);
    SetControlId(pattern, 1007);
    m_pAdjust = new QPushButton(QStringLiteral("Adjust Background"), this);
    SetControlId(m_pAdjust, 1005);
    m_pColour = new CColourPicker(this);
    SetControlId(m_pColour, ColourId);
    m_pColour->setText(QStringLiteral("Background Color"));

    auto* layout = new QVBoxLayout(this);
    for (QPushButton* button : {image, pattern, m_pAdjust}) {
        button->setAutoDefault(false);
        layout->addWidget(button);
    }
    layout->addWidget(m_pColour);
    layout->addStretch();
    setFixedSize(PanelSupport::DialogUnitsToPixels(font(), 128, 154));

    connect(image, &QPushButton::clicked, this, &CSubForm2_1::selectBackgroundRequested);
    connect(pattern, &QPushButton::clicked, this, &CSubForm2_1::patternRequested);
    connect(m_pAdjust, &QPushButton::clicked, this, &CSubForm2_1::adjustRequested);
    // A background is a colour, a pattern or a picture; gradients are for shapes.
    m_pColour->SetEffectHandler([](CColourPicker& picker) {
        return CEffectDlg::RunForPicker(picker, CEffectDlg::PatternPage | CEffectDlg::PicturePage);
    });
    connect(m_pColour, &CColourPicker::DropDown, this, &CSubForm2_1::OnDropDown);
    connect(m_pColour, &CColourPicker::SelEndOK, this, &CSubForm2_1::OnSelEndOK);
}

void CSubForm2_1::SetView(CNetworkView* view)
{
    m_pView = view;
    LoadFromDocument();
}

void CSubForm2_1::LoadFromDocument()
{
    const CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    const LabelBackground& background = document->GetBackground();
    m_nHatchStyle = background.HatchStyle;
    m_strImageFile = background.ImageFile;
    m_nWrapMode = background.WrapMode;
    m_nFitMode = background.FitMode;
    PrimePicker(background.BackColor, background.HatchStyle == -1 ? 0 : background.BackColor2);
    UpdateAdjustButton();
}

void CSubForm2_1::PrimePicker(gfx::COLORREF foreground, gfx::COLORREF background)
{
    CColourPicker::EffectFill fill;
    fill.m_fillKind = !m_strImageFile.isEmpty() ? PictureFill : m_nHatchStyle != -1 ? PatternFill : SolidFill;
    fill.m_color1 = gfx::Color::FromCOLORREF(foreground);
    fill.m_color2 = gfx::Color::FromCOLORREF(background);
    fill.m_hatchStyle = m_nHatchStyle;
    fill.m_pictureFile = m_strImageFile;
    fill.m_wrapMode = m_nWrapMode;
    fill.m_pictureScale = m_nFitMode;
    m_pColour->SetColour(foreground);
    m_pColour->SetFill(fill);
}

void CSubForm2_1::showEvent(QShowEvent* event)
{
    UpdateAdjustButton();
    qApp->installEventFilter(this);
    CToolTipDialog::showEvent(event);
}

void CSubForm2_1::hideEvent(QHideEvent* event)
{
    qApp->removeEventFilter(this);
    CToolTipDialog::hideEvent(event);
}

bool CSubForm2_1::eventFilter(QObject* /*watched*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Paint:
    case QEvent::UpdateRequest:
    case QEvent::Timer:
        // Nothing the user did, and no time to change a control.
        break;
    default:
        UpdateAdjustButton();
        break;
    }
    return false;
}

void CSubForm2_1::UpdateAdjustButton()
{
    const CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    // Something to move: a pattern, or a picture.
    const LabelBackground& background = document->GetBackground();
    const bool adjustable = background.HatchStyle != -1 || !background.ImageFile.isEmpty();
    if (m_pAdjust->isEnabled() != adjustable)
        m_pAdjust->setEnabled(adjustable);
}

void CSubForm2_1::OnDropDown(gfx::COLORREF /*colour*/, int id)
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document || id != ColourId)
        return;
    // Without a picture so far, one chosen now starts where the label is and at its own size.
    int x = 0, y = 0;
    double scale = 1.0;
    document->GetBackgroundAdjust(x, y, scale);
    if (m_strImageFile.isEmpty() && (x != 0 || y != 0 || scale != 1.0)) {
        m_pView->CloseCurrentAction();
        auto* action = new CPaperAction(m_pView, BackgroundLabel);
        m_pView->SetCurrentAction(action);
        document->SetBackgroundAdjust(0, 0, 1.0);
        m_pView->viewport()->update();
        action->Do();
    }
    LoadFromDocument();
}

void CSubForm2_1::OnSelEndOK(gfx::COLORREF colour, int id)
{
    if (id != ColourId)
        return;
    const CColourPicker::EffectFill& fill = m_pColour->GetFill();
    m_nHatchStyle = fill.m_fillKind == PatternFill ? fill.m_hatchStyle : -1;
    m_strImageFile = fill.m_fillKind == PictureFill ? fill.m_pictureFile : QString();
    m_nWrapMode = fill.m_wrapMode;
    m_nFitMode = fill.m_pictureScale;

    LabelBackground choice;
    choice.HatchStyle = m_nHatchStyle;
    if (m_nHatchStyle == -1) {
        choice.BackColor = colour;
    } else {
        choice.BackColor = fill.m_color1.ToCOLORREF();
        choice.BackColor2 = fill.m_color2.ToCOLORREF();
    }
    choice.ImageFile = m_strImageFile;
    choice.WrapMode = m_nWrapMode;
    choice.FitMode = m_nFitMode;
    emit backgroundChosen(choice);
}
