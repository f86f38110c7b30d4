#include "ArchiveBytes.h"
#include "DocumentFixture.h"

#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawText.h"
#include "objects/CDrawRect.h"
#include "platform/MessageBox.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"

#include <QDir>
#include <QFile>
#include <sys/resource.h>
#include <climits>
#include <csignal>
#include <functional>
#include <limits>

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A document and the program-wide fields as a fresh program has them, with every message and
// question recorded and answered as the test says.
class ProjectFile : public DocumentFixture {
protected:
    void SetUp() override
    {
        DocumentFixture::SetUp();
        g_dataFields.clear();
        m_folderBefore = QDir::currentPath();
        MessageBox::SetPresenter([this](const QString& text, int style) {
            messages.push_back(text);
            return (style & 0xF) == MessageBox::YesNo ? answer : int(MessageBox::IdOk);
        });
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        QDir::setCurrent(m_folderBefore);
        g_dataFields.clear();
    }

    // Every kind of object on the first two labels, every background field off its start value,
    // and one field of each counting kind.
    void fillDocument(CDrawDoc& target)
    {
        target.m_nTemplate = 2;
        target.SetOuterDia(4.65, false);
        target.SetInnerDia(0.86, false);
        target.SetBusDia(2.4, false);
        for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
            LabelBackground& b = target.Background(label);
            b.BackColor = 0x123456 + label;
            b.BackColor2 = 0xABCDEF;
            b.HatchStyle = 5 + label;
            b.ImageFile = QStringLiteral("Backgrounds/Ström %1.jpg").arg(label);
            b.OffsetX = -12;
            b.OffsetY = 34;
            b.WrapMode = 2;
            b.FitMode = 0;
            b.Scale = 1.25;
        }
        target.SetCurLabel(0);
        auto rect = std::make_unique<CDrawRect>(CRect(-300, 200, 300, -200));
        rect->m_shape = CDrawRect::Arc | CDrawRect::AspectLock;
        rect->m_fillKind = 4;
        rect->m_lineColor2 = gfx::Color(0x7F, 1, 2, 3);
        rect->m_pictureFile = QStringLiteral("/home/me/Clip Art/star.wmf");
        rect->m_startAngle = 33.5f;
        rect->m_endAngle = 270;
        target.Add(std::move(rect));
        target.Add(std::make_unique<CDrawRect>(CRect(0, 0, 10, 10)));
        target.SetCurLabel(1);
        auto poly = std::make_unique<CDrawPoly>(CRect(0, 0, 1, 1));
        poly->m_polyKind = CDrawPoly::ClosedCurve;
        for (int i = 0; i < 13; ++i)
            poly->AddPoint(CPoint(i * 17, (i * i) % 50), nullptr);
        target.Add(std::move(poly));
        auto text = std::make_unique<CDrawText>(CRect(-200, 100, 200, -100));
        text->m_text = QStringLiteral("Mix Nr. 7\r\nSommer /*TAG1*/");
        text->m_textPathKind = 2;
        text->m_angle = 135.5f;
        text->m_fontSize = 18;
        text->m_fontStyle = 3;
        text->m_justify = 2;
        text->m_edgeColor = gfx::Color(255, 9, 8, 7);
        text->m_shadowOn = 1;
        text->m_shadowX = -4;
        text->m_shadowBlur = 200;
        text->m_tracking = -12;
        text->m_leading = 30;
        text->m_aux2 = QStringLiteral("kept");
        target.Add(std::move(text));
        target.SetCurLabel(0);

