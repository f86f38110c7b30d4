#include "panels/CLineProperty.h"

#include "controls/CArrowPicker.h"
#include "controls/CAutoEdit.h"
#include "controls/CColourPicker.h"
#include "controls/CLinePicker.h"
#include "controls/CNumSpinCtrl.h"
#include "dialogs/CEffectDlg.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "undo/CEditMultiAction.h"
#include "undo/CMoveAction.h"
#include "view/CNetworkView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint32_t PropertiesLabel = 61475;
constexpr std::uint32_t MoveLabel = 61454;

// The panel's template, in dialog units.
constexpr int TemplateWidth = 128;
constexpr int TemplateHeight = 316;

// Picker index to line cap code; the index is the position in this table.
constexpr int ArrowCodes[] = {16, 20, 241, 242, 19, 18};
constexpr int NoArrow = 16;
// Cap entry to dash cap.
constexpr int Caps[] = {0, 2, 3};

const char* const ShapeTexts[] = {"Rectangle", "Round Rectangle", "Ellipse", "Arc", "Halo"};
const char* const CapTexts[] = {"Flat End", "Round End", "Triangle End"};

int editValue(const CAutoEdit* edit)
{
    return std::clamp(edit->text().toInt(), 0, 100);
}

CColourPicker::EffectFill fillRecord(const DrawObjProperties& p)
{
    CColourPicker::EffectFill fill;
    fill.m_fillKind = p.m_fillKind;
    fill.m_color1 = p.m_fillColor1;
    fill.m_color2 = p.m_fillColor2;
    fill.m_gradientStyle = p.m_gradientStyle;
    fill.m_hatchStyle = p.m_hatchStyle;
    fill.m_pictureFile = p.m_pictureFile;
    fill.m_wrapMode = p.m_wrapMode;
    fill.m_gradientSwap = p.m_gradientSwap;
    fill.m_pictureScale = p.m_pictureScale;
    return fill;
}

CColourPicker::EffectFill lineRecord(const DrawObjProperties& p)
{
    CColourPicker::EffectFill line;
    line.m_fillKind = p.m_lineKind;
    line.m_color1 = p.m_lineColor1;
    line.m_color2 = p.m_lineColor2;
    line.m_gradientStyle = p.m_lineGradientMode;
    return line;
}

} // namespace

int CLineProperty::ArrowCodeOfIndex(int index)
{
    return index >= 0 && index < int(std::size(ArrowCodes)) ? ArrowCodes[index] : NoArrow;
}

int CLineProperty::ArrowIndexOfCode(int code)
{
    const auto* found = std::find(std::begin(ArrowCodes), std::end(ArrowCodes), code);
    return found == std::end(ArrowCodes) ? 0 : int(found - std::begin(ArrowCodes));
}

int CLineProperty::CapOfIndex(int index)
{
    return index >= 0 && index < int(std::size(Caps)) ? Caps[index] : 0;
}

int CLineProperty::CapIndexOf(int cap)
{
    const auto* found = std::find(std::begin(Caps), std::end(Caps), cap);
    return found == std::end(Caps) ? 0 : int(found - std::begin(Caps));
}

CLineProperty::CLineProperty(QWidget* parent) : CToolTipDialog(parent)
{
    // A panel in the main window's column, not a window of its own.
    setWindowFlags(Qt::Widget);
    CreateControls();
    // The template's size by the font's metrics, as a dialog's template is laid out.
    const QFontMetrics metrics(font());
    const double baseX =
        (metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) / 26.0 + 1) / 2;
    resize(int(TemplateWidth * baseX / 4), int(TemplateHeight * metrics.height() / 8.0));
    LoadForTool(0);
}

