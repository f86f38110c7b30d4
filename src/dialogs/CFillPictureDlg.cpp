#include "dialogs/CFillPictureDlg.h"

#include "controls/CToolTipDialog.h"
#include "dialogs/CSampleButton.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/TextureBrush.h"
#include "view/CNetworkView.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

const char* const CFillPictureDlg::PlacementTexts[7] = {
    "Tile", "Flip Horizontally", "Flip Vertically", "Flip Horizontally and Vertically ", "Center", "Fit", "Stretch",
};

CFillPictureDlg::CFillPictureDlg(QWidget* parent) : CFillPage(parent)
{
    auto* layout = new QGridLayout(this);

    m_pBackgroundButton = new QPushButton(QStringLiteral("Select Background..."), this);
    SetControlId(m_pBackgroundButton, 1094);
    connect(m_pBackgroundButton, &QPushButton::clicked, this, &CFillPictureDlg::OnSelectBackground);
    m_pClipArtButton = new QPushButton(QStringLiteral("Select Clip Art..."), this);
    SetControlId(m_pClipArtButton, 1098);
    connect(m_pClipArtButton, &QPushButton::clicked, this, &CFillPictureDlg::OnSelectClipArt);

    m_pPlacement = new QComboBox(this);
    SetControlId(m_pPlacement, 1096);
    for (const char* text : PlacementTexts)
        m_pPlacement->addItem(QString::fromLatin1(text));
    m_pPlacement->setAccessibleName(QStringLiteral("Placement"));
    connect(m_pPlacement, &QComboBox::activated, this, &CFillPictureDlg::Apply);

    m_pFileName = new QLabel(this);
    SetControlId(m_pFileName, 1164);
    m_pFileName->setAccessibleName(QStringLiteral("Picture file"));
    m_pFileName->setMinimumWidth(200);

    m_pSample = new CSampleButton(this);
    SetControlId(m_pSample, 1097);
    m_pSample->setMinimumSize(200, 150);
    m_pPlaceholder = new QLabel(QStringLiteral("No picture"), this);
    SetControlId(m_pPlaceholder, 1079);
    m_pPlaceholder->setAlignment(Qt::AlignCenter);
    m_pPlaceholder->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_pPlaceholder->setEnabled(false);
    m_pPlaceholder->setMinimumSize(200, 150);

    layout->addWidget(m_pBackgroundButton, 0, 0);
    layout->addWidget(m_pClipArtButton, 0, 1);
    layout->addWidget(m_pPlacement, 1, 0, 1, 2);
    layout->addWidget(m_pFileName, 2, 0, 1, 2);
    // The sample and the placeholder take turns in one place.
    layout->addWidget(m_pSample, 3, 0, 1, 2);
    layout->addWidget(m_pPlaceholder, 3, 0, 1, 2);
    layout->setRowStretch(3, 1);
}

QString CFillPictureDlg::Caption() const
{
    return QStringLiteral("Picture");
}

bool CFillPictureDlg::OnInitDialog()
{
    if (!m_pFillKind || !m_pWrapMode || !m_pScale || !m_pPictureFile) {
        MessageBox::Show(QStringLiteral("Invalid pointers in CFillPicture"));
        return false;
    }
    const bool hasPicture = !m_pPictureFile->isEmpty();
    m_pFileName->setText(hasPicture ? QFileInfo(*m_pPictureFile).fileName() : QString());
    ShowPicture(hasPicture);
    m_pPlacement->setCurrentIndex(*m_pWrapMode + *m_pScale);
    return true;
}

void CFillPictureDlg::ShowPicture(bool shown)
{
    m_pSample->setVisible(shown);
    m_pPlaceholder->setVisible(!shown);
}

void CFillPictureDlg::OnSelectBackground()
{
    ChooseFile(QStringLiteral("Backgrounds/"));
}

void CFillPictureDlg::OnSelectClipArt()
{
    ChooseFile(QStringLiteral("Clip Art/"));
}

void CFillPictureDlg::ChooseFile(const QString& folder)
{
    QFileDialog dialog(this, QString(), Folders::InstallDirectory() + folder, CNetworkView::PictureFilter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setDefaultSuffix(QStringLiteral("jpg"));
    dialog.resize(600, 400);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString file = dialog.selectedFiles().front();

    const gfx::Image test(file);
    if (test.GetLastStatus() != gfx::Status::Ok) {
        ShowPicture(false);
        m_pFileName->clear();
        MessageBox::Show(QStringLiteral("Not valid image file!"));
        m_pPictureFile->clear();
        return;
    }
    *m_pPictureFile = file;
    m_pFileName->setText(QFileInfo(file).fileName());
    ShowPicture(true);
    Apply();
}

void CFillPictureDlg::Apply()
{
    *m_pFillKind = 2;
    const int index = m_pPlacement->currentIndex();
    if (index > 4) {
        *m_pWrapMode = 4;
        *m_pScale = std::uint8_t(index - 4);
    } else {
        *m_pWrapMode = index;
        *m_pScale = 0;
    }
    m_pSample->update();
}

void CFillPictureDlg::DrawSample(QPainter& painter, const QRect& rect)
{
    const int index = m_pPlacement->currentIndex();
    if (!m_pPictureFile || m_pPictureFile->isEmpty() || index < 0)
        return;
    // Loaded afresh for each paint, so the preview shows the file as it is now.
    const gfx::Image image(*m_pPictureFile);
    const double width = image.GetWidth();
    const double height = image.GetHeight();
    if (width == 0 || height == 0)
        return;

    gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
    gfx::Graphics graphics(dc);
    const QRectF sample(rect);
    if (index == 4) {
        // Center: the picture at its own size, centred in the sample when it is smaller.
        const QPointF at(sample.x() + std::max(0.0, (sample.width() - width) / 2),
                         sample.y() + std::max(0.0, (sample.height() - height) / 2));
        graphics.DrawImage(image, at);
        return;
    }
    gfx::TextureBrush brush(image);
    brush.TranslateTransform(float(sample.x()), float(sample.y()));
    if (index < 4) {
        brush.SetWrapMode(gfx::WrapMode(index));
    } else if (index == 5) {
        // Fit's preview divides both sides of the sample by one side of the picture, the
        // height of a picture wider than the sample and the width otherwise, as it always
        // has; on the label Fit and Stretch draw alike.
        if (height / sample.height() < width / sample.width())
            brush.ScaleTransform(float(sample.width() / height), float(sample.height() / height));
        else
            brush.ScaleTransform(float(sample.width() / width), float(sample.height() / width));
    } else {
        brush.ScaleTransform(float(sample.width() / width), float(sample.height() / height));
    }
    graphics.FillRectangle(brush, sample);
}
