#include "controls/CMyTabCtrl.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTabBar>
#include <QTest>

TEST(MyTabCtrl, PagesShowOneAtATimeByCodeAndByClick)
{
    CMyTabCtrl tabs;
    auto* format = new QLabel(QStringLiteral("format"));
    auto* font = new QLabel(QStringLiteral("font"));
    auto* effects = new QLabel(QStringLiteral("effects"));
    tabs.AddPage(font, QStringLiteral("Font"), 0);
    tabs.AddPage(format, QStringLiteral("Format"), 0);
    tabs.AddPage(effects, QStringLiteral("Effects"), 2);
    tabs.resize(300, 200);
    tabs.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tabs));

    // The first page added shows, wherever later ones went.
    EXPECT_EQ(tabs.tabText(0), QStringLiteral("Format"));
    EXPECT_TRUE(font->isVisible());
    EXPECT_FALSE(format->isVisible());

    tabs.SelectPage(2);
    EXPECT_TRUE(effects->isVisible());
    EXPECT_FALSE(font->isVisible());
    tabs.SelectPage(7);
    EXPECT_TRUE(effects->isVisible());

    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(0).center());
    EXPECT_TRUE(format->isVisible());
    EXPECT_FALSE(effects->isVisible());
}
