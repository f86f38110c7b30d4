#include "../view/Canvas.h"
#include "TestSupport.h"
#include "dialogs/CDataFieldDlg.h"
#include "fields/DataFields.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "panels/CTextFontPage.h"
#include "panels/CTextForm.h"
#include "panels/CTextFormatPage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <cmath>
#include <functional>

namespace {

// The canvas with the text panel beside it, loaded by the view's selection as the window does.
class PanelledView : public CNetworkView {
public:
    using CNetworkView::CNetworkView;
    CTextForm* m_pForm = nullptr;

protected:
    void LoadPanels(CDrawObj* object) override
    {
        if (!object)
            m_pForm->LoadDefaults();
        else if (auto* text = dynamic_cast<CDrawText*>(object))
            m_pForm->LoadFromObject(text);
    }
};

template <typename T = QWidget>
T* named(const QWidget* parent, const QString& name)
{
    for (T* widget : parent->findChildren<T*>()) {
        if (widget->accessibleName() == name)
            return widget;
    }
    ADD_FAILURE() << "no control named " << name.toStdString();
    return nullptr;
}

// Answers the modal dialog that the next step opens, once it shows: a click's own event
// processing may run the timer before the dialog is there.
template <typename Dialog>
void whenShown(std::function<void(Dialog&)> answer, int attempts = 500)
{
    QTimer::singleShot(attempts == 500 ? 0 : 10, [answer, attempts] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
            answer(*dialog);
        else if (attempts > 0)
            whenShown(answer, attempts - 1);
        else
            ADD_FAILURE() << "no dialog showed";
    });
}

class TextPanel : public Canvas {
protected:
    void SetUp() override
    {
        Canvas::SetUp();
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        g_dataFields.clear();
        auto panelled = std::make_unique<PanelledView>(*doc);
        panelled->m_pForm = &form;
        view = std::move(panelled);
        view->resize(600, 600);
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
        view->SetLogicalSizes();
        view->ZoomFull();
        form.SetView(view.get());
        form.LoadDefaults();
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    }
    void TearDown() override
    {
        g_dataFields.clear();
        Canvas::TearDown();
    }

    CDrawText* addText(const QString& content, CPoint centre = CPoint(0, 0))
    {
        auto text = std::make_unique<CDrawText>(CRect(centre.x - 50, centre.y + 20, centre.x + 50, centre.y - 20));
        text->m_text = content;
        text->Layout();
        return static_cast<CDrawText*>(doc->Add(std::move(text)));
    }
    QComboBox* combo(const QString& name) const { return named<QComboBox>(&form, name); }
    QPlainTextEdit* textEdit() const { return form.FormatPage()->TextEdit(); }
    // Picks an entry with the arrow keys, as the user does in a closed combo box.
    void choose(QComboBox* box, int index)
    {
        box->setFocus();
        if (index == 0)
            QTest::keyClick(box, Qt::Key_Home);
        while (box->currentIndex() != index) {
            const int before = box->currentIndex();
            QTest::keyClick(box, box->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
            ASSERT_NE(box->currentIndex(), before);
        }
    }
    // Types over what a combo box's edit holds.
    void typeInto(QComboBox* box, const QString& text)
    {
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), text);
    }
    QStringList items(QComboBox* box) const
    {
        QStringList list;
        for (int i = 0; i < box->count(); ++i)
            list << box->itemText(i);
        return list;
    }
    QImage render() const { return doc->RenderBitmap(150, 150, true, true)->image().copy(); }

    CTextForm form;
};

TEST_F(TextPanel, PathStylesMoveTheTextOntoTheDiscAndSpiralsDropRightJustify)
{
    CDrawText* text = addText(QStringLiteral("Round and round"), CPoint(200, 300));
    view->Select(text, false);
    QComboBox* path = combo(QStringLiteral("Path:"));
    QComboBox* justify = combo(QStringLiteral("Justify:"));
    auto* lock = named<QAbstractButton>(&form, QStringLiteral("Lock Aspect Ratio"));
    EXPECT_FALSE(lock->isEnabled());

    choose(path, 1);
    const int half = int(doc->GetOuterDia() * 300) / 2;
    EXPECT_EQ(text->GetRect(), CRect(-half, half, half, -half)) << "the whole disc";
    EXPECT_EQ(text->GetPathKind(), CDrawText::CurvedCW);
    EXPECT_FLOAT_EQ(text->m_angle, 90.0f);
    EXPECT_TRUE(lock->isEnabled());
    choose(path, 2);
    EXPECT_FLOAT_EQ(text->m_angle, -90.0f);
    EXPECT_EQ(named<QLineEdit>(&form, QStringLiteral("Rotation:"))->text(), QStringLiteral("-90.0"));

    choose(justify, 2);
    EXPECT_EQ(text->m_justify, CDrawText::Right);
    choose(path, 3);
    EXPECT_EQ(items(justify), (QStringList{QStringLiteral("Top"), QStringLiteral("Bottom")}));
    EXPECT_EQ(justify->currentIndex(), 0);
    EXPECT_EQ(text->m_justify, 0) << "a spiral can't run from the right";

    choose(path, 0);
    EXPECT_EQ(text->GetPathKind(), CDrawText::Straight);
    EXPECT_FLOAT_EQ(text->m_angle, 90.0f) << "back to straight keeps the rotation";
    EXPECT_EQ(text->GetRect().CenterPoint(), CPoint(0, 0)) << "and the place";
    EXPECT_FALSE(lock->isEnabled());
    EXPECT_EQ(items(justify), (QStringList{QStringLiteral("Left"), QStringLiteral("Center"), QStringLiteral("Right")}));

    undo();
    EXPECT_EQ(text->GetPathKind(), CDrawText::SpiralCW) << "each change is one step of the history";
    EXPECT_EQ(text->GetRect(), CRect(-half, half, half, -half));
}

