#include "TestSupport.h"
#include "controls/CToolTipDialog.h"
#include "panels/CSubForm2_1.h"
#include "panels/CSubForm2_2.h"
#include "undo/CPaperAction.h"
#include "view/Canvas.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>

namespace {

template <class T>
T* Control(const QWidget* parent, int id)
{
    for (T* child : parent->findChildren<T*>()) {
        if (ControlId(child) == id)
            return child;
    }
    ADD_FAILURE() << "no control " << id;
    return nullptr;
}

// The background panels beside the real canvas.
class BackgroundPanel : public Canvas {
protected:
    struct Adjust {
        int x, y;
        double scale;
        bool operator==(const Adjust&) const = default;
    };
    Adjust adjust() const
    {
        Adjust a{};
        doc->GetBackgroundAdjust(a.x, a.y, a.scale);
        return a;
    }
    // What the window does as the adjustment opens: a step of the history stays open.
    void openAdjustment()
    {
        view->CloseCurrentAction();
        view->SetCurrentAction(new CPaperAction(view.get(), 61463));
    }
    static void type(QLineEdit* edit, const QString& text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    void click(QWidget* parent, int id) { QTest::mouseClick(Control<QWidget>(parent, id), Qt::LeftButton); }

    TestFolder folder;
};

TEST_F(BackgroundPanel, AdjustIsGreyUntilThereIsAPictureOrAPattern)
{
    CSubForm2_1 panel;
    panel.SetView(view.get());
    panel.show();
    QSignalSpy image(&panel, &CSubForm2_1::selectBackgroundRequested);
    QSignalSpy pattern(&panel, &CSubForm2_1::patternRequested);
    QSignalSpy adjust(&panel, &CSubForm2_1::adjustRequested);
    auto* button = Control<QPushButton>(&panel, 1005);
    EXPECT_FALSE(button->isEnabled());
    click(&panel, 1005);
    EXPECT_EQ(adjust.count(), 0);

    // The button follows the label as the program's next event passes, whoever changed it.
    doc->SetHatchStyle(7);
    QTest::mouseMove(canvas(), at(0, 0));
    EXPECT_TRUE(button->isEnabled());
    doc->SetHatchStyle(-1);
    doc->SetImageFile(folder.write(QStringLiteral("broken.png"), "no picture"));
    QTest::mouseMove(canvas(), at(10, 0));
    EXPECT_TRUE(button->isEnabled());
    click(&panel, 1005);
    click(&panel, 1003);
    click(&panel, 1007);
    EXPECT_EQ(adjust.count(), 1);
    EXPECT_EQ(image.count(), 1);
    EXPECT_EQ(pattern.count(), 1);
    canvas()->repaint();
}

TEST_F(BackgroundPanel, TheColourButtonHandsItsChoiceToTheWindow)
{
    // An offset left from a pattern, and no picture.
    doc->SetBackgroundAdjust(5, 6, 1.5);
    CSubForm2_1 panel;
    panel.SetView(view.get());
    panel.show();
    std::vector<LabelBackground> chosen;
    QObject::connect(&panel, &CSubForm2_1::backgroundChosen, [&chosen](const LabelBackground& choice) {
        chosen.push_back(choice);
    });
    click(&panel, 1000);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    // Opened without a picture, the label's placement starts afresh, as a step of its own.
    EXPECT_EQ(adjust(), (Adjust{0, 0, 1.0}));
    QTest::keyClick(popup, Qt::Key_Left); // from white to lavender
    QTest::keyClick(popup, Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 1u);
    EXPECT_EQ(chosen[0].BackColor, gfx::RGB(230, 230, 250));
    EXPECT_EQ(chosen[0].HatchStyle, -1);
    EXPECT_TRUE(chosen[0].ImageFile.isEmpty());
    undo();
    EXPECT_EQ(adjust(), (Adjust{5, 6, 1.5}));
}

TEST_F(BackgroundPanel, AnAdjustmentIsUndoneInOneStep)
{
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QString good = folder.path() + QStringLiteral("/green.png");
    ASSERT_TRUE(picture.save(good));
    // A picture that doesn't load is adjusted all the same, and the canvas still paints.
    for (const QString& path : {good, folder.write(QStringLiteral("broken.jpg"), "no picture")}) {
        SCOPED_TRACE(path.toStdString());
        doc->SetImageFile(path);
        doc->SetBackgroundAdjust(0, 0, 1.0);
        const Adjust before = adjust();
        openAdjustment();
        CSubForm2_2 panel;
        panel.SetView(view.get());
        panel.SetScaleFlag(true);
        panel.show();
        QSignalSpy finished(&panel, &CSubForm2_2::finished);
        EXPECT_TRUE(Control<QLineEdit>(&panel, 1018)->isEnabled());

        type(Control<QLineEdit>(&panel, 1042), QStringLiteral("25"));
        click(&panel, 1024); // right
        click(&panel, 1024);
        click(&panel, 1027); // up
        click(&panel, 1027);
        click(&panel, 1022); // down
        EXPECT_EQ(Control<QLineEdit>(&panel, 1042)->text(), QStringLiteral("27"));
        EXPECT_EQ(Control<QLineEdit>(&panel, 1031)->text(), QStringLiteral("-1"));
        // A scale of nothing draws nothing, and harms nothing.
        type(Control<QLineEdit>(&panel, 1018), QStringLiteral("0"));
        canvas()->repaint();
        type(Control<QLineEdit>(&panel, 1018), QStringLiteral("2"));
        auto* slider = Control<QSlider>(&panel, 1017);
        EXPECT_EQ(slider->value(), 2000);
        QTest::keyClick(slider, Qt::Key_PageUp);
        EXPECT_EQ(Control<QLineEdit>(&panel, 1018)->text(), QStringLiteral("2.100"));
        canvas()->repaint();
        const Adjust after{27, -1, 2.1};
        EXPECT_EQ(adjust(), after);

        click(&panel, 1107);
        EXPECT_EQ(finished.count(), 1);
        undo();
        EXPECT_EQ(adjust(), before);
        redo();
        EXPECT_EQ(adjust(), after);

        // Once the step is recorded (any press in the window ends it), a change still coming
        // from the panel is a step of its own, and Finish records nothing twice.
        click(&panel, 1024);
        click(&panel, 1107);
        EXPECT_EQ(adjust(), (Adjust{28, -1, 2.1}));
        undo();
        EXPECT_EQ(adjust(), after);
        undo();
        EXPECT_EQ(adjust(), before);
        canvas()->repaint();
    }
}

TEST_F(BackgroundPanel, APatternAloneHasNoScale)
{
    doc->SetHatchStyle(3);
    doc->SetBackgroundAdjust(5, 6, 1.5);
    openAdjustment();
    CSubForm2_2 panel;
    panel.SetView(view.get());
    panel.SetScaleFlag(false);
    panel.show();
    EXPECT_EQ(Control<QLineEdit>(&panel, 1042)->text(), QStringLiteral("5"));
    EXPECT_EQ(Control<QLineEdit>(&panel, 1018)->text(), QStringLiteral("1.500"));
    EXPECT_FALSE(Control<QLineEdit>(&panel, 1018)->isEnabled());
    EXPECT_FALSE(Control<QSlider>(&panel, 1017)->isEnabled());
    click(&panel, 1020); // left
    EXPECT_EQ(adjust(), (Adjust{4, 6, 1.5}));
}

} // namespace
