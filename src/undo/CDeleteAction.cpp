#include "undo/CDeleteAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"

#include <algorithm>
#include <utility>

CDeleteAction::CDeleteAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects)
    : CMAction(view, id)
{
    const CDrawObjList& list = GetDocument()->GetObjects();
    std::vector<std::pair<int, CDrawObj*>> levels;
    levels.reserve(objects.size());
    for (CDrawObj* object : objects)
        levels.emplace_back(CDrawDoc::IndexOf(list, object), object);
    std::stable_sort(levels.begin(), levels.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [position, object] : levels) {
        m_positions.push_back(position);
        m_objects.push_back(object);
    }
}

CDeleteAction::~CDeleteAction() = default;

void CDeleteAction::Apply()
{
    // From the top down, so that the positions below stay as they were counted.
    m_removed.resize(m_objects.size());
    for (size_t i = m_objects.size(); i-- > 0;)
        m_removed[i] = TakeFromDocument(m_objects[i]);
    m_pView->OnUpdateList(nullptr, 3, &m_objects);
}

void CDeleteAction::Do()
{
    CAction::Do();
    Apply();
    Done();
}

void CDeleteAction::Redo()
{
    CMAction::Redo();
    Apply();
}

void CDeleteAction::Undo()
{
    CMAction::Undo();
    CDrawDoc* document = GetDocument();
    CDrawObjList& list = document->GetObjects();
    // Bottom first: each lands at its own position, the ones below it being back already. A
    // position past the end (or 0, for one that was in no list) puts it on top.
    for (size_t i = 0; i < m_removed.size(); ++i) {
        if (!m_removed[i])
            continue;
        m_removed[i]->m_pDocument = document;
        list.InsertAt(m_positions[i] - 1, std::move(m_removed[i]));
    }
    m_removed.clear();
    m_pView->OnUpdateList(nullptr, 2, &m_objects);
}
