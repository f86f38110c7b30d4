// The view's fill commands: a picture, a pattern or a gradient for the selected objects, each
// one step of the history. With one object selected they are that object's own commands,
// which differ only in the size of the picture dialog.

#include "view/CNetworkView.h"

#include "dialogs/CFillPropertySheet.h"
#include "objects/CDrawObj.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/graphics/Image.h"
#include "undo/CEditMultiAction.h"

#include <QFileDialog>

namespace {

constexpr std::uint32_t PropertiesLabel = 61475;

} // namespace

QString CNetworkView::AskFillPicture()
{
    QString file;
    if (m_selection.size() == 1) {
        file = AskClipArtFile();
    } else {
        QFileDialog dialog(this, QString(), Folders::InstallDirectory() + QStringLiteral("Clip Art/"), PictureFilter);
        dialog.setFileMode(QFileDialog::ExistingFile);
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setDefaultSuffix(QStringLiteral("jpg"));
        dialog.resize(600, 400);
        if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
            file = dialog.selectedFiles().front();
    }
    if (file.isEmpty())
        return file;
    // A file that is no picture would leave the objects without a fill they can show.
    if (gfx::Image(file).GetLastStatus() != gfx::Status::Ok) {
        MessageBox::Show(QStringLiteral("Not valid image file!"));
        return QString();
    }
    return file;
}

void CNetworkView::ChangeSelectedFills(const std::function<void(CDrawObj&)>& change)
{
    CloseCurrentAction();
    auto* action = new CEditMultiAction(this, PropertiesLabel, m_selection);
    SetCurrentAction(action);
    for (CDrawObj* object : m_selection) {
        change(*object);
        InvalidateObject(object);
    }
    action->Do();
}

void CNetworkView::OnFillPicture()
{
    if (m_selection.empty())
        return;
    const QString file = AskFillPicture();
    if (file.isEmpty())
        return;
    ChangeSelectedFills([&file](CDrawObj& object) {
        object.m_pictureFile = file;
        object.m_fillKind = 2;
        object.m_wrapMode = 4;
        object.m_pictureScale = 1;
        object.m_hatchStyle = -1;
    });
    // A metafile picture mirrors what is drawn after it, so the whole label may change.
    viewport()->update();
}

void CNetworkView::OnFillPattern()
{
    if (m_selection.empty())
        return;
    const CDrawObj* first = m_selection.front();
    gfx::Color color1 = first->m_fillColor1;
    gfx::Color color2 = first->m_fillColor2;
    int fillKind = first->m_fillKind;
    int hatchStyle = first->m_hatchStyle;
    if (!CFillPropertySheet::RunPattern(this, color1, color2, fillKind, hatchStyle))
        return;
    ChangeSelectedFills([&](CDrawObj& object) {
        object.m_pictureFile.clear();
        object.m_fillColor1 = color1;
        object.m_fillColor2 = color2;
        object.m_hatchStyle = hatchStyle;
        object.m_fillKind = 1;
    });
}

void CNetworkView::OnFillGradient()
{
    if (m_selection.empty())
        return;
    const CDrawObj* first = m_selection.front();
    CFillPropertySheet::Gradient gradient;
    gradient.color1 = first->m_fillColor1;
    gradient.color2 = first->m_fillColor2;
    gradient.fillKind = first->m_fillKind;
    gradient.gradientStyle = first->m_gradientStyle;
    gradient.shading = std::uint8_t(first->m_fillKind == 3   ? first->m_gradientSwap + 4
                                    : first->m_fillKind == 4 ? first->m_gradientStyle
                                                             : 0);
    const gfx::Color second = first->m_fillColor2;
    gradient.colorMode = (second.GetR() || second.GetG() || second.GetB()) ? 2 : 1;
    if (!CFillPropertySheet::RunGradient(this, gradient))
        return;
    ChangeSelectedFills([&gradient](CDrawObj& object) {
        object.m_pictureFile.clear();
        object.m_fillColor1 = gradient.color1;
        object.m_fillColor2 = gradient.color2;
        object.m_fillKind = gradient.fillKind;
        object.m_gradientStyle = gradient.gradientStyle;
        object.m_gradientSwap = gradient.shading >= 5 ? 1 : 0;
    });
}
