#include "DumpCommand.h"

#include "CliQuestions.h"
#include "JsonWriter.h"
#include "document/CDrawDoc.h"
#include "document/CRuntimeClass.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"

namespace {

void writeColor(JsonWriter& json, const QString& key, const gfx::Color& color)
{
    json.Key(key).Value(quint64(color.GetValue()));
}

void writeRect(JsonWriter& json, const QString& key, const CRect& r)
{
    json.Key(key).BeginObject();
    json.Member(QStringLiteral("left"), r.left);
    json.Member(QStringLiteral("top"), r.top);
    json.Member(QStringLiteral("right"), r.right);
    json.Member(QStringLiteral("bottom"), r.bottom);
    json.EndObject();
}

void writePoint(JsonWriter& json, const CPoint& p)
{
    json.BeginObject();
    json.Member(QStringLiteral("x"), p.x);
    json.Member(QStringLiteral("y"), p.y);
    json.EndObject();
}

void writeBackground(JsonWriter& json, const LabelBackground& b)
{
    json.Key(QStringLiteral("background")).BeginObject();
    json.Member(QStringLiteral("HatchStyle"), b.HatchStyle);
    json.Key(QStringLiteral("BackColor")).Value(quint64(b.BackColor));
    json.Key(QStringLiteral("BackColor2")).Value(quint64(b.BackColor2));
    json.Member(QStringLiteral("ImageFile"), b.ImageFile);
    json.Member(QStringLiteral("OffsetX"), b.OffsetX);
    json.Member(QStringLiteral("OffsetY"), b.OffsetY);
    json.Member(QStringLiteral("Scale"), b.Scale);
    json.Member(QStringLiteral("WrapMode"), b.WrapMode);
    json.Member(QStringLiteral("FitMode"), int(b.FitMode));
    json.EndObject();
}

void writeField(JsonWriter& json, const DATAFIELD& f)
{
    json.BeginObject();
    json.Member(QStringLiteral("Tag"), f.Tag);
    json.Member(QStringLiteral("Type"), f.Type);
    json.Key(QStringLiteral("DiscNumber")).Value(quint64(f.DiscNumber));
    json.Key(QStringLiteral("DiscTotal")).Value(quint64(f.DiscTotal));
    json.Member(QStringLiteral("FileName"), f.FileName);
    json.Member(QStringLiteral("Delimiter"), f.Delimiter);
    json.Key(QStringLiteral("Serial")).Value(quint64(f.Serial));
    json.Key(QStringLiteral("SerialIncrement")).Value(quint64(f.SerialIncrement));
    json.Key(QStringLiteral("FileIndex")).Value(quint64(f.FileIndex));
    json.Key(QStringLiteral("FileIncrement")).Value(quint64(f.FileIncrement));
    json.Member(QStringLiteral("TwoDigitYear"), f.TwoDigitYear);
    json.Member(QStringLiteral("MonthNames"), f.MonthNames);
    json.Member(QStringLiteral("DayNames"), f.DayNames);
    json.Member(QStringLiteral("Hours24"), f.Hours24);
    json.Member(QStringLiteral("ShowSeconds"), f.ShowSeconds);
    json.EndObject();
}

} // namespace

QString DumpCommand::Summary() const
{
    return QStringLiteral(
        "Opens a project as the program does and prints it as JSON: fileId, templateIndex,\n"
        "outerDia, innerDia, busDia, the three labels (background and objects) and the data\n"
        "fields. A project that fails to load prints what was read until then, with \"error\",\n"
        "and exit code 1. Questions are answered No, or Yes with --yes.");
}

int DumpCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QStringList rest = args;
    CliQuestions::Install(rest, err);
    if (rest.size() != 1 || rest[0].isEmpty() || rest[0].startsWith('-')) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    CDrawDoc doc;
    const bool loaded = doc.OnOpenDocument(rest[0]);
    JsonWriter json(out);
    json.BeginObject();
    json.Member(QStringLiteral("path"), rest[0]);
    if (!loaded)
        json.Member(QStringLiteral("error"), CliQuestions::LastMessage());
    WriteProject(json, doc);
    json.EndObject();
    return loaded ? ExitOk : ExitFailed;
}

