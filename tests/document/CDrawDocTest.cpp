#include "DocumentFixture.h"

#include "objects/CDrawObj.h"
#include "platform/Profile.h"

#include <cmath>

using TemplateAccess = DocumentFixture;
using DocumentSizes = DocumentFixture;
using DocumentObjects = DocumentFixture;

TEST_F(TemplateAccess, IndexInRangeOrEqualToCountStandsAsItIs)
{
    addTemplate(OneDiscSheet);
    addTemplate(DiscPrinter);
    doc.m_nTemplate = 1;
    EXPECT_EQ(doc.GetTemplate(), 1);
    EXPECT_TRUE(doc.IsPrinterTemplate());
    // The upper bound is inclusive: no template, but the index is kept.
    doc.m_nTemplate = 2;
    EXPECT_EQ(doc.GetTemplate(), 2);
    EXPECT_EQ(doc.GetTemplateFile(), nullptr);
    EXPECT_EQ(doc.GetObjectCount(), 0);
}

TEST_F(TemplateAccess, IndexOutOfRangeIsReadFromThePrinterSection)
{
    addTemplate(OneDiscSheet);
    addTemplate(DiscPrinter);
    doc.GetPrinter().PrinterName = QStringLiteral("\\\\server\\tray");
    Profile::WriteInt(QStringLiteral("__server_tray"), QStringLiteral("Template"), 1);
    EXPECT_EQ(doc.GetTemplate(), 1);
    EXPECT_EQ(doc.m_nTemplate, 1);

    // A stored index beyond the list is corrected to 0 and written back.
    doc.m_nTemplate = -1;
    Profile::WriteInt(QStringLiteral("__server_tray"), QStringLiteral("Template"), 7);
    EXPECT_EQ(doc.GetTemplate(), 0);
    EXPECT_EQ(Profile::GetInt(QStringLiteral("__server_tray"), QStringLiteral("Template"), -5), 0);
}

TEST_F(TemplateAccess, NegativeIndexFromAHandEditedProfileDrawsWithoutATemplate)
{
    addTemplate(OneDiscSheet);
    Profile::WriteInt(QString(), QStringLiteral("Template"), -3);
    EXPECT_EQ(doc.GetTemplate(), -3);
    EXPECT_EQ(doc.GetTemplateFile(), nullptr);
    const CSize size = doc.GetLogicalSize(300, 300, 0);
    EXPECT_EQ(size.cx, 1410); // the default 4.7 inch disc
    EXPECT_NE(doc.RenderBitmap(300, 300, true, true), nullptr);
}

TEST_F(TemplateAccess, FindLabelObjectFallsBackToTheFirstArea)
{
    addTemplate("SHEET\nTwo\n\n8.5\n11\n2\n0\n0\n"
                "RECT\n2\nCard\n4\n9\n3\n2\n0\nENDOBJECT\n"
                "DISC\n1\nDisc\n4\n3\n4.65\n0.7\nENDOBJECT\nEND\n");
    useTemplate(0);
    EXPECT_EQ(doc.FindLabelObject(0), 1);
    EXPECT_EQ(doc.FindLabelObject(1), 0);
    EXPECT_EQ(doc.FindLabelObject(2), 0); // no area shows the third label
    doc.SetCurLabel(0);
    EXPECT_EQ(doc.FindLabelObject(), 1);
}

TEST_F(TemplateAccess, ClosestPrinterAreaFollowsTheTypedDiameters)
{
    addTemplate(DiscPrinter);
    useTemplate(0);
    doc.SetBusDia(4.72, false);

    doc.SetOuterDia(4.65, false);
    doc.SetInnerDia(1.6, false);
    EXPECT_EQ(doc.FindClosestObject(), 0);

    doc.SetOuterDia(4.72, false);
    doc.SetInnerDia(0.9, false);
    EXPECT_EQ(doc.FindClosestObject(), 1);

    // A cut disc is only matched by a cut area: outer above the edge dimension.
    doc.SetOuterDia(3.15, false);
    doc.SetBusDia(2.3, false);
    EXPECT_EQ(doc.FindClosestObject(), 2);

    // Nothing within 4.73 inches: the first area.
    doc.SetOuterDia(40, false);
    doc.SetBusDia(50, false);
    EXPECT_EQ(doc.FindClosestObject(), 0);
}

