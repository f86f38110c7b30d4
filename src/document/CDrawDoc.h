#pragma once

#include "document/CDocument.h"
#include "document/CDrawObjList.h"
#include "document/LabelBackground.h"
#include "platform/CPoint.h"
#include "platform/CSize.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/ImageAttributes.h"
#include "printing/CPrinterSettings.h"

#include <QRectF>
#include <QString>
#include <array>
#include <memory>
#include <vector>

class CDrawObj;
class CTemplateFile;
class CTemplateObject;
class CView;
namespace gfx {
class DeviceContext;
class Graphics;
class TextureBrush;
} // namespace gfx

// Everything a project holds, and the one place that knows how a label becomes a picture.
// Up to three labels (a sheet may carry three different ones), each with its background and
// its objects; all size questions (template, typed diameters, bleed) are answered here.
// Logical space: 1/300 inch, x right, y up, (0, 0) at the label's centre.
class CDrawDoc : public CDocument {
public:
    static constexpr int LabelCount = 3;

    CDrawDoc();
    ~CDrawDoc() override;

    // Templates. The list belongs to the main window; the selected index lives in the
    // printer's profile section. An index out of the list gives no template (null).
    void SetTemplates(const std::vector<CTemplateFile>* templates)
    {
        m_pTemplates = templates;
        m_pEditableTemplates = nullptr;
    }
    // The main window's own list, whose sheet areas the user switches on and off for printing.
    void SetTemplates(std::vector<CTemplateFile>* templates)
    {
        m_pTemplates = templates;
        m_pEditableTemplates = templates;
    }
    int GetTemplateCount() const;
    int GetTemplate();
    void SetTemplate(int index);
    const CTemplateFile* GetTemplateFile(int index = -1);
    int GetObjectCount();
    const CTemplateObject* GetObject(int index);
    bool IsPrinterTemplate();
    int FindLabelObject(int label = -1);
    int FindClosestObject();
    // Switches an area of a template in or out of printing (its Selected flag). False when the
    // list was given read-only or the area does not exist.
    bool ToggleAreaSelected(int templateIndex, int objectIndex);

    // Sizes: logical units from units per inch, diameters and bleed in inches.
    CSize GetLogicalSize(int cx, int cy, int objectIndex);
    CSize GetPaperSize(int cx, int cy);
    double GetOuterDia();
    double GetInnerDia();
    double GetBusDia();
    void SetOuterDia(double value, bool save);
    void SetInnerDia(double value, bool save);
    void SetBusDia(double value, bool save);
    double GetTemplateBleed();
    void SetTemplateBleed(double value);

    int GetCurLabel() const { return m_nCurLabel; }
    void SetCurLabel(int label);

    // Objects of the current label.
    CDrawObj* Add(std::unique_ptr<CDrawObj> object);
    std::unique_ptr<CDrawObj> Remove(CDrawObj* object);
    CDrawObj* ObjectAt(CPoint point);
    CDrawObj* ObjectAfter(const CDrawObj* object);
    static int IndexOf(const CDrawObjList& list, const CDrawObj* object);
    CDrawObjList& GetObjects(int label = -1);
    CView* GetView() const;

    // Backgrounds: getters take a label (-1 the current one), setters work on the current one.
    const LabelBackground& GetBackground(int label = -1) const;
    gfx::COLORREF GetBackColor(int label = -1) const { return GetBackground(label).BackColor; }
    gfx::COLORREF GetBackColor2(int label = -1) const { return GetBackground(label).BackColor2; }
    int GetHatchStyle(int label = -1) const { return GetBackground(label).HatchStyle; }
    QString GetImageFile(int label = -1) const { return GetBackground(label).ImageFile; }
    int GetWrapMode(int label = -1) const { return GetBackground(label).WrapMode; }
    int GetFitMode(int label = -1) const { return GetBackground(label).FitMode; }
    void GetBackgroundAdjust(int& x, int& y, double& scale, int label = -1) const;
    void SetBackColor(gfx::COLORREF color);
    void SetBackColor2(gfx::COLORREF color);
    void SetHatchStyle(int style);
    void SetImageFile(const QString& path);
    void SetWrapMode(int mode);
    void SetFitMode(int mode);
    void SetBackgroundAdjust(int x, int y, double scale);
    // The record as a project file holds it; replaces the label's background as it stands.
    LabelBackground& Background(int label) { return m_Background[size_t(label)]; }