        DATAFIELD disc;
        disc.Tag = QStringLiteral("/*TAG1*/");
        disc.Type = DATAFIELD::Disc;
        disc.DiscNumber = 3;
        disc.DiscTotal = 10;
        DATAFIELD serial;
        serial.Tag = QStringLiteral("/*TAG2*/");
        serial.Type = DATAFIELD::SerialNumber;
        serial.Serial = 0xFFFFFFFF;
        serial.SerialIncrement = 7;
        DATAFIELD file;
        file.Tag = QStringLiteral("/*TAG3*/");
        file.Type = DATAFIELD::DataFile;
        file.FileName = QStringLiteral("names.csv");
        file.Delimiter = DATAFIELD::SemiColon;
        file.FileIndex = 41;
        file.FileIncrement = 2;
        file.Hours24 = 1;
        g_dataFields = {disc, serial, file};
    }

    QString path(const QString& name) const { return QDir(folder.path()).filePath(name); }

    std::vector<QString> messages;
    int answer = MessageBox::IdNo;

private:
    QString m_folderBefore;
};

// A file of an older format as another writer leaves it: 8-bit strings throughout, a rectangle
// with a picture on label 0, a triangle on label 1, a text without tracking and leading on
// label 2, one field.
QByteArray olderProject(const QByteArray& fileId, bool withTemplateIndex, bool withText = true)
{
    ArchiveBytes b;
    b.str8(fileId);
    if (withTemplateIndex)
        b.i32(3);
    b.f64(4.72).f64(1.45).f64(4.72);
    auto background = [&b](const QByteArray& image) {
        b.i32(-1).u32(0x00FF00).u32(0).str8(image).i32(5).i32(-5).f64(0.5).i32(4).u8(2);
    };
    background("C:\\Bilder\\caf\xe9.jpg");
    b.u16(1).newClass("CDrawRect").rectRecord(-100, 50, 100, -50, 0x100, "Bl\xfc" "te.png");
    background("");
    b.u16(1).newClass("CDrawPoly").objectRecord(0, 40, 40, 0).u16(3).u16(10).u8(0);
    b.i32(0).i32(0).i32(20).i32(20).i32(40).i32(0);
    background("");
    b.u16(withText ? 1 : 0);
    if (withText) {
        b.newClass("CDrawText").objectRecord(-50, 20, 50, -20);
        b.f32(90).str8("Gr\xfc\xdf" "e").raw(QByteArray::fromHex("FF000000")); // angle, text, colour
        b.str8("").raw(QByteArray(4, 0)).u8(0).i32(0);                      // the first spare fields
        b.str8("Arial").i32(12).i32(0).u8(0).u8(0).u8(1);                    // font, size, path, style, spare, justify
        b.u8(0).u8(0).raw(QByteArray(4, 0));                                 // transparency, style, edge colour
        b.str8("").raw(QByteArray(4, 0)).u8(0).i32(0);                      // the second spare fields
        b.u8(1).u8(0).u8(0).i32(0).i32(0).i32(0).u8(0).u8(0);                // edge, shadow: no tracking or leading
    }
    b.i32(1);
    b.i32(1).i32(2).u32(1).u32(5).u32(1).str8("data.txt").u32(0).u32(1).str8("/*TAG1*/").i32(5).i32(0);
    b.u32(0x10).u32(0x01).i32(0).i32(1).i32(0);
    return b.data;
}

} // namespace