void CLineProperty::CreateControls()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);

    const auto numberField = [this](QWidget* parent, int editId, int spinId, const QString& name, CAutoEdit*& edit,
                                    CNumSpinCtrl*& spin) {
        edit = new CAutoEdit(parent);
        SetControlId(edit, editId);
        edit->SetAllowedChars(QStringLiteral("0123456789"));
        edit->setMaxLength(3);
        edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 10);
        spin = new CNumSpinCtrl(parent);
        SetControlId(spin, spinId);
        spin->setAccessibleName(name);
        spin->SetBuddy(edit);
        spin->SetDecimals(0);
        spin->SetRangeAndDelta(0, 100, 1);
        // Bad numbers can't be typed; one above the range shows as its limit when the edit
        // is left.
        connect(edit, &QLineEdit::editingFinished, edit, [edit] {
            const QString clamped = QString::number(editValue(edit));
            if (edit->text() != clamped)
                edit->setText(clamped);
        });
    };
    // A caption and up to three controls; a single control takes the row's whole width.
    const auto row = [](QGridLayout* grid, int line, const QString& caption, QWidget* a, QWidget* b = nullptr,
                        QWidget* c = nullptr) {
        auto* label = new QLabel(caption, grid->parentWidget());
        label->setBuddy(a);
        grid->addWidget(label, line, 0);
        grid->addWidget(a, line, 1, 1, b ? 1 : 3);
        if (b)
            grid->addWidget(b, line, 2);
        if (c)
            grid->addWidget(c, line, 3);
    };

    // Shape
    auto* shapeBox = new QGroupBox(QStringLiteral("Shape"), this);
    auto* shapeGrid = new QGridLayout(shapeBox);
    m_pShape = new QComboBox(shapeBox);
    SetControlId(m_pShape, 1086);
    for (const char* text : ShapeTexts)
        m_pShape->addItem(QString::fromLatin1(text));
    connect(m_pShape, &QComboBox::activated, this, &CLineProperty::Apply);
    m_pLockAspect = new QCheckBox(QStringLiteral("Lock Aspect Ratio"), shapeBox);
    SetControlId(m_pLockAspect, 1227);
    connect(m_pLockAspect, &QCheckBox::clicked, this, &CLineProperty::Apply);
    m_pCenter = new QPushButton(QStringLiteral("Center"), shapeBox);
    SetControlId(m_pCenter, 1152);
    connect(m_pCenter, &QPushButton::clicked, this, &CLineProperty::OnCenter);
    // The check box's caption is the widest text: it takes a row of its own, and the shape's
    // names take what "Center" leaves.
    shapeGrid->addWidget(m_pShape, 0, 0);
    shapeGrid->addWidget(m_pCenter, 0, 1);
    shapeGrid->addWidget(m_pLockAspect, 1, 0, 1, 2);
    shapeGrid->setColumnStretch(0, 1);
    m_pCenter->setMaximumWidth(m_pCenter->fontMetrics().horizontalAdvance(m_pCenter->text()) + 16);
    layout->addWidget(shapeBox);

    // Fill
    auto* fillBox = new QGroupBox(QStringLiteral("Fill"), this);
    auto* fillGrid = new QGridLayout(fillBox);
    m_pFill = new CColourPicker(fillBox);
    SetControlId(m_pFill, 1001);
    m_pFill->SetEffectHandler([](CColourPicker& picker) {
        return CEffectDlg::RunForPicker(picker, CEffectDlg::GradientPage | CEffectDlg::PatternPage | CEffectDlg::PicturePage);
    });
    connect(m_pFill, &CColourPicker::SelEndOK, this, &CLineProperty::Apply);
    numberField(fillBox, 1076, 1025, QStringLiteral("Transparency"), m_pTransparency, m_pTransparencySpin);
    connect(m_pTransparency, &QLineEdit::textChanged, this, &CLineProperty::OnTransparencyEdited);
    m_pTransparencySlider = new QSlider(Qt::Horizontal, fillBox);
    SetControlId(m_pTransparencySlider, 1237);
    m_pTransparencySlider->setAccessibleName(QStringLiteral("Transparency"));
    m_pTransparencySlider->setRange(0, 100);
    m_pTransparencySlider->setSingleStep(10);
    m_pTransparencySlider->setPageStep(20);
    connect(m_pTransparencySlider, &QSlider::valueChanged, this, &CLineProperty::OnSliderMoved);
    row(fillGrid, 0, QStringLiteral("Color:"), m_pFill);
    row(fillGrid, 1, QStringLiteral("Transparency:"), m_pTransparency, m_pTransparencySpin);
    fillGrid->addWidget(m_pTransparencySlider, 2, 0, 1, 4);
    layout->addWidget(fillBox);

    // Outline
    auto* outlineBox = new QGroupBox(QStringLiteral("Outline"), this);
    auto* outlineGrid = new QGridLayout(outlineBox);
    m_pBorder = new CColourPicker(outlineBox);
    SetControlId(m_pBorder, 1006);
    m_pBorder->SetCustomText(QStringLiteral("Gradient"));
    connect(m_pBorder, &CColourPicker::SelEndOK, this, &CLineProperty::Apply);
    numberField(outlineBox, 1068, 1257, QStringLiteral("Outline Thinkness"), m_pBorderSize, m_pBorderSizeSpin);
    connect(m_pBorderSize, &QLineEdit::textChanged, this, &CLineProperty::Apply);
    m_pDashStyle = new CLinePicker(outlineBox);
    SetControlId(m_pDashStyle, 1057);
    connect(m_pDashStyle, &CLinePicker::SelEndOK, this, &CLineProperty::Apply);
    m_pCap = new QComboBox(outlineBox);
    SetControlId(m_pCap, 1081);
    for (const char* text : CapTexts)
        m_pCap->addItem(QString::fromLatin1(text));
    connect(m_pCap, &QComboBox::activated, this, &CLineProperty::Apply);
    row(outlineGrid, 0, QStringLiteral("Color:"), m_pBorder);
    row(outlineGrid, 1, QStringLiteral("Size:"), m_pBorderSize, m_pBorderSizeSpin);
    row(outlineGrid, 2, QStringLiteral("Style:"), m_pDashStyle);
    row(outlineGrid, 3, QStringLiteral("Ends:"), m_pCap);
    layout->addWidget(outlineBox);

    // Arrow heads
    auto* arrowBox = new QGroupBox(QStringLiteral("Arrows"), this);
    auto* arrowGrid = new QGridLayout(arrowBox);
    m_pStartArrow = new CArrowPicker(arrowBox);
    SetControlId(m_pStartArrow, 1038);
    connect(m_pStartArrow, &CArrowPicker::SelEndOK, this, &CLineProperty::Apply);
    numberField(arrowBox, 1063, 1256, QStringLiteral("Start Arrow Head Size"), m_pStartArrowSize, m_pStartArrowSpin);
    connect(m_pStartArrowSize, &QLineEdit::textChanged, this, &CLineProperty::Apply);
    m_pEndArrow = new CArrowPicker(arrowBox);
    SetControlId(m_pEndArrow, 1040);
    connect(m_pEndArrow, &CArrowPicker::SelEndOK, this, &CLineProperty::Apply);
    numberField(arrowBox, 1066, 1034, QStringLiteral("End Arrow Head Size"), m_pEndArrowSize, m_pEndArrowSpin);
    connect(m_pEndArrowSize, &QLineEdit::textChanged, this, &CLineProperty::Apply);
    row(arrowGrid, 0, QStringLiteral("Start:"), m_pStartArrow, m_pStartArrowSize, m_pStartArrowSpin);
    row(arrowGrid, 1, QStringLiteral("End:"), m_pEndArrow, m_pEndArrowSize, m_pEndArrowSpin);
    layout->addWidget(arrowBox);

    layout->addStretch(1);
    m_pDefaults = new QPushButton(QStringLiteral("Defaults"), this);
    SetControlId(m_pDefaults, 1079);
    connect(m_pDefaults, &QPushButton::clicked, this, &CLineProperty::OnDefaults);
    layout->addWidget(m_pDefaults);
}

