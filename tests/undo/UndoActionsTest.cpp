#include "UndoFixture.h"

#include "platform/Clipboard.h"
#include "undo/CAddAction.h"
#include "undo/CClipboardObjects.h"
#include "undo/CDeleteAction.h"
#include "undo/CEditMultiAction.h"
#include "undo/CMoveAction.h"
#include "undo/CMoveOneStepAction.h"
#include "undo/CMoveSingleAction.h"
#include "undo/CMoveStepsAction.h"
#include "undo/CPaperAction.h"
#include "undo/CPasteAction.h"
#include "undo/CSizeAction.h"

#include <functional>

namespace {

// One edit as its caller makes it, on three objects a (bottom), b and c (top).
struct Edit {
    const char* name;
    std::function<void(CDrawObj* a, CDrawObj* b, CDrawObj* c)> make;
};

} // namespace

class UndoActionsTest : public UndoFixture {
protected:
    void run(const Edit& edit);
    // The objects of the showing label, bottom first.
    CDrawObjPtrList objects()
    {
        CDrawObjPtrList list;
        for (const auto& object : doc.GetObjects())
            list.push_back(object.get());
        return list;
    }
};

void UndoActionsTest::run(const Edit& edit)
{
    CDrawObj* a = addRect(0, 0, 100, 100);
    CDrawObj* b = addRect(200, 0, 300, 100);
    CDrawObj* c = addRect(0, 200, 100, 300);
    const QByteArray before = saved();
    edit.make(a, b, c);
    const QByteArray after = saved();
    EXPECT_NE(after, before);
    for (int round = 0; round < 2; ++round) {
        undo();
        EXPECT_EQ(saved(), before) << "round " << round;
        redo();
        EXPECT_EQ(saved(), after) << "round " << round;
    }
}

TEST_F(UndoActionsTest, EveryKindOfStepUndoesAndRedoesToTheSameFile)
{
    const Edit edits[] = {
        {"add", [this](CDrawObj*, CDrawObj*, CDrawObj*) {
             begin<CAddAction>(61450u, std::make_unique<CDrawRect>(CRect(5, 5, 50, 50)))->Do();
         }},
        {"size", [this](CDrawObj* a, CDrawObj*, CDrawObj*) {
             begin<CSizeAction>(61453u, 5, a->GetHandle(5), a)->Do();
             a->MoveHandleTo(5, CPoint(150, -40), &view);
         }},
        {"move", [this](CDrawObj* a, CDrawObj* b, CDrawObj*) {
             CAction* move = begin<CMoveAction>(61454u, CDrawObjPtrList{a, b});
             for (CDrawObj* object : {a, b}) {
                 CRect rect = object->GetRect();
                 rect.OffsetRect(7, -3);
                 object->MoveTo(rect, &view);
             }
             move->Do();
         }},
        {"paper", [this](CDrawObj*, CDrawObj*, CDrawObj*) {
             CAction* paper = begin<CPaperAction>(61463u);
             doc.SetBackColor(0x123456);
             doc.SetImageFile("back.png");
             paper->Do();
         }},
        {"properties", [this](CDrawObj* a, CDrawObj*, CDrawObj* c) {
             CAction* edit = begin<CEditMultiAction>(61475u, CDrawObjPtrList{a, c});
             a->m_lineWidth = 9;
             c->m_fillColor1 = gfx::Color(255, 1, 2, 3);
             edit->Do();
         }},
        {"one step", [this](CDrawObj* a, CDrawObj*, CDrawObj*) {
             begin<CMoveOneStepAction>(61464u, 1, a)->Do();
         }},
        {"to the front", [this](CDrawObj*, CDrawObj* b, CDrawObj*) {
             begin<CMoveStepsAction>(61464u, 1, doc.ObjectAfter(b), b)->Do();
         }},
        {"delete", [this](CDrawObj* a, CDrawObj*, CDrawObj* c) {
             begin<CDeleteAction>(61473u, CDrawObjPtrList{c, a})->Do();
         }},
        {"paste", [this](CDrawObj* a, CDrawObj* b, CDrawObj*) {
             Clipboard::Write(CClipboardObjects::Store({b, a}));
             begin<CPasteAction>(61474u)->Do();
         }},
        {"arrow keys", [this](CDrawObj* a, CDrawObj*, CDrawObj*) {
             begin<CMoveSingleAction>(61479u, a)->Do();
             for (int step = 0; step < 3; ++step) {
                 CRect rect = a->GetRect();
                 rect.OffsetRect(1, 0);
                 a->MoveTo(rect, &view);
             }
         }},
    };
    for (const Edit& edit : edits) {
        SCOPED_TRACE(edit.name);
        doc.OnNewDocument();
        view.m_selection.clear();
        run(edit);
    }
}

TEST_F(UndoActionsTest, DeletedObjectsComeBackToTheirOwnLevels)
{
    for (int i = 0; i < 6; ++i)
        addRect(i, i, i + 10, i + 10);
    const CDrawObjPtrList all = objects();
    // Levels 1, 3 and 5, picked top first.
    begin<CDeleteAction>(61473u, CDrawObjPtrList{all[4], all[0], all[2]})->Do();
    EXPECT_EQ(objects(), (CDrawObjPtrList{all[1], all[3], all[5]}));
    undo();
    EXPECT_EQ(objects(), all);
    EXPECT_EQ(all[4]->m_pDocument, &doc);
}

TEST_F(UndoActionsTest, PastesStepAwayFromTheCopyAndAnUndoneOneGivesItsStepBack)
{
    Clipboard::Write(CClipboardObjects::Store({addRect(0, 0, 100, 100)}));
    view.m_nPasteCount = 0; // as a copy leaves it
    const auto paste = [this] {
        begin<CPasteAction>(61474u)->Do();
        EXPECT_EQ(view.m_selection.size(), 1u);
        return view.m_selection.front()->GetRect();
    };
    EXPECT_EQ(paste(), CRect(10, -10, 110, 90));
    undo();
    EXPECT_EQ(doc.GetObjects().GetCount(), 1);
    EXPECT_EQ(paste(), CRect(10, -10, 110, 90));
    EXPECT_EQ(paste(), CRect(20, -20, 120, 80));
    EXPECT_EQ(doc.GetObjects().GetCount(), 3);
}

TEST_F(UndoActionsTest, DamagedClipboardBytesPasteNothing)
{
    const QByteArray good = CClipboardObjects::Store({addRect(0, 0, 100, 100), addRect(5, 5, 9, 9)});
    const QByteArray before = saved();
    for (const QByteArray& bytes : {good.left(good.size() - 3), QByteArray("\x01\x00\xFF\xFF\x00", 5)}) {
        Clipboard::Write(bytes);
        begin<CPasteAction>(61474u)->Do();
        EXPECT_TRUE(view.m_selection.empty());
        EXPECT_EQ(saved(), before);
    }
    EXPECT_EQ(view.m_nPasteCount, 2); // a paste still, if of nothing
}

TEST_F(UndoActionsTest, BackgroundUndoneOnAnotherLabelWritesTheShowingOne)
{
    CAction* paper = begin<CPaperAction>(61463u);
    doc.SetBackColor(0x0000FF);
    paper->Do();
    doc.SetCurLabel(1);
    doc.SetBackColor(0x00FF00);
    undo();
    EXPECT_EQ(doc.GetBackColor(0), 0x0000FFu);
    EXPECT_EQ(doc.GetBackColor(1), 0xFFFFFFu);
    redo();
    EXPECT_EQ(doc.GetBackColor(1), 0x0000FFu);
}
