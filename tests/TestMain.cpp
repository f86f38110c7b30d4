// Runs every suite headless, with the profile and the data folders in temporary places,
// so that no test reads or writes the real user's settings.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstdlib>

#ifdef TESSARELLE_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#endif

int main(int argc, char** argv)
{
    QTemporaryDir home;
    const QByteArray base = home.path().toLocal8Bit();
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("XDG_CONFIG_HOME", (base + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (base + "/data").constData(), 1);
    setenv("HOME", (base + "/home").constData(), 1);

    TestApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
