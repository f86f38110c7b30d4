#pragma once

#include "document/CView.h"
#include "platform/CRect.h"
#include "view/CZoomView.h"

#include <QCursor>
#include <QRect>
#include <functional>

class CDrawTool;
class CLineProperty;
class CTextForm;

// The one view on the label, the canvas of the main window. It holds the selection, hands
// mouse and arrow-key input to the current tool, paints the label through the document's one
// drawing path, and carries the edit commands: delete, cut, copy, paste, clone, select all,
// the four z-order moves, the three fill commands and the context menu. Every change it makes
// goes through an undo action.
class CNetworkView : public CZoomView, public CView {
    Q_OBJECT

public:
    // The view joins the document's views and leaves them when destroyed, so the document
    // must outlive it.
    explicit CNetworkView(CDrawDoc& doc, QWidget* parent = nullptr);
    ~CNetworkView() override;

    // ---- the model's view
    CDrawDoc* GetDocument() const override { return m_pDrawDoc; }
    void OnUpdate(CView* sender, int hint, CDrawObj* object) override;
    bool IsActive() const override { return m_bActive; }
    void InvalidateObject(CDrawObj* object) override;
    void Remove(CDrawObj* object) override;
    void SetViewFocus() override;
    Qt::KeyboardModifiers Modifiers() const override { return m_modifiers; }
    int ScreenResolution() const override;

    // Whether the view takes input and shows handles; the window makes it active.
    void SetActive(bool active);

    // ---- coordinates
    void ClientToDoc(CPoint& point) const;
    void ClientToDoc(CRect& rect) const;
    void DocToClient(CRect& rect) const;

    // ---- selection
    void SelectWithinRect(CRect clientRect, bool add);
    void Deselect(CDrawObj* object);
    void SelectAll();
    // Empties the selection and repaints what was selected; the defaults stay.
    void ClearSelection();

    // ---- commands
    void OnEditDelete();
    void OnEditCopy();
    void OnEditCut();
    void OnEditPaste();
    void OnEditClone();
    void MoveBackward();
    void MoveForward();
    void MoveToBack();
    void MoveToFront();
    void OnShowGrid();
    // The zoom buttons: the zoom tool in the mode given.
    void OnZoomTool(int mode);
    // Chooses a tool as its button or key does: the selection emptied, the panel loaded with
    // the values the tool's next object takes, then the tool current.
    void SelectTool(int number);
    // Whether a command can run now, for its menu entry.
    bool CanMoveBackward() const;
    bool CanMoveForward() const;
    static bool CanPaste();

    // ---- the panels that follow the selection (CNetworkView_Panels.cpp)
    // The shape and text panels, which the window places; the view loads them.
    void SetPanels(CLineProperty* lineProperty, CTextForm* textForm);
    // Shows the object in its panel (a text in the text pages, anything else in the shape
    // panel); null shows the values of the current tool's next object.
    void LoadPanels(CDrawObj* object) override;
    // The shape panel's argument for a tool: its shape, with 0x100 where the aspect is locked.
    static int PanelArgument(int tool);

    // ---- fill commands of the context menu, each one step of the history over the selection.
    // A picture from the Clip Art folder, centred and fitted.
    void OnFillPicture();
    // A hatch chosen in the pattern page, primed from the first selected object.
    void OnFillPattern();
    // A gradient chosen in the gradient page, primed from the first selected object.
    void OnFillGradient();

    // ---- for the tools
    void SetCapture();
    void ReleaseCapture();
    bool HasCapture() const { return m_bCapture; }
    void SetToolCursor(const QCursor& cursor);
    // Shows or hides the dotted rubber band; a second call with the same rectangle hides it.
    void DrawFocusRect(const CRect& clientRect);
    // The picture of a clip-art object, chosen in the picture dialog; empty when cancelled.
    QString AskClipArtFile();
    static QCursor PenCursor();

    // The filter of every picture dialog of the canvas, in the platform dialog's syntax.
    static const QString PictureFilter;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The tool of g_currentTool, or null while the view is inactive.
    CDrawTool* ActiveTool() const;
    unsigned MouseFlags(const QMouseEvent* event);
    // Closes a running arrow-key move, as any press in the view does.
    void CloseArrowMove();
    // The head of the selection one step or all the way toward the top or the bottom.
    void MoveInZOrder(bool forward, bool jump);
    void ShowContextMenu(const QPoint& globalPos, CPoint client);
    // The picture of a fill command: the dialog of one object's own command, or the larger
    // one for several objects. Empty when cancelled or refused.
    QString AskFillPicture();
    // One fill change of every selected object, as one step of the history.
    void ChangeSelectedFills(const std::function<void(CDrawObj&)>& change);

    CDrawDoc* m_pDrawDoc;
    CLineProperty* m_pLineProperty = nullptr;
    CTextForm* m_pTextForm = nullptr;
    bool m_bActive = true;
    bool m_bCapture = false;
    Qt::KeyboardModifiers m_modifiers;
    // The rubber band as shown, in client pixels; null when hidden.
    QRect m_focusRect;
};
