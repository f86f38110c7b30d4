#include "Canvas.h"
#include "TestSupport.h"

#include "objects/CDrawPoly.h"
#include "platform/Clipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QTimer>

namespace {

class Canvas_Edit : public Canvas {
protected:
    // Three rectangles side by side, bottom to top.
    void drawThree()
    {
        tool(CDrawTool::Rectangle);
        drag(at(-400, 100), at(-200, -100));
        drag(at(-100, 100), at(100, -100));
        drag(at(200, 100), at(400, -100));
        g_currentTool = CDrawTool::Selection;
        click(at(0, 500));
    }
    CDrawObjPtrList order() const
    {
        CDrawObjPtrList list;
        for (const auto& object : objects())
            list.push_back(object.get());
        return list;
    }
};

TEST_F(Canvas_Edit, EveryGestureAndCommandUndoesAndRedoesToTheSameFile)
{
    // Each step is done, then undone and redone with the same label showing; the project
    // must then be byte for byte what the step made.
    const auto check = [this](const char* what) {
        const QByteArray after = saved();
        ASSERT_TRUE(g_undoManager.CanUndo(doc.get(), 1)) << what;
        undo();
        EXPECT_NE(saved(), after) << what << ": the undo changed nothing";
        redo();
        EXPECT_EQ(saved(), after) << what;
    };
    drawThree();
    check("draw");
    click(at(0, 0));
    drag(at(0, 0), at(60, 40));
    check("move");
    const CRect r = object(1)->GetRect();
    drag(at(r.right, r.bottom), at(r.right + 80, r.bottom - 50));
    check("resize");
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    check("arrow keys");
    view->MoveToFront();
    check("to front");
    view->MoveBackward();
    check("one step back");
    view->OnEditClone();
    check("clone");
    view->OnEditDelete();
    check("delete");
    tool(CDrawTool::Text);
    click(at(0, -300));
    check("text");
    tool(CDrawTool::ClosedCurve);
    click(at(-300, -300));
    click(at(-200, -400));
    click(at(-100, -300));
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(-100, -300));
    check("closed curve");
}

TEST_F(Canvas_Edit, ZOrderMovesTheFirstSelectedOnlyAndSaysSoOnlyWhenJumping)
{
    drawThree();
    const CDrawObjPtrList start = order();
    click(at(0, 0));
    click(at(-300, 0), Qt::ShiftModifier);
    ASSERT_EQ(view->m_selection, (CDrawObjPtrList{start[1], start[0]}));

    view->MoveToFront();
    EXPECT_EQ(order(), (CDrawObjPtrList{start[0], start[2], start[1]}));
    view->MoveForward(); // already on top: nothing, without a word
    view->MoveToFront(); // already on top: the message
    EXPECT_EQ(order(), (CDrawObjPtrList{start[0], start[2], start[1]}));
    EXPECT_EQ(messages, std::vector<QString>{QStringLiteral("Cannot move forward, because it is already the first one!")});

    view->MoveToBack();
    EXPECT_EQ(order(), (CDrawObjPtrList{start[1], start[0], start[2]}));
    undo();
    EXPECT_EQ(order(), (CDrawObjPtrList{start[0], start[2], start[1]}));
    // With the bottom and the top object selected neither way is open; with the middle one both.
    EXPECT_FALSE(view->CanMoveBackward());
    EXPECT_FALSE(view->CanMoveForward());
    click(at(300, 0));
    EXPECT_TRUE(view->CanMoveBackward());
    EXPECT_TRUE(view->CanMoveForward());
}

