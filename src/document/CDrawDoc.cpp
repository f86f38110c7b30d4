#include "document/CDrawDoc.h"

#include "document/CArchive.h"
#include "document/CView.h"
#include "fields/CFieldMessageScope.h"
#include "fields/DataFields.h"
#include "objects/CDrawObj.h"
#include "platform/MessageBox.h"
#include "platform/NumberText.h"
#include "platform/PaintingThread.h"
#include "platform/Profile.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/ImageAttributes.h"
#include "platform/graphics/SolidBrush.h"
#include "platform/graphics/TextureBrush.h"
#include "templates/CTemplateFile.h"
#include "undo/CUndoManager.h"

#include <QDir>
#include <QFileInfo>
#include <QLineF>
#include <algorithm>
#include <climits>
#include <cmath>

namespace {

const QString SettingsSection = QStringLiteral("Settings");
const gfx::Color White(255, 255, 255, 255);
const gfx::Color MaskColor(192, 128, 128, 128);
// More lines than any real label has at a millimetre apart (a metre of label).
constexpr double MaxGridLines = 1000.0;

// Truncates towards zero as a C cast does, but keeps values from a hand-edited profile or a
// damaged template inside the range of int instead of overflowing.
int truncated(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(INT_MAX))
        return INT_MAX;
    if (value <= double(INT_MIN))
        return INT_MIN;
    return int(value);
}

QRectF labelRect(CSize size, int cx, int cy, double bleed)
{
    return QRectF(-(size.cx / 2) - cx * bleed, -(size.cy / 2) - cy * bleed, size.cx + 2 * bleed * cx,
                  size.cy + 2 * bleed * cy);
}

// Where in its 8-pixel cell a pattern starts, for a device coordinate of its anchor. A damaged
// file's picture offset can put the anchor beyond the range of int: it is reduced as a double.
int patternPhase(double device)
{
    const int phase = int(std::fmod(std::round(device), 8.0));
    return phase < 0 ? phase + 8 : phase;
}

// What the graphics can still paint, in world units, grown by two device pixels: antialiased
// edges and smoothed pictures reach past their geometry into the next pixel. Null when nothing
// tells.
QRectF reachedArea(const gfx::Graphics& graphics)
{
    const QRectF visible = graphics.GetVisibleClipBounds();
    if (visible.isNull())
        return {};
    QPointF steps[3] = {QPointF(0, 0), QPointF(2, 0), QPointF(0, 2)};
    graphics.TransformPoints(gfx::CoordinateSpace::World, gfx::CoordinateSpace::Device, steps, 3);
    const double margin = std::max(QLineF(steps[0], steps[1]).length(), QLineF(steps[0], steps[2]).length());
    return visible.adjusted(-margin, -margin, margin, margin);
}

// Whether a rectangle in label units, edges included, meets the area; in doubles, as a damaged
// file's rectangle may span more than an int.
bool overlaps(const CRect& r, const QRectF& area)
{
    const double left = std::min(r.left, r.right), right = std::max(r.left, r.right);
    const double bottom = std::min(r.top, r.bottom), top = std::max(r.top, r.bottom);
    return left <= area.right() && right >= area.left() && bottom <= area.bottom() && top >= area.top();
}

// The undo history's only way to the modified flag: undoing back to the saved state clears it.
void undoChanged(CDocument* document, const UNDONOTIFY& notify)
{
    document->SetModifiedFlag(notify.bModified);
}

// Each project keeps a hundred steps.
constexpr int UndoLimit = 100;

} // namespace

CDrawDoc::CDrawDoc() = default;

CDrawDoc::~CDrawDoc()
{
    // No step may outlive the objects it points into.
    g_undoManager.Detach(this);
    ClearLabels();
}

// ---------------------------------------------------------------- templates

int CDrawDoc::GetTemplateCount() const
{
    return m_pTemplates ? int(m_pTemplates->size()) : 0;
}

int CDrawDoc::GetTemplate()
{
    // The upper bound is inclusive on purpose: an index equal to the count stands as it is.
    if (m_nTemplate >= 0 && m_nTemplate <= GetTemplateCount())
        return m_nTemplate;
    m_nTemplate = Profile::GetInt(PrinterSection(), QStringLiteral("Template"), 0);
    if (m_nTemplate >= GetTemplateCount()) {
        SetTemplate(0);
        return 0;
    }
    return m_nTemplate;
}

