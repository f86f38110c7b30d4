#include "TemplateSamples.h"
#include "TestSupport.h"
#include "platform/MessageBox.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <cmath>

namespace {

// Collects the messages the list loader shows instead of printing them.
class TemplateList : public ::testing::Test {
protected:
    void SetUp() override
    {
        MessageBox::SetPresenter([this](const QString& text, int style) {
            messages.append(text);
            return MessageBox::DefaultAnswer(style);
        });
    }
    void TearDown() override { MessageBox::SetPresenter(nullptr); }

    QStringList names(const std::vector<CTemplateFile>& list) const
    {
        QStringList result;
        for (const CTemplateFile& file : list)
            result.append(file.TemplateName);
        return result;
    }

    QByteArray named(const char* name) const { return "SHEET\n" + QByteArray(name) + "\n\n8.5\n11\n1\n0\n0\nEND\n"; }

    TestFolder folder;
    QStringList messages;
};

} // namespace

TEST_F(TemplateList, DefaultFirstThenTheOthersByNameFailuresShownAndLeftOut)
{
    folder.write("b.tmp", named("b"));
    folder.write("DEFAULT.TMP", named("default"));
    folder.write("A.tmp", named("A"));
    folder.write("c.TMP", named("c"));
    folder.write("notes.txt", named("not a template"));
    folder.write("d.tmp.bak", named("backup"));
    folder.write("sub.tmp/inner.tmp", named("inside a folder"));
    folder.write("bad.tmp", "SHEET\nbad\n\n8.5\n11\n1\n0\n0\nPERF\nEND\n");

    std::vector<TemplateLoadResult> results;
    const auto list = CTemplateFile::LoadTemplateList(folder.path() + "/", &results);
    EXPECT_EQ(names(list), QStringList({"default", "A", "b", "c"}));
    const QString bad = QDir(folder.path()).filePath("bad.tmp");
    EXPECT_EQ(messages, QStringList({QStringLiteral("Error opening %1 template file.").arg(bad)}));
    ASSERT_EQ(results.size(), 5u);
    EXPECT_EQ(std::pair(results[0].path, list[3].m_strPath),
              std::pair(QDir(folder.path()).filePath("DEFAULT.TMP"), QDir(folder.path()).filePath("c.TMP")));
    EXPECT_EQ(std::tuple(results[3].path, results[3].loaded, results[3].error),
              std::tuple(bad, false, QString("line 9: \"PERF\" is not a keyword here")));

    // Where the file system keeps both spellings apart, the exact name wins and the other is skipped.
    folder.write("Default.tmp", named("exact"));
    EXPECT_EQ(names(CTemplateFile::LoadTemplateList(folder.path())), QStringList({"exact", "A", "b", "c"}));
}

TEST_F(TemplateList, MissingDefaultIsReportedAndTheRestLoads)
{
    folder.write("other.tmp", named("other"));
    std::vector<TemplateLoadResult> results;
    EXPECT_EQ(names(CTemplateFile::LoadTemplateList(folder.path(), &results)), QStringList({"other"}));
    const QString defaultPath = QDir(folder.path()).filePath("Default.tmp");
    EXPECT_EQ(messages, QStringList({QStringLiteral("Error opening %1 template file.").arg(defaultPath)}));
    ASSERT_EQ(results.size(), 2u);
    EXPECT_TRUE(results[0].error.startsWith("cannot open: ")) << results[0].error.toStdString();

    messages.clear();
    EXPECT_TRUE(CTemplateFile::LoadTemplateList(folder.path() + "/nowhere").empty());
    EXPECT_EQ(messages.size(), 1);
}

namespace {

// The program's own templates, copied beside the test executable by the build.
QString ShippedFolder()
{
    return QCoreApplication::applicationDirPath() + "/Templates";
}

// The box an area covers on the sheet, rotation by quarter turns included.
struct Box {
    double left, top, right, bottom;
};

Box BoxOf(const CTemplateObject& object)
{
    double width = object.OuterDia;
    double height = object.IsRect ? object.InnerDia : object.OuterDia;
    if (!object.IsRect && object.OuterDia > object.EdgeDia)
        height = object.EdgeDia; // cut flat at the top and the bottom
    if (std::fmod(std::abs(object.Rotation), 180.0) == 90.0)
        std::swap(width, height);
    return {object.CentreX - width / 2, object.CentreY - height / 2, object.CentreX + width / 2,
            object.CentreY + height / 2};
}

bool Overlap(const CTemplateObject& a, const CTemplateObject& b)
{
    if (!a.IsRect && !b.IsRect && a.OuterDia <= a.EdgeDia && b.OuterDia <= b.EdgeDia)
        return std::hypot(a.CentreX - b.CentreX, a.CentreY - b.CentreY) < (a.OuterDia + b.OuterDia) / 2;
    const Box p = BoxOf(a), q = BoxOf(b);
    return p.left < q.right && q.left < p.right && p.top < q.bottom && q.top < p.bottom;
}

} // namespace