TEST_F(TextPanel, SeveralTextsChangeInOneStepAndOtherObjectsAreLeftAlone)
{
    doc->Add(std::make_unique<CDrawRect>(CRect(-300, 300, -100, 100)));
    CDrawText* one = addText(QStringLiteral("One"), CPoint(0, 200));
    CDrawText* two = addText(QStringLiteral("Two"), CPoint(0, -200));
    const QByteArray before = saved();
    view->SelectAll();

    choose(combo(QStringLiteral("Style:")), 1);
    EXPECT_EQ(one->m_fontStyle, 1);
    EXPECT_EQ(two->m_fontStyle, 1);
    EXPECT_EQ(one->m_text, QStringLiteral("One")) << "a change of style leaves each text its words";
    undo();
    EXPECT_EQ(saved(), before) << "one undo takes the change back from both texts";

    // Typing writes the text to every selected text, a step per keystroke, laid out at once.
    textEdit()->setFocus();
    textEdit()->moveCursor(QTextCursor::End);
    const int narrow = two->GetRect().Width();
    QTest::keyClicks(textEdit(), QStringLiteral("!?"));
    EXPECT_EQ(one->m_text, QStringLiteral("Two!?"));
    EXPECT_EQ(two->m_text, QStringLiteral("Two!?"));
    EXPECT_GT(two->GetRect().Width(), narrow);
    undo();
    EXPECT_EQ(two->m_text, QStringLiteral("Two!"));
    undo();
    EXPECT_EQ(saved(), before);
}

TEST_F(TextPanel, TypedSizesAndMissingFontsStayAsTheyAre)
{
    CDrawText* text = addText(QStringLiteral("Sized"));
    CDrawText* foreign = addText(QStringLiteral("Foreign"), CPoint(0, 300));
    foreign->m_fontName = QStringLiteral("Vanished Sans 2000");
    view->Select(text, false);
    QComboBox* size = combo(QStringLiteral("Size:"));
    typeInto(size, QStringLiteral("13"));
    EXPECT_EQ(text->m_fontSize, 13);
    typeInto(combo(QStringLiteral("Font:")), QStringLiteral("liberation serif"));
    EXPECT_EQ(text->m_fontName.toLower(), QStringLiteral("liberation serif")) << "a typed family is looked up";

    view->Select(foreign, false);
    EXPECT_EQ(combo(QStringLiteral("Font:"))->currentText(), QStringLiteral("Vanished Sans 2000"));
    choose(size, size->currentIndex() + 1);
    EXPECT_EQ(foreign->m_fontName, QStringLiteral("Vanished Sans 2000")) << "a change of size keeps the family";

    view->Select(text, false);
    EXPECT_EQ(size->currentText(), QStringLiteral("13"));
    EXPECT_EQ(size->currentIndex(), -1) << "13 is not in the list";
}

TEST_F(TextPanel, ASelectedTextGivesNewTextItsLookAndAnEmptyClickResetsIt)
{
    CDrawText* text = addText(QStringLiteral("Hello"), CPoint(0, 300));
    text->SetFont(QStringLiteral("Liberation Serif"), 30, 1);
    click(at(0, 300));
    ASSERT_EQ(view->m_selection, CDrawObjPtrList{text});
    EXPECT_EQ(g_defaultProperties.m_fontSize, 30);

    tool(CDrawTool::Text);
    form.LoadDefaults();
    EXPECT_EQ(combo(QStringLiteral("Size:"))->currentText(), QStringLiteral("30"));
    click(at(0, -300));
    ASSERT_EQ(objects().GetCount(), 2);
    auto* added = dynamic_cast<CDrawText*>(object(1));
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->m_text, QStringLiteral("Hello"));
    EXPECT_EQ(added->m_fontSize, 30);
    EXPECT_EQ(added->m_fontStyle, 1);

    tool(CDrawTool::Selection);
    click(at(-500, 0));
    EXPECT_TRUE(view->m_selection.empty());
    EXPECT_EQ(combo(QStringLiteral("Size:"))->currentText(), QStringLiteral("12"));
    EXPECT_EQ(textEdit()->toPlainText(), QStringLiteral("Text"));
}