void CDrawDoc::SetTemplate(int index)
{
    m_nTemplate = index;
    Profile::WriteInt(PrinterSection(), QStringLiteral("Template"), index);
}

const CTemplateFile* CDrawDoc::GetTemplateFile(int index)
{
    if (index == -1)
        index = GetTemplate();
    if (index < 0 || index >= GetTemplateCount())
        return nullptr;
    return &(*m_pTemplates)[size_t(index)];
}

bool CDrawDoc::ToggleAreaSelected(int templateIndex, int objectIndex)
{
    if (!m_pEditableTemplates || templateIndex < 0 || templateIndex >= GetTemplateCount())
        return false;
    std::vector<CTemplateObject>& objects = (*m_pEditableTemplates)[size_t(templateIndex)].Objects;
    if (objectIndex < 0 || objectIndex >= int(objects.size()))
        return false;
    CTemplateObject& object = objects[size_t(objectIndex)];
    object.Selected = object.Selected ? 0 : 1;
    return true;
}

int CDrawDoc::GetObjectCount()
{
    const CTemplateFile* file = GetTemplateFile();
    return file ? int(file->Objects.size()) : 0;
}

const CTemplateObject* CDrawDoc::GetObject(int index)
{
    const CTemplateFile* file = GetTemplateFile();
    if (!file || index < 0 || index >= int(file->Objects.size()))
        return nullptr;
    return &file->Objects[index];
}

bool CDrawDoc::IsPrinterTemplate()
{
    const CTemplateFile* file = GetTemplateFile();
    return file && file->IsPrinter == 1;
}

int CDrawDoc::FindLabelObject(int label)
{
    if (label == -1)
        label = m_nCurLabel;
    for (int i = 0; i < GetObjectCount(); ++i) {
        if (GetObject(i)->LabelNumber - 1 == label)
            return i;
    }
    return 0;
}

int CDrawDoc::FindClosestObject()
{
    const double outer = GetOuterDia();
    const double inner = GetInnerDia();
    const double edge = GetBusDia();
    const bool cut = outer > edge;
    double innerLimit = 4.73, outerLimit = 4.73, edgeLimit = 4.73;
    int closest = 0;
    for (int i = 0; i < GetObjectCount(); ++i) {
        const CTemplateObject* object = GetObject(i);
        if ((object->OuterDia > object->EdgeDia) != cut)
            continue;
        const double innerDiff = std::abs(object->InnerDia - inner);
        const double outerDiff = std::abs(object->OuterDia - outer);
        const double edgeDiff = std::abs(object->EdgeDia - edge);
        // Not above the limits, so on a tie the later object wins.
        if (innerDiff <= innerLimit && outerDiff <= outerLimit && edgeDiff <= edgeLimit) {
            innerLimit = innerDiff;
            outerLimit = outerDiff;
            edgeLimit = edgeDiff;
            closest = i;
        }
    }
    return closest;
}

// ---------------------------------------------------------------- sizes

CSize CDrawDoc::GetLogicalSize(int cx, int cy, int objectIndex)
{
    double width = GetOuterDia();
    double height = width;
    if (!IsPrinterTemplate()) {
        if (const CTemplateObject* object = GetObject(objectIndex)) {
            width = object->OuterDia;
            height = object->IsRect ? object->InnerDia : object->OuterDia;
        }
    }
    return CSize(truncated(cx * width), truncated(cy * height));
}

CSize CDrawDoc::GetPaperSize(int cx, int cy)
{
    const CTemplateFile* file = GetTemplateFile();
    if (!file)
        return GetLogicalSize(cx, cy, 0);
    return CSize(truncated(cx * file->PaperWidth), truncated(cy * file->PaperHeight));
}

double CDrawDoc::GetDiameter(double& stored, const char* key, int fallback, double CTemplateObject::*field)
{
    if (stored >= 0.0)
        return stored;
    int thousandths = fallback;
    if (const CTemplateObject* first = GetObject(0))
        thousandths = truncated(first->*field * 1000);
    stored = Profile::GetInt(PrinterSection(), QLatin1String(key), thousandths) / 1000.0;
    return stored;
}

double CDrawDoc::GetOuterDia()
{
    return GetDiameter(m_fOuterDia, "OuterDia", 4700, &CTemplateObject::OuterDia);
}

