#include "TestSupport.h"
#include "platform/MessageBox.h"
#include "templates/GlabelsTemplates.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cmath>

namespace {

const char* const PackageFolder = "/usr/share/libglabels-3.0/templates";

QByteArray Database(const QByteArray& templates)
{
    return "<?xml version=\"1.0\"?>\n<Glabels-templates>\n" + templates + "</Glabels-templates>\n";
}

QByteArray DiscTemplate(const QByteArray& part, const QByteArray& disc, const QByteArray& layout,
                        const QByteArray& size = "size=\"US-Letter\"")
{
    return "<Template brand=\"Test\" part=\"" + part + "\" " + size + " _description=\"CD Labels\">\n"
           "  <Meta category=\"media\"/>\n  <Label-cd id=\"0\" " + disc + ">\n"
           "    <Markup-margin size=\"9pt\"/>\n    " + layout + "\n  </Label-cd>\n</Template>\n";
}

const CTemplateFile* Named(const std::vector<CTemplateFile>& list, const QString& name)
{
    for (const CTemplateFile& file : list) {
        if (file.TemplateName == name)
            return &file;
    }
    return nullptr;
}

std::vector<CTemplateFile> LoadOne(const QString& path)
{
    std::vector<CTemplateFile> list;
    CTemplateFile file;
    if (file.LoadTemplate(path))
        list.push_back(file);
    return list;
}

} // namespace

TEST(GlabelsTemplates, PackageDiscsMatchOurOwnFileOfTheSameProduct)
{
    if (!QFileInfo::exists(QString::fromLatin1(PackageFolder) + "/avery-us-templates.xml"))
        GTEST_SKIP() << "glabels-data is not installed";
    std::vector<CTemplateFile> list;
    std::vector<TemplateLoadResult> results;
    GlabelsTemplates::AppendFolders({QString::fromLatin1(PackageFolder)}, list, &results);
    ASSERT_EQ(results.size(), list.size());
    for (const TemplateLoadResult& result : results)
        EXPECT_TRUE(result.loaded) << result.path.toStdString() << ": " << result.error.toStdString();
    // Equivalent part numbers are products of their own.
    ASSERT_GT(list.size(), 100u);
    for (const CTemplateFile& file : list) {
        EXPECT_TRUE(file.m_bImported && file.TemplateName.endsWith(" (imported)") && file.IsPrinter == 0);
        for (const CTemplateObject& object : file.Objects)
            EXPECT_FALSE(object.IsRect) << file.TemplateName.toStdString(); // only discs come in
    }

    // The two-up Avery sheet: its discs where our own file of the product puts them.
    const CTemplateFile* imported = Named(list, "Avery 5931-Disc CD/DVD Labels (Disc Labels) (imported)");
    ASSERT_TRUE(imported);
    EXPECT_TRUE(Named(list, "Avery 8692-Disc CD/DVD Labels (Disc Labels) (imported)"));
    const std::vector<CTemplateFile> ours = LoadOne(QCoreApplication::applicationDirPath() + "/Templates/Avery 5931.tmp");
    ASSERT_EQ(ours.size(), 1u);
    std::vector<const CTemplateObject*> discs;
    for (const CTemplateObject& object : ours[0].Objects) {
        if (!object.IsRect)
            discs.push_back(&object);
    }
    ASSERT_EQ(imported->Objects.size(), discs.size());
    EXPECT_EQ(std::pair(imported->PaperWidth, imported->PaperHeight), std::pair(ours[0].PaperWidth, ours[0].PaperHeight));
    for (size_t i = 0; i < discs.size(); ++i) {
        const CTemplateObject& a = imported->Objects[i];
        EXPECT_LT(std::hypot(a.CentreX - discs[i]->CentreX, a.CentreY - discs[i]->CentreY) * 25.4, 0.1) << i;
        EXPECT_NEAR(a.OuterDia, discs[i]->OuterDia, 0.1 / 25.4);
        EXPECT_NEAR(a.InnerDia, discs[i]->InnerDia, 0.1 / 25.4);
    }

    // A business card clipped by its width stands upright: flat at the sides.
    const auto card = std::find_if(list.begin(), list.end(),
                                   [](const CTemplateFile& f) { return f.TemplateName.contains("HandiCD-R"); });
    ASSERT_NE(card, list.end());
    ASSERT_EQ(card->Objects.size(), 9u);
    const CTemplateObject& first = card->Objects[0];
    EXPECT_EQ(std::tuple(card->LabelCount, first.LabelNumber, first.Rotation), std::tuple(1, 1, 90.0));
    EXPECT_NEAR(first.EdgeDia, 171 / 72.0, 1e-9);
    EXPECT_NEAR(first.OuterDia, 216 / 72.0, 1e-9);
    EXPECT_NEAR(first.CentreX, (36.5 + 171 / 2.0) / 72, 1e-9);
}

