#include "controls/CAutoEdit.h"
#include "controls/CNumSpinCtrl.h"

#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QStyle>
#include <QTest>

namespace {

// A number's edit with its spin beside it, on screen, clicked as a user clicks the arrows.
class NumSpin : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto* layout = new QHBoxLayout(&panel);
        layout->addWidget(edit = new CAutoEdit);
        layout->addWidget(spin = new CNumSpinCtrl);
        spin->SetBuddy(edit);
        panel.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    }

    QPoint Up() const { return QPoint(spin->width() / 2, spin->height() / 4); }
    QPoint Down() const { return QPoint(spin->width() / 2, spin->height() * 3 / 4); }

    // 'u' and 'd' click an arrow, 'U' double-clicks the up arrow.
    void Click(const char* arrows)
    {
        for (const char* arrow = arrows; *arrow; ++arrow) {
            if (*arrow == 'U') // through the window, which makes a double click of two presses
                QTest::mouseDClick(panel.windowHandle(), Qt::LeftButton, {}, spin->mapTo(&panel, Up()));
            else
                QTest::mouseClick(spin, Qt::LeftButton, {}, *arrow == 'u' ? Up() : Down());
        }
    }

    QWidget panel;
    CAutoEdit* edit = nullptr;
    CNumSpinCtrl* spin = nullptr;
};

TEST_F(NumSpin, WritesValuesInItsFormat)
{
    struct Case { int nDecimals; const char* format; bool bTrim; double fValue; const char* text; };
    const Case cases[] = {
        {2, "", false, 1.5, "1.50"},
        {2, "", true, 1.5, "1.5"},
        {3, "", true, 2, "2."},
        {0, "", true, 30, "30"},
        {-1, "", false, 1e20, "1e+20"},
        {-1, "", true, 1.5e-7, "1.5e-07"},
        {-1, "%.3e", true, 1.5e10, "1.5e+10"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        spin->SetDecimals(c.nDecimals);
        spin->SetFormat(QString::fromLatin1(c.format));
        spin->SetTrimZeros(c.bTrim);
        spin->SetValue(c.fValue);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.text));
        EXPECT_DOUBLE_EQ(spin->GetValue(), c.fValue);
    }
}

TEST_F(NumSpin, ArrowsStepTheTextWithinTheRange)
{
    struct Case {
        double fMin, fMax, fDelta;
        int nDecimals;
        bool bReversed, bWrap;
        const char *before, *arrows, *after;
    };
    const Case cases[] = {
        {0, 10, 0.5, 1, false, false, "1.0", "u", "1.5"},
        {0, 10, 0.5, 1, true, false, "1.0", "u", "0.5"},
        {0, 10, 1, 0, false, false, "10", "u", "10"},
        {0, 10, 1, 0, false, true, "10", "u", "0"},
        {0, 10, 1, 0, false, true, "0", "d", "10"},
        // Three steps of 0.1 reach the top, they don't pass it.
        {0, 0.3, 0.1, -1, false, true, "0", "uuu", "0.3"},
        // The arrows go on from what was typed.
        {0, 100, 1, 0, false, false, "41.7", "u", "43"},
        {0, 10, 1, 0, false, false, "0", "U", "2"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.before) + " " + c.arrows);
        spin->SetRangeAndDelta(c.fMin, c.fMax, c.fDelta);
        spin->SetDecimals(c.nDecimals);
        spin->SetReversed(c.bReversed);
        spin->SetWrap(c.bWrap);
        edit->setText(QString::fromLatin1(c.before));
        Click(c.arrows);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.after));
    }
}

TEST_F(NumSpin, MillionStepsFitTheSpinsPositions)
{
    spin->SetDecimals(0);
    spin->SetRangeAndDelta(0, 1e6, 1);
    spin->SetValue(1e6);
    EXPECT_EQ(spin->GetPos(), 32767);
    spin->SetValue(500000);
    EXPECT_EQ(spin->GetPos(), 16384);
    // The step still lands on the next whole number; the position stays where it was set.
    Click("u");
    EXPECT_EQ(edit->text(), QStringLiteral("500001"));
    EXPECT_EQ(spin->GetPos(), 16384);
    // A range without extent leaves the position alone.
    spin->SetRangeAndDelta(5, 5, 1);
    spin->SetValue(7);
    EXPECT_EQ(spin->GetPos(), 16384);
}

TEST_F(NumSpin, HeldArrowRepeatsUntilReleased)
{
    const int nFirst = spin->style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatThreshold, nullptr, spin);
    const int nRepeat = spin->style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatRate, nullptr, spin);
    QTest::mousePress(spin, Qt::LeftButton, {}, Up());
    EXPECT_EQ(edit->text(), QStringLiteral("1"));
    QTest::qWait(nFirst + 4 * nRepeat);
    QTest::mouseRelease(spin, Qt::LeftButton, {}, Up());
    const QString held = edit->text();
    EXPECT_GE(held.toInt(), 3);
    QTest::qWait(3 * nRepeat);
    EXPECT_EQ(edit->text(), held);
}

} // namespace