double CDrawDoc::GetInnerDia()
{
    return GetDiameter(m_fInnerDia, "InnerDia", 1450, &CTemplateObject::InnerDia);
}

double CDrawDoc::GetBusDia()
{
    return GetDiameter(m_fBusDia, "BusDia", 4720, &CTemplateObject::EdgeDia);
}

void CDrawDoc::SetDiameter(double& stored, const char* key, double value, bool save)
{
    stored = value;
    if (save)
        Profile::WriteInt(PrinterSection(), QLatin1String(key), truncated(value * 1000));
    UpdateAllViews(nullptr);
    SetModifiedFlag();
}

void CDrawDoc::SetOuterDia(double value, bool save)
{
    SetDiameter(m_fOuterDia, "OuterDia", value, save);
}

void CDrawDoc::SetInnerDia(double value, bool save)
{
    SetDiameter(m_fInnerDia, "InnerDia", value, save);
}

void CDrawDoc::SetBusDia(double value, bool save)
{
    SetDiameter(m_fBusDia, "BusDia", value, save);
}

double CDrawDoc::GetTemplateBleed()
{
    return Profile::GetInt(PrinterSection(), QStringLiteral("TemplateBleed"), 130) / 1000.0;
}

void CDrawDoc::SetTemplateBleed(double value)
{
    Profile::WriteInt(PrinterSection(), QStringLiteral("TemplateBleed"), truncated(value * 1000));
}

void CDrawDoc::SetCurLabel(int label)
{
    if (label >= 0 && label < LabelCount)
        m_nCurLabel = label;
}

// ---------------------------------------------------------------- objects

CDrawObj* CDrawDoc::Add(std::unique_ptr<CDrawObj> object)
{
    CDrawObj* added = object.get();
    added->m_pDocument = this;
    GetObjects().AddTail(std::move(object));
    return added;
}

std::unique_ptr<CDrawObj> CDrawDoc::Remove(CDrawObj* object)
{
    std::unique_ptr<CDrawObj> taken = GetObjects().Take(object);
    for (CView* view : Views())
        view->Remove(object);
    return taken;
}

CDrawObj* CDrawDoc::ObjectAt(CPoint point)
{
    const CRect probe(point.x, point.y, point.x + 1, point.y + 1);
    const CDrawObjList& list = GetObjects();
    for (auto it = list.rbegin(); it != list.rend(); ++it) {
        if ((*it)->Intersects(probe))
            return it->get();
    }
    return nullptr;
}

CDrawObj* CDrawDoc::ObjectAfter(const CDrawObj* object)
{
    const CDrawObjList& list = GetObjects();
    const int index = list.Find(object);
    return index >= 0 && index + 1 < list.GetCount() ? list.GetAt(index + 1) : nullptr;
}

int CDrawDoc::IndexOf(const CDrawObjList& list, const CDrawObj* object)
{
    return list.Find(object) + 1;
}

CDrawObjList& CDrawDoc::GetObjects(int label)
{
    return m_Objects[size_t(label == -1 ? m_nCurLabel : label)];
}

CView* CDrawDoc::GetView() const
{
    return Views().empty() ? nullptr : Views().front();
}

// ---------------------------------------------------------------- backgrounds

const LabelBackground& CDrawDoc::GetBackground(int label) const
{
    return m_Background[size_t(label == -1 ? m_nCurLabel : label)];
}

void CDrawDoc::GetBackgroundAdjust(int& x, int& y, double& scale, int label) const
{
    const LabelBackground& background = GetBackground(label);
    x = background.OffsetX;
    y = background.OffsetY;
    scale = background.Scale;
}

void CDrawDoc::BackgroundChanged()
{
    UpdateAllViews(nullptr);
    SetModifiedFlag();
}

void CDrawDoc::SetBackColor(gfx::COLORREF color)
{
    m_Background[size_t(m_nCurLabel)].BackColor = color;
    BackgroundChanged();
}

void CDrawDoc::SetBackColor2(gfx::COLORREF color)
{
    m_Background[size_t(m_nCurLabel)].BackColor2 = color;
    BackgroundChanged();
}

void CDrawDoc::SetHatchStyle(int style)
{
    m_Background[size_t(m_nCurLabel)].HatchStyle = style;
    BackgroundChanged();
}

