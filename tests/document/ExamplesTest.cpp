// The projects in examples/ are files the program wrote (tools/examples makes them): each must
// open without a word to the user, find its pictures and data, draw a label worth looking at,
// and save back to the very same bytes.
#include "TestSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/graphics/Image.h"
#include "templates/CTemplateFile.h"
#include "templates/CTemplateObject.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>

namespace {

class Examples : public ::testing::Test {
protected:
    void SetUp() override
    {
        QFile::remove(Profile::FilePath());
        g_dataFields.clear();
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
        MessageBox::SetPresenter([this](const QString& text, int style) {
            messages << text;
            return MessageBox::DefaultAnswer(style);
        });
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        QDir::setCurrent(startFolder);
        g_dataFields.clear();
    }

    static QStringList projects()
    {
        const QDir folder(QStringLiteral(TESSARELLE_EXAMPLES_DIR));
        QStringList paths;
        for (const QString& name : folder.entryList({QStringLiteral("*.dst")}, QDir::Files, QDir::Name))
            paths << folder.filePath(name);
        return paths;
    }

    // Opens a project as the program does: the fields of earlier projects are gone first.
    void open(CDrawDoc& doc, const QString& path)
    {
        g_dataFields.clear();
        doc.SetTemplates(&templates);
        ASSERT_TRUE(doc.OnOpenDocument(path));
    }

    const QString startFolder = QDir::currentPath();
    std::vector<CTemplateFile> templates;
    QStringList messages;
};

// The colours of every third pixel: a label of one flat colour has a handful (its edges
// smoothed), one with text, shapes or a picture has many.
int distinctColours(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 3)
        for (int x = 0; x < image.width(); x += 3)
            colours.insert(image.pixel(x, y));
    return int(colours.size());
}

TEST_F(Examples, OpenWithoutMessagesDrawAndSaveBackToTheSameBytes)
{
    const QStringList paths = projects();
    ASSERT_GE(paths.size(), 3) << TESSARELLE_EXAMPLES_DIR;
    ASSERT_FALSE(templates.empty());
    TestFolder out;
    for (const QString& path : paths) {
        SCOPED_TRACE(path.toStdString());
        messages.clear();
        CDrawDoc doc;
        open(doc, path);
        EXPECT_EQ(doc.m_strFileId, CDrawDoc::FileId17);

        // The template the project names is one the program ships, and it has an area for every
        // label that holds something.
        const int templateIndex = doc.m_nTemplate;
        ASSERT_GE(templateIndex, 0);
        ASSERT_LT(templateIndex, int(templates.size()));
        const CTemplateFile& file = templates[size_t(templateIndex)];
        int usedLabels = 0;
        for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
            const LabelBackground& background = doc.GetBackground(label);
            const bool used = doc.GetObjects(label).GetCount() > 0 || !background.ImageFile.isEmpty()
                || background.HatchStyle != -1 || background.BackColor != 0xFFFFFF;
            if (!used)
                continue;
            ++usedLabels;
            if (!file.IsPrinter) {
                bool hasArea = false;
                for (const CTemplateObject& object : file.Objects)
                    hasArea = hasArea || object.LabelNumber == label + 1;
                EXPECT_TRUE(hasArea) << "label " << label + 1 << " has no area on " << file.TemplateName.toStdString();
            }
            // Pictures are found from the project's folder, which opening made the current one.
            if (!background.ImageFile.isEmpty()) {
                EXPECT_TRUE(QFileInfo::exists(background.ImageFile)) << background.ImageFile.toStdString();
                EXPECT_GT(gfx::Image(background.ImageFile).GetWidth(), 0u) << background.ImageFile.toStdString();
            }
        }
        EXPECT_GE(usedLabels, 1);

        const std::unique_ptr<gfx::Bitmap> sheet = doc.RenderBitmap(150, 150, true, true);
        ASSERT_TRUE(sheet);
        const QImage image = sheet->image();
        const int white = countPixels(image, Qt::white);
        // A disc covers about three quarters of its tray; three discs take about half an A4 sheet.
        EXPECT_GT(image.width() * image.height() - white, image.width() * image.height() / 3);
        EXPECT_GT(distinctColours(image), 100);
        // Pictures and data files were all found while drawing.
        EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();

        const QString copy = out.path() + u'/' + QFileInfo(path).fileName();
        ASSERT_TRUE(doc.OnSaveDocument(copy));
        QFile original(path), resaved(copy);
        ASSERT_TRUE(original.open(QIODevice::ReadOnly));
        ASSERT_TRUE(resaved.open(QIODevice::ReadOnly));
        EXPECT_TRUE(original.readAll() == resaved.readAll()) << "resaving changed the project";
    }
}

TEST_F(Examples, TheDataFieldExampleUsesEveryKindAndFindsItsDataFile)
{
    CDrawDoc doc;
    open(doc, QStringLiteral(TESSARELLE_EXAMPLES_DIR "/data-fields.dst"));
    QSet<int> kinds;
    QString texts;
    CDrawText* guestText = nullptr;
    for (const auto& object : doc.GetObjects(0)) {
        if (auto* text = dynamic_cast<CDrawText*>(object.get())) {
            texts += text->m_text;
            if (text->m_text.contains(QStringLiteral("{Guest}")))
                guestText = text;
        }
    }
    for (const DATAFIELD& field : g_dataFields) {
        kinds.insert(field.Type);
        EXPECT_TRUE(texts.contains(field.Tag)) << field.Tag.toStdString() << " is in no text";
    }
    for (int kind = DATAFIELD::Year; kind <= DATAFIELD::DataFile; ++kind)
        EXPECT_TRUE(kinds.contains(kind)) << "no field of kind " << kind;

    // The data file is named relative to the project, found because opening made its folder
    // the current one; each printed disc takes the next guest.
    const auto guest = std::find_if(g_dataFields.begin(), g_dataFields.end(),
                                    [](const DATAFIELD& field) { return field.Type == DATAFIELD::DataFile; });
    ASSERT_NE(guest, g_dataFields.end());
    EXPECT_TRUE(QFileInfo(guest->FileName).isRelative());
    const QString first = ExpandTags(guest->Tag);
    EXPECT_FALSE(first.isEmpty());
    AdvanceFields(doc);
    const QString second = ExpandTags(guest->Tag);
    EXPECT_FALSE(second.isEmpty());
    EXPECT_NE(first, second);

    // Opening laid the text out with the fields it names, which the file holds after the
    // objects: the glyphs are those of the guest's name, not of the bare tag.
    ASSERT_NE(guestText, nullptr);
    const int opened = guestText->m_textPath.GetPointCount();
    g_dataFields.clear();
    guestText->Layout();
    EXPECT_NE(guestText->m_textPath.GetPointCount(), opened);
    EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();
}

} // namespace