TEST(GlabelsTemplates, HostileFilesAreSkippedWithOneLineEach)
{
    TestFolder folder;
    const QByteArray good = DiscTemplate("Good", "radius=\"58.5mm\" hole=\"20.5mm\" waste=\"1mm\"",
                                         "<Layout nx=\"1\" ny=\"2\" x0=\"46.5mm\" y0=\"20mm\" dx=\"0\" dy=\"130mm\"/>",
                                         "size=\"A4\"");
    const QByteArray layout = "<Layout nx=\"1\" ny=\"1\" x0=\"1in\" y0=\"1in\" dx=\"0\" dy=\"0\"/>";
    folder.write("a-absurd.xml",
                 Database(good + DiscTemplate("Negative", "radius=\"-2in\" hole=\"0.5in\"", layout) +
                          DiscTemplate("NaN", "radius=\"nan\" hole=\"0.5in\"", layout) +
                          DiscTemplate("Billion", "radius=\"2in\" hole=\"0.5in\"",
                                       "<Layout nx=\"1000000000\" ny=\"1\" x0=\"0\" y0=\"0\" dx=\"1\" dy=\"0\"/>") +
                          DiscTemplate("Offsheet", "radius=\"2in\" hole=\"0.5in\"",
                                       "<Layout nx=\"1\" ny=\"1\" x0=\"7in\" y0=\"1in\" dx=\"0\" dy=\"0\"/>") +
                          DiscTemplate("Overlapping", "radius=\"2in\" hole=\"0.5in\"",
                                       "<Layout nx=\"1\" ny=\"2\" x0=\"1in\" y0=\"1in\" dx=\"0\" dy=\"3in\"/>") +
                          DiscTemplate("Paper", "radius=\"2in\" hole=\"0.5in\"", layout,
                                       "size=\"Other\" width=\"1e300in\" height=\"11in\"") +
                          "<Template brand=\"Test\" part=\"Good-Twin\" equiv=\"Good\"/>\n"
                          "<Template brand=\"Test\" part=\"Square\" size=\"A4\"><Label-rectangle id=\"0\" width=\"1in\" "
                          "height=\"1in\"/></Template>\n"));
    folder.write("b-malformed.xml", Database(good).left(300));
    QByteArray deep = "<Glabels-templates><Template><Label-cd>";
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    folder.write("c-deep.xml", deep);
    QByteArray huge = Database(good);
    huge.insert(huge.indexOf("<Template"), QByteArray(GlabelsTemplates::MaxFileSize, ' ')); // valid, but too big
    folder.write("d-huge.xml", huge);
    QByteArray many;
    for (int i = 0; i < GlabelsTemplates::MaxTemplates + 1; ++i)
        many += "<Template brand=\"T\" part=\"" + QByteArray::number(i) + "\" equiv=\"Good\"/>";
    folder.write("e-many.xml", Database(good + many));
    QByteArray entities = "<?xml version=\"1.0\"?><!DOCTYPE Glabels-templates [<!ENTITY a0 \"Label-cd\">";
    for (int i = 1; i < 30; ++i)
        entities += "<!ENTITY a" + QByteArray::number(i) + " \"&a" + QByteArray::number(i - 1) + ";&a" +
                    QByteArray::number(i - 1) + ";\">";
    folder.write("e-entities.xml", entities + "]><Glabels-templates><Template part=\"&a29;\"/></Glabels-templates>");
    folder.write("f-paper-sizes.xml", "<Glabels-paper-sizes><Label-cd/></Glabels-paper-sizes>");
    folder.write("g-user.template", Database(DiscTemplate("Mine", "radius=\"2.3125in\" hole=\"0.8125in\"",
                                                          "<Layout nx=\"1\" ny=\"2\" x0=\"1.9375in\" y0=\"0.6875in\" "
                                                          "dx=\"0\" dy=\"5in\"/>")));
    folder.write("h-other.txt", Database(good));

    int boxes = 0;
    MessageBox::SetPresenter([&](const QString&, int style) {
        ++boxes;
        return MessageBox::DefaultAnswer(style);
    });
    std::vector<CTemplateFile> list;
    std::vector<TemplateLoadResult> results;
    testing::internal::CaptureStderr();
    GlabelsTemplates::AppendFolders({folder.path(), folder.path() + "/missing"}, list, &results);
    const QStringList lines = QString::fromStdString(testing::internal::GetCapturedStderr()).split('\n', Qt::SkipEmptyParts);
    MessageBox::SetPresenter(nullptr);
    EXPECT_EQ(boxes, 0);

    QStringList names;
    for (const CTemplateFile& file : list)
        names.append(file.TemplateName);
    EXPECT_EQ(names, QStringList({"Test Good CD Labels (imported)", "Test Good-Twin CD Labels (imported)",
                                  "Test Mine CD Labels (imported)"}));
    QStringList failed;
    for (const TemplateLoadResult& result : results) {
        if (!result.loaded)
            failed.append(QFileInfo(result.path).fileName());
    }
    EXPECT_EQ(failed, QStringList({"b-malformed.xml", "c-deep.xml", "d-huge.xml", "e-entities.xml", "e-many.xml"}));
    // One line for each of the six absurd templates and each of the five failing files.
    EXPECT_EQ(lines.size(), 11) << lines.join('\n').toStdString();

    // The good one, as the layout places it on A4: two discs, each its own label.
    ASSERT_EQ(list[0].Objects.size(), 2u);
    const CTemplateObject& bottom = list[0].Objects[1];
    EXPECT_EQ(std::tuple(list[0].LabelCount, bottom.LabelNumber, bottom.ObjectName, bottom.Selected),
              std::tuple(2, 2, QString("Disc 2"), 1));
    EXPECT_NEAR(bottom.CentreX * 25.4, 105, 1e-9);
    EXPECT_NEAR(bottom.CentreY * 25.4, 20 + 130 + 58.5, 1e-9);
    EXPECT_NEAR(bottom.InnerDia * 25.4, 41, 1e-9);
    EXPECT_DOUBLE_EQ(bottom.EdgeDia, 4.72);
}