TEST_F(Canvas_Edit, ClipboardCarriesObjectsBetweenDocumentsAndIgnoresDamagedBytes)
{
    drawThree();
    click(at(0, 0));
    view->OnEditCopy();
    const CRect copied = object(1)->GetRect();
    ASSERT_TRUE(CNetworkView::CanPaste());

    // A second document with its own view, as a second running copy would have.
    CDrawDoc other;
    other.SetTemplates(&templates);
    other.OnNewDocument();
    {
        CNetworkView otherView(other);
        otherView.OnEditPaste();
        otherView.OnEditPaste();
        ASSERT_EQ(other.GetObjects().GetCount(), 2);
        CRect expected = copied;
        expected.OffsetRect(10, -10);
        EXPECT_EQ(other.GetObjects().GetAt(0)->GetRect(), expected);
        expected.OffsetRect(10, -10);
        EXPECT_EQ(other.GetObjects().GetAt(1)->GetRect(), expected);
        EXPECT_EQ(otherView.m_selection, CDrawObjPtrList{other.GetObjects().GetAt(1)});
    }

    // Damaged bytes under the program's format paste nothing and lose nothing.
    auto* damaged = new QMimeData;
    damaged->setData(Clipboard::MimeType, QByteArray("\x03\x00\xff\xff garbage", 13));
    QGuiApplication::clipboard()->setMimeData(damaged);
    const QByteArray before = saved();
    view->OnEditPaste();
    EXPECT_EQ(objects().GetCount(), 3);
    EXPECT_TRUE(view->m_selection.empty());

    // Without the format at all, Paste is not offered.
    QGuiApplication::clipboard()->setText(QStringLiteral("text"));
    EXPECT_FALSE(CNetworkView::CanPaste());
    view->OnEditPaste();
    EXPECT_EQ(saved(), before);
}

TEST_F(Canvas_Edit, UndoingBackToTheSavedStateMakesTheProjectCleanAgain)
{
    drawThree();
    TestFolder folder;
    const QString path = folder.path() + QStringLiteral("/label.dst");
    ASSERT_TRUE(doc->OnSaveDocument(path));
    doc->SetModifiedFlag(false);
    EXPECT_FALSE(g_undoManager.CanUndo(doc.get(), 1)) << "a save empties the history";

    click(at(0, 0));
    drag(at(0, 0), at(50, 50));
    view->OnEditDelete();
    EXPECT_TRUE(doc->IsModified());
    undo();
    EXPECT_TRUE(doc->IsModified());
    undo();
    EXPECT_FALSE(doc->IsModified());
    redo();
    EXPECT_TRUE(doc->IsModified());
}

TEST_F(Canvas_Edit, DeletingAPolygonsSelectedVertexIsNotAStepOfTheHistory)
{
    tool(CDrawTool::Polygon);
    for (const QPoint p : {at(0, 0), at(300, 0), at(300, 300), at(0, 300)})
        click(p);
    QTest::mousePress(canvas(), Qt::RightButton, {}, at(0, 300));
    auto* polygon = static_cast<CDrawPoly*>(object(0));
    ASSERT_EQ(polygon->GetPointCount(), 4);
    // A press on a vertex of the selected polygon makes it the selected vertex (and begins a
    // resize, which is recorded).
    click(at(300, 300));
    EXPECT_EQ(polygon->m_selectedPoint, 3);
    view->OnEditDelete();
    EXPECT_EQ(polygon->GetPointCount(), 3);
    undo();
    EXPECT_EQ(polygon->GetPointCount(), 3) << "the vertex does not come back";
    undo();
    EXPECT_TRUE(objects().IsEmpty());
}

TEST_F(Canvas_Edit, RightClickOnAnUnselectedObjectMakesItTheOnlySelection)
{
    drawThree();
    click(at(0, 0));
    click(at(300, 0), Qt::ShiftModifier);
    const auto rightClick = [this](QPoint p) {
        QString seen;
        QTimer::singleShot(0, [&seen] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (QAction* action : menu->actions()) {
                    if (!action->isSeparator() && action->isEnabled())
                        seen += action->text() + QLatin1Char('|');
                }
                menu->close();
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, p, canvas()->mapToGlobal(p));
        QApplication::sendEvent(canvas(), &event);
        return seen;
    };
    // Over a selected object of several, the selection stays.
    rightClick(at(0, 0));
    EXPECT_EQ(view->m_selection.size(), 2u);
    // Over another, it alone is selected; the bottom one can't go further back.
    const QString entries = rightClick(at(-300, 0));
    EXPECT_EQ(view->m_selection, CDrawObjPtrList{object(0)});
    EXPECT_EQ(entries, QStringLiteral("Cu&t|&Copy|&Delete|Clo&ne|Move &Forward|&Move to Front|"
                                      "Select Fill &Image|Select Fill P&attern|Select Fill &Gradient|"));
    // Over empty space nothing that acts on the object under the mouse is offered.
    click(at(0, 0));
    view->OnEditCopy();
    EXPECT_EQ(rightClick(at(0, 500)),
              QStringLiteral("&Paste|Clo&ne|Move &Backward|Move &Forward|Move to Bac&k|&Move to Front|"));
}

} // namespace
