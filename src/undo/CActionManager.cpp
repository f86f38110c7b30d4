#include "undo/CActionManager.h"

#include "undo/CAction.h"

CActionManager::CActionManager(CUndoManager* owner, CDocument* target, int limit, UndoCallback callback)
    : m_pOwner(owner), m_pTarget(target), m_pfnCallback(callback), m_nLimit(limit)
{
}

CActionManager::~CActionManager()
{
    ClearHistory();
}

void CActionManager::Do(CAction* action)
{
    // A new step closes the one still open, so that it can grow no further.
    if (!m_undoStack.empty() && !m_undoStack.back()->IsDone())
        m_undoStack.back()->Done();
    if (!action) {
        Notify(g_nDoMessage, 1);
        return;
    }
    std::unique_ptr<CAction> owned(action);
    Purge(m_redoStack, int(m_redoStack.size()));
    if (!m_undoStack.empty() && int(m_undoStack.size()) >= m_nLimit) {
        std::unique_ptr<CAction> oldest = std::move(m_undoStack.front());
        m_undoStack.pop_front();
        // The saved state was at some depth of a history that has now lost its bottom.
        m_nCleanDepth = -1;
    }
    m_undoStack.push_back(std::move(owned));
    Notify(g_nDoMessage, 1);
}

void CActionManager::Undo(int count)
{
    for (int i = 0; i < count && !m_undoStack.empty(); ++i) {
        std::unique_ptr<CAction> action = std::move(m_undoStack.back());
        m_undoStack.pop_back();
        if (!action->IsDone())
            action->Done();
        action->Undo();
        m_redoStack.push_back(std::move(action));
    }
    Notify(g_nUndoMessage, count);
}

bool CActionManager::CanUndo(int count) const
{
    return count <= int(m_undoStack.size());
}

void CActionManager::Redo(int count)
{
    for (int i = 0; i < count && !m_redoStack.empty(); ++i) {
        std::unique_ptr<CAction> action = std::move(m_redoStack.back());
        m_redoStack.pop_back();
        action->Redo();
        m_undoStack.push_back(std::move(action));
    }
    Notify(g_nRedoMessage, count);
}

bool CActionManager::CanRedo(int count) const
{
    return count <= int(m_redoStack.size());
}

void CActionManager::Purge(Stack& stack, int count)
{
    for (int i = 0; i < count && !stack.empty(); ++i) {
        // Off the stack before it dies, since its destructor may reach into views.
        std::unique_ptr<CAction> action = std::move(stack.front());
        stack.pop_front();
    }
}

void CActionManager::Notify(std::uint32_t message, int count)
{
    if (!m_pfnCallback)
        return;
    const UNDONOTIFY notify{m_pOwner, message, count, m_nCleanDepth != int(m_undoStack.size())};
    m_pfnCallback(m_pTarget, notify);
}

void CActionManager::SetLimit(int limit)
{
    if (int(m_undoStack.size()) > limit)
        Purge(m_undoStack, int(m_undoStack.size()) - limit);
    if (int(m_redoStack.size()) > limit)
        Purge(m_redoStack, int(m_redoStack.size()) - limit);
    m_nLimit = limit;
    if (m_nCleanDepth >= limit)
        m_nCleanDepth = -1;
}

void CActionManager::ClearHistory()
{
    Purge(m_undoStack, int(m_undoStack.size()));
    Purge(m_redoStack, int(m_redoStack.size()));
}