TEST(GlabelsTemplates, TheProgramsListTakesTheUsersTemplatesBehindItsOwn)
{
    const QString user = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/libglabels/templates";
    ASSERT_TRUE(QDir().mkpath(user));
    QFile file(user + "/mine.template");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(Database(DiscTemplate("Mine", "radius=\"2.3125in\" hole=\"0.8125in\"",
                                     "<Layout nx=\"1\" ny=\"2\" x0=\"1.9375in\" y0=\"0.6875in\" dx=\"0\" dy=\"5in\"/>")));
    file.close();

    const QString own = QCoreApplication::applicationDirPath() + "/Templates";
    std::vector<TemplateLoadResult> results;
    const std::vector<CTemplateFile> list = CTemplateFile::LoadTemplateList(own, &results);
    QFile::remove(file.fileName());
    const qsizetype count = QDir(own).entryList({"*.tmp"}, QDir::Files).size();
    ASSERT_GT(list.size(), size_t(count));
    EXPECT_EQ(list.size(), results.size());
    for (qsizetype i = 0; i < qsizetype(list.size()); ++i)
        EXPECT_EQ(list[size_t(i)].m_bImported, i >= count) << i;
    EXPECT_EQ(list.back().TemplateName, "Test Mine CD Labels (imported)"); // the user's folder comes last
    EXPECT_EQ(list.back().m_strPath, file.fileName());

    // Any other folder is read as it stands.
    TestFolder folder;
    folder.write("Default.tmp", "PRINTER\nTray\n\n4.724\n4.724\n0\n0\nEND\n");
    EXPECT_EQ(CTemplateFile::LoadTemplateList(folder.path()).size(), 1u);
}
