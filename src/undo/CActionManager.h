#pragma once

#include "undo/UNDONOTIFY.h"

#include <deque>
#include <memory>

class CAction;

// The undo machine of one target: the undo and redo stacks, their limit, the depth at which
// the history matches the saved file, and the callback told of every change. Both ends of
// the undo stack are worked: the back as a stack, the front for the limit.
class CActionManager {
public:
    using Stack = std::deque<std::unique_ptr<CAction>>;

    CActionManager(CUndoManager* owner, CDocument* target, int limit, UndoCallback callback);
    CActionManager(const CActionManager&) = delete;
    CActionManager& operator=(const CActionManager&) = delete;
    ~CActionManager();

    // Takes the action over. Closes the step still open, drops the redo future and, at the
    // limit, the oldest step; a null action only closes the open step and notifies.
    void Do(CAction* action);
    void Undo(int count);
    bool CanUndo(int count) const;
    void Redo(int count);
    bool CanRedo(int count) const;
    void Notify(std::uint32_t message, int count);
    // Trims both stacks from the front; a clean depth the new limit can't reach is lost.
    void SetLimit(int limit);
    // Empties both stacks. The clean depth stays: a history that overflowed stays modified.
    void ClearHistory();

    void SetCallback(UndoCallback callback) { m_pfnCallback = callback; }
    CDocument* GetTarget() const { return m_pTarget; }

private:
    // Destroys up to count actions from the front (the oldest end) of the stack.
    void Purge(Stack& stack, int count);

    CUndoManager* m_pOwner;
    CDocument* m_pTarget;
    Stack m_undoStack; // oldest at the front
    Stack m_redoStack; // the step undone last at the back
    UndoCallback m_pfnCallback;
    // The undo depth that matches the saved file: 0 at first, -1 once an overflow dropped a
    // step, after which the history can never again report the document unmodified.
    int m_nCleanDepth = 0;
    int m_nLimit;
};
