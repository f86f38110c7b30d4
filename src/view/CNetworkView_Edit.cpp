// The view's edit commands: delete, clipboard, z-order, tools and the context menu.

#include "view/CNetworkView.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawText.h"
#include "platform/Clipboard.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "undo/CDeleteAction.h"
#include "undo/CMoveOneStepAction.h"
#include "undo/CMoveStepsAction.h"
#include "undo/CPasteAction.h"
#include "undo/CClipboardObjects.h"
#include "view/CDrawTool.h"

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QMenu>

namespace {

constexpr std::uint32_t DeleteLabel = 61473;
constexpr std::uint32_t PasteLabel = 61474;
constexpr std::uint32_t MovePositionLabel = 61464;

} // namespace

const QString CNetworkView::PictureFilter = QStringLiteral(
    "All Image Types(*.jpg,*.jpeg,*.bmp,*.gif,*.tif,*.tiff,*.exif,*.wmf,*.png) (*.jpg *.jpeg *.bmp *.gif *.tif *.tiff *.exif *.wmf *.png);;"
    "JPEG (*.jpg;*.jpeg) (*.jpg *.jpeg);;"
    "Windows Bitmap (*.bmp) (*.bmp);;"
    "Graphics Interchange Format (*.gif) (*.gif);;"
    "Exchangeable Image File(*.Exif) (*.exif);;"
    "Tag Image File Format(*.tif,*.tiff) (*.tif *.tiff);;"
    "Windows Metafile (*.WMF) (*.wmf);;"
    "Portable Network Graphics (*.PNG) (*.png);;"
    "All Files (*.*) (*)");

void CNetworkView::OnEditDelete()
{
    for (CView* view : m_pDrawDoc->Views())
        view->OnUpdateList(nullptr, 3, &m_selection);
    OnUpdateList(nullptr, 2, nullptr);
    if (m_selection.empty())
        return;
    if (m_selection.size() == 1) {
        // A polygon's selected vertex goes by itself, outside the history.
        auto* poly = dynamic_cast<CDrawPoly*>(m_selection.front());
        if (poly && poly->m_selectedPoint != -1) {
            poly->RemoveSelectedPoint(this);
            return;
        }
    }
    CloseCurrentAction();
    auto* action = new CDeleteAction(this, DeleteLabel, m_selection);
    SetCurrentAction(action);
    action->Do();
}

void CNetworkView::OnEditCopy()
{
    const QByteArray bytes = CClipboardObjects::Store(m_selection);
    m_nPasteCount = 0;
    Clipboard::Write(bytes);
}

void CNetworkView::OnEditCut()
{
    OnEditCopy();
    OnEditDelete();
}

void CNetworkView::OnEditPaste()
{
    CloseCurrentAction();
    auto* action = new CPasteAction(this, PasteLabel);
    SetCurrentAction(action);
    action->Do();
}

void CNetworkView::OnEditClone()
{
    OnEditCopy();
    OnEditPaste();
}

bool CNetworkView::CanPaste()
{
    return Clipboard::HasObjects();
}

// ---------------------------------------------------------------- z-order

bool CNetworkView::CanMoveBackward() const
{
    const CDrawObjList& list = m_pDrawDoc->GetObjects();
    return !m_selection.empty() && !list.IsEmpty() && !IsSelected(list.GetAt(0));
}

bool CNetworkView::CanMoveForward() const
{
    const CDrawObjList& list = m_pDrawDoc->GetObjects();
    return !m_selection.empty() && !list.IsEmpty() && !IsSelected(list.GetAt(list.GetCount() - 1));
}

