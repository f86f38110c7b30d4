#include "panels/CSubForm2_2.h"

#include "controls/CIntValidate.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CRealValidate.h"
#include "controls/CSeekButton.h"
#include "controls/CSeekEdit.h"
#include "document/CDrawDoc.h"
#include "panels/PanelSupport.h"
#include "platform/NumberText.h"
#include "undo/CPaperAction.h"
#include "view/CNetworkView.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QVBoxLayout>

#include <cmath>
#include <tuple>

namespace {

constexpr std::uint32_t BackgroundLabel = 61463;
// A press steps at once; held, it repeats after half a second, then quickly and faster.
constexpr int SeekFirstDelay = 500;
constexpr int SeekRepeatDelay = 10;

} // namespace

CSubForm2_2::CSubForm2_2(QWidget* parent)
    : CToolTipDialog(parent)
{
    setWindowFlags(Qt::Widget);
    auto* xCaption = new QLabel(QStringLiteral("X:"), this);
    m_pX = new CSeekEdit(this);
    SetControlId(m_pX, 1042);
    auto* yCaption = new QLabel(QStringLiteral("Y:"), this);
    m_pY = new CSeekEdit(this);
    SetControlId(m_pY, 1031);
    m_pXValidator = std::make_unique<CIntValidate>();
    m_pYValidator = std::make_unique<CIntValidate>();
    const std::tuple<CSeekEdit*, QLabel*, CIntValidate*> positions[] = {{m_pX, xCaption, m_pXValidator.get()},
                                                                         {m_pY, yCaption, m_pYValidator.get()}};
    for (auto [edit, caption, validator] : positions) {
        edit->SetCaption(caption);
        edit->SetAllowedChars(QStringLiteral("-0123456789"));
        edit->SetLimit(6);
        edit->SetValidator(validator);
    }

    // The arrows: id, picture, the value they move, and whether they decrease it.
    struct Seek {
        int id;
        QStyle::StandardPixmap picture;
        int* value;
        bool decrease;
        CSeekEdit* edit;
        int row, column;
    };
    const Seek seeks[] = {
        {1027, QStyle::SP_ArrowUp, &m_nY, true, m_pY, 0, 1},
        {1020, QStyle::SP_ArrowLeft, &m_nX, true, m_pX, 1, 0},
        {1024, QStyle::SP_ArrowRight, &m_nX, false, m_pX, 1, 2},
        {1022, QStyle::SP_ArrowDown, &m_nY, false, m_pY, 2, 1},
    };
    auto* arrows = new QGridLayout;
    for (const Seek& seek : seeks) {
        auto* button = new CSeekButton(QString(), this);
        SetControlId(button, seek.id);
        button->setIcon(style()->standardIcon(seek.picture));
        button->setFixedWidth(button->sizeHint().height() * 3 / 2);
        button->Init(seek.value, seek.decrease, 1, -1000, 1000, SeekFirstDelay, SeekRepeatDelay);
        // The edit shows the value at once; its change moves the picture.
        connect(button, &CSeekButton::valueStepped, seek.edit, &CSeekEdit::SetValue);
        arrows->addWidget(button, seek.row, seek.column);
    }

    auto* scaleCaption = new QLabel(QStringLiteral("Scale:"), this);
    m_pScale = new CAutoEdit(this);
    SetControlId(m_pScale, 1018);
    m_pScale->SetCaption(scaleCaption);
    m_pScale->SetAllowedChars(QStringLiteral(".0123456789"));
    m_pScale->SetLimit(6);
    m_pScaleValidator = std::make_unique<CRealValidate>();
    m_pScale->SetValidator(m_pScaleValidator.get());
    m_pScaleSpin = new CNumSpinCtrl(this);
    SetControlId(m_pScaleSpin, 1239);
    m_pScaleSpin->setAccessibleName(QStringLiteral("Scale"));
    m_pScaleSpin->SetBuddy(m_pScale);
    m_pScaleSpin->SetDecimals(3);
    m_pScaleSpin->SetRangeAndDelta(0.05, 99.999, 0.005);
    m_pScaleSlider = new QSlider(Qt::Horizontal, this);
    SetControlId(m_pScaleSlider, 1017);
    m_pScaleSlider->setRange(10, 5000);
    m_pScaleSlider->setSingleStep(10);
    m_pScaleSlider->setPageStep(100);

    auto* finish = new QPushButton(QStringLiteral("Finish"), this);
    SetControlId(finish, 1107);
    finish->setAutoDefault(false);

    auto* position = new QGridLayout;
    position->addWidget(xCaption, 0, 0);
    position->addWidget(m_pX, 0, 1);
    position->addWidget(yCaption, 1, 0);
    position->addWidget(m_pY, 1, 1);
    auto* scale = new QGridLayout;
    scale->addWidget(scaleCaption, 0, 0);
    scale->addWidget(m_pScale, 0, 1);
    scale->addWidget(m_pScaleSpin, 0, 2);
    scale->addWidget(m_pScaleSlider, 1, 0, 1, 3);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(position);
    auto* centred = new QHBoxLayout;
    centred->addStretch();
    centred->addLayout(arrows);
    centred->addStretch();
    layout->addLayout(centred);
    layout->addLayout(scale);
    layout->addStretch();
    layout->addWidget(finish);
    setFixedSize(PanelSupport::DialogUnitsToPixels(font(), 128, 154));

    connect(m_pX, &QLineEdit::textChanged, this, &CSubForm2_2::OnPositionChanged);
    connect(m_pY, &QLineEdit::textChanged, this, &CSubForm2_2::OnPositionChanged);
    connect(m_pScale, &QLineEdit::textChanged, this, &CSubForm2_2::OnScaleChanged);
    connect(m_pScaleSlider, &QSlider::actionTriggered, this, &CSubForm2_2::OnSliderAction);
    connect(finish, &QPushButton::clicked, this, &CSubForm2_2::OnFinish);
}