TEST_F(TextPanel, ATurningHandleShowsItsAngleWithoutStepsOfItsOwn)
{
    CDrawText* text = addText(QStringLiteral("Turn me"));
    view->Select(text, false);
    const CPoint handle = text->GetHandle(1);
    const int radius = text->GetRect().Width() / 2;
    auto* rotation = named<QLineEdit>(&form, QStringLiteral("Rotation:"));
    press(at(handle.x, handle.y));
    move(at(-radius / 2, radius / 2));
    EXPECT_NEAR(text->m_angle, 45.0f, 1.0f);
    EXPECT_EQ(rotation->text(), QString::asprintf("%.1f", double(text->m_angle))) << "while dragging";
    move(at(0, radius));
    release(at(0, radius));
    EXPECT_EQ(rotation->text(), QString::asprintf("%.1f", double(text->m_angle)));
    EXPECT_NEAR(std::remainder(text->m_angle, 360.0f), 0.0f, 1.0f);
    // The first resize of a fresh document is not recorded; the panel adds none of its own.
    EXPECT_FALSE(g_undoManager.CanUndo(doc.get()));
}

TEST_F(TextPanel, AnInsertedFieldShowsItsValueOnTheLabel)
{
    CDrawText* text = addText(QStringLiteral("Hello World"));
    view->Select(text, false);
    QTextCursor caret = textEdit()->textCursor();
    caret.setPosition(6);
    textEdit()->setTextCursor(caret);
    whenShown<CDataFieldDlg>([](CDataFieldDlg& dialog) {
        // A radio button takes a click on its circle or its words, not on the room beside them.
        auto* disc = named<QAbstractButton>(&dialog, QStringLiteral("Disc"));
        QTest::mouseClick(disc, Qt::LeftButton, {}, QPoint(disc->height() / 2, disc->height() / 2));
        for (auto [name, value] : {std::pair{"Disc Number", "3"}, std::pair{"Disc Total", "7"}}) {
            auto* edit = named<QLineEdit>(&dialog, QString::fromLatin1(name));
            edit->selectAll();
            QTest::keyClicks(edit, QString::fromLatin1(value));
        }
        QTest::mouseClick(named<QAbstractButton>(&dialog, QStringLiteral("OK")), Qt::LeftButton);
    });
    QTest::mouseClick(named<QAbstractButton>(&form, QStringLiteral("Insert Data Field")), Qt::LeftButton);
    ASSERT_EQ(g_dataFields.size(), 1u);
    EXPECT_EQ(text->m_text, QStringLiteral("Hello /*TAG1*/World"));
    const QImage withField = render();

    text->SetTextProperties(QStringLiteral("Hello 3 of 7World"), 0, text->m_justify, text->m_textColor, 0, 90, 0, 0);
    EXPECT_EQ(render(), withField) << "the label shows the field's value where its tag stands";
    undo();
    EXPECT_EQ(text->m_text, QStringLiteral("Hello World")) << "the insertion is one step";
}

TEST_F(TextPanel, LongTextsAndUnreadableDataFilesAreToldOrCutNotHung)
{
    CDrawText* text = addText(QStringLiteral("x"));
    view->Select(text, false);
    QApplication::clipboard()->setText(QString(12000, QLatin1Char('W')));
    textEdit()->setFocus();
    textEdit()->selectAll();
    QTest::keyClick(textEdit(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text->m_text.size(), 12000);
    EXPECT_FALSE(text->m_textPath.IsEmpty());
    undo();
    EXPECT_EQ(text->m_text, QStringLiteral("x")) << "the paste is one step";

    TestFolder folder;
    DATAFIELD field;
    field.Type = DATAFIELD::DataFile;
    field.Tag = QStringLiteral("/*F*/");
    field.FileName = folder.path();
    g_dataFields.push_back(field);
    const QString message = QStringLiteral("Invalid DataField Filename specififed in tag /*F*/.");
    // Each change lays the text out and tells once, however many texts and tags it holds.
    QApplication::clipboard()->setText(QStringLiteral("/*F*/ /*TAG9*/ /*F*/"));
    textEdit()->selectAll();
    QTest::keyClick(textEdit(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(messages, std::vector<QString>{message}) << "a folder is no data file, and a tag without a field stays";
    EXPECT_EQ(text->m_text, QStringLiteral("/*F*/ /*TAG9*/ /*F*/"));

    messages.clear();
    g_dataFields[0].FileName = folder.path() + QStringLiteral("/missing.txt");
    QTest::keyClick(textEdit(), Qt::Key_Space);
    EXPECT_EQ(messages, std::vector<QString>{message});

    // Five megabytes of bytes of every value: the first record is laid out, cut to its length.
    QByteArray noise(5 << 20, '\0');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char((unsigned(i) * 7919u) >> 3);
    g_dataFields[0].FileName = folder.write(QStringLiteral("noise.bin"), noise);
    messages.clear();
    QTest::keyClick(textEdit(), Qt::Key_Backspace);
    EXPECT_TRUE(messages.empty());
    EXPECT_FALSE(text->m_textPath.IsEmpty());
}

} // namespace
