#pragma once

#include "document/LabelBackground.h"
#include "undo/CMAction.h"

// A change of the showing label's background. Made before the change, recorded after it.
// Undo and redo write into the label that is showing then, whichever label the change was
// made on.
class CPaperAction : public CMAction {
public:
    CPaperAction(CView* view, std::uint32_t id);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void Restore(const LabelBackground& background);

    LabelBackground m_before;
    LabelBackground m_after;
};
