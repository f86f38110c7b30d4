#include "ArchiveBytes.h"
#include "DocumentFixture.h"

#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"

#include <sys/resource.h>
#include <climits>
#include <csignal>
#include <functional>
#include <limits>

namespace {

class ProjectFile : public DocumentFixture {
protected:
    // Every kind of object on the first two labels, every background field off its start value,
    // and one field of each counting kind.
    void fillDocument(CDrawDoc& target)
    {
        target.m_nTemplate = 2;
        target.SetOuterDia(4.65, false);
        target.SetInnerDia(0.86, false);
        target.SetBusDia(2.4, false);
        for (int label = 0; label < CDrawDoc::LabelCount; ++label)
            target.Background(label) = {0x123456u + unsigned(label), 0xABCDEF, 5 + label,
                                        QStringLiteral("Backgrounds/Ström %1.jpg").arg(label), -12, 34, 2, 0, 1.25};
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

        g_dataFields.assign(3, DATAFIELD{});
        const int types[] = {DATAFIELD::Disc, DATAFIELD::SerialNumber, DATAFIELD::DataFile};
        for (int i = 0; i < 3; ++i) {
            g_dataFields[i].Tag = QStringLiteral("/*TAG%1*/").arg(i + 1);
            g_dataFields[i].Type = types[i];
        }
        g_dataFields[0].DiscNumber = 3;
        g_dataFields[0].DiscTotal = 10;
        g_dataFields[1].Serial = 0xFFFFFFFF;
        g_dataFields[1].SerialIncrement = 7;
        DATAFIELD& file = g_dataFields[2];
        file.FileName = QStringLiteral("names.csv");
        file.Delimiter = DATAFIELD::SemiColon;
        file.FileIndex = 41;
        file.FileIncrement = 2;
        file.Hours24 = 1;
    }
};

// A background record with the given picture.
void background(ArchiveBytes& b, const QByteArray& image = {})
{
    b.i32(-1).u32(0x00FF00).u32(0).str8(image).i32(5).i32(-5).f64(0.5).i32(4).u8(2);
}

// An older file as another writer leaves it, 8-bit strings throughout: a rectangle with a picture,
// a triangle, and a text without tracking and leading, on labels 0 to 2; one field.
QByteArray olderProject(const QByteArray& fileId, bool withTemplateIndex, bool withText = true)
{
    ArchiveBytes b;
    b.str8(fileId);
    if (withTemplateIndex)
        b.i32(3);
    b.f64(4.72).f64(1.45).f64(4.72);
    background(b, "C:\\Bilder\\caf\xe9.jpg");
    b.u16(1).newClass("CDrawRect").rectRecord(-100, 50, 100, -50, 0x100, "Bl\xfc" "te.png");
    background(b);
    b.u16(1).newClass("CDrawPoly").objectRecord(0, 40, 40, 0).u16(3).u16(10).u8(0);
    b.i32(0).i32(0).i32(20).i32(20).i32(40).i32(0);
    background(b);
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
    const std::vector<DATAFIELD> fields = g_dataFields;
    EXPECT_EQ(bytes.left(32), ArchiveBytes().str16(QStringLiteral("Tessarelle_1.7")).data);

    g_dataFields.clear(); // as a program that starts with this project
    CDrawDoc second;
    ASSERT_TRUE(second.OnOpenDocument(first));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(std::tuple(second.m_strFileId, second.m_nTemplate, second.StoredInnerDia()),
              std::tuple(CDrawDoc::FileId17, 2, 0.86));
    ASSERT_EQ(second.GetObjects(1).GetCount(), 2);
    for (const auto& object : second.GetObjects(1))
        EXPECT_EQ(object->m_pDocument, &second);
    auto& text = dynamic_cast<CDrawText&>(*second.GetObjects(1).GetAt(1));
    EXPECT_EQ(text.m_text, QStringLiteral("Mix Nr. 7\r\nSommer /*TAG1*/")) << "tags are kept unexpanded";
    EXPECT_EQ(std::tuple(text.m_angle, text.m_fontStyle, text.m_justify, text.m_shadowBlur, text.m_tracking,
                         text.m_leading, text.m_aux2),
              std::tuple(135.5f, 3, 2, 200, -12, 30, QStringLiteral("kept")));
    ASSERT_EQ(g_dataFields.size(), 3u);
    EXPECT_EQ(g_dataFields[1].Serial, 0xFFFFFFFFu);
    // Opening laid the text out with the fields, which the file holds after the objects: the
    // glyphs are those of the disc number, not of the bare tag.
    const int opened = text.m_textPath.GetPointCount();
    EXPECT_GT(opened, 0);
    g_dataFields.clear();
    text.Layout();
    EXPECT_NE(text.m_textPath.GetPointCount(), opened);

    g_dataFields = fields;
    ASSERT_TRUE(second.OnSaveDocument(path("again.dst")));
    EXPECT_EQ(readFile(path("again.dst")), bytes);
}

TEST_F(ProjectFile, OlderFormatsWithEightBitStringsLoadAndAreSavedAsTheLatest)
{
    for (const bool is15 : {true, false}) {
        SCOPED_TRACE(is15 ? "1.5" : "1.6");
        g_dataFields.clear();
        doc.m_nTemplate = 7;
        ASSERT_TRUE(doc.OnOpenDocument(
            folder.write("old.dst", olderProject(is15 ? "Tessarelle_1.5" : "Tessarelle_1.6", !is15))));
        EXPECT_TRUE(messages.empty());
        EXPECT_EQ(doc.m_nTemplate, is15 ? 7 : 3) << "1.5 has no template index: the old value stays";
        EXPECT_EQ(doc.StoredBusDia(), 4.72);
        EXPECT_EQ(std::pair(doc.GetBackground(0).ImageFile, int(doc.GetBackground(0).FitMode)),
                  std::pair(QStringLiteral("C:\\Bilder\\café.jpg"), 2));
        ASSERT_EQ(doc.GetObjects(0).GetCount(), 1);
        const auto& rect = dynamic_cast<const CDrawRect&>(*doc.GetObjects(0).GetAt(0));
        EXPECT_EQ(std::tuple(rect.m_pictureFile, rect.m_shape), std::tuple(QStringLiteral("Blüte.png"), 0x100));
        ASSERT_EQ(doc.GetObjects(1).GetCount(), 1);
        EXPECT_EQ(dynamic_cast<const CDrawPoly&>(*doc.GetObjects(1).GetAt(0)).GetPointCount(), 3);
        ASSERT_EQ(doc.GetObjects(2).GetCount(), 1);
        const auto& text = dynamic_cast<const CDrawText&>(*doc.GetObjects(2).GetAt(0));
        EXPECT_EQ(std::tuple(text.m_text, text.m_tracking, text.m_leading), std::tuple(QStringLiteral("Grüße"), 0, 0));
        ASSERT_EQ(g_dataFields.size(), 1u);
        EXPECT_EQ(g_dataFields[0].Tag, QStringLiteral("/*TAG1*/"));
        EXPECT_EQ(g_dataFields[0].Serial, 0x11u) << "the high word is ORed into the low one";

        ASSERT_TRUE(doc.OnSaveDocument(path("resaved.dst")));
        EXPECT_TRUE(readFile(path("resaved.dst")).startsWith(ArchiveBytes().str16(QStringLiteral("Tessarelle_1.7")).data));
    }
}

TEST_F(ProjectFile, HeadersDecideTheVersionAndWhetherToAsk)
{
    // Everything after the 1-byte header; without the text, whose length differs by version.
    const QByteArray body = olderProject("X", true, false).mid(2);
    auto withHeader = [&](const QByteArray& id) { return folder.write("h.dst", ArchiveBytes().str8(id).raw(body).data); };

    // Any number behind the right prefix reads as the latest version, without a question.
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("Tessarelle_9.9")));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(doc.m_nTemplate, 3);
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 1);

    // Another prefix asks; No leaves the document empty and the open succeeds.
    answer = MessageBox::IdNo;
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("Sendrill_1.7")));
    EXPECT_EQ(messages, std::vector<QString>{QStringLiteral(
                            "This file does not appear to be a Tessarelle compatible file!\r\nTry to load anyway?")});
    EXPECT_EQ(doc.m_strFileId, QStringLiteral("Sendrill_1.7"));
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 0);
    EXPECT_FALSE(doc.IsModified());

    // Yes reads it as the latest version.
    answer = MessageBox::IdYes;
    ASSERT_TRUE(doc.OnOpenDocument(withHeader("tessarelle_1.7")));
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(std::tuple(doc.GetObjects(0).GetCount(), doc.GetObjects(1).GetCount()), std::tuple(1, 1));
}