TEST_F(ProjectFile, WrittenReadAndWrittenAgainIsTheSameToTheByte)
{
    fillDocument(doc);
    const QString first = path("first.dst");
    ASSERT_TRUE(doc.OnSaveDocument(first));
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(doc.GetPathName(), first);
    const QByteArray bytes = readFile(first);
    QByteArray header = QByteArray::fromHex("FFFEFF0E");
    for (char c : QByteArray("Tessarelle_1.7"))
        header.append(c).append('\0');
    EXPECT_EQ(bytes.left(header.size()), header);

    g_dataFields.clear(); // as a program that starts with this project
    CDrawDoc second;
    ASSERT_TRUE(second.OnOpenDocument(first));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(second.m_strFileId, CDrawDoc::FileId17);
    EXPECT_EQ(second.m_nTemplate, 2);
    EXPECT_EQ(second.StoredInnerDia(), 0.86);
    EXPECT_EQ(second.GetBackground(2).ImageFile, QStringLiteral("Backgrounds/Ström 2.jpg"));
    EXPECT_EQ(second.GetBackground(1).Scale, 1.25);
    ASSERT_EQ(second.GetObjects(0).GetCount(), 2);
    ASSERT_EQ(second.GetObjects(1).GetCount(), 2);
    EXPECT_EQ(second.GetObjects(2).GetCount(), 0);
    for (int label = 0; label < 2; ++label) {
        for (const auto& object : second.GetObjects(label))
            EXPECT_EQ(object->m_pDocument, &second);
    }
    const auto& arc = dynamic_cast<const CDrawRect&>(*second.GetObjects(0).GetAt(0));
    EXPECT_EQ(arc.m_startAngle, 33.5f);
    EXPECT_EQ(arc.m_lineColor2, gfx::Color(0x7F, 1, 2, 3));
    const auto& poly = dynamic_cast<const CDrawPoly&>(*second.GetObjects(1).GetAt(0));
    EXPECT_EQ(poly.GetPoints(), dynamic_cast<const CDrawPoly&>(*doc.GetObjects(1).GetAt(0)).GetPoints());
    const auto& text = dynamic_cast<const CDrawText&>(*second.GetObjects(1).GetAt(1));
    EXPECT_EQ(text.m_text, QStringLiteral("Mix Nr. 7\r\nSommer /*TAG1*/")) << "tags are kept unexpanded";
    EXPECT_EQ(text.m_angle, 135.5f);
    EXPECT_EQ(text.m_fontStyle, 3);
    EXPECT_EQ(text.m_justify, 2);
    EXPECT_EQ(text.m_shadowBlur, 200);
    EXPECT_EQ(text.m_tracking, -12);
    EXPECT_EQ(text.m_leading, 30);
    EXPECT_EQ(text.m_aux2, QStringLiteral("kept"));
    EXPECT_FALSE(text.m_textPath.IsEmpty()) << "a text read is laid out";
    ASSERT_EQ(g_dataFields.size(), 3u);
    EXPECT_EQ(g_dataFields[1].Serial, 0xFFFFFFFFu);
    EXPECT_EQ(g_dataFields[2].FileName, QStringLiteral("names.csv"));

    const QString again = path("again.dst");
    ASSERT_TRUE(second.OnSaveDocument(again));
    EXPECT_EQ(readFile(again), bytes);
}

TEST_F(ProjectFile, AnEmptyProjectHoldsThreeBackgroundsAndThreeEmptyLists)
{
    const QString file = path("empty.dst");
    ASSERT_TRUE(doc.OnSaveDocument(file));
    const QByteArray bytes = readFile(file);
    // Header 32, template index 4, diameters 24, three backgrounds of 37, three counts of 2, no fields.
    EXPECT_EQ(bytes.size(), 32 + 4 + 24 + 3 * 37 + 3 * 2 + 4);
    EXPECT_EQ(bytes.mid(32, 12).toHex(), "ffffffff000000000000f0bf");
    EXPECT_EQ(bytes.right(4).toHex(), "00000000");

    doc.m_nTemplate = 0;
    doc.SetOuterDia(4.0, false);
    ASSERT_TRUE(doc.OnOpenDocument(file));
    EXPECT_EQ(doc.m_nTemplate, -1);
    EXPECT_EQ(doc.StoredOuterDia(), -1.0) << "read as it stands, so the getter asks the profile";
}

