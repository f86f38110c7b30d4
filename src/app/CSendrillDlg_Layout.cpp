// The main window's parts: the tool column, the canvas, the panel stacks, and the filter that
// keeps them in step with the tool and the selection.

#include "app/CSendrillDlg.h"

#include "app/CommandIds.h"
#include "app/ToolPictures.h"
#include "controls/CImageButton.h"
#include "document/CDrawDoc.h"
#include "objects/CDrawText.h"
#include "panels/CLineProperty.h"
#include "panels/CSubForm1_1.h"
#include "panels/CSubForm1_2.h"
#include "panels/CSubForm2_1.h"
#include "panels/CSubForm2_2.h"
#include "panels/CTextForm.h"
#include "undo/CAction.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QResizeEvent>

#include <algorithm>

namespace {

// The window's layout in dialog units: 528 by 316 below the menu.
constexpr int LayoutWidth = 528;
constexpr int LayoutHeight = 316;

struct Place {
    int id;
    int x, y, w, h;
};

// The tool column: the command, its caption, its place.
struct ToolButtonPlace {
    int command;
    const char* caption;
    int x, y;
};
const ToolButtonPlace ToolButtonPlaces[] = {
    {CommandIds::ToolSelection, "Selection", 1, 0},      {CommandIds::ToolText, "Text", 27, 0},
    {CommandIds::ToolScribble, "Scribble", 1, 24},       {CommandIds::ToolPicture, "Picture", 27, 24},
    {CommandIds::ToolCurve, "Curve", 1, 48},             {CommandIds::ToolClosedCurve, "Closed Curve", 27, 48},
    {CommandIds::ToolRectangle, "Rectangle", 1, 72},     {CommandIds::ToolPolygon, "Polygon", 27, 72},
    {CommandIds::ToolRoundRect, "RoundRect", 1, 96},     {CommandIds::ToolEllipse, "Ellipse", 27, 96},
    {CommandIds::ToolHalo, "Halo", 1, 120},              {CommandIds::ToolArc, "Arc", 27, 120},
    {CommandIds::ToolArrow, "Arrow", 1, 144},            {CommandIds::ToolLine, "Line", 27, 144},
    {CommandIds::ZoomOut, "ZoomOut", 1, 186},            {CommandIds::ZoomIn, "ZoomIn", 27, 186},
    {CommandIds::UnZoom, "UnZoom", 1, 210},              {CommandIds::ShowGrid, "Show Grid", 27, 210},
};

} // namespace

void CSendrillDlg::CreateLayout()
{
    m_pClient = new QWidget(this);
    // Dialog units become pixels by the font's metrics, as a dialog's template does; on a
    // screen whose font would make the layout larger than the window, it is scaled to fit.
    const QFontMetrics metrics(font());
    const double fontX = (metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) / 26.0 + 1) / 2;
    const double fontY = metrics.height();
    const int clientHeight = height() - m_pMenuBar->sizeHint().height();
    const double unitX = std::min(fontX / 4, double(width()) / LayoutWidth);
    const double unitY = std::min(fontY / 8, double(clientHeight) / LayoutHeight);
    const auto toPixels = [unitX, unitY](int x, int y, int w, int h) {
        return QRect(int(x * unitX), int(y * unitY), int(w * unitX), int(h * unitY));
    };
    m_pClient->setGeometry(0, m_pMenuBar->sizeHint().height(), width(), clientHeight);

    for (const ToolButtonPlace& place : ToolButtonPlaces) {
        const QString caption = QString::fromLatin1(place.caption);
        auto* button = new CImageButton(ToolPictures::Icon(place.command), caption, m_pClient);
        button->setObjectName(caption);
        // The tooltip comes from the string table, by the command's number.
        SetControlId(button, place.command);
        button->setGeometry(toPixels(place.x, place.y, 25, 24));
        const int command = place.command;
        connect(button, &CImageButton::clicked, this, [this, command] { OnCommand(command); });
        m_toolButtons.push_back({command, ToolOfCommand(command), button});
    }

    const auto holder = [this, &toPixels](int id, const Place& place) {
        auto* widget = new QWidget(m_pClient);
        widget->setObjectName(QStringLiteral("holder%1").arg(id));
        widget->setGeometry(toPixels(place.x, place.y, place.w, place.h));
        return widget;
    };
    m_pViewHolder = holder(CommandIds::ViewHolder, {CommandIds::ViewHolder, 54, 0, 343, 316});
    m_stackHolders[0] = holder(CommandIds::Stack1Holder, {CommandIds::Stack1Holder, 399, 0, 128, 154});
    m_stackHolders[1] = holder(CommandIds::Stack2Holder, {CommandIds::Stack2Holder, 399, 153, 128, 154});
    m_stackHolders[2] = holder(CommandIds::Stack3Holder, {CommandIds::Stack3Holder, 399, 0, 128, 316});
    for (QWidget* widget : m_stackHolders)
        widget->lower();
    m_pView->setParent(m_pClient);
    m_pView->setGeometry(m_pViewHolder->geometry());
    m_pView->show();

    m_controlPos.SetParent(m_pClient);
    m_controlPos.AddControl(m_pViewHolder, CControlPos::GrowX | CControlPos::GrowY);
    for (QWidget* widget : m_stackHolders)
        m_controlPos.AddControl(widget, CControlPos::MoveX);
    CreatePanels();
}

