#include "DocumentFixture.h"

#include "objects/CDrawObj.h"
#include "platform/Profile.h"

using TemplateAccess = DocumentFixture;
using DocumentSizes = DocumentFixture;
using DocumentObjects = DocumentFixture;

TEST_F(TemplateAccess, IndexComesFromTheDocumentOrThePrinterSection)
{
    addTemplate(OneDiscSheet);
    addTemplate(DiscPrinter);
    doc.m_nTemplate = 1;
    EXPECT_EQ(std::tuple(doc.GetTemplate(), doc.IsPrinterTemplate()), std::tuple(1, true));
    // The upper bound is inclusive: no template, but the index is kept.
    doc.m_nTemplate = 2;
    EXPECT_EQ(std::tuple(doc.GetTemplate(), doc.GetTemplateFile(), doc.GetObjectCount()), std::tuple(2, nullptr, 0));

    // Out of range in the document: read from the printer's section, a stored index beyond the
    // list corrected to 0 and written back.
    const QString section = QStringLiteral("__server_tray");
    doc.GetPrinter().PrinterName = QStringLiteral("\\\\server\\tray");
    doc.m_nTemplate = -1;
    Profile::WriteInt(section, QStringLiteral("Template"), 1);
    EXPECT_EQ(std::tuple(doc.GetTemplate(), doc.m_nTemplate), std::tuple(1, 1));
    doc.m_nTemplate = -1;
    Profile::WriteInt(section, QStringLiteral("Template"), 7);
    EXPECT_EQ(doc.GetTemplate(), 0);
    EXPECT_EQ(Profile::GetInt(section, QStringLiteral("Template"), -5), 0);

    // A negative index from a hand-edited profile draws without a template, on the default disc.
    CDrawDoc negative;
    negative.SetTemplates(&templates);
    Profile::WriteInt(QString(), QStringLiteral("Template"), -3);
    EXPECT_EQ(std::tuple(negative.GetTemplate(), negative.GetTemplateFile()), std::tuple(-3, nullptr));
    EXPECT_EQ(negative.GetLogicalSize(300, 300, 0).cx, 1410);
    EXPECT_NE(negative.RenderBitmap(300, 300, true, true), nullptr);
}

TEST_F(TemplateAccess, LabelAndClosestAreas)
{
    addTemplate("SHEET\nTwo\n\n8.5\n11\n2\n0\n0\n"
                "RECT\n2\nCard\n4\n9\n3\n2\n0\nENDOBJECT\n"
                "DISC\n1\nDisc\n4\n3\n4.65\n0.7\nENDOBJECT\nEND\n");
    addTemplate(DiscPrinter);
    addTemplate("PRINTER\nTie\n\n5\n5\n0\n0\n"
                "DISC\n1\nA\n2.5\n2.5\n4.6\n1.5\nENDOBJECT\n"
                "DISC\n1\nB\n2.5\n2.5\n4.6\n1.5\nENDOBJECT\nEND\n");
    useTemplate(0);
    EXPECT_EQ(doc.FindLabelObject(0), 1);
    EXPECT_EQ(doc.FindLabelObject(1), 0);
    EXPECT_EQ(doc.FindLabelObject(2), 0); // no area shows the third label: the first
    doc.SetCurLabel(0);
    EXPECT_EQ(doc.FindLabelObject(), 1);

    // The printer area closest to the typed diameters; a cut disc only matches a cut area (outer
    // above the edge); nothing within 4.73 inches gives the first; a tie goes to the later area.
    const struct {
        int templateIndex;
        double outer, inner, bus;
        int area;
    } cases[] = {{1, 4.65, 1.6, 4.72, 0}, {1, 4.72, 0.9, 4.72, 1}, {1, 3.15, 0.9, 2.3, 2},
                 {1, 40, 0.9, 50, 0}, {2, 4.6, 1.5, 4.72, 1}};
    for (const auto& c : cases) {
        useTemplate(c.templateIndex);
        doc.SetOuterDia(c.outer, false);
        doc.SetInnerDia(c.inner, false);
        doc.SetBusDia(c.bus, false);
        EXPECT_EQ(doc.FindClosestObject(), c.area) << c.outer << " " << c.inner << " " << c.bus;
    }
}

TEST_F(DocumentSizes, LogicalAndPaperSizes)
{
    addTemplate("SHEET\nMixed\n\n8.5\n11\n2\n0\n0\n"
                "DISC\n1\nDisc\n4\n3\n4.65\n0.7\nENDOBJECT\n"
                "RECT\n2\nCard\n4\n9\n3.5\n1.25\n0\nENDOBJECT\nEND\n");
    addTemplate(DiscPrinter);
    useTemplate(0);
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 0), CSize(1395, 1395));
    EXPECT_EQ(doc.GetLogicalSize(100, 200, 1), CSize(350, 250)); // a rectangle: width by height, each at its dpi
    EXPECT_EQ(doc.GetPaperSize(300, 300), CSize(2550, 3300));

    // A printer template prints the typed disc, whatever area is asked for; setting it marks the
    // document and repaints.
    useTemplate(1);
    RecordingView view;
    doc.AddView(&view);
    doc.SetOuterDia(4.5, false);
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 1), CSize(1350, 1350));
    EXPECT_TRUE(doc.IsModified());
    EXPECT_EQ(view.hints, std::vector<int>{0});

    // Absurd diameters from a hand-edited profile are not composed.
    CDrawDoc huge, negative;
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), 2000000000);
    EXPECT_EQ(huge.GetLogicalSize(300, 300, 0).cx, 600000000);
    EXPECT_EQ(huge.RenderBitmap(300, 300, true, true), nullptr);
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), -4700);
    EXPECT_EQ(negative.RenderBitmap(300, 300, true, true), nullptr);
}