TEST_F(ProjectFile, OlderFormatsWithEightBitStringsLoadAndAreSavedAsTheLatest)
{
    for (const bool is15 : {true, false}) {
        SCOPED_TRACE(is15 ? "1.5" : "1.6");
        g_dataFields.clear();
        const QString file =
            folder.write(QStringLiteral("old.dst"), olderProject(is15 ? "Tessarelle_1.5" : "Tessarelle_1.6", !is15));
        doc.m_nTemplate = 7;
        ASSERT_TRUE(doc.OnOpenDocument(file));
        EXPECT_TRUE(messages.empty());
        EXPECT_EQ(doc.m_nTemplate, is15 ? 7 : 3) << "1.5 has no template index: the old value stays";
        EXPECT_EQ(doc.StoredBusDia(), 4.72);
        EXPECT_EQ(doc.GetBackground(0).ImageFile, QStringLiteral("C:\\Bilder\\café.jpg"));
        EXPECT_EQ(doc.GetBackground(0).FitMode, 2);
        ASSERT_EQ(doc.GetObjects(0).GetCount(), 1);
        const auto& rect = dynamic_cast<const CDrawRect&>(*doc.GetObjects(0).GetAt(0));
        EXPECT_EQ(rect.m_pictureFile, QStringLiteral("Blüte.png"));
        EXPECT_EQ(rect.m_shape, 0x100);
        ASSERT_EQ(doc.GetObjects(1).GetCount(), 1);
        EXPECT_EQ(dynamic_cast<const CDrawPoly&>(*doc.GetObjects(1).GetAt(0)).GetPointCount(), 3);
        ASSERT_EQ(doc.GetObjects(2).GetCount(), 1);
        const auto& text = dynamic_cast<const CDrawText&>(*doc.GetObjects(2).GetAt(0));
        EXPECT_EQ(text.m_text, QStringLiteral("Grüße"));
        EXPECT_EQ(text.m_tracking, 0);
        EXPECT_EQ(text.m_leading, 0);
        ASSERT_EQ(g_dataFields.size(), 1u);
        EXPECT_EQ(g_dataFields[0].Tag, QStringLiteral("/*TAG1*/"));
        EXPECT_EQ(g_dataFields[0].Serial, 0x11u) << "the high word is ORed into the low one";

        const QString resaved = path("resaved.dst");
        ASSERT_TRUE(doc.OnSaveDocument(resaved));
        g_dataFields.clear();
        CDrawDoc reread;
        ASSERT_TRUE(reread.OnOpenDocument(resaved));
        EXPECT_EQ(reread.m_strFileId, CDrawDoc::FileId17);
        EXPECT_EQ(reread.GetBackground(0).ImageFile, QStringLiteral("C:\\Bilder\\café.jpg"));
        EXPECT_EQ(dynamic_cast<const CDrawRect&>(*reread.GetObjects(0).GetAt(0)).m_pictureFile,
                  QStringLiteral("Blüte.png"));
    }
}

TEST_F(ProjectFile, HeadersDecideTheVersionAndWhetherToAsk)
{
    // Everything after the 1-byte header; without the text, whose length differs by version.
    const QByteArray body = olderProject("X", true, false).mid(2);
    auto withHeader = [&](const QByteArray& id) {
        return folder.write(QStringLiteral("h.dst"), ArchiveBytes().str8(id).raw(body).data);
    };

    // Any number behind the right prefix reads as the latest version, without a question.
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("Tessarelle_9.9")));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(doc.m_nTemplate, 3);
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 1);

    // Another prefix asks; No leaves the document empty and the open succeeds.
    answer = MessageBox::IdNo;
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("Sendrill_1.7")));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], QStringLiteral("This file does not appear to be a Tessarelle compatible file!\r\n"
                                          "Try to load anyway?"));
    EXPECT_EQ(doc.m_strFileId, QStringLiteral("Sendrill_1.7"));
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 0);
    EXPECT_FALSE(doc.IsModified());

    // Yes reads it as the latest version.
    answer = MessageBox::IdYes;
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("tessarelle_1.7")));
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 1);
    EXPECT_EQ(doc.GetObjects(1).GetCount(), 1);
}

