// libFuzzer target for the canvas: the bytes are a script of what a user does to a label shown
// in the real view (presses, moves, releases and double-clicks of the mouse with Shift and Ctrl,
// the arrow keys, the tools, the edit and z-order commands, zooming, undo and redo), sent as the
// synthetic events of Qt's test library on the offscreen platform. Whenever an undo is followed
// at once by a redo, the project must save to exactly the bytes it saved to before the undo.
//
// The script: the first byte picks the template; then each operation is one byte, its low six
// bits the operation, bit 6 Shift and bit 7 Ctrl, followed by the operation's own bytes. A point
// is two bytes, x and y, spread over the client area and a margin round it; the top few values
// of a byte lie far outside the window, where a drag can take the mouse.
//
// Two things would wait for a person and are left out: the clip-art tool (14) opens a file
// dialog at its press, so it is never chosen, and the context menu is a modal menu, so no
// context-menu event is sent (a right press reaches the tools, as it does on the screen).
#include "FuzzSupport.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "objects/DefaultProperties.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"
#include "undo/CUndoManager.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"
#include "view/CZoomTool.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QTest>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

namespace {

// Long enough for a drawing, a selection, a few edits and their undoing; a longer script only
// makes each run slower (every press paints what changed first, as a screen would have).
constexpr int MaxOperations = 300;
// Around the client area, so that presses land on the label's edge and just beyond.
constexpr int Margin = 40;
// The tools a script can choose: all but clip art, whose press waits for a file dialog.
constexpr int ToolCount = CDrawTool::ClipArt;

enum Operation {
    Press,
    Release,
    Move,
    Click,
    Drag,
    DoubleClick,
    RightPress,
    RightRelease,
    ArrowKey,
    SelectTool,
    ZoomTool,
    Delete,
    Cut,
    Copy,
    Paste,
    Clone,
    SelectAll,
    MoveBackward,
    MoveForward,
    MoveToBack,
    MoveToFront,
    ZoomIn,
    ZoomOut,
    ZoomFull,
    Undo,
    Redo,
    UndoRedo,
    ProcessEvents,
    OperationCount
};

struct Setup {
    std::vector<CTemplateFile> templates;
    // The shown window the view of each input sits in, so that no input waits for a window of
    // its own to be exposed.
    QWidget* host = nullptr;
};

Setup& setup()
{
    static Setup s;
    return s;
}

QByteArray saved(CDrawDoc& doc)
{
    CArchive ar;
    doc.Serialize(ar);
    return ar.Buffer();
}

// One input's document and view, and the state of the mouse as the script left it.
class Session {
public:
    Session(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    void Run()
    {
        Setup& s = setup();
        const uint8_t templateByte = m_size > 0 ? m_data[m_pos++] : 0;
        m_doc.SetTemplates(&s.templates);
        m_doc.OnNewDocument();
        m_doc.SetTemplate(int(templateByte % s.templates.size()));

        CNetworkView view(m_doc, s.host);
        m_view = &view;
        view.setGeometry(s.host->rect());
        view.show();
        view.SetLogicalSizes();
        view.ZoomFull();
        m_last = QPoint(canvas()->width() / 2, canvas()->height() / 2);

        for (int done = 0; done < MaxOperations && m_pos < m_size; ++done) {
            if (!Step())
                break;
        }
        Finish();
        m_view = nullptr;
    }

private:
    QWidget* canvas() const { return m_view->viewport(); }

    bool Byte(uint8_t& out)
    {
        if (m_pos >= m_size)
            return false;
        out = m_data[m_pos++];
        return true;
    }

    static int Coordinate(uint8_t b, int extent)
    {
        switch (b) {
        case 250: return -20000;
        case 251: return -3000;
        case 252: return -1;
        case 253: return extent;
        case 254: return extent + 3000;
        case 255: return extent + 20000;
        default: return -Margin + b * (extent + 2 * Margin) / 250;
        }
    }

    bool Point(QPoint& out)
    {
        uint8_t x = 0;
        uint8_t y = 0;
        if (!Byte(x) || !Byte(y))
            return false;
        out = QPoint(Coordinate(x, canvas()->width()), Coordinate(y, canvas()->height()));
        return true;
    }

    // Objects are picked by the outline they last drew, so what is waiting to be painted is
    // painted before each press, as the screen would have shown it by then.
    void PressAt(Qt::MouseButton button, QPoint p, Qt::KeyboardModifiers keys)
    {
        QCoreApplication::processEvents();
        QTest::mousePress(canvas(), button, keys, p);
        m_held |= button;
        m_last = p;
    }
    void ReleaseAt(Qt::MouseButton button, QPoint p, Qt::KeyboardModifiers keys)
    {
        QTest::mouseRelease(canvas(), button, keys, p);
        m_held &= ~Qt::MouseButtons(button);
        m_last = p;
    }
    void MoveTo(QPoint p)
    {
        QTest::mouseMove(canvas(), p);
        m_last = p;
    }

    bool Step()
    {
        uint8_t code = 0;
        Byte(code);
        Qt::KeyboardModifiers keys;
        if (code & 0x40)
            keys |= Qt::ShiftModifier;
        if (code & 0x80)
            keys |= Qt::ControlModifier;
        const int operation = (code & 0x3F) % OperationCount;
        // Only an undo followed at once by a redo is compared.
        std::optional<QByteArray> beforeUndo;
        std::swap(beforeUndo, m_beforeUndo);

        QPoint p;
        QPoint q;
        uint8_t arg = 0;
        switch (operation) {
        case Press:
            if (!Point(p))
                return false;
            PressAt(Qt::LeftButton, p, keys);
            break;
        case Release:
            if (!Point(p))
                return false;
            ReleaseAt(Qt::LeftButton, p, keys);
            break;
        case Move:
            if (!Point(p))
                return false;
            MoveTo(p);
            break;
        case Click:
            if (!Point(p))
                return false;
            PressAt(Qt::LeftButton, p, keys);
            ReleaseAt(Qt::LeftButton, p, keys);
            break;
        case Drag: {
            if (!Point(p) || !Point(q))
                return false;
            PressAt(Qt::LeftButton, p, keys);
            const int steps = 6;
            for (int i = 1; i <= steps; ++i)
                MoveTo(p + (q - p) * i / steps);
            ReleaseAt(Qt::LeftButton, q, keys);
            break;
        }
        case DoubleClick:
            if (!Point(p))
                return false;
            QCoreApplication::processEvents();
            // A press, a release, then the double-click and its release.
            QTest::mouseDClick(canvas(), Qt::LeftButton, keys, p);
            m_held &= ~Qt::MouseButtons(Qt::LeftButton);
            m_last = p;
            break;
        case RightPress:
            if (!Point(p))
                return false;
            PressAt(Qt::RightButton, p, keys);
            break;
        case RightRelease:
            if (!Point(p))
                return false;
            ReleaseAt(Qt::RightButton, p, keys);
            break;
        case ArrowKey: {
            if (!Byte(arg))
                return false;
            const Qt::Key arrows[] = {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down};
            QTest::keyClick(m_view, arrows[arg % 4], keys);
            break;
        }
        case SelectTool:
            if (!Byte(arg))
                return false;
            m_view->SelectTool(arg % ToolCount);
            break;
        case ZoomTool:
            if (!Byte(arg))
                return false;
            m_view->OnZoomTool(arg % 2 ? CZoomView::ZoomOutMode : CZoomView::ZoomInMode);
            break;
        case Delete: m_view->OnEditDelete(); break;
        case Cut: m_view->OnEditCut(); break;
        case Copy: m_view->OnEditCopy(); break;
        case Paste: m_view->OnEditPaste(); break;
        case Clone: m_view->OnEditClone(); break;
        case SelectAll: m_view->SelectAll(); break;
        case MoveBackward: m_view->MoveBackward(); break;
        case MoveForward: m_view->MoveForward(); break;
        case MoveToBack: m_view->MoveToBack(); break;
        case MoveToFront: m_view->MoveToFront(); break;
        case ZoomIn: m_view->ZoomIn(nullptr, CZoomTool::Factor); break;
        case ZoomOut: m_view->ZoomOut(nullptr, CZoomTool::Factor); break;
        case ZoomFull: m_view->ZoomFull(); break;
        case Undo:
            // As the menu does: only when there is something to undo.
            if (g_undoManager.CanUndo(&m_doc, 1)) {
                // Taken right before the undo, which closes a step still open (an arrow-key
                // move, a poly gesture) first.
                m_beforeUndo = saved(m_doc);
                g_undoManager.Undo(&m_doc, 1);
            }
            break;
        case Redo:
            if (g_undoManager.CanRedo(&m_doc, 1)) {
                g_undoManager.Redo(&m_doc, 1);
                if (beforeUndo)
                    CheckRedo(*beforeUndo, "an undo and the redo after it");
            }
            break;
        case UndoRedo:
            if (g_undoManager.CanUndo(&m_doc, 1)) {
                const QByteArray before = saved(m_doc);
                g_undoManager.Undo(&m_doc, 1);
                g_undoManager.Redo(&m_doc, 1);
                CheckRedo(before, "an undo redone at once");
            }
            break;
        case ProcessEvents: QCoreApplication::processEvents(); break;
        }
        return true;
    }

    void CheckRedo(const QByteArray& before, const char* what)
    {
        const QByteArray after = saved(m_doc);
        if (after == before)
            return;
        qsizetype at = 0;
        while (at < before.size() && at < after.size() && before[at] == after[at])
            ++at;
        std::fprintf(stderr, "%s changed the saved project: %lld bytes before, %lld after, first difference at %lld\n",
                     what, static_cast<long long>(before.size()), static_cast<long long>(after.size()),
                     static_cast<long long>(at));
        std::abort();
    }

    // The tools live as long as the program and keep the gesture they were in; they are brought
    // to rest here, through the view still alive, so that the next input starts from the same
    // state.
    void Finish()
    {
        if (m_held & Qt::LeftButton)
            ReleaseAt(Qt::LeftButton, m_last, {});
        if (m_held & Qt::RightButton)
            ReleaseAt(Qt::RightButton, m_last, {});
        // A rectangle tool's press that has not moved yet waits for its release, whichever tool
        // is current by then.
        for (int tool : {CDrawTool::Rectangle, CDrawTool::RoundRectangle, CDrawTool::Ellipse, CDrawTool::Arc,
                         CDrawTool::Halo, CDrawTool::Line, CDrawTool::Arrow}) {
            g_currentTool = tool;
            ReleaseAt(Qt::LeftButton, m_last, {});
        }
        // The poly tools forget the object they were laying vertices for.
        for (int tool = 0; tool < ToolCount; ++tool)
            CDrawTool::FindTool(tool)->OnCancel();
    }

    const uint8_t* m_data;
    size_t m_size;
    size_t m_pos = 0;
    CDrawDoc m_doc;
    CNetworkView* m_view = nullptr;
    Qt::MouseButtons m_held;
    QPoint m_last;
    std::optional<QByteArray> m_beforeUndo;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    FuzzEnvironment();
    // The view is a widget: the application object must be a QApplication.
    static int appArgc = 1;
    static char* appArgv[] = {*argc > 0 ? (*argv)[0] : const_cast<char*>("fuzz_canvas"), nullptr};
    // Never destroyed: at exit Qt's globals (the test library's pointing device among them)
    // would already be gone when the application object deleted its children.
    new QApplication(appArgc, appArgv);
    FuzzSetUp(*argc, *argv, true);

    Setup& s = setup();
    s.templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
    if (s.templates.empty()) {
        std::fprintf(stderr, "no templates beside the executable\n");
        std::abort();
    }
    s.host = new QWidget; // lives as long as the process, as the application does
    s.host->resize(300, 300);
    s.host->show();
    if (!QTest::qWaitForWindowExposed(s.host)) {
        std::fprintf(stderr, "the offscreen window was never exposed\n");
        std::abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Every input starts from the program's start: default properties, an empty clipboard, the
    // selection tool, no drag, and the mouse away from the window.
    ResetDefaultProperties();
    QGuiApplication::clipboard()->clear();
    g_currentTool = CDrawTool::Selection;
    CDrawTool::c_down = CDrawTool::c_last = CDrawTool::lastPoint = CPoint();
    CDrawTool::c_nDownFlags = 0;
    CDrawTool::selectMode = CDrawTool::None;
    CDrawTool::nDragHandle = 0;
    QCursor::setPos(-1000, -1000);

    Session(data, size).Run();
    return 0;
}