void CDrawDoc::SetImageFile(const QString& path)
{
    m_Background[size_t(m_nCurLabel)].ImageFile = path;
    BackgroundChanged();
}

void CDrawDoc::SetWrapMode(int mode)
{
    m_Background[size_t(m_nCurLabel)].WrapMode = mode;
    BackgroundChanged();
}

void CDrawDoc::SetFitMode(int mode)
{
    m_Background[size_t(m_nCurLabel)].FitMode = std::uint8_t(mode);
    BackgroundChanged();
}

void CDrawDoc::SetBackgroundAdjust(int x, int y, double scale)
{
    LabelBackground& background = m_Background[size_t(m_nCurLabel)];
    background.OffsetX = x;
    background.OffsetY = y;
    background.Scale = scale;
    BackgroundChanged();
}

// ---------------------------------------------------------------- document steps

bool CDrawDoc::OnNewDocument()
{
    ClearLabels();
    SetPathName(QString());
    SetModifiedFlag(false);
    g_undoManager.Attach(this, UndoLimit, undoChanged);
    return true;
}

void CDrawDoc::ClearLabels()
{
    // The steps point into the objects about to go.
    g_undoManager.ClearHistory(this);
    for (int label = 0; label < LabelCount; ++label) {
        m_Objects[size_t(label)].RemoveAll();
        LabelBackground& background = m_Background[size_t(label)];
        background.BackColor = 0xFFFFFF;
        background.BackColor2 = 0;
        background.ImageFile.clear();
        background.HatchStyle = -1;
    }
}

// ---------------------------------------------------------------- project file

const QString CDrawDoc::FileId15 = QStringLiteral("Tessarelle_1.5");
const QString CDrawDoc::FileId16 = QStringLiteral("Tessarelle_1.6");
const QString CDrawDoc::FileId17 = QStringLiteral("Tessarelle_1.7");

namespace {

// The least a field record takes in a file: fourteen 4-byte numbers and two empty 8-bit strings.
constexpr std::uint64_t MinFieldRecordSize = 14 * 4 + 2;

// One field in the file's order, which isn't the record's. Reading joins the two halves of
// Serial with OR into the low word; a serial above 32 bits doesn't come back whole.
void SerializeField(CArchive& ar, DATAFIELD& field)
{
    if (ar.IsStoring()) {
        ar << field.DayNames << field.Delimiter << field.DiscNumber << field.DiscTotal << field.FileIncrement
           << field.FileName << field.FileIndex << field.SerialIncrement << field.Tag << field.Type
           << field.MonthNames << std::uint32_t(field.Serial) << std::uint32_t(field.Serial >> 32)
           << field.ShowSeconds << field.Hours24 << field.TwoDigitYear;
        return;
    }
    ar >> field.DayNames >> field.Delimiter >> field.DiscNumber >> field.DiscTotal >> field.FileIncrement
        >> field.FileName >> field.FileIndex >> field.SerialIncrement >> field.Tag >> field.Type >> field.MonthNames;
    const std::uint32_t low = ar.Read<std::uint32_t>();
    const std::uint32_t high = ar.Read<std::uint32_t>();
    field.Serial = low | high;
    ar >> field.ShowSeconds >> field.Hours24 >> field.TwoDigitYear;
}

} // namespace

bool CDrawDoc::OnOpenDocument(const QString& path)
{
    // Cleared before the file is touched: a file that can't be opened leaves an empty document.
    ClearLabels();
    g_undoManager.Attach(this, UndoLimit, undoChanged);
    if (!CDocument::OnOpenDocument(path))
        return false;
    m_strFolder = QFileInfo(path).absolutePath();
    QDir::setCurrent(m_strFolder);
    // The texts were laid out as they were read, before the fields they name and before their
    // data files could be found from the project's folder: laid out again, they show what the
    // next disc gets instead of the bare tags.
    if (!g_dataFields.empty()) {
        for (const CDrawObjList& objects : m_Objects)
            for (const auto& object : objects)
                object->Layout();
    }
    SetModifiedFlag(false);
    SetPathName(path);
    return true;
}

bool CDrawDoc::OnSaveDocument(const QString& path)
{
    // Nothing can be undone past a save: the empty history is what matches the file.
    g_undoManager.ClearHistory(this);
    if (!CDocument::OnSaveDocument(path))
        return false;
    SetPathName(path);
    return true;
}

