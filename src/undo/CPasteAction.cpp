#include "undo/CPasteAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"
#include "platform/Clipboard.h"
#include "undo/CClipboardObjects.h"

CPasteAction::CPasteAction(CView* view, std::uint32_t id) : CMAction(view, id), m_data(Clipboard::Read()) {}

CPasteAction::~CPasteAction() = default;

void CPasteAction::Do()
{
    CAction::Do();
    m_pView->OnUpdateList(nullptr, 2, nullptr);
    m_pView->m_selection.clear();

    // The pasted objects become the selection. Without objects on the clipboard, or with bytes
    // that don't read, it stays empty and the paste still counts.
    CDrawDoc* document = GetDocument();
    std::vector<std::unique_ptr<CDrawObj>> pasted = CClipboardObjects::Load(m_data, document);
    const int step = 10 * m_pView->m_nPasteCount + 10;
    for (std::unique_ptr<CDrawObj>& object : pasted) {
        object->Offset(step, -step);
        m_pView->m_selection.push_back(object.get());
        m_objects.push_back(object.get());
        document->Add(std::move(object));
    }
    UpdateAllViews(2, &m_pView->m_selection);
    ++m_pView->m_nPasteCount;
    Done();
}

void CPasteAction::Undo()
{
    CMAction::Undo();
    m_pView->OnUpdateList(nullptr, 3, &m_objects);
    m_removed.clear();
    for (CDrawObj* object : m_objects)
        m_removed.push_back(TakeFromDocument(object));
    --m_pView->m_nPasteCount;
}

void CPasteAction::Redo()
{
    CMAction::Redo();
    m_pView->OnUpdateList(nullptr, 2, nullptr);
    CDrawDoc* document = GetDocument();
    for (std::unique_ptr<CDrawObj>& object : m_removed) {
        if (object)
            document->Add(std::move(object));
    }
    m_removed.clear();
    UpdateAllViews(2, &m_objects);
    ++m_pView->m_nPasteCount;
}