TEST_F(DocumentSizes, DiametersComeFromTheProfileWithTheFirstAreaOrTheBuiltInDiscAsDefault)
{
    doc.SetTemplateBleed(0.0625);
    EXPECT_EQ(Profile::GetInt(QString(), QStringLiteral("TemplateBleed"), 0), 62);

    // Defaults from the first area, in thousandths truncated: 1.001 is a hair below itself as a
    // double, so a thousand of it truncates to 1000.
    addTemplate(DiscPrinter);
    addTemplate("PRINTER\nTray\n\n4.724\n4.724\n0\n0\nDISC\n1\nOdd\n2.362\n2.362\n4.7\n1.001\nENDOBJECT\nEND\n");
    CDrawDoc first, hair;
    first.SetTemplates(&templates);
    first.SetTemplate(0);
    EXPECT_EQ(std::tuple(first.GetOuterDia(), first.GetInnerDia(), first.GetBusDia()), std::tuple(4.646, 1.654, 4.72));
    hair.SetTemplates(&templates);
    hair.SetTemplate(1);
    EXPECT_DOUBLE_EQ(hair.GetInnerDia(), 1.0);

    CDrawDoc other;
    other.SetTemplates(&templates);
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), 4500);
    EXPECT_DOUBLE_EQ(other.GetOuterDia(), 4.5);
    // Saving writes thousandths to the printer's section; 0.0 is a real value and is kept.
    other.SetInnerDia(0.0, true);
    EXPECT_DOUBLE_EQ(other.GetInnerDia(), 0.0);
    EXPECT_EQ(Profile::GetInt(QString(), QStringLiteral("InnerDia"), -1), 0);
    other.SetInnerDia(-1.0, false); // negative: not loaded, ask the profile again
    Profile::WriteInt(QString(), QStringLiteral("InnerDia"), 1200);
    EXPECT_DOUBLE_EQ(other.GetInnerDia(), 1.2);
}

TEST_F(DocumentObjects, AddRemovePickClearAndStartAnew)
{
    doc.SetCurLabel(1);
    CDrawObj* below = doc.Add(std::make_unique<CDrawObj>(CRect(0, 100, 100, 0)));
    CDrawObj* above = doc.Add(std::make_unique<CDrawObj>(CRect(50, 150, 150, 50)));
    EXPECT_EQ(below->m_pDocument, &doc);
    EXPECT_EQ(std::tuple(doc.GetObjects(0).GetCount(), doc.GetObjects(1).GetCount()), std::tuple(0, 2));

    EXPECT_EQ(doc.ObjectAt(CPoint(75, 75)), above); // the topmost wins
    EXPECT_EQ(doc.ObjectAt(CPoint(10, 10)), below);
    EXPECT_EQ(doc.ObjectAt(CPoint(500, 500)), nullptr);
    EXPECT_EQ(std::tuple(doc.ObjectAfter(below), doc.ObjectAfter(above)), std::tuple(above, nullptr));
    EXPECT_EQ(CDrawDoc::IndexOf(doc.GetObjects(), above), 2);

    RecordingView view;
    doc.AddView(&view);
    EXPECT_EQ(doc.Remove(below).get(), below);
    EXPECT_EQ(CDrawDoc::IndexOf(doc.GetObjects(), below), 0);
    EXPECT_EQ(view.removed, std::vector<CDrawObj*>{below});
    doc.RemoveView(&view);

    // Clearing forgets the content but keeps the picture's placement.
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        doc.SetCurLabel(label);
        doc.Add(std::make_unique<CDrawObj>(CRect(0, 10, 10, 0)));
        doc.Background(label) = {0x123456, 0x654321, 5, QStringLiteral("/tmp/picture.png"), 12, -7, 2, 0, 2.5};
    }
    doc.ClearLabels();
    EXPECT_EQ(doc.GetCurLabel(), 2);
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        const LabelBackground& b = doc.GetBackground(label);
        EXPECT_TRUE(doc.GetObjects(label).IsEmpty());
        EXPECT_EQ(std::tuple(b.BackColor, b.BackColor2, b.HatchStyle, b.ImageFile),
                  std::tuple(0xFFFFFFu, 0u, -1, QString()));
        EXPECT_EQ(std::tuple(b.OffsetX, b.OffsetY, b.Scale, b.WrapMode, b.FitMode), std::tuple(12, -7, 2.5, 2, 0));
    }

    // A new document starts empty and unmodified.
    doc.Add(std::make_unique<CDrawObj>(CRect(0, 10, 10, 0)));
    doc.SetBackColor(0xFF);
    ASSERT_TRUE(doc.IsModified());
    EXPECT_TRUE(doc.OnNewDocument());
    EXPECT_EQ(std::tuple(doc.IsModified(), doc.GetObjects().IsEmpty(), doc.GetBackColor()), std::tuple(false, true, 0xFFFFFFu));
}
