#include "panels/CTextForm.h"

#include "controls/CMyTabCtrl.h"
#include "fields/CFieldMessageScope.h"
#include "objects/CDrawText.h"
#include "panels/CTextEffects.h"
#include "panels/CTextFontPage.h"
#include "panels/CTextFormatPage.h"
#include "undo/CEditMultiAction.h"
#include "view/CNetworkView.h"

#include <QFontMetrics>
#include <QPointer>
#include <QShowEvent>
#include <QVBoxLayout>

namespace {

// The panel's dialog template, in dialog units.
constexpr int TemplateWidth = 128;
constexpr int TemplateHeight = 316;
// The string of "Change properties of multiple objects".
constexpr std::uint32_t EditPropertiesId = 61475;

// The form whose Format page shows the angle of a text turned by its handle.
const CTextForm* g_pAngleForm = nullptr;

} // namespace

CTextForm::CTextForm(QWidget* parent)
    : CToolTipDialog(parent), m_pTab(new CMyTabCtrl(this)), m_pFormat(new CTextFormatPage),
      m_pFont(new CTextFontPage), m_pEffects(new CTextEffects)
{
    setWindowFlags(Qt::Widget);
    SetControlId(m_pTab, 1184);
    m_pTab->setAccessibleName(QStringLiteral("Text"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_pTab);
    m_pTab->AddPage(m_pFormat, QStringLiteral("Format"), 0);
    m_pTab->AddPage(m_pFont, QStringLiteral("Font"), 1);
    m_pTab->AddPage(m_pEffects, QStringLiteral("Effects"), 2);

    // Dialog units by the font, as a dialog template is laid out.
    const QFontMetrics metrics(font());
    const double unitX =
        (metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) / 26.0 + 1) / 2 / 4;
    const double unitY = metrics.height() / 8.0;
    resize(int(TemplateWidth * unitX), int(TemplateHeight * unitY));

    // A handle that turns a text tells its angle; the Rotation field follows it while dragging.
    g_pAngleForm = this;
    CDrawText::s_angleChanged = [page = QPointer<CTextFormatPage>(m_pFormat)](const CDrawText&, const QString& angle) {
        if (page)
            page->ShowAngle(angle);
    };
    LoadDefaults();
}

CTextForm::~CTextForm()
{
    if (g_pAngleForm == this) {
        g_pAngleForm = nullptr;
        CDrawText::s_angleChanged = nullptr;
    }
}

void CTextForm::SetView(CNetworkView* view)
{
    m_pFormat->SetView(view);
    m_pFont->SetView(view);
    m_pEffects->SetView(view);
}

void CTextForm::LoadDefaults()
{
    m_pFormat->LoadDefaults();
    m_pFont->LoadDefaults();
    m_pEffects->LoadDefaults();
}

void CTextForm::LoadFromObject(CDrawText* text)
{
    if (!text)
        return;
    m_pFormat->LoadFromObject(*text);
    m_pFont->LoadFromObject(*text);
    m_pEffects->LoadFromObject(*text);
}

void CTextForm::EditSelectedTexts(CNetworkView* view, const std::function<void(CDrawText&)>& change)
{
    if (!view || view->m_selection.empty())
        return;
    // A data file that can't be read is told once for the change, not once for each text
    // and each of its tags.
    const CFieldMessageScope messages;
    view->CloseCurrentAction();
    auto* action = new CEditMultiAction(view, EditPropertiesId, view->m_selection);
    view->SetCurrentAction(action);
    for (CDrawObj* object : view->m_selection) {
        auto* text = dynamic_cast<CDrawText*>(object);
        if (!text)
            continue;
        // A straight text fits its box to its content: repaint where it was and where it is.
        view->InvalidateObject(text);
        change(*text);
        view->InvalidateObject(text);
    }
    action->Do();
}

void CTextForm::showEvent(QShowEvent* event)
{
    CToolTipDialog::showEvent(event);
    if (!event->spontaneous())
        m_pTab->SelectPage(0);
}
