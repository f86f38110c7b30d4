#include "controls/CSeekButton.h"
#include "controls/CSeekEdit.h"

#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>

namespace {

// A seek edit between its two buttons, as a panel sets them up around a position.
class SeekButton : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto* layout = new QHBoxLayout(&panel);
        layout->addWidget(down = new CSeekButton(QStringLiteral("<")));
        layout->addWidget(edit = new CSeekEdit);
        layout->addWidget(up = new CSeekButton(QStringLiteral(">")));
        QObject::connect(down, &CSeekButton::valueStepped, edit, &CSeekEdit::SetValue);
        QObject::connect(up, &CSeekButton::valueStepped, edit, &CSeekEdit::SetValue);
        panel.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    }

    QWidget panel;
    CSeekButton* down = nullptr;
    CSeekEdit* edit = nullptr;
    CSeekButton* up = nullptr;
    int nValue = 0;
};

TEST_F(SeekButton, ClicksStepWithinTheLimits)
{
    struct Case {
        int nStep, nMin, nMax, nBefore;
        const char* clicks; // '+' and '-' click a button, '2' double-clicks '+'
        int nAfter;
    };
    const Case cases[] = {
        {5, 0, 100, 10, "+", 15},
        {5, 0, 100, 10, "-", 5},
        {5, 0, 100, 98, "+", 100},
        {5, 0, 100, 3, "--+", 5},
        {1, -5, 5, 0, "2", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.clicks);
        // Delays far beyond a click, so that only the presses step.
        down->Init(&nValue, true, c.nStep, c.nMin, c.nMax, 60000, 60000);
        up->Init(&nValue, false, c.nStep, c.nMin, c.nMax, 60000, 60000);
        nValue = c.nBefore;
        for (const char* click = c.clicks; *click; ++click) {
            if (*click == '2') // through the window, which makes a double click of two presses
                QTest::mouseDClick(panel.windowHandle(), Qt::LeftButton, {}, up->geometry().center());
            else
                QTest::mouseClick(*click == '+' ? up : down, Qt::LeftButton);
        }
        EXPECT_EQ(nValue, c.nAfter);
        EXPECT_EQ(edit->GetValue(), c.nAfter);
        EXPECT_EQ(edit->text(), QString::number(c.nAfter));
    }
}

TEST_F(SeekButton, HoldingSpeedsUpUntilReleased)
{
    up->Init(&nValue, false, 2, 0, 1000000, 150, 40);
    QSignalSpy spy(up, &CSeekButton::valueStepped);
    QTest::mousePress(up, Qt::LeftButton);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(edit->text(), QStringLiteral("2"));
    QTest::qWait(600);
    QTest::mouseRelease(up, Qt::LeftButton);
    const qsizetype nSteps = spy.count();
    ASSERT_GE(nSteps, 4);
    // The press and the first repeat step by 2, each later repeat by one more.
    int nPrevious = 0;
    for (qsizetype i = 0; i < nSteps; ++i) {
        const int nStepped = spy.at(i).at(0).toInt();
        EXPECT_EQ(nStepped - nPrevious, i == 0 ? 2 : 1 + static_cast<int>(i)) << "step " << i;
        nPrevious = nStepped;
    }
    EXPECT_EQ(nValue, nPrevious);
    EXPECT_EQ(edit->text(), QString::number(nPrevious));
    QTest::qWait(200);
    EXPECT_EQ(spy.count(), nSteps);
}

} // namespace