TEST_F(ProjectFile, EveryOpenAppendsItsFieldsAndSerialsComeBackAsTheOrOfTheirHalves)
{
    fillDocument(doc);
    g_dataFields[1].Serial = 0x100000001;
    const QString file = path("fields.dst");
    ASSERT_TRUE(doc.OnSaveDocument(file));
    g_dataFields.resize(1);
    ASSERT_TRUE(doc.OnOpenDocument(file));
    ASSERT_TRUE(doc.OnOpenDocument(file));
    ASSERT_EQ(g_dataFields.size(), 7u);
    EXPECT_EQ(g_dataFields[2].Serial, 1u);
    EXPECT_EQ(g_dataFields[2].SerialIncrement, 7u);
    EXPECT_EQ(g_dataFields[6].Tag, QStringLiteral("/*TAG3*/"));
    EXPECT_EQ(g_dataFields[6].Delimiter, int(DATAFIELD::SemiColon));
    EXPECT_EQ(g_dataFields[6].FileIndex, 41u);
    EXPECT_EQ(g_dataFields[6].Hours24, 1);
}

TEST_F(ProjectFile, OpeningClearsFirstThenTakesTheFolderAndThePath)
{
    fillDocument(doc);
    const QString sub = path("projects/sub");
    QDir().mkpath(sub);
    const QString file = QDir(sub).filePath("disc.dst");
    ASSERT_TRUE(doc.OnSaveDocument(file));

    doc.SetModifiedFlag(true);
    ASSERT_TRUE(doc.OnOpenDocument(file));
    EXPECT_EQ(doc.m_strFolder, sub);
    EXPECT_EQ(QDir::currentPath(), QFileInfo(sub).canonicalFilePath());
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(doc.GetPathName(), file);
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 2) << "cleared before reading, not added to";

    // A file that isn't there leaves an empty document, reported, with the folder unchanged.
    EXPECT_FALSE(doc.OnOpenDocument(path("missing.dst")));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], CDocument::FailedInvalidPath.arg("missing.dst"));
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 0);
    EXPECT_EQ(doc.GetBackground(0).ImageFile, QString());
    EXPECT_EQ(doc.GetBackground(0).Scale, 1.25) << "the picture's placement stays";
    EXPECT_EQ(doc.m_strFolder, sub);
    EXPECT_EQ(doc.GetPathName(), file);

    // A folder, and a device that would never end, aren't read at all.
    messages.clear();
    EXPECT_FALSE(doc.OnOpenDocument(sub));
    EXPECT_FALSE(doc.OnOpenDocument(QStringLiteral("/dev/zero")));
    EXPECT_EQ(messages, (std::vector<QString>{CDocument::FailedAccessRead.arg("sub"),
                                              CDocument::FailedAccessRead.arg("zero")}));
}

TEST_F(ProjectFile, AFileCutAtAnyByteFailsAndKeepsWhatWasRead)
{
    fillDocument(doc);
    const QString whole = path("whole.dst");
    ASSERT_TRUE(doc.OnSaveDocument(whole));
    const QByteArray bytes = readFile(whole);
    const qsizetype label1Start = bytes.indexOf(QByteArray("CDrawPoly")) - 6;

    // Every cut, through the reader alone (files on disc are slow to write a thousand times).
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        g_dataFields.clear();
        doc.ClearLabels();
        const auto cause = failureOf(bytes.left(size), [this](CArchive& ar) { doc.Serialize(ar); });
        ASSERT_EQ(cause, CArchiveException::endOfFile) << size;
        EXPECT_LT(g_dataFields.size(), 3u) << size;
        if (size > label1Start) {
            EXPECT_EQ(doc.GetObjects(0).GetCount(), 2) << size;
        }
    }
    // A few of them through the open step, which reports and keeps what was read.
    for (const qsizetype size : {qsizetype(0), qsizetype(7), label1Start + 1, bytes.size() - 1}) {
        g_dataFields.clear();
        messages.clear();
        const QString cut = folder.write(QStringLiteral("cut.dst"), bytes.left(size));
        ASSERT_FALSE(doc.OnOpenDocument(cut)) << size;
        ASSERT_EQ(messages.size(), 1u) << size;
        EXPECT_EQ(messages[0], CDocument::FailedInvalidFormat) << size;
        EXPECT_TRUE(doc.IsModified()) << size;
        EXPECT_EQ(doc.GetObjects(0).GetCount(), size > label1Start ? 2 : 0) << size;
        EXPECT_EQ(doc.GetPathName(), whole) << "a failed open keeps the old path";
    }
    EXPECT_EQ(g_dataFields.size(), 2u) << "the last cut leaves two whole fields of three";
}