void DumpCommand::WriteProject(JsonWriter& json, CDrawDoc& doc)
{
    json.Member(QStringLiteral("fileId"), doc.m_strFileId);
    json.Member(QStringLiteral("templateIndex"), doc.m_nTemplate);
    json.Member(QStringLiteral("outerDia"), doc.StoredOuterDia());
    json.Member(QStringLiteral("innerDia"), doc.StoredInnerDia());
    json.Member(QStringLiteral("busDia"), doc.StoredBusDia());
    json.Key(QStringLiteral("labels")).BeginArray();
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        json.BeginObject();
        writeBackground(json, doc.GetBackground(label));
        json.Key(QStringLiteral("objects")).BeginArray();
        for (const auto& object : doc.GetObjects(label))
            WriteObject(json, *object);
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
    json.Key(QStringLiteral("fields")).BeginArray();
    for (const DATAFIELD& field : g_dataFields)
        writeField(json, field);
    json.EndArray();
}

void DumpCommand::WriteObject(JsonWriter& json, const CDrawObj& o)
{
    json.BeginObject();
    const CRuntimeClass* runtimeClass = CRuntimeClass::Of(o);
    json.Member(QStringLiteral("class"), QString::fromLatin1(runtimeClass ? runtimeClass->m_lpszClassName : "?"));
    writeRect(json, QStringLiteral("position"), o.m_position);
    json.Member(QStringLiteral("flags"), int(o.m_flags));
    json.Member(QStringLiteral("dashStyle"), o.m_dashStyle);
    json.Member(QStringLiteral("dashCap"), o.m_dashCap);
    json.Member(QStringLiteral("fillKind"), o.m_fillKind);
    json.Member(QStringLiteral("lineReserved"), o.m_lineReserved);
    json.Member(QStringLiteral("transparency"), int(o.m_transparency));
    writeColor(json, QStringLiteral("fillColor1"), o.m_fillColor1);
    writeColor(json, QStringLiteral("fillColor2"), o.m_fillColor2);
    writeColor(json, QStringLiteral("lineColor1"), o.m_lineColor1);
    writeColor(json, QStringLiteral("lineColor2"), o.m_lineColor2);
    json.Member(QStringLiteral("lineWidth"), int(o.m_lineWidth));
    json.Member(QStringLiteral("gradientStyle"), o.m_gradientStyle);
    json.Member(QStringLiteral("hatchStyle"), o.m_hatchStyle);
    json.Member(QStringLiteral("startArrowSize"), int(o.m_startArrowSize));
    json.Member(QStringLiteral("endArrowSize"), int(o.m_endArrowSize));
    json.Member(QStringLiteral("startArrow"), o.m_startArrow);
    json.Member(QStringLiteral("endArrow"), o.m_endArrow);
    json.Member(QStringLiteral("pictureFile"), o.m_pictureFile);
    json.Member(QStringLiteral("wrapMode"), o.m_wrapMode);
    json.Member(QStringLiteral("gradientSwap"), int(o.m_gradientSwap));
    json.Member(QStringLiteral("pictureScale"), int(o.m_pictureScale));
    json.Member(QStringLiteral("lineKind"), o.m_lineKind);
    json.Member(QStringLiteral("lineGradientMode"), o.m_lineGradientMode);

    if (const auto* rect = dynamic_cast<const CDrawRect*>(&o)) {
        json.Member(QStringLiteral("shape"), rect->m_shape);
        json.Key(QStringLiteral("cornerSize"));
        writePoint(json, rect->m_cornerSize);
        json.Member(QStringLiteral("startAngle"), double(rect->m_startAngle));
        json.Member(QStringLiteral("endAngle"), double(rect->m_endAngle));
        json.Member(QStringLiteral("ringX"), double(rect->m_ringX));
        json.Member(QStringLiteral("ringY"), double(rect->m_ringY));
    } else if (const auto* poly = dynamic_cast<const CDrawPoly*>(&o)) {
        json.Member(QStringLiteral("polyKind"), int(poly->m_polyKind));
        json.Member(QStringLiteral("pointCount"), poly->GetPointCount());
        json.Member(QStringLiteral("pointCapacity"), poly->GetPointCapacity());
        json.Key(QStringLiteral("points")).BeginArray();
        for (const CPoint& p : poly->GetPoints())
            writePoint(json, p);
        json.EndArray();
    }
    json.EndObject();
}