CSubForm2_2::~CSubForm2_2() = default;

void CSubForm2_2::SetView(CNetworkView* view)
{
    m_pView = view;
    LoadFromDocument();
}

void CSubForm2_2::showEvent(QShowEvent* event)
{
    // The label may have changed since the panel last showed.
    LoadFromDocument();
    m_pScaleSlider->setEnabled(m_bScale);
    m_pScale->setEnabled(m_bScale);
    m_pScaleSpin->setEnabled(m_bScale);
    CToolTipDialog::showEvent(event);
}

void CSubForm2_2::LoadFromDocument()
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    double scale = 1.0;
    document->GetBackgroundAdjust(m_nX, m_nY, scale);
    // Showing the values is no change of them.
    const QSignalBlocker x(m_pX), y(m_pY), edit(m_pScale);
    m_pX->SetValue(m_nX);
    m_pY->SetValue(m_nY);
    m_pScale->setText(QString::asprintf("%2.3f", scale));
    m_pScaleSlider->setValue(PanelSupport::Thousandths(scale, *m_pScaleSlider));
}

void CSubForm2_2::SetAdjust(int x, int y, double scale)
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    auto* open = dynamic_cast<CPaperAction*>(m_pView->m_pCurAction);
    if (open && !open->IsDoCalled()) {
        // Part of the adjustment the window opened.
        document->SetBackgroundAdjust(x, y, scale);
    } else {
        // The adjustment has ended already (any press in the window ends it): a change still
        // arriving is a step of its own.
        m_pView->CloseCurrentAction();
        auto* action = new CPaperAction(m_pView, BackgroundLabel);
        m_pView->SetCurrentAction(action);
        document->SetBackgroundAdjust(x, y, scale);
        action->Do();
    }
    m_pView->viewport()->update();
}

void CSubForm2_2::OnPositionChanged()
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    // A typed number goes on from where the arrows would step it.
    m_nX = NumberText::ToInt(m_pX->text());
    m_nY = NumberText::ToInt(m_pY->text());
    int x = 0, y = 0;
    double scale = 1.0;
    document->GetBackgroundAdjust(x, y, scale);
    SetAdjust(m_nX, m_nY, scale);
}

void CSubForm2_2::OnScaleChanged()
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    double scale = NumberText::ToDouble(m_pScale->text());
    // Pasted text may say "inf" or "nan", which no scale can be.
    if (!std::isfinite(scale))
        scale = 0.0;
    int x = 0, y = 0;
    double unchanged = 1.0;
    document->GetBackgroundAdjust(x, y, unchanged);
    SetAdjust(x, y, scale);
    m_pScaleSlider->setValue(PanelSupport::Thousandths(scale, *m_pScaleSlider));
}

void CSubForm2_2::OnSliderAction(int action)
{
    const int position = PanelSupport::ScrolledPosition(*m_pScaleSlider, action, 10, 10, 100, 100);
    m_pScaleSlider->setSliderPosition(position);
    // The edit's change does the rest, also when its text stays as it was.
    const QString text = QString::asprintf("%2.3f", position / 1000.0);
    if (m_pScale->text() == text)
        OnScaleChanged();
    else
        m_pScale->setText(text);
}

void CSubForm2_2::OnFinish()
{
    // A press on the button has usually recorded the step already (the window ends the
    // adjustment at any press); then there is nothing left to record.
    if (m_pView && m_pView->m_pCurAction && !m_pView->m_pCurAction->IsDoCalled())
        m_pView->m_pCurAction->Do();
    emit finished();
}
