#include "dialogs/CEffectDlg.h"

#include "controls/CColourPicker.h"
#include "controls/CMyTabCtrl.h"
#include "dialogs/CFillGradientDlg.h"
#include "dialogs/CFillPatternDlg.h"
#include "dialogs/CFillPictureDlg.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

CEffectDlg::CEffectDlg(QWidget* parent) : CToolTipDialog(parent)
{
    setWindowTitle(QStringLiteral("Fill Effects"));
    auto* layout = new QVBoxLayout(this);
    m_pTabs = new CMyTabCtrl(this);
    m_pTabs->setAccessibleName(QStringLiteral("Fill"));
    layout->addWidget(m_pTabs);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

int CEffectDlg::DoModal()
{
    if (!OnInitDialog())
        return QDialog::Rejected;
    return exec();
}

bool CEffectDlg::OnInitDialog()
{
    m_shading = std::uint8_t(m_fillKind == 3 ? m_gradientSwap + 4 : m_fillKind == 4 ? m_gradientStyle : 0);
    m_colorMode = (m_color2.GetR() || m_color2.GetG() || m_color2.GetB()) ? 2 : 1;

    if (m_nPageMask & PicturePage) {
        m_pPicturePage = new CFillPictureDlg;
        m_pPicturePage->m_pFillKind = &m_fillKind;
        m_pPicturePage->m_pWrapMode = &m_wrapMode;
        m_pPicturePage->m_pScale = &m_pictureScale;
        m_pPicturePage->m_pPictureFile = &m_pictureFile;
        m_pTabs->AddPage(m_pPicturePage, m_pPicturePage->Caption(), 0);
    }
    if (m_nPageMask & GradientPage) {
        m_pGradientPage = new CFillGradientDlg;
        m_pGradientPage->m_pGradientStyle = &m_gradientStyle;
        m_pGradientPage->m_pColor2 = &m_color2;
        m_pGradientPage->m_pColor1 = &m_color1;
        m_pGradientPage->m_pFillKind = &m_fillKind;
        m_pGradientPage->m_pShading = &m_shading;
        m_pGradientPage->m_pColorMode = &m_colorMode;
        m_pTabs->AddPage(m_pGradientPage, m_pGradientPage->Caption(), 1);
    }
    if (m_nPageMask & PatternPage) {
        m_pPatternPage = new CFillPatternDlg;
        m_pPatternPage->m_pColor1 = &m_color1;
        m_pPatternPage->m_pColor2 = &m_color2;
        m_pPatternPage->m_pFillKind = &m_fillKind;
        m_pPatternPage->m_pHatchStyle = &m_hatchStyle;
        m_pTabs->AddPage(m_pPatternPage, m_pPatternPage->Caption(), 2);
    }
    for (CFillPage* page : {static_cast<CFillPage*>(m_pPicturePage), static_cast<CFillPage*>(m_pGradientPage),
                            static_cast<CFillPage*>(m_pPatternPage)}) {
        if (page && !page->OnInitDialog())
            return false;
    }

    // The page of the present fill is the one that shows first.
    CFillPage* current = m_fillKind == 1 ? static_cast<CFillPage*>(m_pPatternPage)
                       : m_fillKind == 2 ? static_cast<CFillPage*>(m_pPicturePage)
                       : (m_fillKind == 3 || m_fillKind == 4) ? static_cast<CFillPage*>(m_pGradientPage)
                                                              : nullptr;
    if (current)
        m_pTabs->setCurrentWidget(current);
    return true;
}

void CEffectDlg::accept()
{
    if (m_fillKind == 3)
        m_gradientSwap = m_shading >= 5 ? 1 : 0;
    CToolTipDialog::accept();
}

bool CEffectDlg::RunForPicker(CColourPicker& picker, int pageMask)
{
    CEffectDlg dialog(picker.window());
    dialog.m_nPageMask = pageMask;
    CColourPicker::EffectFill fill = picker.GetFill();
    dialog.m_color1 = fill.m_color1;
    dialog.m_color2 = fill.m_color2;
    dialog.m_fillKind = fill.m_fillKind;
    dialog.m_gradientStyle = fill.m_gradientStyle;
    dialog.m_hatchStyle = fill.m_hatchStyle;
    dialog.m_wrapMode = fill.m_wrapMode;
    dialog.m_gradientSwap = fill.m_gradientSwap;
    dialog.m_pictureScale = fill.m_pictureScale;
    dialog.m_pictureFile = fill.m_pictureFile;
    if (dialog.DoModal() != QDialog::Accepted)
        return false;
    fill.m_color1 = dialog.m_color1;
    fill.m_color2 = dialog.m_color2;
    fill.m_fillKind = dialog.m_fillKind;
    fill.m_gradientStyle = dialog.m_gradientStyle;
    fill.m_hatchStyle = dialog.m_hatchStyle;
    fill.m_wrapMode = dialog.m_wrapMode;
    fill.m_gradientSwap = dialog.m_gradientSwap;
    fill.m_pictureScale = dialog.m_pictureScale;
    fill.m_pictureFile = dialog.m_pictureFile;
    picker.SetFill(fill);
    return true;
}