void CDrawDoc::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << FileId17 << std::int32_t(m_nTemplate) << m_fOuterDia << m_fInnerDia << m_fBusDia;
        for (int label = 0; label < LabelCount; ++label) {
            m_Background[size_t(label)].Serialize(ar);
            m_Objects[size_t(label)].Serialize(ar);
        }
        ar << std::int32_t(g_dataFields.size());
        for (DATAFIELD& field : g_dataFields)
            SerializeField(ar, field);
        return;
    }

    ar >> m_strFileId;
    if (m_strFileId.left(10) != QLatin1String("Tessarelle")
        && MessageBox::Show(QStringLiteral("This file does not appear to be a Tessarelle compatible file!\r\n"
                                           "Try to load anyway?"),
                            MessageBox::YesNo)
               != MessageBox::IdYes)
        return;
    // Any header but 1.5 has the template index: an unknown version reads as the latest.
    if (m_strFileId != FileId15)
        ar >> m_nTemplate;
    ar >> m_fOuterDia >> m_fInnerDia >> m_fBusDia;
    for (int label = 0; label < LabelCount; ++label) {
        m_Background[size_t(label)].Serialize(ar);
        m_Objects[size_t(label)].Serialize(ar);
    }
    // Added to the fields already there, as every open does.
    const std::int32_t count = ar.Read<std::int32_t>();
    if (count > 0)
        ar.EnsureAvailable(std::uint64_t(count) * MinFieldRecordSize);
    for (std::int32_t i = 0; i < count; ++i) {
        DATAFIELD field;
        SerializeField(ar, field);
        g_dataFields.push_back(field);
    }
}

// ---------------------------------------------------------------- drawing

void CDrawDoc::DrawLabel(gfx::Graphics& graphics, int cx, int cy, CView* view, int label, bool withObjects)
{
    DrawBackground(graphics, cx, cy, label);
    if (withObjects) {
        // A repaint of a part of the window leaves out the objects that can't reach it.
        QRectF reached = reachedArea(graphics);
        for (const auto& object : GetObjects(label)) {
            if (object->DrawsOnlyWithinBounds()) {
                if (reached.isNull() || overlaps(object->GetDrawBounds(object->GetRect().Normalized()), reached))
                    object->Draw(graphics, cx, cy, view);
                continue;
            }
            object->Draw(graphics, cx, cy, view);
            // A metafile leaves the world mirrored for the objects after it.
            reached = reachedArea(graphics);
        }
    }
    if (withObjects && view) {
        if (view->IsActive()) {
            for (const auto& object : GetObjects(label)) {
                if (view->IsSelected(object.get()))
                    object->DrawTracker(graphics, 2, cx, cy);
            }
        }
        if (m_bShowGrid)
            DrawGrid(graphics, cx, cy, label);
        DrawPerforations(graphics, cx, cy);
    }
    if (view)
        DrawMask(graphics, cx, cy, label);
}

void CDrawDoc::BuildLabelPath(int cx, int cy, gfx::GraphicsPath& path, int objectIndex, bool withBleed)
{
    const CSize size = GetLogicalSize(cx, cy, objectIndex);
    double bleed = withBleed ? GetTemplateBleed() : 0.0;
    const CTemplateObject* object = GetObject(objectIndex);
    double outer, inner, edge;
    if (!IsPrinterTemplate() && object) {
        outer = object->OuterDia + 2 * bleed;
        inner = object->InnerDia - 2 * bleed;
        edge = object->EdgeDia + 2 * bleed;
    } else {
        bleed = 0.0;
        outer = GetOuterDia();
        inner = GetInnerDia();
        edge = GetBusDia();
    }
    const QRectF rect = labelRect(size, cx, cy, bleed);
    if (!IsPrinterTemplate() && object && object->IsRect) {
        path.AddRectangle(rect);
        return;
    }
    if (outer > edge) {
        // A business-card disc: the circle cut by two chords edge apart.
        const double angle = std::asin((edge / 2) / (outer / 2)) * 180.0 / 3.141592653589793;
        path.AddArc(rect, float(angle), float(-2 * angle));
        path.AddArc(rect, float(180 + angle), float(-2 * angle));
        path.CloseFigure();
    } else {
        path.AddEllipse(rect);
    }
    const double hole = inner / outer;
    path.AddEllipse(QRectF(rect.x() * hole, rect.y() * hole, rect.width() * hole, rect.height() * hole));
}

