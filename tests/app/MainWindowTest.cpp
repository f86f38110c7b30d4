#include "TestSupport.h"
#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "app/CSendrillDlg.h"
#include "app/CommandIds.h"
#include "controls/CImageButton.h"
#include "document/CDrawDoc.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "document/LabelBackground.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/Spooler.h"
#include "undo/CUndoManager.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileDialog>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

using namespace CommandIds;

const QString Settings = QStringLiteral("Settings");

// The designer as it starts, on the program's own templates, with its questions answered by
// the test and its file dialogs filled in by it.
class MainWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        QFile::remove(Profile::FilePath());
        Branding::Assign();
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        MessageBox::SetPresenter([this](const QString& text, int) {
            questions << text;
            const int answer = answers.isEmpty() ? MessageBox::IdOk : answers.takeFirst();
            return answer;
        });
        Spooler::UseServer(QStringLiteral("127.0.0.1:1"));
        app.m_strInstallDir = Folders::InstallDirectory();
        dlg = std::make_unique<CSendrillDlg>(app);
        ASSERT_TRUE(dlg->OnInitDialog());
        dlg->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dlg.get()));
        questions.clear();
    }
    void TearDown() override
    {
        dlg.reset();
        MessageBox::SetPresenter(nullptr);
        Spooler::UseServer(QString());
    }

    CDrawDoc& doc() const { return *dlg->GetDocument(); }
    CNetworkView& view() const { return *dlg->GetView(); }
    bool enabled(int id) const
    {
        dlg->UpdateCommandUI();
        return dlg->Action(id)->isEnabled();
    }
    bool checked(int id) const
    {
        dlg->UpdateCommandUI();
        return dlg->Action(id)->isChecked();
    }
    // Which page each stack shows, after the window has seen an event.
    std::array<int, 3> pages() const
    {
        QEvent event(QEvent::User);
        QApplication::sendEvent(dlg.get(), &event);
        return {dlg->Stack(0).Current(), dlg->Stack(1).Current(), dlg->Stack(2).Current()};
    }
    // The showing control a user finds by its caption or accessible name.
    template <typename Widget>
    Widget* visibleChild(const QString& name) const
    {
        pages();
        for (Widget* widget : dlg->findChildren<Widget*>()) {
            const bool named = widget->accessibleName() == name || widget->property("text").toString() == name;
            if (named && widget->isVisible())
                return widget;
        }
        ADD_FAILURE() << "no visible control " << name.toStdString();
        return nullptr;
    }
    CDrawObj* addRect()
    {
        CDrawObj* object = doc().Add(std::make_unique<CDrawRect>(CRect(-100, 100, 100, -100)));
        return object;
    }
    // A key as the user presses it in the window, which a closed dialog leaves active again.
    void key(const QKeySequence& sequence)
    {
        QApplication::setActiveWindow(dlg.get());
        QTest::keySequence(dlg.get(), sequence);
    }
    // Answers the next file dialog with a name, or cancels it when the name is empty.
    void answerFileDialog(const QString& path)
    {
        QTimer::singleShot(0, [path] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            if (path.isEmpty()) {
                dialog->reject();
                return;
            }
            dialog->selectFile(path);
            static_cast<QDialog*>(dialog)->accept();
        });
    }

    CSendrillApp app;
    std::unique_ptr<CSendrillDlg> dlg;
    QStringList questions;
    QList<int> answers;
    TestFolder folder;
};

TEST_F(MainWindow, StacksAndButtonsFollowTheToolAndTheSelection)
{
    // The printer's template: the tray's template page, the background page, no object panel.
    EXPECT_EQ(pages(), (std::array<int, 3>{0, 0, -1}));
    EXPECT_TRUE(dlg->ToolButton(ToolSelection)->IsPressed());

    dlg->OnCommand(ToolRectangle);
    EXPECT_EQ(pages(), (std::array<int, 3>{-1, -1, 0})) << "a creation tool shows the shape panel";
    EXPECT_TRUE(dlg->ToolButton(ToolRectangle)->IsPressed());
    EXPECT_FALSE(dlg->ToolButton(ToolSelection)->IsPressed());
    dlg->OnCommand(ToolText);
    EXPECT_EQ(pages(), (std::array<int, 3>{-1, -1, 1})) << "the text tool shows the text panel";

    dlg->OnCommand(ZoomOut);
    EXPECT_EQ(pages(), (std::array<int, 3>{0, 0, -1}));
    EXPECT_TRUE(dlg->ToolButton(ZoomOut)->IsPressed());
    EXPECT_FALSE(dlg->ToolButton(ZoomIn)->IsPressed());
    dlg->OnCommand(ZoomIn);
    EXPECT_TRUE(dlg->ToolButton(ZoomIn)->IsPressed());

    // With a selection neither the template nor the background panel shows, whatever the tool.
    dlg->OnCommand(ToolSelection);
    view().Select(addRect(), false);
    EXPECT_EQ(pages(), (std::array<int, 3>{-1, -1, 0}));
    CDrawObj* text = doc().Add(std::make_unique<CDrawText>(CRect(0, 0, 1, 1)));
    view().Select(text, false);
    EXPECT_EQ(pages(), (std::array<int, 3>{-1, -1, 1}));

    // Buttons explain themselves by the program's texts and are found by their captions.
    EXPECT_EQ(dlg->ToolButton(ToolRectangle)->toolTip(), QStringLiteral("Rectangle Tool"));
    EXPECT_EQ(dlg->ToolButton(ToolRectangle)->accessibleName(), QStringLiteral("Rectangle"));

    // A click on a tool button chooses its tool.
    QTest::mouseClick(dlg->ToolButton(ToolEllipse), Qt::LeftButton);
    EXPECT_EQ(g_currentTool, CDrawTool::Ellipse);
    EXPECT_TRUE(view().m_selection.empty());
}