TEST_F(ProjectFile, HostileCountsClassesAndReferencesFailCleanly)
{
    auto project = [](const std::function<void(ArchiveBytes&)>& label0, std::int32_t fieldCount = 0) {
        ArchiveBytes b;
        b.str8("Tessarelle_1.7").i32(0).f64(1).f64(1).f64(1);
        for (int label = 0; label < 3; ++label) {
            b.i32(-1).u32(0).u32(0).str8("").i32(0).i32(0).f64(1).i32(4).u8(1);
            if (label == 0)
                label0(b);
            else
                b.u16(0);
        }
        b.i32(fieldCount);
        return b.data;
    };
    const struct {
        const char* what;
        QByteArray bytes;
    } cases[] = {
        {"4 billion objects", project([](ArchiveBytes& b) { b.u16(0xFFFF).u32(0xFFFFFFFF).u16(0); })},
        {"65,535 points", project([](ArchiveBytes& b) {
             b.u16(1).newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(0xFFFF).u16(0xFFFF).u8(0).i32(1).i32(1);
         })},
        {"a picture name of 4 GB", project([](ArchiveBytes& b) {
             b.u16(1).newClass("CDrawRect").i32(0).i32(0).i32(0).i32(0).raw(QByteArray(6 + 16 + 2 + 4 + 4, '\0'));
             b.u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0xFFFFFFF0);
         })},
        {"two billion fields", project([](ArchiveBytes& b) { b.u16(0); }, 0x7FFFFFFF)},
        {"unknown class", project([](ArchiveBytes& b) { b.u16(1).newClass("CDrawBitmap"); })},
        {"object not read yet", project([](ArchiveBytes& b) { b.u16(1).u16(9); })},
        {"object read before", project([](ArchiveBytes& b) {
             b.u16(2).newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0).u16(2);
         })},
    };
    for (const auto& c : cases) {
        messages.clear();
        g_dataFields.clear();
        EXPECT_FALSE(doc.OnOpenDocument(folder.write(QStringLiteral("bad.dst"), c.bytes))) << c.what;
        ASSERT_EQ(messages.size(), 1u) << c.what;
        EXPECT_EQ(messages[0], CDocument::FailedInvalidFormat) << c.what;
        EXPECT_TRUE(g_dataFields.empty()) << c.what;
    }
    // Drawn after such a failure, what was read is whole.
    EXPECT_FALSE(doc.OnOpenDocument(folder.write(QStringLiteral("bad.dst"), cases[6].bytes)));
    ASSERT_EQ(doc.GetObjects(0).GetCount(), 1);
    EXPECT_NE(doc.RenderBitmap(100, 100, true, true), nullptr);
}

