#pragma once

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "document/CView.h"
#include "objects/CDrawRect.h"
#include "undo/CAction.h"
#include "undo/CUndoManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

// A view of the tests' own over the document; it repaints nothing.
class TestView : public CView {
public:
    explicit TestView(CDrawDoc* document) : m_pDocument(document) { document->AddView(this); }
    ~TestView() override { m_pDocument->RemoveView(this); }
    CDrawDoc* GetDocument() const override { return m_pDocument; }
    bool IsActive() const override { return true; }
    void InvalidateObject(CDrawObj*) override {}
    void OnUpdate(CView*, int, CDrawObj*) override {}

private:
    CDrawDoc* m_pDocument;
};

// A new document without templates, as the program starts one, and a view on it.
class UndoFixture : public ::testing::Test {
protected:
    void SetUp() override { doc.OnNewDocument(); }

    CDrawObj* addRect(int left, int top, int right, int bottom)
    {
        return doc.Add(std::make_unique<CDrawRect>(CRect(left, top, right, bottom)));
    }
    // What a save would write.
    QByteArray saved()
    {
        CArchive ar;
        ar.m_pDocument = &doc;
        doc.Serialize(ar);
        return ar.Buffer();
    }
    // Made as every caller makes an action: the open one closed, the new one current.
    template <typename Action, typename... Args>
    Action* begin(Args&&... args)
    {
        view.CloseCurrentAction();
        auto* action = new Action(&view, std::forward<Args>(args)...);
        view.m_pCurAction = action;
        return action;
    }
    void undo() { g_undoManager.Undo(&doc, 1); }
    void redo() { g_undoManager.Redo(&doc, 1); }

    CDrawDoc doc;
    TestView view{&doc};
};
