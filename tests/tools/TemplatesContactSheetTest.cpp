#include "CliRun.h"
#include "TestSupport.h"

#include <QDir>
#include <QImage>

// The program's own list from the tool: our templates, then the imported ones with their file,
// and the contact sheet drawing each of them.
TEST(TemplatesCommand, OwnListWithImportedTemplatesAndItsContactSheet)
{
    TestFolder folder;
    const QString database = folder.write(
        "config/libglabels/templates/mine.template",
        "<Glabels-templates><Template brand=\"Test\" part=\"Mine\" size=\"US-Letter\" _description=\"CD Labels\">"
        "<Label-cd id=\"0\" radius=\"2.3125in\" hole=\"0.8125in\" waste=\"0\">"
        "<Layout nx=\"1\" ny=\"2\" x0=\"1.9375in\" y0=\"0.6875in\" dx=\"0\" dy=\"5in\"/></Label-cd></Template>"
        "<Template brand=\"Test\" part=\"Broken\" size=\"US-Letter\"><Label-cd id=\"0\" radius=\"-1\"/></Template>"
        "</Glabels-templates>");
    folder.write("config/libglabels/templates/bad.xml", "<Glabels-templates><Template><Label-cd>");
    QDir().mkpath(folder.path() + "/data");
    QProcessEnvironment environment;
    environment.insert("XDG_CONFIG_HOME", folder.path() + "/config");
    // No system databases: only the user's own folder is read.
    environment.insert("XDG_DATA_HOME", folder.path() + "/data");
    environment.insert("XDG_DATA_DIRS", folder.path() + "/data");

    const QString sheet = folder.path() + "/sheet.png";
    const CliRun run = runCli({"templates", "--contact-sheet", sheet}, "tessarelle-cli", environment);
    EXPECT_EQ(run.exitCode, 1) << "bad.xml failed";
    const QJsonArray list = run.json().array();
    const qsizetype own = QDir(QCoreApplication::applicationDirPath() + "/Templates").entryList({"*.tmp"}).size();
    ASSERT_EQ(list.size(), own + 2);
    const QJsonValue failure = list[own], imported = list[own + 1]; // files by name
    EXPECT_EQ(std::tuple(imported["path"].toString(), imported["imported"].toBool(), imported["TemplateName"].toString(),
                         imported["Objects"].toArray().size()),
              std::tuple(database, true, QString("Test Mine CD Labels (imported)"), 2));
    EXPECT_FALSE(list[own - 1].toObject().contains("imported"));
    EXPECT_TRUE(failure["path"].toString().endsWith("/bad.xml") && failure["error"].toString().contains("line"));
    // A line for the template left out and one for the file that failed; no message of the program's.
    EXPECT_EQ(run.err.count(folder.path().toUtf8()), 2) << run.err.constData();
    EXPECT_TRUE(run.err.contains("\"Test Broken\" skipped"));

    // Eight pictures to a row, every template loaded drawn once.
    const QImage picture(sheet);
    ASSERT_FALSE(picture.isNull());
    const int rows = int((own + 1 + 7) / 8);
    EXPECT_EQ(std::pair(picture.width(), picture.height()), std::pair(8 + 8 * 188, 8 + rows * 232));
    // The last one drawn is the imported Letter sheet: grey beside its paper, white between its
    // discs, the highlight of an area that prints on the top disc's ring.
    const QPoint cell(8 + int(own % 8) * 188, 8 + int(own / 8) * 232);
    EXPECT_EQ(picture.pixel(cell + QPoint(2, 90)), qRgb(192, 192, 192));
    EXPECT_EQ(picture.pixel(cell + QPoint(90, 90)), qRgb(255, 255, 255));
    EXPECT_EQ(picture.pixel(cell + QPoint(90, 25)), qRgb(251, 242, 204));

    // A usage error for the option without a file.
    EXPECT_EQ(runCli({"templates", "--contact-sheet"}).exitCode, 2);
}