TEST_F(ProjectFile, OpeningClearsTheLabelsAppendsTheFieldsAndTakesTheFolderAndThePath)
{
    fillDocument(doc);
    g_dataFields[1].Serial = 0x100000001;
    const QString sub = path("projects/sub");
    QDir().mkpath(sub);
    const QString file = QDir(sub).filePath("disc.dst");
    ASSERT_TRUE(doc.OnSaveDocument(file));

    // Every open appends its fields; serials come back as the OR of their halves.
    g_dataFields.resize(1);
    doc.SetModifiedFlag(true);
    ASSERT_TRUE(doc.OnOpenDocument(file));
    ASSERT_TRUE(doc.OnOpenDocument(file));
    ASSERT_EQ(g_dataFields.size(), 7u);
    EXPECT_EQ(std::tuple(g_dataFields[2].Serial, g_dataFields[2].SerialIncrement), std::tuple(1u, 7u));
    const DATAFIELD& last = g_dataFields[6];
    EXPECT_EQ(std::tuple(last.Tag, last.Delimiter, last.FileIndex, last.FileIncrement, last.Hours24),
              std::tuple(QStringLiteral("/*TAG3*/"), int(DATAFIELD::SemiColon), 41u, 2u, 1));
    EXPECT_EQ(std::tuple(doc.m_strFolder, doc.GetPathName(), doc.IsModified()), std::tuple(sub, file, false));
    EXPECT_EQ(QDir::currentPath(), QFileInfo(sub).canonicalFilePath());
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 2) << "cleared before reading, not added to";

    // A file that isn't there leaves an empty document, reported, with the folder unchanged.
    EXPECT_FALSE(doc.OnOpenDocument(path("missing.dst")));
    EXPECT_EQ(messages, std::vector<QString>{CDocument::FailedInvalidPath.arg("missing.dst")});
    EXPECT_EQ(std::tuple(doc.GetObjects(0).GetCount(), doc.GetBackground(0).ImageFile, doc.m_strFolder, doc.GetPathName()),
              std::tuple(0, QString(), sub, file));

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
        ASSERT_EQ(failureOf(bytes.left(size), [this](CArchive& ar) { doc.Serialize(ar); }), CArchiveException::endOfFile)
            << size;
        EXPECT_LT(g_dataFields.size(), 3u) << size;
        EXPECT_TRUE(size <= label1Start || doc.GetObjects(0).GetCount() == 2) << size;
    }
    // A few of them through the open step, which reports and keeps what was read.
    for (const qsizetype size : {qsizetype(0), qsizetype(7), label1Start + 1, bytes.size() - 1}) {
        g_dataFields.clear();
        messages.clear();
        ASSERT_FALSE(doc.OnOpenDocument(folder.write("cut.dst", bytes.left(size)))) << size;
        EXPECT_EQ(messages, std::vector<QString>{CDocument::FailedInvalidFormat}) << size;
        EXPECT_TRUE(doc.IsModified()) << size;
        EXPECT_EQ(doc.GetObjects(0).GetCount(), size > label1Start ? 2 : 0) << size;
        EXPECT_EQ(doc.GetPathName(), whole) << "a failed open keeps the old path";
    }
    EXPECT_EQ(g_dataFields.size(), 2u) << "the last cut leaves two whole fields of three";
}

