#include "undo/CSizeAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"

CSizeAction::CSizeAction(CView* view, std::uint32_t id, int handle, CPoint point, CDrawObj* object)
    : CMAction(view, id), m_pObject(object), m_nHandle(handle), m_point(point)
{
}

void CSizeAction::Do()
{
    CAction::Do();
    Done();
}

void CSizeAction::Undo()
{
    CMAction::Undo();
    Swap();
}

void CSizeAction::Redo()
{
    CMAction::Redo();
    Swap();
}

void CSizeAction::Swap()
{
    CDrawDoc* document = GetDocument();
    document->UpdateAllViews(nullptr, 1, m_pObject);
    const CPoint present = m_pObject->GetHandle(m_nHandle);
    m_pObject->MoveHandleTo(m_nHandle, m_point, m_pView);
    m_point = present;
    document->UpdateAllViews(nullptr, 1, m_pObject);
}
