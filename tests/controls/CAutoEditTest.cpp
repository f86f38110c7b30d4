#include "controls/CAutoEdit.h"
#include "controls/CInfoWnd.h"
#include "controls/CIntValidate.h"
#include "controls/CRealValidate.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace {

// A dialog with the edit under test, a plain edit after it and OK and Cancel, shown and
// active so that the focus moves as it does for a user.
class AutoEdit : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto* layout = new QVBoxLayout(&dialog);
        layout->addWidget(label = new QLabel(QStringLiteral("&Inner Diameter")));
        layout->addWidget(edit = new CAutoEdit);
        layout->addWidget(next = new QLineEdit);
        layout->addWidget(buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
        QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
        dialog.show();
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        edit->setFocus();
    }

    // Keys go wherever the focus is, as a user's typing does.
    static void Type(const char* keys)
    {
        for (const char* key = keys; *key; ++key)
            QTest::keyClick(QApplication::focusWidget(), *key);
    }

    CInfoWnd* Info() const { return edit->findChild<CInfoWnd*>(); }
    bool InfoShown() const { return Info() && Info()->isVisible(); }

    QDialog dialog;
    QLabel* label = nullptr;
    CAutoEdit* edit = nullptr;
    QLineEdit* next = nullptr;
    QDialogButtonBox* buttons = nullptr;
};

TEST_F(AutoEdit, FiltersWhatIsTyped)
{
    struct Case {
        const char* allowed; // null: anything
        bool bAllowSign, bSignToFront;
        const char* before;
        bool bSelectAll;
        const char *typed, *after;
        int nCaret;
    };
    const Case cases[] = {
        {".0123456789", false, false, "", false, "1a2.5x", "12.5", 4},
        {"+-.0123456789", true, false, "-5", false, "-+", "-5", 2},
        {"+-.0123456789", true, false, "-5", true, "+", "+", 1},
        {"+-.0123456789", true, false, "5", false, "-", "5-", 2},
        {nullptr, true, true, "12", false, "-", "-12", 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.before) + " + " + c.typed);
        edit->SetAllowedChars(c.allowed ? QString::fromLatin1(c.allowed) : QString());
        edit->SetAllowSign(c.bAllowSign);
        edit->SetSignToFront(c.bSignToFront);
        edit->setText(QString::fromLatin1(c.before));
        if (c.bSelectAll)
            edit->selectAll();
        QTest::keyClicks(edit, QString::fromLatin1(c.typed));
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.after));
        EXPECT_EQ(edit->cursorPosition(), c.nCaret);
    }
    // Keys that type no character still edit a field limited to digits.
    edit->SetAllowedChars(QStringLiteral(".0123456789"));
    edit->setText(QStringLiteral("125"));
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClick(edit, Qt::Key_Home);
    QTest::keyClick(edit, Qt::Key_Delete);
    EXPECT_EQ(edit->text(), QStringLiteral("2"));
}

TEST_F(AutoEdit, CompleteFieldMovesTheFocusOn)
{
    struct Case {
        int nLimit;
        char32_t terminator;
        const char *typed, *first, *second;
    };
    const Case cases[] = {
        {3, 0, "12345", "123", "45"},
        {-1, '.', "12.34", "12", "34"},
        {-1, 0, "12.34", "12.34", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        edit->SetLimit(c.nLimit);
        edit->SetTerminatorChar(c.terminator);
        edit->clear();
        next->clear();
        edit->setFocus();
        Type(c.typed);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.first));
        EXPECT_EQ(next->text(), QString::fromLatin1(c.second));
    }
}

TEST_F(AutoEdit, LeavingChecksTheText)
{
    CRealValidate real;
    CIntValidate integer;
    struct Case {
        CEditValidate* validator;
        const char *typed, *after, *message; // no message: the focus moves on
    };
    const Case cases[] = {
        {&real, "1.2.3", "1.2.3", "Error: too many decimal points"},
        {&real, "5-", "5-", "Error: invalid use of '-'"},
        {&real, "-1.5", "-1.5", ""},
        {&real, "", "0", ""},
        {&integer, "", "0", ""},
        {&integer, "1.2.3", "1.2.3", ""},
        {&integer, "3-1", "3-1", "Error: invalid use of '-'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        edit->SetValidator(c.validator);
        edit->setFocus();
        edit->clear();
        QTest::keyClicks(edit, QString::fromLatin1(c.typed));
        QTest::keyClick(edit, Qt::Key_Tab);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.after));
        const bool bRefused = *c.message != 0;
        EXPECT_EQ(QApplication::focusWidget(), bRefused ? static_cast<QWidget*>(edit) : next);
        EXPECT_EQ(InfoShown(), bRefused);
        if (bRefused) {
            EXPECT_EQ(Info()->text(), QString::fromLatin1(c.message));
            EXPECT_EQ(edit->selectedText(), edit->text());
        }
    }
}

TEST_F(AutoEdit, CancelLeavesWithoutChecking)
{
    CRealValidate real;
    edit->SetValidator(&real);
    // A click on any other button takes the focus and so checks the text.
    QTest::keyClicks(edit, QStringLiteral("1.2.3"));
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
    EXPECT_TRUE(InfoShown());
    EXPECT_EQ(QApplication::focusWidget(), edit);
    // Checked, the empty text would become "0". The message goes with the dialog.
    edit->clear();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(edit->text(), QString());
    EXPECT_FALSE(InfoShown());
}

TEST_F(AutoEdit, CaptionNamesTheEdit)
{
    edit->SetCaption(label);
    EXPECT_EQ(edit->accessibleName(), QStringLiteral("Inner Diameter"));
    next->setFocus();
    QTest::keyClick(next, Qt::Key_I, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget(), edit);
}

} // namespace
