#pragma once

#include "platform/CRect.h"
#include "undo/CMAction.h"

// A run of arrow-key steps on one object. Its Do is the base's, which records it and leaves it
// open, so that the following presses find it unfinished and add to it; the next mouse press
// or the next action closes it. Undo and redo swap the object's rectangle with the stored one.
class CMoveSingleAction : public CMAction {
public:
    CMoveSingleAction(CView* view, std::uint32_t id, CDrawObj* object);

    void Undo() override;
    void Redo() override;

private:
    void Swap();

    CDrawObj* m_pObject;
    CRect m_rect;
};
