#include "TestSupport.h"
#include "tools/CliRun.h"
#include "app/CSendrillApp.h"
#include "platform/FontCollection.h"
#include "platform/HandleImages.h"
#include "platform/MessageBox.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

namespace {

TEST(Application, VersionPartsKeepTheirLowFourBits)
{
    EXPECT_EQ(CSendrillApp::CutVersion(1, 0, 0, 1), (std::array<int, 4>{1, 0, 0, 1}));
    EXPECT_EQ(CSendrillApp::CutVersion(15, 16, 17, 255), (std::array<int, 4>{15, 0, 1, 15}));
    EXPECT_EQ(CSendrillApp::CutVersion(0x12345, 32, 48, 0xFFFF), (std::array<int, 4>{5, 0, 0, 15}));
}

TEST(Application, DataDirectoryIsMadeUnderTheXdgDataHomeOrItsFailureDescribed)
{
    const QString dataHome = QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME"));
    ASSERT_FALSE(dataHome.isEmpty());
    CSendrillApp app;
    app.SetUpFolders();
    app.SetUpFolders(); // a second start finds the folders there: no failure
    EXPECT_EQ(app.m_strAppDataDir, dataHome + QStringLiteral("/Quorvane/Tessarelle/"));
    EXPECT_TRUE(QFileInfo(app.m_strAppDataDir).isDir() && app.m_strDataDirFailure.isEmpty());

    // A file where the vendor's folder belongs counts as existing; its sub-folder then fails.
    TestFolder folder;
    folder.write(QStringLiteral("Quorvane"), "not a folder");
    QString failure;
    EXPECT_EQ(CSendrillApp::CreateDataDirectory(folder.path() + '/', &failure),
              folder.path() + QStringLiteral("/Quorvane/Tessarelle/"));
    EXPECT_EQ(failure, QStringLiteral("Unable to create Tessarelle Application Data directory:error 20"));
}

TEST(Application, WithoutADisplayQuestionsTakeTheirDefaultAndNothingWaits)
{
    EXPECT_FALSE(CSendrillApp::HasDisplay());
    CSendrillApp::InstallMessagePresenter();
    EXPECT_EQ(MessageBox::Show(QStringLiteral("Save changes?"), MessageBox::YesNo | MessageBox::IconQuestion),
              MessageBox::IdNo);
    EXPECT_EQ(MessageBox::Show(QStringLiteral("Note")), MessageBox::IdOk);
}

TEST(HandleImages, FourSmallPicturesLoadFromTheResourcesAndAreReleased)
{
    HandleImages::Release();
    EXPECT_TRUE(HandleImages::Load());
    for (int id = HandleImages::ResizeId; id <= HandleImages::MoveId; ++id) {
        const gfx::Image* picture = HandleImages::Get(id);
        ASSERT_NE(picture, nullptr) << id;
        EXPECT_EQ(picture->GetWidth(), picture->GetHeight());
        // Some pixels opaque, the corners see through.
        EXPECT_GT(countPixels(picture->image(), QColor(0, 0, 0, 255)), 10) << id;
        EXPECT_EQ(qAlpha(picture->image().pixel(0, 0)), 0) << id;
    }
    EXPECT_EQ(HandleImages::Get(346), nullptr);
    EXPECT_NE(HandleImages::Resize()->image(), HandleImages::Rotate()->image());
    HandleImages::Release();
    for (int id = HandleImages::ResizeId; id <= HandleImages::MoveId; ++id)
        EXPECT_EQ(HandleImages::Get(id), nullptr);
}

TEST(FontCollection, FontsOfTheFolderJoinTheFamiliesAndOtherFilesFallThrough)
{
    // Any font file of the system serves, under a name of our own.
    const QString dir = QStringLiteral("/usr/share/fonts/truetype/dejavu");
    const QStringList ttf = QDir(dir).entryList({QStringLiteral("*.ttf")}, QDir::Files);
    if (ttf.isEmpty())
        GTEST_SKIP() << "no TrueType font on this machine";
    const QString source = dir + '/' + ttf.first();

    TestFolder folder;
    folder.write(QStringLiteral("README.txt"), "Fonts placed here join the list.\n");
    ASSERT_TRUE(QFile::copy(source, folder.path() + QStringLiteral("/Shipped.ttf")));

    EXPECT_EQ(FontCollection::Published(), nullptr);
    {
        FontCollection fonts;
        EXPECT_EQ(fonts.AddFontFiles(folder.path()), 1);
        EXPECT_EQ(fonts.AddFontFiles(folder.path() + QStringLiteral("/missing")), 0);
        EXPECT_FALSE(fonts.Families().isEmpty());
        FontCollection::Publish(&fonts);
        EXPECT_EQ(FontCollection::Published(), &fonts);
    }
    // A collection that goes is no longer published.
    EXPECT_EQ(FontCollection::Published(), nullptr);
}

TEST(Application, WithoutADisplayOnlyAnUnattendedPrintStarts)
{
    const CliRun designer = runCli({}, "tessarelle");
    EXPECT_EQ(designer.exitCode, 1);
    EXPECT_TRUE(designer.err.contains("needs a display")) << designer.err.constData();
}

} // namespace
