#pragma once

#include "undo/CMAction.h"

// One step up or down the label's z-order: direction 1 towards the top (the tail of the
// list), 0 towards the bottom.
class CMoveOneStepAction : public CMAction {
public:
    CMoveOneStepAction(CView* view, std::uint32_t id, int direction, CDrawObj* object);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void MoveUp();
    void MoveDown();

    CDrawObj* m_pObject;
    bool m_bForward;
};
