#pragma once

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "objects/DefaultProperties.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "templates/CTemplateFile.h"
#include "undo/CUndoManager.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <gtest/gtest.h>

#include <QTest>
#include <memory>
#include <vector>

// The real canvas on the offscreen platform, over a document with the program's own templates
// (the disc printer's standard disc), driven by synthetic mouse and key events. Messages are
// recorded instead of shown.
class Canvas : public ::testing::Test {
protected:
    void SetUp() override
    {
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
        ASSERT_FALSE(templates.empty());
        ResetDefaultProperties();
        doc = std::make_unique<CDrawDoc>();
        doc->SetTemplates(&templates);
        doc->OnNewDocument();
        doc->SetTemplate(0);
        view = std::make_unique<CNetworkView>(*doc);
        view->resize(600, 600);
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
        view->SetLogicalSizes();
        view->ZoomFull();
        g_currentTool = CDrawTool::Selection;
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages.push_back(text);
            return MessageBox::IdOk;
        });
    }

    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        view.reset();
        doc.reset();
    }

    // The client pixel of a label point.
    QPoint at(int x, int y) const
    {
        const CPoint p = view->ViewLPtoDP(CPoint(x, y));
        return QPoint(p.x, p.y);
    }
    QWidget* canvas() const { return view->viewport(); }

    // Objects are picked by the outline they last drew, so the label is painted before each
    // press, as a screen would have shown it.
    void press(QPoint p, Qt::KeyboardModifiers keys = {})
    {
        canvas()->repaint();
        QTest::mousePress(canvas(), Qt::LeftButton, keys, p);
    }
    void release(QPoint p, Qt::KeyboardModifiers keys = {}) { QTest::mouseRelease(canvas(), Qt::LeftButton, keys, p); }
    void click(QPoint p, Qt::KeyboardModifiers keys = {})
    {
        canvas()->repaint();
        QTest::mouseClick(canvas(), Qt::LeftButton, keys, p);
    }
    void move(QPoint p) { QTest::mouseMove(canvas(), p); }
    // A press, moves in steps of a few pixels, and a release.
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = {})
    {
        press(from, keys);
        const int steps = 6;
        for (int i = 1; i <= steps; ++i)
            move(from + (to - from) * i / steps);
        release(to, keys);
    }
    void key(Qt::Key k, Qt::KeyboardModifiers keys = {}) { QTest::keyClick(view.get(), k, keys); }
    void tool(int number) { view->SelectTool(number); }

    // What a project file would hold now.
    QByteArray saved() const
    {
        CArchive ar;
        doc->Serialize(ar);
        return ar.Buffer();
    }
    const CDrawObjList& objects() const { return doc->GetObjects(); }
    CDrawObj* object(int index) const { return objects().GetAt(index); }
    void undo() { g_undoManager.Undo(doc.get(), 1); }
    void redo() { g_undoManager.Redo(doc.get(), 1); }

    std::vector<CTemplateFile> templates;
    std::unique_ptr<CDrawDoc> doc;
    std::unique_ptr<CNetworkView> view;
    std::vector<QString> messages;
};