TEST_F(ProjectFile, HostileCountsAndClassesFailCleanly)
{
    // The lists themselves are tested with the archive; here, what the open step makes of them.
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
        return b.i32(fieldCount).data;
    };
    const QByteArray cases[] = {
        project([](ArchiveBytes& b) { b.u16(0); }, 0x7FFFFFFF), // two billion fields
        project([](ArchiveBytes& b) { b.u16(1).newClass("CDrawBitmap"); }),
        project([](ArchiveBytes& b) { b.u16(2).newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0).u16(2); }),
    };
    for (const QByteArray& bytes : cases) {
        messages.clear();
        g_dataFields.clear();
        EXPECT_FALSE(doc.OnOpenDocument(folder.write("bad.dst", bytes))) << bytes.toHex().constData();
        EXPECT_EQ(messages, std::vector<QString>{CDocument::FailedInvalidFormat});
        EXPECT_TRUE(g_dataFields.empty());
    }
    // Drawn after such a failure, what was read is whole.
    ASSERT_EQ(doc.GetObjects(0).GetCount(), 1);
    EXPECT_NE(doc.RenderBitmap(100, 100, true, true), nullptr);
}

TEST_F(ProjectFile, AFailedSaveReportsAndLeavesTheOldFile)
{
    fillDocument(doc);
    EXPECT_FALSE(doc.OnSaveDocument(path("no/such/folder/x.dst")));
    EXPECT_EQ(messages, std::vector<QString>{CDocument::FailedInvalidPath.arg("x.dst")});

    // The old project is small; the new one is larger than the file size limit allows.
    const QString file = path("keep.dst");
    ASSERT_TRUE(CDrawDoc().OnSaveDocument(file));
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
    EXPECT_EQ(messages.back(), CDocument::FailedToSaveDoc);
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
    ASSERT_TRUE(doc.OnOpenDocument(folder.write("absurd.dst", b.data)));
    ASSERT_EQ(doc.GetObjects(0).GetCount(), 9);

    addTemplate(OneDiscSheet);
    useTemplate(0);
    RecordingView view;
    doc.AddView(&view);
    for (int label = 0; label < 3; ++label) {
        EXPECT_NE(doc.RenderBitmap(100, 100, true, true), nullptr);
        LabelCanvas screen;
        doc.SetCurLabel(label);
        doc.DrawLabel(screen.graphics, 100, 100, &view, label, true);
    }
    for (const auto& object : doc.GetObjects(0)) {
        view.selected = object.get();
        object->Intersects(CRect(-10, 10, 10, -10));
        object->GetDrawBounds(object->m_position);
        for (int handle = 1; handle <= std::min(object->GetHandleCount(), 20); ++handle)
            object->GetHandle(handle);
        object->HitTest(CPoint(0, 0), nullptr, true);
    }
    doc.RemoveView(&view);
}
