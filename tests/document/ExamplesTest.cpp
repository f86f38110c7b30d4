// The projects in examples/ (made by tools/examples) must open silently, find their pictures and
// data, draw a label worth looking at, and save back to the very same bytes.
#include "DocumentFixture.h"

#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "templates/CTemplateObject.h"

#include <QSet>

namespace {

class Examples : public DocumentFixture {
protected:
    void SetUp() override
    {
        DocumentFixture::SetUp();
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
    }
    // Opens a project as the program does: the fields of earlier projects are gone first.
    void open(CDrawDoc& target, const QString& file)
    {
        g_dataFields.clear();
        target.SetTemplates(&templates);
        ASSERT_TRUE(target.OnOpenDocument(file));
    }
};

TEST_F(Examples, OpenWithoutMessagesDrawAndSaveBackToTheSameBytes)
{
    const QDir examples(QStringLiteral(TESSARELLE_EXAMPLES_DIR));
    const QStringList names = examples.entryList({QStringLiteral("*.dst")}, QDir::Files);
    ASSERT_GE(names.size(), 3) << TESSARELLE_EXAMPLES_DIR;
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        messages.clear();
        CDrawDoc project;
        open(project, examples.filePath(name));

        // The template the project names is one the program ships, with an area for every label
        // that holds something; pictures are found from the project's folder, the current one.
        ASSERT_GE(project.m_nTemplate, 0);
        ASSERT_LT(project.m_nTemplate, int(templates.size()));
        const CTemplateFile& file = templates[size_t(project.m_nTemplate)];
        for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
            const LabelBackground& background = project.GetBackground(label);
            if (project.GetObjects(label).IsEmpty() && background.ImageFile.isEmpty() && background.HatchStyle == -1
                && background.BackColor == 0xFFFFFF)
                continue;
            const bool hasArea = std::any_of(file.Objects.begin(), file.Objects.end(),
                                             [&](const CTemplateObject& o) { return o.LabelNumber == label + 1; });
            EXPECT_TRUE(file.IsPrinter || hasArea) << "label " << label + 1 << " has no area";
            EXPECT_TRUE(background.ImageFile.isEmpty() || gfx::Image(background.ImageFile).GetWidth() > 0)
                << background.ImageFile.toStdString();
        }

        // A disc covers about three quarters of its tray; three discs take about half an A4
        // sheet; a label with text, shapes or a picture has many colours, not a handful.
        const std::unique_ptr<gfx::Bitmap> sheet = project.RenderBitmap(150, 150, true, true);
        ASSERT_TRUE(sheet);
        const QImage& image = sheet->image();
        EXPECT_GT(image.width() * image.height() - countPixels(image, Qt::white), image.width() * image.height() / 3);
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); y += 3)
            for (int x = 0; x < image.width(); x += 3)
                colours.insert(image.pixel(x, y));
        EXPECT_GT(colours.size(), 100);
        EXPECT_TRUE(messages.empty()) << messages.front().toStdString(); // data files were all found

        ASSERT_TRUE(project.OnSaveDocument(path(name)));
        EXPECT_TRUE(readFile(path(name)) == readFile(examples.filePath(name))) << "resaving changed the project";
    }
}

} // namespace
