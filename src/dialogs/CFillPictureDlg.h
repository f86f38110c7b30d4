#pragma once

#include "dialogs/CFillPage.h"

#include <cstdint>

class CSampleButton;
class QComboBox;
class QLabel;
class QPushButton;

// The Picture page: a picture file from the Backgrounds or the Clip Art folder, and how it is
// placed (tiled, flipped, centred, fitted or stretched). A file that doesn't load as a picture
// is refused here, so it never reaches an object.
class CFillPictureDlg : public CFillPage {
    Q_OBJECT

public:
    explicit CFillPictureDlg(QWidget* parent = nullptr);

    QString Caption() const override;
    bool OnInitDialog() override;
    void DrawSample(QPainter& painter, const QRect& rect) override;

    // The caller's variables.
    int* m_pFillKind = nullptr;
    int* m_pWrapMode = nullptr;
    std::uint8_t* m_pScale = nullptr;
    QString* m_pPictureFile = nullptr;

    // The placements as the combo box lists them; the index is wrap mode + scale.
    static const char* const PlacementTexts[7];

private:
    void OnSelectBackground();
    void OnSelectClipArt();
    // Asks for a picture in the program's folder and takes it when it loads.
    void ChooseFile(const QString& folder);
    // A new file or placement: the fill becomes this picture, placed as the combo box says.
    void Apply();
    void ShowPicture(bool shown);

    QPushButton* m_pBackgroundButton;
    QPushButton* m_pClipArtButton;
    QComboBox* m_pPlacement;
    QLabel* m_pFileName;
    CSampleButton* m_pSample;
    QLabel* m_pPlaceholder;
};
