#pragma once

#include <QImage>
#include <QWidget>

// The print dialog's picture of what will print, shown through the printer's gamma and
// saturation as they are being set, centred at its own size. The adjustment is always applied, also at 1.0, so that
// what the picture shows doesn't jump when a value passes through neutral.
class CAdjustColorButton : public QWidget {
    Q_OBJECT

public:
    explicit CAdjustColorButton(QWidget* parent = nullptr);

    void SetBitmap(const QImage& bitmap);
    const QImage& GetBitmap() const { return m_bitmap; }

    double m_fGamma = 1.0;
    double m_fSaturation = 1.0;

    QSize sizeHint() const override { return QSize(140, 140); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_bitmap;
};
