// The shape and text panels follow the selection: whatever is selected shows in its panel, and
// with nothing selected the panels show what the current tool's next object will look like.

#include "view/CNetworkView.h"

#include "objects/CDrawText.h"
#include "panels/CLineProperty.h"
#include "panels/CTextForm.h"
#include "view/CDrawTool.h"

void CNetworkView::SetPanels(CLineProperty* lineProperty, CTextForm* textForm)
{
    m_pLineProperty = lineProperty;
    m_pTextForm = textForm;
    m_pLineProperty->SetView(this);
    m_pTextForm->SetView(this);
}

void CNetworkView::LoadPanels(CDrawObj* object)
{
    if (!m_pLineProperty)
        return;
    if (!object) {
        // An empty click loads the tool's plain number, which carries no aspect lock.
        m_pLineProperty->LoadForTool(g_currentTool);
        m_pTextForm->LoadDefaults();
        return;
    }
    if (auto* text = dynamic_cast<CDrawText*>(object))
        m_pTextForm->LoadFromObject(text);
    else
        m_pLineProperty->LoadFromObject(object);
}

void CNetworkView::SelectTool(int number)
{
    ClearSelection();
    if (m_pLineProperty && number != CDrawTool::Selection) {
        if (number == CDrawTool::Text)
            m_pTextForm->LoadDefaults();
        else
            m_pLineProperty->LoadForTool(PanelArgument(number));
    }
    g_currentTool = number;
}

int CNetworkView::PanelArgument(int tool)
{
    switch (tool) {
    // Ellipses, arcs and halos start as circles.
    case CDrawTool::Ellipse:
    case CDrawTool::Arc:
    case CDrawTool::Halo:
        return 0x100 | tool;
    // Clip art is a plain rectangle in the panel.
    case CDrawTool::ClipArt:
        return 0;
    default:
        return tool;
    }
}
