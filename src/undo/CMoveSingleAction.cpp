#include "undo/CMoveSingleAction.h"

#include "objects/CDrawObj.h"

CMoveSingleAction::CMoveSingleAction(CView* view, std::uint32_t id, CDrawObj* object)
    : CMAction(view, id), m_pObject(object), m_rect(object->GetRect())
{
}

void CMoveSingleAction::Undo()
{
    CMAction::Undo();
    Swap();
}

void CMoveSingleAction::Redo()
{
    CMAction::Redo();
    Swap();
}

void CMoveSingleAction::Swap()
{
    const CRect present = m_pObject->GetRect();
    // No view: the document repaints the object in each of its views.
    m_pObject->MoveTo(m_rect, nullptr);
    m_rect = present;
}
