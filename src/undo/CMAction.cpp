#include "undo/CMAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"

CMAction::CMAction(CView* view, std::uint32_t id) : CAction(view->GetDocument(), id), m_pView(view) {}

void CMAction::Undo()
{
    CAction::Undo();
    m_pView->SetViewFocus();
}

void CMAction::Redo()
{
    CAction::Redo();
    m_pView->SetViewFocus();
}

CDrawDoc* CMAction::GetDocument() const
{
    return m_pView->GetDocument();
}

CDrawObjList* CMAction::ListOf(const CDrawObj* object) const
{
    CDrawDoc* document = GetDocument();
    if (document->GetObjects().Find(object) >= 0)
        return &document->GetObjects();
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        if (document->GetObjects(label).Find(object) >= 0)
            return &document->GetObjects(label);
    }
    return nullptr;
}

std::unique_ptr<CDrawObj> CMAction::TakeFromDocument(CDrawObj* object) const
{
    CDrawObjList* list = ListOf(object);
    if (!list)
        return nullptr;
    std::unique_ptr<CDrawObj> taken = list->Take(object);
    for (CView* view : GetDocument()->Views())
        view->Remove(object);
    return taken;
}

void CMAction::UpdateAllViews(int hint, const CDrawObjPtrList* list) const
{
    for (CView* view : GetDocument()->Views())
        view->OnUpdateList(nullptr, hint, list);
}
