#pragma once

#include "undo/CMAction.h"

// A jump to the top (direction 1) or the bottom (direction 0) of the label's z-order. The
// object's upper neighbour before the jump tells the undo where it stood; without one it
// stood at the top.
class CMoveStepsAction : public CMAction {
public:
    CMoveStepsAction(CView* view, std::uint32_t id, int direction, CDrawObj* neighbour, CDrawObj* object);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void Move();

    CDrawObj* m_pObject;
    bool m_bToFront;
    CDrawObj* m_pNeighbour;
};