TEST_F(MainWindow, MenuEntriesFollowTheirRules)
{
    EXPECT_FALSE(enabled(FileSave)) << "no path";
    EXPECT_FALSE(enabled(EditUndo));
    EXPECT_FALSE(enabled(EditCut));
    EXPECT_FALSE(enabled(MoveToFront));
    EXPECT_TRUE(checked(Standard));
    EXPECT_FALSE(checked(Metric));
    EXPECT_TRUE(checked(ToolSelection));
    EXPECT_TRUE(checked(CheckUpdates));

    CDrawObj* first = addRect();
    addRect();
    view().Select(first, false);
    view().OnEditCopy();
    EXPECT_TRUE(enabled(EditCut));
    EXPECT_TRUE(enabled(EditClone));
    EXPECT_TRUE(enabled(EditPaste));
    EXPECT_FALSE(enabled(MoveBackward)) << "the selection is at the bottom";
    EXPECT_TRUE(enabled(MoveToFront));

    dlg->OnCommand(EditPaste);
    EXPECT_TRUE(enabled(EditUndo));
    dlg->OnCommand(EditUndo);
    EXPECT_TRUE(enabled(EditRedo));

    dlg->OnCommand(Metric);
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("Units"), -1), 0);
    EXPECT_TRUE(checked(Metric));
    dlg->OnCommand(CheckUpdates);
    EXPECT_FALSE(checked(CheckUpdates));
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("CheckUpdates"), -1), 0);
}

