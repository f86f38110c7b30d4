#include "undo/CSizeAction.h"

#include "document/CArchive.h"
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
    m_beforeUndo = Snapshot();
    CDrawDoc* document = GetDocument();
    document->UpdateAllViews(nullptr, 1, m_pObject);
    const CPoint present = m_pObject->GetHandle(m_nHandle);
    // No view: the keys held now must not snap or constrain the handle's way back.
    m_pObject->MoveHandleTo(m_nHandle, m_point, nullptr);
    m_point = present;
    document->UpdateAllViews(nullptr, 1, m_pObject);
}

void CSizeAction::Redo()
{
    CMAction::Redo();
    CDrawDoc* document = GetDocument();
    document->UpdateAllViews(nullptr, 1, m_pObject);
    const CPoint present = m_pObject->GetHandle(m_nHandle);
    Restore(m_beforeUndo);
    m_point = present;
    document->UpdateAllViews(nullptr, 1, m_pObject);
}

QByteArray CSizeAction::Snapshot() const
{
    CArchive ar;
    m_pObject->Serialize(ar);
    return ar.Buffer();
}

void CSizeAction::Restore(const QByteArray& record)
{
    // Read without a document, so that the record's layout is the one just written whatever
    // the version of the file the project came from; the object stays the document's.
    CDrawDoc* document = m_pObject->m_pDocument;
    CArchive ar(record);
    m_pObject->Serialize(ar);
    m_pObject->m_pDocument = document;
}