TEST_F(TemplateAccess, ClosestAreaTieGoesToTheLaterArea)
{
    addTemplate("PRINTER\nTie\n\n5\n5\n0\n0\n"
                "DISC\n1\nA\n2.5\n2.5\n4.6\n1.5\nENDOBJECT\n"
                "DISC\n1\nB\n2.5\n2.5\n4.6\n1.5\nENDOBJECT\nEND\n");
    useTemplate(0);
    doc.SetOuterDia(4.6, false);
    doc.SetInnerDia(1.5, false);
    doc.SetBusDia(4.72, false);
    EXPECT_EQ(doc.FindClosestObject(), 1);
}

TEST_F(DocumentSizes, LogicalAndPaperSizes)
{
    addTemplate("SHEET\nMixed\n\n8.5\n11\n2\n0\n0\n"
                "DISC\n1\nDisc\n4\n3\n4.65\n0.7\nENDOBJECT\n"
                "RECT\n2\nCard\n4\n9\n3.5\n1.25\n0\nENDOBJECT\nEND\n");
    addTemplate(DiscPrinter);
    useTemplate(0);
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 0), CSize(1395, 1395));
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 1), CSize(1050, 375)); // a rectangle: width by height
    EXPECT_EQ(doc.GetLogicalSize(100, 200, 1), CSize(350, 250));
    EXPECT_EQ(doc.GetPaperSize(300, 300), CSize(2550, 3300));

    // A printer template prints the typed disc, whatever area is asked for.
    useTemplate(1);
    doc.SetOuterDia(4.5, false);
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 1), CSize(1350, 1350));
}

TEST_F(DocumentSizes, DiametersComeFromTheProfileWithTheFirstAreaAsDefault)
{
    addTemplate(DiscPrinter);
    useTemplate(0);
    // Defaults from the first area, in thousandths truncated.
    EXPECT_DOUBLE_EQ(doc.GetOuterDia(), 4.646);
    EXPECT_DOUBLE_EQ(doc.GetInnerDia(), 1.654);
    EXPECT_DOUBLE_EQ(doc.GetBusDia(), 4.72);
    // 1.001 is a hair below itself as a double, so a thousand of it truncates to 1000.
    addTemplate("PRINTER\nTray\n\n4.724\n4.724\n0\n0\nDISC\n1\nOdd\n2.362\n2.362\n4.7\n1.001\nENDOBJECT\nEND\n");
    CDrawDoc hair;
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

TEST_F(DocumentSizes, WithoutTemplatesTheBuiltInDiscApplies)
{
    EXPECT_DOUBLE_EQ(doc.GetOuterDia(), 4.7);
    EXPECT_DOUBLE_EQ(doc.GetInnerDia(), 1.45);
    EXPECT_DOUBLE_EQ(doc.GetBusDia(), 4.72);
    EXPECT_DOUBLE_EQ(doc.GetTemplateBleed(), 0.13);
    doc.SetTemplateBleed(0.0625);
    EXPECT_EQ(Profile::GetInt(QString(), QStringLiteral("TemplateBleed"), 0), 62);
}

TEST_F(DocumentSizes, AbsurdDiametersFromAHandEditedProfileAreNotComposed)
{
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), 2000000000);
    EXPECT_EQ(doc.GetLogicalSize(300, 300, 0).cx, 600000000);
    EXPECT_EQ(doc.RenderBitmap(300, 300, true, true), nullptr); // far too large to hold

    CDrawDoc negative;
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), -4700);
    EXPECT_EQ(negative.RenderBitmap(300, 300, true, true), nullptr);
}

