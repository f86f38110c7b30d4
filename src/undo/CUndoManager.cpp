#include "undo/CUndoManager.h"

#include "undo/CAction.h"
#include "undo/CActionManager.h"

#include <QtGlobal>

CUndoManager g_undoManager;

CUndoManager::CUndoManager() = default;

CUndoManager::~CUndoManager() = default;

CActionManager* CUndoManager::Find(const CDocument* target) const
{
    for (const auto& manager : m_managers) {
        if (manager->GetTarget() == target)
            return manager.get();
    }
    return nullptr;
}

void CUndoManager::Attach(CDocument* target, int limit, UndoCallback callback)
{
    if (CActionManager* manager = Find(target)) {
        manager->SetCallback(callback);
        manager->SetLimit(limit);
        return;
    }
    m_managers.push_back(std::make_unique<CActionManager>(this, target, limit, callback));
}

void CUndoManager::Detach(CDocument* target)
{
    for (auto it = m_managers.begin(); it != m_managers.end(); ++it) {
        if ((*it)->GetTarget() == target) {
            // Out of the list before its actions die.
            std::unique_ptr<CActionManager> manager = std::move(*it);
            m_managers.erase(it);
            return;
        }
    }
}

void CUndoManager::Do(CDocument* target, CAction* action)
{
    CActionManager* manager = Find(target);
    Q_ASSERT(manager);
    // An unregistered target keeps its action with whoever made it, as an unrecorded one.
    if (manager)
        manager->Do(action);
}

void CUndoManager::Undo(CDocument* target, int count)
{
    if (CActionManager* manager = Find(target))
        manager->Undo(count);
}

bool CUndoManager::CanUndo(CDocument* target, int count)
{
    const CActionManager* manager = Find(target);
    return manager && manager->CanUndo(count);
}

void CUndoManager::Redo(CDocument* target, int count)
{
    if (CActionManager* manager = Find(target))
        manager->Redo(count);
}

bool CUndoManager::CanRedo(CDocument* target, int count)
{
    const CActionManager* manager = Find(target);
    return manager && manager->CanRedo(count);
}

void CUndoManager::ClearHistory(CDocument* target)
{
    if (CActionManager* manager = Find(target))
        manager->ClearHistory();
}