void CLineProperty::SetView(CNetworkView* view)
{
    m_pView = view;
}

// ---------------------------------------------------------------- loading

void CLineProperty::LoadShape(int shape, bool locked)
{
    m_pShape->setEnabled(true);
    m_pLockAspect->setEnabled(true);
    m_pCenter->setEnabled(true);
    m_pShape->setCurrentIndex(shape);
    m_pLockAspect->setChecked(locked);
}

void CLineProperty::ClearShape()
{
    m_pShape->setCurrentIndex(-1);
    m_pShape->setEnabled(false);
    m_pLockAspect->setChecked(false);
    m_pLockAspect->setEnabled(false);
    m_pCenter->setEnabled(false);
}

void CLineProperty::LoadAppearance(const DrawObjProperties& source)
{
    m_pDashStyle->SetIndex(source.m_dashStyle);
    m_pBorderSizeSpin->SetValue(source.m_lineWidth);

    m_pFill->SetColour(source.m_fillColor1.ToCOLORREF());
    m_pFill->SetFill(fillRecord(source));
    m_pBorder->SetColour(source.m_lineColor1.ToCOLORREF());
    m_pBorder->SetFill(lineRecord(source));

    m_pTransparencySpin->SetValue(source.m_transparency);
    m_pTransparencySlider->setValue(source.m_transparency);
    m_pStartArrowSpin->SetValue(source.m_startArrowSize);
    m_pEndArrowSpin->SetValue(source.m_endArrowSize);
    m_pStartArrow->SetIndex(ArrowIndexOfCode(source.m_startArrow));
    m_pEndArrow->SetIndex(ArrowIndexOfCode(source.m_endArrow));

    // A visible outline (bit 0) or fill (bit 1) is a picker with its fill; a hidden one is
    // the picker's "Clear".
    m_pBorder->SetNoFill(!(source.m_flags & 1));
    m_pFill->SetNoFill(!(source.m_flags & 2));
}

