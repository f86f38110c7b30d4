#pragma once

#include "undo/UNDONOTIFY.h"

#include <memory>
#include <vector>

class CAction;
class CActionManager;

// The program's one undo object: an action manager for each registered target (the program
// has one, its document), found by the target's address. Every call but Attach, Detach and
// ClearHistory expects the target to be registered.
class CUndoManager {
public:
    CUndoManager();
    CUndoManager(const CUndoManager&) = delete;
    CUndoManager& operator=(const CUndoManager&) = delete;
    ~CUndoManager();

    // Registers the target, or gives a registered one the callback and the limit. The clean
    // depth of a registered target stays as it is.
    void Attach(CDocument* target, int limit, UndoCallback callback);
    // Forgets the target and destroys its history.
    void Detach(CDocument* target);
    // Hands the action over to the target's manager, which owns it from now on.
    void Do(CDocument* target, CAction* action);
    void Undo(CDocument* target, int count = 1);
    bool CanUndo(CDocument* target, int count = 1);
    void Redo(CDocument* target, int count = 1);
    bool CanRedo(CDocument* target, int count = 1);
    // Empties both stacks of a registered target; nothing can be undone or redone afterwards.
    void ClearHistory(CDocument* target);

private:
    // The manager of a target, or null when it isn't registered.
    CActionManager* Find(const CDocument* target) const;

    std::vector<std::unique_ptr<CActionManager>> m_managers;
};

// Made before any document, destroyed after the last.
extern CUndoManager g_undoManager;
