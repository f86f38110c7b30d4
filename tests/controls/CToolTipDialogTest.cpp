#include "controls/CToolTipDialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

namespace {

QToolButton* toolButton(QWidget* pParent, int nId)
{
    auto* pButton = new QToolButton(pParent);
    SetControlId(pButton, nId);
    return pButton;
}

TEST(CToolTipDialog, ShownDialogGivesItsControlsTheirTooltipsAndNames)
{
    CToolTipDialog dialog;
    auto* pSave = new QPushButton(QStringLiteral("&Save"), &dialog);
    SetControlId(pSave, 1106);
    QToolButton* pZoom = toolButton(&dialog, 32829);
    auto* pText = new QLineEdit(&dialog);
    SetControlId(pText, 1083);
    auto* pBox = new QGroupBox(QStringLiteral("Outline && Fill"), &dialog);
    auto* pWidth = new QSpinBox(pBox);
    SetControlId(pWidth, 1068);
    auto* pWidthLabel = new QLabel(QStringLiteral("&Width:"), pBox);
    pWidthLabel->setBuddy(pWidth);
    auto* pPlainLabel = new QLabel(QStringLiteral("R&D"), &dialog);
    auto* pRichLabel = new QLabel(QStringLiteral("<b>Version</b> 1.0"), &dialog);
    QToolButton* pUnlisted = toolButton(&dialog, 1002);
    QToolButton* pNamed = toolButton(&dialog, 1080);
    pNamed->setAccessibleName(QStringLiteral("Actual size"));
    QToolButton* pOwnTip = toolButton(&dialog, 1084);
    pOwnTip->setToolTip(QStringLiteral("Hide Grid"));

    dialog.show();

    EXPECT_EQ(pSave->toolTip(), "Save Current Project");
    EXPECT_EQ(pSave->accessibleName(), "Save");
    EXPECT_EQ(pZoom->toolTip(), "Zoom In");
    EXPECT_EQ(pZoom->accessibleName(), "Zoom In");
    EXPECT_EQ(pText->accessibleName(), "Enter text here");
    // Controls nested in a group box are found too, with the table's wording as it stands.
    EXPECT_EQ(pWidth->toolTip(), "Outline Thinkness");
    EXPECT_EQ(pWidth->accessibleName(), "Outline Thinkness");
    EXPECT_EQ(pBox->accessibleName(), "Outline & Fill");
    EXPECT_EQ(pWidthLabel->accessibleName(), "Width:");
    EXPECT_EQ(pPlainLabel->accessibleName(), "R&D");
    EXPECT_EQ(pRichLabel->accessibleName(), "Version 1.0");
    EXPECT_TRUE(pUnlisted->toolTip().isEmpty());
    EXPECT_TRUE(pUnlisted->accessibleName().isEmpty());
    EXPECT_EQ(pNamed->toolTip(), "Zoom Full Size");
    EXPECT_EQ(pNamed->accessibleName(), "Actual size");
    EXPECT_EQ(pOwnTip->toolTip(), "Hide Grid");
    EXPECT_EQ(pOwnTip->accessibleName(), "Hide Grid");

    // A control added while the dialog was hidden is covered when it shows again.
    dialog.hide();
    QToolButton* pUndo = toolButton(&dialog, 57643);
    dialog.show();
    EXPECT_EQ(pUndo->accessibleName(), "Undo Last Action");
}

TEST(CToolTipDialog, PanelListShowsTheEntryUnderTheMouse)
{
    QWidget panel;
    panel.setToolTip(QStringLiteral("Panel"));
    QToolButton* pFill = toolButton(&panel, 1064);
    auto* pList = new QListWidget(&panel);
    pList->setGeometry(0, 30, 80, 200);
    pList->addItems({QStringLiteral("Business Card, Edge Diameter 2.25 Inches"), QStringLiteral("Mini")});
    pList->setToolTip(QStringLiteral("TOOLTIPEXPAND"));

    CToolTipDialog::AddToolTips(&panel);
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));

    EXPECT_EQ(pFill->toolTip(), "Set Selected Objects Fill Color");
    EXPECT_TRUE(pList->toolTip().isEmpty());
    EXPECT_TRUE(pList->accessibleName().isEmpty());

    QWidget* pViewport = pList->viewport();
    const auto hover = [pViewport](QPoint pos) {
        QHelpEvent event(QEvent::ToolTip, pos, pViewport->mapToGlobal(pos));
        QApplication::sendEvent(pViewport, &event);
    };
    hover(pList->visualItemRect(pList->item(0)).center());
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_EQ(QToolTip::text(), "Business Card, Edge Diameter 2.25 Inches");
    hover(pList->visualItemRect(pList->item(1)).center());
    EXPECT_EQ(QToolTip::text(), "Mini");
    // Below the entries: neither an entry's text nor the panel's tooltip.
    hover(QPoint(10, pViewport->height() - 5));
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
}

} // namespace
