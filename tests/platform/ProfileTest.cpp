#include "platform/Profile.h"

#include <gtest/gtest.h>

#include <QSettings>

TEST(Profile, LivesUnderTheConfigHomeKeepsSectionsApartAndReadsNonIntegersAsTheDefault)
{
    EXPECT_TRUE(Profile::FilePath().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")));
    EXPECT_TRUE(Profile::FilePath().endsWith("/Tessarelle/Tessarelle.conf"));
    Profile::WriteInt("Printer_A", "TemplateBleed", 62);
    Profile::WriteString("Printer_A", "Gamma", "1.8");
    EXPECT_EQ(Profile::GetInt("Printer_A", "TemplateBleed", 130), 62);
    EXPECT_EQ(Profile::GetInt("Printer_B", "TemplateBleed", 130), 130);
    EXPECT_EQ(Profile::GetString("Printer_A", "Gamma", "1.0"), "1.8");
    EXPECT_EQ(Profile::GetString("Printer_B", "Gamma", "1.0"), "1.0");

    // Values edited by hand.
    QSettings file(Profile::FilePath(), QSettings::IniFormat);
    file.setValue("Edited/Template", "two");
    file.setValue("Edited/XOffset", " 27100 ");
    file.sync();
    EXPECT_EQ(Profile::GetInt("Edited", "Template", 0), 0);
    EXPECT_EQ(Profile::GetInt("Edited", "XOffset", 27000), 27100);
}