TEST_F(ProjectFile, AFailedSaveReportsAndLeavesTheOldFile)
{
    fillDocument(doc);
    EXPECT_FALSE(doc.OnSaveDocument(path("no/such/folder/x.dst")));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], CDocument::FailedInvalidPath.arg("x.dst"));

    // The old project is small; the new one is larger than the file size limit allows.
    const QString file = path("keep.dst");
    CDrawDoc small;
    ASSERT_TRUE(small.OnSaveDocument(file));
    const QByteArray old = readFile(file);
    for (int i = 0; i < 200; ++i)
        doc.Add(std::make_unique<CDrawRect>(CRect(i, i, i + 5, i + 5)));
    doc.SetModifiedFlag(true);

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = before;
    limited.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    const bool saved = doc.OnSaveDocument(file);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(saved);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[1], CDocument::FailedToSaveDoc);
    EXPECT_EQ(readFile(file), old);
    EXPECT_TRUE(doc.IsModified());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("keep.dst")})
        << "no temporary file left behind";
}

TEST_F(ProjectFile, ObjectsWithAbsurdValuesFromAFileDrawAndPickWithoutHarm)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    ArchiveBytes b;
    b.str8("Tessarelle_1.7").i32(0).f64(4.65).f64(1.5).f64(4.72);
    b.i32(-1).u32(0).u32(0).str8("").i32(0).i32(0).f64(1).i32(4).u8(1);
    b.u16(9).newClass("CDrawRect");
    b.objectRecord(INT_MIN, INT_MAX, INT_MAX, INT_MIN).i32(3).i32(-5).i32(INT_MAX).f32(nan).f32(inf).f32(inf).f32(-inf);
    b.u16(0x8001).objectRecord(-100, 100, 100, -100).i32(3).i32(0).i32(0).f32(1e30f).f32(-1e30f).f32(1e30f).f32(0);
    b.u16(0x8001).objectRecord(0, 0, 0, 0).i32(0xFF).i32(0).i32(0).f32(0).f32(0).f32(0).f32(0);
    b.u16(0x8001).objectRecord(-50, 50, 50, -50).i32(1).i32(INT_MIN).i32(INT_MIN).f32(0).f32(0).f32(0).f32(0);
    b.u16(0x8001).objectRecord(-50, 50, 50, -50).i32(10).i32(0).i32(0).f32(0).f32(0).f32(0).f32(0);
    b.newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(0).u16(0).u8(0);
    b.u16(0x8007).objectRecord(0, 0, 0, 0).u16(1).u16(0).u8(3).i32(5).i32(5);
    b.u16(0x8007).objectRecord(0, 0, 0, 0).u16(2).u16(0).u8(7).i32(INT_MIN).i32(INT_MAX).i32(INT_MAX).i32(INT_MIN);
    b.u16(0x8007).objectRecord(0, 0, 0, 0).u16(4).u16(0).u8(2).i32(0).i32(0).i32(0).i32(0).i32(0).i32(0).i32(9).i32(9);
    for (int label = 1; label < 3; ++label)
        b.i32(55).u32(0).u32(0).str8("").i32(INT_MIN).i32(INT_MAX).f64(-1e300).i32(-7).u8(200).u16(0);
    b.i32(0);
    ASSERT_TRUE(doc.OnOpenDocument(folder.write(QStringLiteral("absurd.dst"), b.data)));
    ASSERT_EQ(doc.GetObjects(0).GetCount(), 9);

    addTemplate(OneDiscSheet);
    useTemplate(0);
    RecordingView view;
    doc.AddView(&view);
    for (int label = 0; label < 3; ++label) {
        const auto bitmap = doc.RenderBitmap(100, 100, true, true);
        EXPECT_NE(bitmap, nullptr);
        gfx::Bitmap screen(300, 300);
        gfx::Graphics graphics(screen);
        doc.SetCurLabel(label);
        doc.DrawLabel(graphics, 100, 100, &view, label, true);
    }
    for (const auto& object : doc.GetObjects(0)) {
        view.selection = {object.get()};
        object->Intersects(CRect(-10, 10, 10, -10));
        object->GetDrawBounds(object->m_position);
        for (int handle = 1; handle <= std::min(object->GetHandleCount(), 20); ++handle)
            object->GetHandle(handle);
        object->HitTest(CPoint(0, 0), nullptr, true);
    }
    doc.RemoveView(&view);
}