TEST_F(TemplateList, EveryShippedTemplateLoads)
{
    std::vector<TemplateLoadResult> results;
    const auto list = CTemplateFile::LoadTemplateList(ShippedFolder(), &results);
    EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();
    ASSERT_GE(list.size(), 9u);
    EXPECT_EQ(list.size(), results.size());
    EXPECT_TRUE(list[0].m_strPath.endsWith("/Default.tmp"));

    for (const CTemplateFile& file : list) {
        SCOPED_TRACE(file.m_strPath.toStdString());
        EXPECT_TRUE(!file.TemplateName.isEmpty() && file.PaperWidth > 0 && file.PaperHeight > 0);
        // The document has three labels; every label of the sheet has an area.
        ASSERT_GE(file.LabelCount, 1);
        ASSERT_LE(file.LabelCount, 3);
        std::vector<bool> used(size_t(file.LabelCount), false);
        ASSERT_FALSE(file.Objects.empty());
        for (size_t i = 0; i < file.Objects.size(); ++i) {
            const CTemplateObject& object = file.Objects[i];
            ASSERT_GE(object.LabelNumber, 1);
            ASSERT_LE(object.LabelNumber, file.LabelCount);
            used[size_t(object.LabelNumber - 1)] = true;
            const Box box = BoxOf(object);
            EXPECT_TRUE(box.left > -1e-9 && box.top > -1e-9 && box.right < file.PaperWidth + 1e-9 &&
                        box.bottom < file.PaperHeight + 1e-9 && (object.IsRect || object.InnerDia < object.OuterDia))
                << object.ObjectName.toStdString();
            // A printer holds one disc at a time, so only a sheet's areas must keep apart.
            if (!file.IsPrinter) {
                for (size_t j = i + 1; j < file.Objects.size(); ++j)
                    EXPECT_FALSE(Overlap(object, file.Objects[j])) << "areas " << i << " and " << j;
            }
        }
        for (bool labelUsed : used)
            EXPECT_TRUE(labelUsed);
    }
}

TEST_F(TemplateList, DefaultHoldsTheBuiltInDiscSizes)
{
    CTemplateFile file;
    ASSERT_TRUE(file.LoadTemplate(ShippedFolder() + "/Default.tmp")) << file.m_strError.toStdString();
    EXPECT_EQ(file.IsPrinter, 1);
    // The disc-size choices of the template panel, in its order.
    const QStringList sizes = {"Standard CD/DVD",           "FullFace CD/DVD",           "Mini CD/DVD",
                               "FullFace Mini CD/DVD",      "63mm Business Card CD/DVD", "61mm Business Card CD/DVD",
                               "57mm Business Card CD/DVD"};
    ASSERT_EQ(file.Objects.size(), size_t(sizes.size()));
    for (size_t i = 0; i < file.Objects.size(); ++i) {
        const CTemplateObject& disc = file.Objects[i];
        SCOPED_TRACE(disc.ObjectName.toStdString());
        EXPECT_EQ(std::tuple(disc.ObjectName, disc.LabelNumber, disc.CentreX, disc.CentreY),
                  std::tuple(sizes[int(i)], 1, file.PaperWidth / 2, file.PaperHeight / 2));
        // The panel rounds typed diameters to two decimals to find the record (kept as truncated
        // thousandths, a value must not lose one); its sliders run 0.5-2 inches in, 2-4.72 out.
        for (double value : {disc.InnerDia, disc.OuterDia, disc.EdgeDia})
            EXPECT_TRUE(std::abs(value * 100 - std::round(value * 100)) < 1e-9 &&
                        std::trunc(value * 1000) == std::round(value * 1000)) << value;
        EXPECT_TRUE(disc.InnerDia >= 0.5 && disc.InnerDia <= 2.0 && disc.OuterDia >= 2.0 && disc.OuterDia <= 4.72 &&
                    disc.EdgeDia >= 2.0 && disc.EdgeDia <= 4.72);
        // Round discs first, then business cards, cut narrower than they are long and named by
        // their width across the flat edges.
        EXPECT_EQ(disc.OuterDia > disc.EdgeDia, i >= 4);
        if (i >= 4) {
            EXPECT_NEAR(disc.EdgeDia * 25.4, sizes[int(i)].left(2).toDouble(), 0.2);
        }
    }
}