void CSendrillDlg::CreatePanels()
{
    m_pSubForm1_1 = new CSubForm1_1;
    m_pSubForm1_2 = new CSubForm1_2;
    m_pSubForm2_1 = new CSubForm2_1;
    m_pSubForm2_2 = new CSubForm2_2;
    auto* lineProperty = new CLineProperty;
    auto* textForm = new CTextForm;
    // Each stack's pages, in their order.
    const struct {
        int stack;
        int dialogId;
        QWidget* page;
    } pages[] = {
        {0, 332, m_pSubForm1_1}, {0, 1540, m_pSubForm1_2}, {1, 226, m_pSubForm2_1},
        {1, 157, m_pSubForm2_2}, {2, 331, lineProperty},  {2, 328, textForm},
    };
    for (const auto& page : pages) {
        QWidget* holder = m_stackHolders[size_t(page.stack)];
        // A page fills its place holder, which the layout may have scaled to fit the window.
        page.page->setFixedSize(holder->size());
        m_stacks[size_t(page.stack)].AddPage(page.dialogId, m_pClient, holder, page.page);
    }

    m_pSubForm1_1->SetView(m_pView);
    m_pSubForm1_2->SetView(m_pView);
    m_pSubForm2_1->SetView(m_pView);
    m_pSubForm2_2->SetView(m_pView);
    // The view loads the shape and text panels as the selection and the tool change.
    m_pView->SetPanels(lineProperty, textForm);
    m_pView->LoadPanels(nullptr);

    // A template chosen from the disc panel may be a sheet, whose labels the sheet panel lists
    // afresh; one chosen from the sheet panel (which lists its labels itself) may be a tray,
    // whose diameters the disc panel shows.
    connect(m_pSubForm1_1, &CSubForm1_1::templateChanged, this, [this] {
        m_pSubForm1_2->RebuildLabels();
        ChooseTemplatePage();
    });
    connect(m_pSubForm1_2, &CSubForm1_2::templateChanged, this, [this] {
        if (m_pDoc->IsPrinterTemplate())
            m_pSubForm1_1->LoadFromDocument();
        ChooseTemplatePage();
    });
    connect(m_pSubForm2_1, &CSubForm2_1::selectBackgroundRequested, this, &CSendrillDlg::OnSelectBackground);
    connect(m_pSubForm2_1, &CSubForm2_1::patternRequested, this, &CSendrillDlg::OnBackgroundPattern);
    connect(m_pSubForm2_1, &CSubForm2_1::adjustRequested, this, &CSendrillDlg::OnAdjustBackground);
    connect(m_pSubForm2_1, &CSubForm2_1::backgroundChosen, this, &CSendrillDlg::OnBackgroundChosen);
    connect(m_pSubForm2_2, &CSubForm2_2::finished, this, [this] { m_nPanelBack = 0; });

    ChooseTemplatePage();
    m_stacks[1].Show(m_nPanelBack);
}

void CSendrillDlg::ChooseTemplatePage()
{
    m_nPanelTemplate = m_pDoc->IsPrinterTemplate() ? 0 : 1;
    if (m_stacks[0].Current() != -1)
        m_stacks[0].Show(m_nPanelTemplate);
}