TEST_F(DocumentSizes, SettersMarkTheDocumentAndRepaint)
{
    RecordingView view;
    doc.AddView(&view);
    doc.SetOuterDia(4.0, false);
    EXPECT_TRUE(doc.IsModified());
    ASSERT_FALSE(view.updates.empty());
    EXPECT_EQ(view.updates.back().first, 0);
}

TEST_F(DocumentObjects, AddRemoveAndPickOnTheCurrentLabel)
{
    doc.SetCurLabel(1);
    CDrawObj* below = doc.Add(std::make_unique<CDrawObj>(CRect(0, 100, 100, 0)));
    CDrawObj* above = doc.Add(std::make_unique<CDrawObj>(CRect(50, 150, 150, 50)));
    EXPECT_EQ(below->m_pDocument, &doc);
    EXPECT_EQ(doc.GetObjects(0).GetCount(), 0);
    EXPECT_EQ(doc.GetObjects(1).GetCount(), 2);

    EXPECT_EQ(doc.ObjectAt(CPoint(75, 75)), above); // the topmost wins
    EXPECT_EQ(doc.ObjectAt(CPoint(10, 10)), below);
    EXPECT_EQ(doc.ObjectAt(CPoint(500, 500)), nullptr);
    EXPECT_EQ(doc.ObjectAfter(below), above);
    EXPECT_EQ(doc.ObjectAfter(above), nullptr);
    EXPECT_EQ(CDrawDoc::IndexOf(doc.GetObjects(), above), 2);

    RecordingView view;
    doc.AddView(&view);
    std::unique_ptr<CDrawObj> taken = doc.Remove(below);
    EXPECT_EQ(taken.get(), below);
    EXPECT_EQ(CDrawDoc::IndexOf(doc.GetObjects(), below), 0);
    ASSERT_EQ(view.removed.size(), 1u);
    EXPECT_EQ(view.removed[0], below);
    EXPECT_EQ(doc.GetView(), &view);
}

TEST_F(DocumentObjects, ClearLabelsForgetsContentButKeepsThePicturePlacement)
{
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        doc.SetCurLabel(label);
        doc.Add(std::make_unique<CDrawObj>(CRect(0, 10, 10, 0)));
        doc.SetBackColor(0x123456);
        doc.SetHatchStyle(5);
        doc.SetImageFile(QStringLiteral("/tmp/picture.png"));
        doc.SetWrapMode(2);
        doc.SetFitMode(0);
        doc.SetBackgroundAdjust(12, -7, 2.5);
    }
    doc.ClearLabels();
    EXPECT_EQ(doc.GetCurLabel(), 2);
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        const LabelBackground& background = doc.GetBackground(label);
        EXPECT_TRUE(doc.GetObjects(label).IsEmpty());
        EXPECT_EQ(background.BackColor, 0xFFFFFFu);
        EXPECT_EQ(background.BackColor2, 0u);
        EXPECT_EQ(background.HatchStyle, -1);
        EXPECT_TRUE(background.ImageFile.isEmpty());
        EXPECT_EQ(background.OffsetX, 12);
        EXPECT_EQ(background.OffsetY, -7);
        EXPECT_DOUBLE_EQ(background.Scale, 2.5);
        EXPECT_EQ(background.WrapMode, 2);
        EXPECT_EQ(background.FitMode, 0);
    }
}

TEST_F(DocumentObjects, NewDocumentStartsEmptyAndUnmodified)
{
    doc.Add(std::make_unique<CDrawObj>(CRect(0, 10, 10, 0)));
    doc.SetBackColor(0xFF);
    ASSERT_TRUE(doc.IsModified());
    EXPECT_TRUE(doc.OnNewDocument());
    EXPECT_FALSE(doc.IsModified());
    EXPECT_TRUE(doc.GetObjects().IsEmpty());
    EXPECT_EQ(doc.GetBackColor(), 0xFFFFFFu);
}
