#include "panels/CTextFontPage.h"

#include "controls/CFontCombo.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "panels/CTextForm.h"
#include "platform/FontCollection.h"
#include "platform/MessageBox.h"
#include "platform/NumberText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSet>
#include <QVBoxLayout>

CTextFontPage::CTextFontPage(QWidget* parent) : CToolTipDialog(parent)
{
    setWindowFlags(Qt::Widget);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    const auto caption = [this, layout](const QString& text, QWidget* control) {
        auto* label = new QLabel(text, this);
        label->setBuddy(control);
        control->setAccessibleName(QString(text).remove(QLatin1Char('&')));
        layout->addWidget(label);
        layout->addWidget(control);
    };
    m_pFont = new CFontCombo(this);
    SetControlId(m_pFont, 1009);
    caption(QStringLiteral("&Font:"), m_pFont);
    m_pStyle = new QComboBox(this);
    m_pStyle->setEditable(true);
    m_pStyle->setInsertPolicy(QComboBox::NoInsert);
    m_pStyle->setCompleter(nullptr);
    SetControlId(m_pStyle, 1011);
    caption(QStringLiteral("St&yle:"), m_pStyle);
    m_pSize = new QComboBox(this);
    m_pSize->setEditable(true);
    m_pSize->setInsertPolicy(QComboBox::NoInsert);
    m_pSize->setCompleter(nullptr);
    SetControlId(m_pSize, 1014);
    caption(QStringLiteral("&Size:"), m_pSize);
    m_pStrikeout = new QCheckBox(QStringLiteral("Stri&keout"), this);
    SetControlId(m_pStrikeout, 1002);
    m_pUnderline = new QCheckBox(QStringLiteral("&Underline"), this);
    SetControlId(m_pUnderline, 1004);
    layout->addSpacing(6);
    layout->addWidget(m_pStrikeout);
    layout->addWidget(m_pUnderline);
    layout->addStretch(1);

    FillFonts();
    m_pStyle->addItems({QStringLiteral("Regular"), QStringLiteral("Bold"), QStringLiteral("Italic"),
                        QStringLiteral("Bold Italic")});
    for (int size : SizeList())
        m_pSize->addItem(QString::number(size), size);

    connect(m_pFont, &QComboBox::activated, this, [this] { OnChange(FontName); });
    connect(m_pSize, &QComboBox::activated, this, [this] { OnChange(FontSize); });
    connect(m_pStyle, &QComboBox::activated, this, [this] { OnChange(FontStyle); });
    connect(m_pStrikeout, &QCheckBox::clicked, this, [this] { OnChange(FontStyle); });
    connect(m_pUnderline, &QCheckBox::clicked, this, [this] { OnChange(FontStyle); });
    connect(m_pFont->lineEdit(), &QLineEdit::textEdited, this, [this] { OnEditChange(m_pFont, FontName); });
    connect(m_pStyle->lineEdit(), &QLineEdit::textEdited, this, [this] { OnEditChange(m_pStyle, FontStyle); });
    connect(m_pSize->lineEdit(), &QLineEdit::textEdited, this, [this] { OnEditChange(m_pSize, FontSize); });

    m_bReady = true;
    LoadDefaults();
}

QList<int> CTextFontPage::SizeList()
{
    QList<int> sizes{8, 9, 10, 11, 12};
    for (int size = 14; size <= 200; size += 2)
        sizes.push_back(size);
    for (int size = 210; size <= 300; size += 10)
        sizes.push_back(size);
    sizes << 320 << 340;
    return sizes;
}

void CTextFontPage::FillFonts()
{
    m_pFont->clear();
    FontCollection systemOnly;
    const FontCollection* collection = FontCollection::Published() ? FontCollection::Published() : &systemOnly;
    const QStringList families = collection->Families();
    if (families.isEmpty()) {
        MessageBox::Show(QStringLiteral("No TRUETYPE Fonts found"));
        return;
    }
    // A family is listed once, whatever the case of its name.
    QSet<QString> listed;
    for (const QString& family : families) {
        if (listed.contains(family.toCaseFolded()))
            continue;
        listed.insert(family.toCaseFolded());
        m_pFont->AddString(family, CFontCombo::TrueTypeFlag);
    }
}

void CTextFontPage::ShowFont(const QString& name, int size, int style)
{
    m_bLoading = true;
    const int font = name.isEmpty() ? 0 : m_pFont->FindStringExact(name);
    if (font >= 0) {
        m_pFont->setCurrentIndex(font);
    } else {
        // A family that is not here (a project from another computer) keeps its name; the text
        // draws in the sans-serif face meanwhile.
        m_pFont->setCurrentIndex(-1);
        m_pFont->setEditText(name);
    }
    const int sizeIndex = size == 0 ? 0 : m_pSize->findText(QString::number(size), Qt::MatchFixedString);
    if (sizeIndex >= 0) {
        m_pSize->setCurrentIndex(sizeIndex);
    } else {
        m_pSize->setCurrentIndex(-1);
        m_pSize->setEditText(QString::number(size));
    }
    m_pStyle->setCurrentIndex(style & 3);
    m_pUnderline->setChecked(style & 4);
    m_pStrikeout->setChecked(style & 8);
    m_bLoading = false;
    m_nChanged = 0;
    UpdateData();
}

void CTextFontPage::LoadFromObject(const CDrawText& text)
{
    ShowFont(text.m_fontName, text.m_fontSize, text.m_fontStyle);
    StoreDefaults();
}

void CTextFontPage::LoadDefaults()
{
    ShowFont(g_defaultProperties.m_fontName, g_defaultProperties.m_fontSize, g_defaultProperties.m_fontStyle);
}

void CTextFontPage::UpdateData()
{
    m_strFontName = m_pFont->currentText();
    // An emptied size box keeps the size it had.
    const QString size = m_pSize->currentText();
    if (!size.isEmpty())
        m_nFontSize = NumberText::ToInt(size);
    m_nFontStyle = std::max(m_pStyle->currentIndex(), 0) + (m_pUnderline->isChecked() ? 4 : 0)
                   + (m_pStrikeout->isChecked() ? 8 : 0);
}

void CTextFontPage::OnChange(int value)
{
    if (m_bLoading)
        return;
    m_nChanged |= value;
    Apply();
}

void CTextFontPage::OnEditChange(QComboBox* combo, int value)
{
    const QString typed = combo->currentText();
    const int found = combo->findText(typed, Qt::MatchFixedString);
    if (found >= 0 && found != combo->currentIndex()) {
        // Selecting keeps what was typed and where the caret stands.
        const int caret = combo->lineEdit()->cursorPosition();
        m_bLoading = true;
        combo->setCurrentIndex(found);
        combo->lineEdit()->setCursorPosition(std::min(caret, int(combo->currentText().size())));
        m_bLoading = false;
    }
    OnChange(value);
}

void CTextFontPage::Apply()
{
    if (!m_bReady || m_bLoading)
        return;
    UpdateData();
    CTextForm::EditSelectedTexts(m_pView, [this](CDrawText& text) {
        text.SetFont(m_nChanged & FontName ? m_strFontName : text.m_fontName,
                     m_nChanged & FontSize ? m_nFontSize : text.m_fontSize,
                     m_nChanged & FontStyle ? m_nFontStyle : text.m_fontStyle);
    });
    StoreDefaults();
}

void CTextFontPage::StoreDefaults()
{
    g_defaultProperties.m_fontName = m_strFontName;
    g_defaultProperties.m_fontSize = m_nFontSize;
    g_defaultProperties.m_fontStyle = m_nFontStyle;
}