void CDrawDoc::DrawBackground(gfx::Graphics& graphics, int cx, int cy, int label)
{
    const CSize size = GetLogicalSize(cx, cy, FindLabelObject(label));
    const double bleed = IsPrinterTemplate() ? 0.0 : GetTemplateBleed();
    const QRectF whole(-size.cx, -size.cy, 2.0 * size.cx, 2.0 * size.cy);
    const QRectF bleedRect = labelRect(size, cx, cy, bleed);
    const LabelBackground& background = GetBackground(label);

    if (!background.ImageFile.isEmpty()) {
        // The picture is kept by path because the screen redraws the label on every change; a
        // file replaced on disk is therefore seen only once another path has been chosen.
        if (!m_pBackImage || !m_pBackBrush || m_strBackImage != background.ImageFile) {
            m_strBackImage = background.ImageFile;
            m_pBackImage = std::make_unique<gfx::Image>(background.ImageFile);
            m_pBackBrush = std::make_unique<gfx::TextureBrush>(*m_pBackImage);
        }
        graphics.FillRectangle(gfx::SolidBrush(White), whole);

        const int width = int(m_pBackImage->GetWidth());
        const int height = int(m_pBackImage->GetHeight());
        const float scale = float(background.Scale);
        float fx = 1.0f, fy = 1.0f;
        if (background.WrapMode == 4) {
            const double targetX = size.cx + 2 * bleed * cx;
            const double targetY = size.cy + 2 * bleed * cy;
            if (background.FitMode == 1 && height > 0 && width > 0) {
                // Cover the target on both axes, keeping the picture's proportions.
                const double factor = height / targetY < width / targetX ? targetY / height : targetX / width;
                fx = fy = float(factor);
            } else if (background.FitMode == 2 && height > 0 && width > 0) {
                fx = float(targetX / width);
                fy = float(targetY / height);
            }
        }
        m_pBackBrush->SetTransform(gfx::Matrix(scale * fx, 0, 0, -scale * fy, 0, 0));
        // The offsets come from the file and may lie at the ends of the int range.
        const double offsetX = background.OffsetX, offsetY = background.OffsetY;
        m_pBackBrush->TranslateTransform(float(-offsetX - width / 2), float(-offsetY - height / 2));
        if (background.WrapMode == 4) {
            const QRectF picture(-(offsetX + width / 2) * scale * fx, -(height / 2 - offsetY) * scale * fy,
                                 width * scale * fx, height * scale * fy);
            m_pBackBrush->SetWrapMode(gfx::WrapMode::Clamp);
            graphics.FillRectangle(*m_pBackBrush, picture);
        } else {
            m_pBackBrush->SetWrapMode(gfx::WrapMode(std::clamp(background.WrapMode, 0, 3)));
            graphics.FillRectangle(*m_pBackBrush, bleedRect);
        }
    } else if (background.HatchStyle == -1) {
        graphics.FillRectangle(gfx::SolidBrush(gfx::Color::FromCOLORREF(background.BackColor)), whole);
    } else {
        // Anchor the pattern where the picture offset puts it, not where the screen happens to be.
        QPointF anchor(bleedRect.center().x() - background.OffsetX, bleedRect.center().y() + background.OffsetY);
        graphics.TransformPoints(gfx::CoordinateSpace::Device, gfx::CoordinateSpace::World, &anchor, 1);
        graphics.SetRenderingOrigin(patternPhase(anchor.x()), patternPhase(anchor.y()));
        graphics.FillRectangle(gfx::HatchBrush(background.HatchStyle, gfx::Color::FromCOLORREF(background.BackColor),
                                               gfx::Color::FromCOLORREF(background.BackColor2)),
                               whole);
    }
}

