#pragma once

#include <Qt>
#include <vector>

class CAction;
class CDrawDoc;
class CDrawObj;

// Objects picked in a view, in the order they were picked. Owns nothing.
using CDrawObjPtrList = std::vector<CDrawObj*>;

// What the document, the objects and the undo actions ask of a window that shows a label. The
// drawing view implements it; the model never sees a widget, so everything here can be driven
// without one. Besides its hooks it holds the state that the tools and the actions share: the
// selection, the action begun last and the count of pastes since the last copy.
class CView {
public:
    CView();
    CView(const CView&) = delete;
    CView& operator=(const CView&) = delete;
    virtual ~CView();

    // Called by every action as it is destroyed: a view whose current action it was forgets it.
    static void ForgetAction(const CAction* action);

    // The document this view shows.
    virtual CDrawDoc* GetDocument() const = 0;
    // A hint of what changed: 0 repaint all, 1 one object.
    virtual void OnUpdate(CView* sender, int hint, CDrawObj* object) = 0;
    // Hint 2 repaints a list, hint 3 also drops it from the selection (unless it is the
    // selection itself); a null list stands for the selection.
    virtual void OnUpdateList(CView* sender, int hint, const CDrawObjPtrList* list);
    // Whether the object is in this view's selection.
    virtual bool IsSelected(const CDrawObj* object) const;
    // Whether this is the view the user works in now; only that one shows trackers.
    virtual bool IsActive() const = 0;
    // Takes an object that leaves the document out of the selection.
    virtual void Remove(CDrawObj* object);
    // Repaints the place of one object, with its line and effect margins.
    virtual void InvalidateObject(CDrawObj* object) = 0;

    // Selects an object, after emptying the selection unless adding. A null object empties it
    // and puts the defaults for new objects back to their start values. Either way the panels
    // are loaded (LoadPanels).
    void Select(CDrawObj* object, bool add);
    // Closes the action begun last when it is still open.
    void CloseCurrentAction();
    // Makes the action the one begun last. One that was begun but never recorded (a move
    // whose release never came) is destroyed, since nothing else owns it.
    void SetCurrentAction(CAction* action);

    // Gives the keyboard focus back to the view, after an undo or a redo.
    virtual void SetViewFocus() {}
    // The keyboard's modifiers during the input being handled, and the screen's resolution in
    // dots per inch: the window passes them, the model never reads the keyboard or the screen.
    virtual Qt::KeyboardModifiers Modifiers() const { return Qt::NoModifier; }
    virtual int ScreenResolution() const { return 96; }

    CDrawObjPtrList m_selection;
    // The action begun last; the undo stacks own it once done. An action clears this when it
    // is destroyed, so it never dangles.
    CAction* m_pCurAction = nullptr;
    int m_nPasteCount = 0;

protected:
    // Shows the object's properties in the panels: a text in the text pages, anything else in
    // the shape panel; null shows the defaults.
    virtual void LoadPanels(CDrawObj* object) { (void)object; }
};
