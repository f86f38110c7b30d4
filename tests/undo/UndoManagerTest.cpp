#include "UndoFixture.h"

#include "TestSupport.h"

#include <string>
#include <vector>

namespace {

// A bare step that writes down what is done to it.
class LoggedAction : public CAction {
public:
    LoggedAction(CDocument* target, std::vector<std::string>& log) : CAction(target, 0), m_log(log) {}
    ~LoggedAction() override { m_log.push_back("destroyed"); }
    void Done() override
    {
        m_log.push_back("done");
        CAction::Done();
    }
    void Undo() override
    {
        m_log.push_back("undo");
        CAction::Undo();
    }

private:
    std::vector<std::string>& m_log;
};

} // namespace

using UndoManagerTest = UndoFixture;

TEST_F(UndoManagerTest, ModifiedFlagFollowsTheDepthUntilAnOverflowLosesTheSavedState)
{
    EXPECT_FALSE(doc.IsModified());
    (new CAction(&doc, 0))->Do();
    EXPECT_TRUE(doc.IsModified());
    undo();
    EXPECT_FALSE(doc.IsModified());
    redo();
    EXPECT_TRUE(doc.IsModified());

    // The view's current action is the oldest step; the overflow destroys it.
    undo();
    auto* first = new CAction(&doc, 0);
    view.m_pCurAction = first;
    first->Do();
    for (int i = 0; i < 99; ++i)
        (new CAction(&doc, 0))->Do();
    EXPECT_EQ(view.m_pCurAction, first);
    EXPECT_TRUE(g_undoManager.CanUndo(&doc, 100));
    (new CAction(&doc, 0))->Do();
    EXPECT_EQ(view.m_pCurAction, nullptr);
    EXPECT_TRUE(g_undoManager.CanUndo(&doc, 100));
    EXPECT_FALSE(g_undoManager.CanUndo(&doc, 101));

    g_undoManager.Undo(&doc, 100);
    EXPECT_TRUE(doc.IsModified());
    // Neither clearing nor attaching again brings the saved state back.
    g_undoManager.ClearHistory(&doc);
    doc.OnNewDocument();
    (new CAction(&doc, 0))->Do();
    undo();
    EXPECT_TRUE(doc.IsModified());
}

TEST_F(UndoManagerTest, SavingEmptiesTheHistoryAndIsTheNewCleanState)
{
    addRect(0, 0, 10, 10);
    for (int i = 0; i < 3; ++i)
        (new CAction(&doc, 0))->Do();
    undo();
    TestFolder folder;
    ASSERT_TRUE(doc.OnSaveDocument(folder.path() + "/saved.dst"));
    EXPECT_FALSE(g_undoManager.CanUndo(&doc, 1));
    EXPECT_FALSE(g_undoManager.CanRedo(&doc, 1));
    (new CAction(&doc, 0))->Do();
    EXPECT_TRUE(doc.IsModified());
    undo();
    EXPECT_FALSE(doc.IsModified());
}

TEST_F(UndoManagerTest, NullStepClosesTheOpenStepAndKeepsTheRedoFuture)
{
    auto* open = new CAction(&doc, 0);
    open->Do();
    doc.SetModifiedFlag(false);
    g_undoManager.Do(&doc, nullptr);
    EXPECT_TRUE(open->IsDone());
    EXPECT_TRUE(doc.IsModified()); // notified

    (new CAction(&doc, 0))->Do();
    undo();
    g_undoManager.Do(&doc, nullptr);
    EXPECT_TRUE(g_undoManager.CanRedo(&doc, 1));
}

TEST_F(UndoManagerTest, UndoClosesAnOpenStepFirstAndANewStepDestroysTheRedoFuture)
{
    std::vector<std::string> log;
    (new LoggedAction(&doc, log))->Do();
    undo();
    EXPECT_EQ(log, (std::vector<std::string>{"done", "undo"}));
    (new CAction(&doc, 0))->Do();
    EXPECT_EQ(log.back(), "destroyed");
    EXPECT_FALSE(g_undoManager.CanRedo(&doc, 1));
}