void CDrawDoc::DrawGrid(gfx::Graphics& graphics, int cx, int cy, int label)
{
    const CSize size = GetLogicalSize(cx, cy, FindLabelObject(label));
    const QRectF rect(-size.cx / 2.0, -size.cy / 2.0, size.cx, size.cy);
    if (rect != m_gridRect) {
        m_gridRect = rect;
        for (gfx::GraphicsPath& path : m_gridPaths)
            path.Reset();
        auto& [inchCoarse, inchFine, mmCoarse, mmFine] = m_gridPaths;
        // Lines through the origin and out in both directions, so the grid is centred on the label.
        auto addLines = [&rect](gfx::GraphicsPath& path, double step, bool vertical, int every, int pick) {
            const double extent = vertical ? rect.right() : rect.bottom();
            // A label from a damaged profile can be miles wide; its grid would never finish.
            if (step <= 0 || extent / step > MaxGridLines)
                return;
            for (int i = 0; i * step <= extent; ++i) {
                if (i % every != pick)
                    continue;
                for (const double at : {i * step, -i * step}) {
                    if (vertical)
                        path.AddLine(QPointF(at, rect.top()), QPointF(at, rect.bottom()));
                    else
                        path.AddLine(QPointF(rect.left(), at), QPointF(rect.right(), at));
                    path.StartFigure();
                    if (i == 0)
                        break;
                }
            }
        };
        for (const bool vertical : {true, false}) {
            const double perInch = vertical ? cx : cy;
            addLines(mmFine, perInch / 25.4, vertical, 1, 0);
            addLines(mmCoarse, perInch / 25.4, vertical, 10, 0);
            addLines(inchFine, perInch / 10, vertical, 1, 0);
            addLines(inchCoarse, perInch / 2, vertical, 1, 0);
        }
    }
    const bool inches = Profile::GetInt(SettingsSection, QStringLiteral("Units"), 1) != 0;
    const gfx::Pen coarse(gfx::Color(128, 0, 0, 0), 1.0f);
    const gfx::Pen fine(gfx::Color(64, 0, 0, 0), 1.0f);
    graphics.DrawPath(coarse, m_gridPaths[inches ? 0 : 2]);
    graphics.DrawPath(fine, m_gridPaths[inches ? 1 : 3]);
}

void CDrawDoc::DrawPerforations(gfx::Graphics& graphics, int cx, int cy)
{
    const int objectIndex = FindLabelObject();
    const CTemplateObject* object = GetObject(objectIndex);
    if (!object)
        return;
    const CSize size = GetLogicalSize(cx, cy, objectIndex);
    const double left = object->LeftEdge();
    const double top = object->TopEdge();
    gfx::Pen pen(gfx::Color(255, 0, 0, 0), 1.0f);
    pen.SetDashStyle(gfx::DashStyle::Dash);
    // Perforations are stored on the sheet; here they are put back on the label, y measured
    // downward from its top edge. The area's rotation is not applied on screen.
    for (const Perf& perf : object->Perfs) {
        const QPointF from((perf.X1 - left) * cx - size.cx / 2.0, size.cy / 2.0 - (perf.Y1 - top) * cy);
        const QPointF to((perf.X2 - left) * cx - size.cx / 2.0, size.cy / 2.0 - (perf.Y2 - top) * cy);
        graphics.DrawLine(pen, from, to);
    }
}

void CDrawDoc::DrawMask(gfx::Graphics& graphics, int cx, int cy, int label)
{
    const int objectIndex = FindLabelObject(label);
    const CSize size = GetLogicalSize(cx, cy, objectIndex);
    gfx::Region mask(QRectF(-size.cx, -size.cy, 2.0 * size.cx, 2.0 * size.cy));
    gfx::GraphicsPath outline;
    BuildLabelPath(cx, cy, outline, objectIndex, false);
    mask.Exclude(outline);
    graphics.FillRegion(gfx::SolidBrush(MaskColor), mask);
}

void CDrawDoc::ComposeLabelArea(gfx::Graphics& graphics, int cx, int cy, int objectIndex, bool withObjects)
{
    const CTemplateObject* object = GetObject(objectIndex);
    // A label number outside the three labels can only come from a damaged template.
    if (!object || object->LabelNumber < 1 || object->LabelNumber > LabelCount)
        return;
    gfx::GraphicsPath outline;
    BuildLabelPath(cx, cy, outline, objectIndex, true);
    graphics.ResetTransform();
    graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, float(cx * object->CentreX), float(cy * object->CentreY)));
    graphics.RotateTransform(float(object->Rotation));
    graphics.SetClip(outline);
    DrawLabel(graphics, cx, cy, nullptr, object->LabelNumber - 1, withObjects);
}