// All four move the first selected object only. A step at the edge is silent, a jump to
// where the object already is says so: kept as users know it.
void CNetworkView::MoveInZOrder(bool forward, bool jump)
{
    if (m_selection.empty())
        return;
    CDrawObj* object = m_selection.front();
    CloseCurrentAction();
    const CDrawObjList& list = m_pDrawDoc->GetObjects();
    if (list.Find(object) == (forward ? list.GetCount() - 1 : 0)) {
        if (jump) {
            MessageBox::Show(forward ? QStringLiteral("Cannot move forward, because it is already the first one!")
                                     : QStringLiteral("Cannot move backward, because it is already the last one!"));
        }
        return;
    }
    const int direction = forward ? 1 : 0;
    CAction* action = jump ? static_cast<CAction*>(new CMoveStepsAction(this, MovePositionLabel, direction,
                                                                        m_pDrawDoc->ObjectAfter(object), object))
                           : new CMoveOneStepAction(this, MovePositionLabel, direction, object);
    SetCurrentAction(action);
    action->Do();
}

void CNetworkView::MoveBackward()
{
    MoveInZOrder(false, false);
}

void CNetworkView::MoveForward()
{
    MoveInZOrder(true, false);
}

void CNetworkView::MoveToBack()
{
    MoveInZOrder(false, true);
}

void CNetworkView::MoveToFront()
{
    MoveInZOrder(true, true);
}

// ---------------------------------------------------------------- tools and buttons

void CNetworkView::OnShowGrid()
{
    m_pDrawDoc->m_bShowGrid = !m_pDrawDoc->m_bShowGrid;
    viewport()->update();
}

void CNetworkView::OnZoomTool(int mode)
{
    g_currentTool = CDrawTool::Zoom;
    SetZoomMode(mode);
}

QString CNetworkView::AskClipArtFile()
{
    QFileDialog dialog(this, QString(), Folders::InstallDirectory() + QStringLiteral("Clip Art/"), PictureFilter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setDefaultSuffix(QStringLiteral("gif"));
    dialog.resize(400, 275);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().front();
}

// ---------------------------------------------------------------- context menu

void CNetworkView::contextMenuEvent(QContextMenuEvent* event)
{
    CPoint logical(event->pos().x(), event->pos().y());
    ClientToDoc(logical);
    CDrawObj* object = m_pDrawDoc->ObjectAt(logical);
    if (object && !IsSelected(object)) {
        Select(object, false);
        viewport()->repaint();
    }

    QMenu menu(this);
    QAction* cut = menu.addAction(QStringLiteral("Cu&t"), this, &CNetworkView::OnEditCut);
    QAction* copy = menu.addAction(QStringLiteral("&Copy"), this, &CNetworkView::OnEditCopy);
    QAction* paste = menu.addAction(QStringLiteral("&Paste"), this, &CNetworkView::OnEditPaste);
    QAction* remove = menu.addAction(QStringLiteral("&Delete"), this, &CNetworkView::OnEditDelete);
    menu.addAction(QStringLiteral("Clo&ne"), this, &CNetworkView::OnEditClone)->setEnabled(!m_selection.empty());
    menu.addSeparator();
    menu.addAction(QStringLiteral("Move &Backward"), this, &CNetworkView::MoveBackward)->setEnabled(CanMoveBackward());
    menu.addAction(QStringLiteral("Move &Forward"), this, &CNetworkView::MoveForward)->setEnabled(CanMoveForward());
    menu.addAction(QStringLiteral("Move to Bac&k"), this, &CNetworkView::MoveToBack)->setEnabled(CanMoveBackward());
    menu.addAction(QStringLiteral("&Move to Front"), this, &CNetworkView::MoveToFront)->setEnabled(CanMoveForward());
    menu.addSeparator();
    QAction* picture = menu.addAction(QStringLiteral("Select Fill &Image"), this, &CNetworkView::OnFillPicture);
    QAction* pattern = menu.addAction(QStringLiteral("Select Fill P&attern"), this, &CNetworkView::OnFillPattern);
    QAction* gradient = menu.addAction(QStringLiteral("Select Fill &Gradient"), this, &CNetworkView::OnFillGradient);
    paste->setEnabled(CanPaste());
    if (!object) {
        cut->setEnabled(false);
        copy->setEnabled(false);
        remove->setEnabled(false);
    }
    // A text draws with its own colours and effects, which the text panel sets.
    if (!object || dynamic_cast<CDrawText*>(object)) {
        picture->setEnabled(false);
        pattern->setEnabled(false);
        gradient->setEnabled(false);
    }
    menu.exec(event->globalPos());
}