CImageButton* CSendrillDlg::ToolButton(int id) const
{
    for (const ToolButtonEntry& entry : m_toolButtons) {
        if (entry.command == id)
            return entry.button;
    }
    return nullptr;
}

void CSendrillDlg::SyncToolsAndPanels()
{
    // Just the button of the current tool is pressed; the zoom tool presses the button of its
    // mode.
    for (const ToolButtonEntry& entry : m_toolButtons) {
        bool pressed = entry.tool >= 0 && entry.tool == g_currentTool;
        if (g_currentTool == CDrawTool::Zoom && (entry.command == CommandIds::ZoomIn || entry.command == CommandIds::ZoomOut))
            pressed = (entry.command == CommandIds::ZoomIn) == (m_pView->GetZoomMode() == CZoomView::ZoomInMode);
        entry.button->SetPressed(pressed);
    }

    const CDrawObjPtrList& selection = m_pView->m_selection;
    if (selection.empty() && (g_currentTool == CDrawTool::Selection || g_currentTool == CDrawTool::Zoom)) {
        m_stacks[0].Show(m_nPanelTemplate);
        m_stacks[1].Show(m_nPanelBack);
        m_stacks[2].Show(-1);
        return;
    }
    m_stacks[0].Show(-1);
    m_stacks[1].Show(-1);
    const bool text = selection.empty() ? g_currentTool == CDrawTool::Text
                                        : dynamic_cast<CDrawText*>(selection.front()) != nullptr;
    m_stacks[2].Show(text ? 1 : 0);
}

bool CSendrillDlg::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Paint:
    case QEvent::UpdateRequest:
    case QEvent::Timer:
        // Nothing the user did; and panels must not show or hide while a window paints.
        return false;
    default:
        break;
    }
    if (!m_pView)
        return false;
    SyncToolsAndPanels();

    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // Any press ends the adjustment of the background, wherever it falls, before the
        // press itself is handled.
        if (m_stacks[1].Current() == 1 && m_pView->m_pCurAction) {
            m_pView->m_pCurAction->Do();
            m_nPanelBack = 0;
        }
        break;
    case QEvent::KeyRelease:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Control)
            m_bCtrlDown = false;
        break;
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Control)
            m_bCtrlDown = true;
        // Arrow keys pressed anywhere in the window move the selection; those the canvas
        // receives it hands to the tool itself, so that one press is one step.
        const bool arrow = key->key() >= Qt::Key_Left && key->key() <= Qt::Key_Down;
        // Only the first delivery counts, to the widget with the focus: a key its widget
        // ignores travels on to the parents.
        auto* widget = qobject_cast<QWidget*>(watched);
        const bool first = widget && widget == QApplication::focusWidget();
        const bool inCanvas = widget && (widget == m_pView || m_pView->isAncestorOf(widget));
        if (arrow && first && !inCanvas && isAncestorOf(widget) && !m_pView->m_selection.empty()) {
            if (CDrawTool* tool = CDrawTool::FindTool(g_currentTool)) {
                if (m_bCtrlDown)
                    tool->OnKeyUp(m_pView, key->key());
                else
                    tool->OnKeyDown(m_pView, key->key());
            }
        }
        break;
    }
    case QEvent::ShortcutOverride:
        UpdateCommandUI();
        break;
    default:
        break;
    }
    return false;
}

void CSendrillDlg::resizeEvent(QResizeEvent* event)
{
    CToolTipDialog::resizeEvent(event);
    if (!m_pClient)
        return;
    const int menu = m_pMenuBar->sizeHint().height();
    m_pMenuBar->setGeometry(0, 0, width(), menu);
    m_pClient->setGeometry(0, menu, width(), height() - menu);
    m_controlPos.MoveControls();
    for (CPanelStack& stack : m_stacks)
        stack.Layout();
    m_pView->setGeometry(m_pViewHolder->geometry());
}

void CSendrillDlg::closeEvent(QCloseEvent* event)
{
    // The close button is the Exit command, with its question. While a print job has the
    // window disabled, the job is stopped from its own window's Cancel, not from here.
    event->ignore();
    if (isEnabled())
        OnExit();
}

void CSendrillDlg::reject()
{
    // Escape closes nothing: the main window ends only by Exit.
}
