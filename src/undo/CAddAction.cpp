#include "undo/CAddAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"

CAddAction::CAddAction(CView* view, std::uint32_t id, std::unique_ptr<CDrawObj> object)
    : CMAction(view, id), m_pObject(object.get()), m_pOwned(std::move(object))
{
}

CAddAction::~CAddAction() = default;

void CAddAction::Apply()
{
    GetDocument()->Add(std::move(m_pOwned));
    m_pView->Select(m_pObject, false);
}

void CAddAction::Do()
{
    CAction::Do();
    Apply();
}

void CAddAction::Undo()
{
    CMAction::Undo();
    GetDocument()->UpdateAllViews(nullptr, 1, m_pObject);
    m_pOwned = TakeFromDocument(m_pObject);
}

void CAddAction::Redo()
{
    CMAction::Redo();
    // The object had left the document by a way the history doesn't know: nothing comes back.
    if (!m_pOwned)
        return;
    Apply();
    GetDocument()->UpdateAllViews(nullptr, 1, m_pObject);
}
