#include "controls/CImageButton.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>

namespace {

// Counts the paint events of the widget it watches.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

// A button in a shown window, away from its corner, with the mouse over the window's empty part.
class ImageButton : public ::testing::Test {
protected:
    void SetUp() override
    {
        QPixmap picture(16, 16);
        picture.fill(Qt::black);
        button = new CImageButton(QIcon(picture), QStringLiteral("Rectangle"), &window);
        button->setGeometry(60, 0, 24, 24);
        window.resize(100, 24);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        QTest::mouseMove(&window, away);
        plain = look();
    }

    QImage look() const { return button->grab().toImage(); }

    const QPoint away{10, 12};
    QWidget window;
    CImageButton* button = nullptr;
    QImage plain;
};

TEST_F(ImageButton, OwnerSetsThePressedStateAndAClickOnlyReportsItself)
{
    PaintCounter counter;
    button->installEventFilter(&counter);
    button->SetPressed(false);
    QTest::qWait(50);
    EXPECT_EQ(counter.paints, 0);

    button->SetPressed(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.paints > 0; }, 1000));
    EXPECT_TRUE(button->IsPressed());
    EXPECT_NE(look(), plain);

    QSignalSpy clicks(button, &CImageButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(12, 12));
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(button->IsPressed());
    button->SetPressed(false);
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(12, 12));
    EXPECT_EQ(clicks.count(), 2);
    EXPECT_FALSE(button->IsPressed());
    EXPECT_EQ(look(), plain);
}

TEST_F(ImageButton, HoverHighlightStaysWhileTheMouseIsOverAndTheTimerTakesItAway)
{
    QTest::mouseMove(button, QPoint(12, 12));
    const QImage hovered = look();
    EXPECT_NE(hovered, plain);
    // Several ticks of the timer find the mouse still there.
    QTest::qWait(350);
    EXPECT_EQ(look(), hovered);

    QTest::mouseMove(&window, away);
    EXPECT_TRUE(QTest::qWaitFor([&] { return look() == plain; }, 1000));
}

} // namespace