void CLineProperty::EnableByKind()
{
    for (QWidget* widget : std::initializer_list<QWidget*>{m_pStartArrow, m_pEndArrow, m_pStartArrowSize,
                                                           m_pStartArrowSpin, m_pEndArrowSize, m_pEndArrowSpin})
        widget->setEnabled(m_bArrowControls);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_pFill, m_pTransparencySlider, m_pTransparency,
                                                           m_pTransparencySpin})
        widget->setEnabled(!m_bFillOff);
}

void CLineProperty::LoadForTool(int toolArgument)
{
    // A picture is chosen for one object; it never becomes the look of the next.
    if (!g_defaultProperties.m_pictureFile.isEmpty())
        ResetDefaultProperties();
    m_nToolArgument = toolArgument;
    const int shape = toolArgument & 0xFF;

    m_bLoading = true;
    if (shape > 4)
        ClearShape();
    else
        LoadShape(shape, (toolArgument & CDrawRect::AspectLock) != 0);
    LoadAppearance(g_defaultProperties);
    m_pCap->setCurrentIndex(CapIndexOf(g_defaultProperties.m_dashCap));
    m_bArrowControls = shape == CDrawRect::ArrowLine;
    m_bFillOff = shape == CDrawRect::ArrowLine || shape == CDrawRect::Line || shape == 8 || shape == 6;
    EnableByKind();
    m_bLoading = false;
}

void CLineProperty::LoadFromObject(CDrawObj* object)
{
    const auto* rect = dynamic_cast<const CDrawRect*>(object);
    const auto* poly = dynamic_cast<const CDrawPoly*>(object);
    const bool line = rect && (rect->ShapeCode() == CDrawRect::Line || rect->ShapeCode() == CDrawRect::ArrowLine);

    m_bLoading = true;
    if (rect && !line)
        LoadShape(rect->ShapeCode(), rect->IsAspectLocked());
    else
        ClearShape();
    LoadAppearance(*object);
    // The cap entry is not read from the object: the entry's own index is taken as a stored
    // cap, so Round End shows Flat End and Triangle End shows Round End. Users' panels have
    // always behaved so; the defaults of a tool show the true cap.
    m_pCap->setCurrentIndex(CapIndexOf(m_pCap->currentIndex()));
    m_bArrowControls = rect && rect->ShapeCode() == CDrawRect::ArrowLine;
    m_bFillOff = line || (poly && (poly->m_polyKind == CDrawPoly::Polyline || poly->m_polyKind == CDrawPoly::Curve));
    EnableByKind();
    m_bLoading = false;
    StoreDefaults();
}

// ---------------------------------------------------------------- writing