std::unique_ptr<gfx::Bitmap> CDrawDoc::RenderBitmap(int cx, int cy, bool withObjects, bool fillWhite)
{
    const CSize paper = GetPaperSize(cx, cy);
    if (paper.cx <= 0 || paper.cy <= 0 || qint64(paper.cx) * paper.cy > gfx::Image::MaxPixels)
        return nullptr;
    auto bitmap = std::make_unique<gfx::Bitmap>(paper.cx, paper.cy);
    if (bitmap->GetLastStatus() != gfx::Status::Ok)
        return nullptr;
    // Data field messages can't come up from the painting thread; they follow it.
    CFieldMessageScope messages(CFieldMessageScope::EveryOccurrence);
    PaintingThread::Run([&] {
        gfx::Graphics graphics(*bitmap);
        RenderQuality::Apply(graphics);
        if (fillWhite)
            graphics.Clear(White);
        if (IsPrinterTemplate()) {
            ComposeLabelArea(graphics, cx, cy, FindClosestObject(), withObjects);
        } else {
            for (int i = 0; i < GetObjectCount(); ++i) {
                if (GetObject(i)->Selected)
                    ComposeLabelArea(graphics, cx, cy, i, withObjects);
            }
        }
    });
    return bitmap;
}

void CDrawDoc::Draw(gfx::DeviceContext& dc, CView* view, bool withObjects, bool imageOnly)
{
    gfx::Graphics graphics(dc);
    RenderQuality::Apply(graphics);
    if (!dc.IsPrinting())
        DrawLabel(graphics, 300, 300, view, m_nCurLabel, withObjects);
    else if (imageOnly)
        DrawImageOnly(graphics);
    else
        DrawPrintedSheet(graphics, withObjects);
}

void CDrawDoc::DrawImageOnly(gfx::Graphics& graphics)
{
    const CSize paper = GetPaperSize(300, 300);
    graphics.FillRectangle(gfx::SolidBrush(White), QRectF(0, 0, paper.cx, paper.cy));
    const gfx::Image image(GetImageFile());
    const QPointF topLeft((paper.cx - double(image.GetWidth()) - 1.0) / 2,
                          (paper.cy - double(image.GetHeight()) - 1.0) / 2);
    gfx::TextureBrush brush(image, gfx::WrapMode::Clamp);
    brush.TranslateTransform(float(topLeft.x()), float(topLeft.y()));
    graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, 0, 0));
    graphics.FillRectangle(brush, QRectF(topLeft, QSizeF(image.GetWidth(), image.GetHeight())));
}

gfx::ImageAttributes CDrawDoc::PrintAdjustment(double gamma, double saturation, bool skipNeutral)
{
    gfx::ImageAttributes attributes;
    if (!skipNeutral || saturation != 1.0) {
        const float s = float(saturation);
        const float t = 1.0f - s;
        const float r = t * 0.3086f, g = t * 0.6094f, b = t * 0.0820f;
        gfx::ColorMatrix matrix{{{r + s, r, r, 0, 0}, {g, g + s, g, 0, 0}, {b, b, b + s, 0, 0}, {0, 0, 0, 1, 0},
                                 {0, 0, 0, 0, 1}}};
        attributes.SetColorMatrix(matrix);
    }
    if (!skipNeutral || gamma != 1.0)
        attributes.SetGamma(float(gamma));
    return attributes;
}

void CDrawDoc::DrawPrintedSheet(gfx::Graphics& graphics, bool withObjects)
{
    const std::unique_ptr<gfx::Bitmap> sheet = RenderBitmap(300, 300, withObjects, false);
    if (!sheet)
        return;
    const double saturation =
        NumberText::ToDouble(Profile::GetString(PrinterSection(), QStringLiteral("Saturation"), QStringLiteral("1.0")));
    const double gamma =
        NumberText::ToDouble(Profile::GetString(PrinterSection(), QStringLiteral("Gamma"), QStringLiteral("1.0")));
    const gfx::ImageAttributes attributes = PrintAdjustment(gamma, saturation, true);
    graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, 0, 0));
    const QRectF full(0, 0, sheet->GetWidth(), sheet->GetHeight());
    graphics.DrawImage(*sheet, full, full, &attributes);
}