TEST_F(MainWindow, EveryKeyReachesItsCommand)
{
    const struct {
        const char* key;
        int tool;
    } toolKeys[] = {
        {"Alt+2", CDrawTool::Polyline}, {"Alt+3", CDrawTool::Curve},       {"Alt+4", CDrawTool::Rectangle},
        {"Alt+5", CDrawTool::RoundRectangle}, {"Alt+6", CDrawTool::Halo},  {"Alt+7", CDrawTool::Arrow},
        {"Alt+A", CDrawTool::Text},     {"Alt+B", CDrawTool::ClipArt},     {"Alt+C", CDrawTool::ClosedCurve},
        {"Alt+D", CDrawTool::Polygon},  {"Alt+E", CDrawTool::Ellipse},     {"Alt+F", CDrawTool::Arc},
        {"Alt+G", CDrawTool::Line},     {"Alt+1", CDrawTool::Selection},
    };
    for (const auto& k : toolKeys) {
        key(QKeySequence(QString::fromLatin1(k.key)));
        EXPECT_EQ(g_currentTool, k.tool) << k.key;
    }

    // The edit keys, in the order a user would press them.
    CDrawObj* object = addRect();
    view().Select(object, false);
    key(QKeySequence(QStringLiteral("Ctrl+C")));
    key(QKeySequence(QStringLiteral("Ctrl+V")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 2);
    key(QKeySequence(QStringLiteral("Ctrl+L")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 3);
    key(QKeySequence(Qt::Key_Delete));
    EXPECT_EQ(doc().GetObjects().GetCount(), 2);
    key(QKeySequence(QStringLiteral("Ctrl+Z")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 3);
    key(QKeySequence(QStringLiteral("Ctrl+Y")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 2);
    view().Select(doc().GetObjects().GetAt(0), false);
    key(QKeySequence(QStringLiteral("Ctrl+T")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 1);

    // Ctrl+A saves under another name, Ctrl+I as a picture: both ask for a file.
    const QString project = folder.path() + QStringLiteral("/keys.dst");
    answerFileDialog(project);
    key(QKeySequence(QStringLiteral("Ctrl+A")));
    EXPECT_TRUE(QFile::exists(project));
    EXPECT_EQ(dlg->ProjectPath(), project);
    view().OnEditPaste();
    key(QKeySequence(QStringLiteral("Ctrl+S")));
    EXPECT_FALSE(doc().IsModified());
    const QString picture = folder.path() + QStringLiteral("/keys.png");
    answerFileDialog(picture);
    key(QKeySequence(QStringLiteral("Ctrl+I")));
    EXPECT_TRUE(QFile::exists(picture));
    // Ctrl+N asks nothing of an unchanged project and empties the label.
    key(QKeySequence(QStringLiteral("Ctrl+N")));
    EXPECT_TRUE(questions.isEmpty());
    EXPECT_TRUE(doc().GetObjects().IsEmpty());
    // Ctrl+O opens it again.
    answerFileDialog(project);
    key(QKeySequence(QStringLiteral("Ctrl+O")));
    EXPECT_EQ(doc().GetObjects().GetCount(), 2);
}

TEST_F(MainWindow, PanelsKeepToTheRightEdgeAndTheWindowToItsLeastSize)
{
    const QRect holder = dlg->findChild<QWidget*>(QStringLiteral("holder1183"))->geometry();
    dlg->resize(1000, 700);
    QApplication::processEvents();
    const QRect moved = dlg->findChild<QWidget*>(QStringLiteral("holder1183"))->geometry();
    EXPECT_EQ(moved.left(), holder.left() + 200);
    EXPECT_EQ(moved.size(), holder.size());
    EXPECT_EQ(view().width(), dlg->findChild<QWidget*>(QStringLiteral("holder1043"))->width());
    EXPECT_GT(view().width(), holder.left() - 100);

    dlg->resize(600, 400);
    QApplication::processEvents();
    EXPECT_EQ(dlg->size(), QSize(800, 566));
    EXPECT_EQ(dlg->findChild<QWidget*>(QStringLiteral("holder1183"))->geometry(), holder);
}

TEST_F(MainWindow, NewOpenSaveAndExitAskBeforeLosingWork)
{
    addRect();
    doc().SetModifiedFlag(true);
    // New: No keeps the work.
    answers = {MessageBox::IdNo};
    dlg->OnCommand(FileNew);
    EXPECT_EQ(questions, QStringList{QStringLiteral("The current document has been modified\r\nAre you sure you want to erase it?")});
    EXPECT_EQ(doc().GetObjects().GetCount(), 1);

    // Save is grey without a path; Save As gives one, and the recent files remember it.
    EXPECT_FALSE(enabled(FileSave));
    const QString path = folder.path() + QStringLiteral("/Label.dst");
    answerFileDialog(path);
    dlg->OnCommand(FileSaveAs);
    EXPECT_EQ(dlg->ProjectPath(), path);
    EXPECT_FALSE(doc().IsModified());
    EXPECT_FALSE(enabled(FileSave)) << "unchanged";
    EXPECT_EQ(CSendrillDlg::RecentFiles(), QStringList{path});

    // Open of a damaged file: the message, an empty label, the path moved on; the file intact.
    const QString damaged = folder.write(QStringLiteral("damaged.dst"), QByteArray("Tessarelle 1.7\x00\x01", 16));
    answers = {MessageBox::IdYes};
    answerFileDialog(damaged);
    dlg->OnCommand(FileOpen);
    EXPECT_EQ(questions.size(), 2) << questions.join('|').toStdString();
    EXPECT_EQ(dlg->ProjectPath(), damaged);
    EXPECT_TRUE(doc().GetObjects().IsEmpty());
    EXPECT_EQ(QFile(damaged).size(), 16);

    // A recent file opens from outside; another extension is refused.
    questions.clear();
    dlg->OpenFromOutside(path + QStringLiteral("  "));
    EXPECT_EQ(doc().GetObjects().GetCount(), 1);
    EXPECT_EQ(dlg->ProjectPath(), path);
    dlg->OpenFromOutside(folder.path() + QStringLiteral("/picture.png"));
    EXPECT_EQ(questions, QStringList{QStringLiteral("Unknown file type")});

    // Exit: Cancel stays; Yes always asks for a name, and a cancelled dialog still leaves.
    doc().SetModifiedFlag(true);
    answers = {MessageBox::IdCancel};
    dlg->OnCommand(Exit);
    EXPECT_TRUE(dlg->isVisible());
    answers = {MessageBox::IdYes};
    answerFileDialog(QString());
    dlg->OnCommand(Exit);
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(MainWindow, SaveAsImageWritesWhatTheCommandLineToolRenders)
{
    QFile::copy(QStringLiteral(TESSARELLE_EXAMPLES_DIR "/sample.dst"), folder.path() + QStringLiteral("/sample.dst"));
    dlg->OpenFromOutside(folder.path() + QStringLiteral("/sample.dst"));
    const QString picture = folder.path() + QStringLiteral("/label.png");
    answerFileDialog(picture);
    dlg->OnCommand(FileSaveImage);

    const QString rendered = folder.path() + QStringLiteral("/cli.png");
    QProcess cli;
    cli.start(QCoreApplication::applicationDirPath() + QStringLiteral("/tessarelle-cli"),
              {QStringLiteral("render"), folder.path() + QStringLiteral("/sample.dst"), rendered});
    ASSERT_TRUE(cli.waitForFinished(60000));
    ASSERT_EQ(cli.exitCode(), 0) << cli.readAllStandardError().constData();
    const QImage saved(picture);
    ASSERT_FALSE(saved.isNull());
    EXPECT_EQ(saved.convertToFormat(QImage::Format_ARGB32), QImage(rendered).convertToFormat(QImage::Format_ARGB32));

    // An extension no encoder takes writes nothing.
    answerFileDialog(folder.path() + QStringLiteral("/label.xyz"));
    dlg->OnCommand(FileSaveImage);
    EXPECT_FALSE(QFile::exists(folder.path() + QStringLiteral("/label.xyz")));
}

TEST_F(MainWindow, BackgroundChangesAreStepsOfTheHistory)
{
    const QString picture = Folders::InstallDirectory() + QStringLiteral("Backgrounds/") +
                            QDir(Folders::InstallDirectory() + QStringLiteral("Backgrounds")).entryList(QDir::Files).value(0);
    answerFileDialog(picture);
    dlg->OnSelectBackground();
    EXPECT_EQ(doc().GetImageFile(), picture);
    EXPECT_EQ(doc().GetFitMode(), 1);

    LabelBackground hatch;
    hatch.HatchStyle = 5;
    hatch.BackColor = 0x0000FF;
    hatch.BackColor2 = 0x00FF00;
    dlg->OnBackgroundChosen(hatch);
    EXPECT_EQ(doc().GetHatchStyle(), 5);
    EXPECT_EQ(doc().GetImageFile(), QString());
    dlg->OnCommand(EditUndo);
    EXPECT_EQ(doc().GetImageFile(), picture);

    // The adjustment stays open until a press anywhere ends it as one step.
    dlg->OnAdjustBackground();
    doc().SetBackgroundAdjust(30, -20, 1.5);
    QTest::mouseClick(dlg->ToolButton(ToolSelection), Qt::LeftButton);
    int x = 0, y = 0;
    double scale = 0;
    dlg->OnCommand(EditUndo);
    doc().GetBackgroundAdjust(x, y, scale);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(scale, 1.0);
}

TEST_F(MainWindow, PanelsChangeTheLabelAndFollowTheHistory)
{
    // "Background Pattern" of the background panel: the pattern sheet, its OK one step.
    QTimer::singleShot(0, [] { static_cast<QDialog*>(QApplication::activeModalWidget())->accept(); });
    QTest::mouseClick(visibleChild<QPushButton>(QStringLiteral("Background Pattern")), Qt::LeftButton);
    EXPECT_EQ(doc().GetHatchStyle(), 0);
    dlg->OnCommand(EditUndo);
    EXPECT_EQ(doc().GetHatchStyle(), -1);

    // The shape panel edits the selected shape at each keystroke; an undo takes the last one
    // back and the panel shows the shape as it is again.
    CDrawObj* rect = addRect();
    view().Select(rect, false);
    auto* transparency = visibleChild<QLineEdit>(QStringLiteral("Transparency"));
    transparency->selectAll();
    QTest::keyClick(transparency, Qt::Key_4);
    QTest::keyClick(transparency, Qt::Key_0);
    EXPECT_EQ(rect->m_transparency, 40);
    dlg->OnCommand(EditUndo);
    EXPECT_EQ(rect->m_transparency, 4);
    EXPECT_EQ(transparency->text(), QStringLiteral("4"));
}

TEST_F(MainWindow, FilesThatAreNoProjectsAreRefusedWithoutHarm)
{
    addRect();
    const QString big = folder.path() + QStringLiteral("/big.dst");
    {
        QFile file(big);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.resize(200ll * 1024 * 1024));
    }
    // A file of 200 MB that is no project, through the Open dialog.
    answerFileDialog(big);
    dlg->OnCommand(FileOpen);
    EXPECT_FALSE(questions.isEmpty());
    EXPECT_TRUE(doc().GetObjects().IsEmpty());
    EXPECT_EQ(dlg->ProjectPath(), big);
    // A folder whose name looks like a project, from outside.
    addRect();
    questions.clear();
    const QString directory = folder.path() + QStringLiteral("/folder.dst");
    ASSERT_TRUE(QDir().mkpath(directory));
    dlg->OpenFromOutside(directory);
    EXPECT_FALSE(questions.isEmpty());
    EXPECT_TRUE(doc().GetObjects().IsEmpty());
    EXPECT_EQ(QFileInfo(big).size(), 200ll * 1024 * 1024);
}

} // namespace