void CLineProperty::WriteAppearance(DrawObjProperties& target) const
{
    const CColourPicker::EffectFill& fill = m_pFill->GetFill();
    const CColourPicker::EffectFill& line = m_pBorder->GetFill();
    target.m_dashCap = CapOfIndex(m_pCap->currentIndex());
    target.m_fillKind = fill.m_fillKind;
    target.m_lineKind = line.m_fillKind;
    target.m_fillColor2 = fill.m_color2;
    target.m_lineColor2 = line.m_color2;
    target.m_lineWidth = std::uint8_t(editValue(m_pBorderSize));
    target.m_gradientStyle = fill.m_gradientStyle;
    target.m_lineGradientMode = line.m_gradientStyle;
    target.m_hatchStyle = fill.m_hatchStyle;
    target.m_pictureFile = fill.m_pictureFile;
    target.m_wrapMode = fill.m_wrapMode;
    target.m_gradientSwap = fill.m_gradientSwap;
    target.m_pictureScale = fill.m_pictureScale;
    target.m_startArrowSize = std::uint8_t(editValue(m_pStartArrowSize));
    target.m_endArrowSize = std::uint8_t(editValue(m_pEndArrowSize));
    target.m_startArrow = ArrowCodeOfIndex(m_pStartArrow->GetIndex());
    target.m_endArrow = ArrowCodeOfIndex(m_pEndArrow->GetIndex());
    target.m_dashStyle = m_pDashStyle->GetIndex();
    // A solid colour is the picker's own colour; the other kinds keep theirs in the record.
    target.m_fillColor1 = fill.m_fillKind == 0 ? gfx::Color::FromCOLORREF(m_pFill->GetColour()) : fill.m_color1;
    target.m_transparency = std::uint8_t(editValue(m_pTransparency));
    target.m_lineColor1 = line.m_fillKind == 0 ? gfx::Color::FromCOLORREF(m_pBorder->GetColour()) : line.m_color1;
    target.m_flags = std::uint8_t(target.m_flags & ~3);
    if (!m_pBorder->IsNoFill())
        target.m_flags |= 1;
    if (!m_pFill->IsNoFill())
        target.m_flags |= 2;
}

void CLineProperty::StoreDefaults()
{
    WriteAppearance(g_defaultProperties);
}

void CLineProperty::Apply()
{
    if (m_bLoading)
        return;
    if (m_pView && !m_pView->m_selection.empty()) {
        CDrawObjPtrList& selection = m_pView->m_selection;
        m_pView->CloseCurrentAction();
        auto* action = new CEditMultiAction(m_pView, PropertiesLabel, selection);
        m_pView->SetCurrentAction(action);
        for (CDrawObj* object : selection) {
            if (dynamic_cast<CDrawText*>(object))
                continue;
            // Before and after: a thinner outline or a smaller head leaves less to repaint.
            m_pView->InvalidateObject(object);
            WriteAppearance(*object);
            auto* rect = dynamic_cast<CDrawRect*>(object);
            // A selection whose shown object has no shape (a line) leaves the shapes alone.
            if (rect && rect->ShapeCode() != CDrawRect::Line && rect->ShapeCode() != CDrawRect::ArrowLine
                && m_pShape->currentIndex() >= 0) {
                rect->m_shape = m_pShape->currentIndex() | (m_pLockAspect->isChecked() ? CDrawRect::AspectLock : 0);
            }
            m_pView->InvalidateObject(object);
        }
        action->Do();
    }
    StoreDefaults();
}

void CLineProperty::OnCenter()
{
    if (!m_pView)
        return;
    CDrawObjPtrList shapes;
    for (CDrawObj* object : m_pView->m_selection) {
        if (!dynamic_cast<CDrawText*>(object))
            shapes.push_back(object);
    }
    if (shapes.empty())
        return;
    // A step of its own: a property edit's snapshot gives back looks, not places, so centring
    // through it could not be undone.
    m_pView->CloseCurrentAction();
    auto* action = new CMoveAction(m_pView, MoveLabel, shapes);
    m_pView->SetCurrentAction(action);
    for (CDrawObj* object : shapes) {
        // On the disc's centre, with the size and the direction it was drawn in.
        const CRect r = object->GetRect();
        const int w = r.Width();
        const int h = r.Height();
        object->MoveTo(CRect(-w / 2, -h / 2, w / 2, h / 2), m_pView);
    }
    m_pView->viewport()->update();
    action->Do();
}

void CLineProperty::OnDefaults()
{
    ResetDefaultProperties();
    LoadForTool(m_nToolArgument);
    Apply();
}

void CLineProperty::OnSliderMoved(int position)
{
    // The slider reaches the objects through the edit, whose change applies.
    m_pTransparency->setText(QString::number(position));
}

void CLineProperty::OnTransparencyEdited()
{
    {
        const QSignalBlocker blocker(m_pTransparencySlider);
        m_pTransparencySlider->setValue(editValue(m_pTransparency));
    }
    Apply();
}