    bool OnNewDocument();
    // Empties the labels, reads the project, and on success makes its folder the current one
    // (relative picture paths resolve there) and takes its path. A failure leaves what was
    // read until then.
    bool OnOpenDocument(const QString& path) override;
    bool OnSaveDocument(const QString& path) override;
    // The project file: header, diameters, the three labels, then the program's data fields.
    // Always written as the latest format; 1.5, 1.6 and any unknown version (as 1.7) are read.
    // Reading appends the file's fields to g_dataFields.
    void Serialize(CArchive& ar) override;
    static const QString FileId15;
    static const QString FileId16;
    static const QString FileId17;
    // The diameters as they stand, negative when never read; the getters above fill them in.
    double StoredOuterDia() const { return m_fOuterDia; }
    double StoredInnerDia() const { return m_fInnerDia; }
    double StoredBusDia() const { return m_fBusDia; }
    // Empties every label and forgets its picture and colours; keeps the picture's placement.
    void ClearLabels();

    // The only drawing path, for screen and printer alike. With a view, also the trackers,
    // the grid, the perforations and the grey mask outside the label.
    void DrawLabel(gfx::Graphics& graphics, int cx, int cy, CView* view, int label, bool withObjects);
    void BuildLabelPath(int cx, int cy, gfx::GraphicsPath& path, int objectIndex, bool withBleed);
    void DrawBackground(gfx::Graphics& graphics, int cx, int cy, int label);
    // The whole sheet at cx by cy units per inch, each taking part label clipped to its outline
    // with bleed. Null when the paper is too large to hold in memory.
    std::unique_ptr<gfx::Bitmap> RenderBitmap(int cx, int cy, bool withObjects, bool fillWhite);
    // Draws on a screen (the current label with the view's extras) or a printer (the sheet,
    // through the printer's saturation and gamma, or the background picture alone).
    void Draw(gfx::DeviceContext& dc, CView* view, bool withObjects, bool imageOnly);
    // The printer's colour adjustment: saturation about the luminance weights, then gamma. A
    // print leaves out a value of exactly 1.0 (neutral); a preview may apply both regardless.
    static gfx::ImageAttributes PrintAdjustment(double gamma, double saturation, bool skipNeutral);

    CPrinterSettings& GetPrinter() { return m_Printer; }
    QString PrinterSection() const { return m_Printer.GetName(true); }

    int m_nTemplate = -1;
    QString m_strFolder;
    bool m_bShowGrid = false;
    QString m_strFileId;

private:
    double GetDiameter(double& stored, const char* key, int fallback, double CTemplateObject::*field);
    void SetDiameter(double& stored, const char* key, double value, bool save);
    void BackgroundChanged();
    void DrawGrid(gfx::Graphics& graphics, int cx, int cy, int label);
    void DrawPerforations(gfx::Graphics& graphics, int cx, int cy);
    void DrawMask(gfx::Graphics& graphics, int cx, int cy, int label);
    void ComposeLabelArea(gfx::Graphics& graphics, int cx, int cy, int objectIndex, bool withObjects);
    void DrawImageOnly(gfx::Graphics& graphics);
    void DrawPrintedSheet(gfx::Graphics& graphics, bool withObjects);

    double m_fOuterDia = -1.0;
    double m_fInnerDia = -1.0;
    double m_fBusDia = -1.0;
    int m_nCurLabel = 0;
    std::array<LabelBackground, LabelCount> m_Background;
    std::array<CDrawObjList, LabelCount> m_Objects;

    QRectF m_gridRect;
    std::array<gfx::GraphicsPath, 4> m_gridPaths; // inch coarse, inch fine, mm coarse, mm fine

    std::unique_ptr<gfx::Image> m_pBackImage;
    std::unique_ptr<gfx::TextureBrush> m_pBackBrush;
    QString m_strBackImage;

    const std::vector<CTemplateFile>* m_pTemplates = nullptr;
    std::vector<CTemplateFile>* m_pEditableTemplates = nullptr;
    CPrinterSettings m_Printer;
};
