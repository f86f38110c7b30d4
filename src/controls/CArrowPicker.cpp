#include "controls/CArrowPicker.h"

#include "controls/CArrowWnd.h"
#include "platform/graphics/ArrowHeads.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/Pen.h"

#include <QPainter>
#include <QRectF>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>

namespace {

const char* const g_arrowNames[gfx::ArrowHeads::PickerCount] = {"No Arrow", "Arrow", "Open", "Stealth", "Diamond", "Oval"};

// A short line ending in the head, as a line object with that end head draws it. Each head
// is sized to reach 6 pixels from the line's end at most, so that all fit their cells alike.
QImage MakeArrowImage(int nIndex)
{
    constexpr int nSize = CArrowPicker::ImageSize;
    constexpr int nLineWidth = 2;
    constexpr int nReach = 6;
    const int nCode = gfx::ArrowHeads::CodeAt(nIndex);
    const QRectF bounds = gfx::ArrowHeads::Path(nCode).GetBounds();
    const qreal extent = std::max({-bounds.left(), bounds.right(), -bounds.top(), bounds.bottom(), qreal(1)});
    const int nHeadSize = int(nReach / extent);
    gfx::Bitmap bitmap(nSize, nSize);
    {
        gfx::Graphics graphics(bitmap);
        graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
        gfx::Pen pen(gfx::Color(0, 0, 0), float(nLineWidth));
        gfx::ArrowHeads::SetCaps(pen, gfx::ArrowHeads::NoArrow, 0, nCode, nHeadSize, nLineWidth);
        const float y = nSize / 2.0f;
        graphics.DrawLine(pen, QPointF(4, y), QPointF(nSize - 4 - nReach, y));
    }
    return bitmap.image();
}

} // namespace

CArrowPicker::CArrowPicker(QWidget* pParent) : CIndexPicker(pParent)
{
    for (int i = 0; i < gfx::ArrowHeads::PickerCount; ++i)
        m_images.push_back(MakeArrowImage(i));
}

QString CArrowPicker::ArrowName(int nIndex)
{
    return nIndex >= 0 && nIndex < gfx::ArrowHeads::PickerCount ? QString::fromLatin1(g_arrowNames[nIndex]) : QString();
}

QSize CArrowPicker::sizeHint() const
{
    return {ImageSize + 15 + 8, ImageSize + 4};
}

CIndexPopupWnd* CArrowPicker::CreatePopup()
{
    return new CArrowWnd(this, GetIndex());
}

void CArrowPicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    DrawFace(painter);

    // The head in the button less 15 pixels on the right, where the drop-down arrow goes.
    const QRect image = rect().adjusted(0, 0, -15, 0);
    QStyleOption arrowOption;
    arrowOption.initFrom(this);
    arrowOption.rect = QRect(image.right() + 1, height() / 2 - 5, 11, 10);
    style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrowOption, &painter, this);

    const int nIndex = GetIndex();
    if (nIndex >= 0 && nIndex < GetImageCount()) {
        if (!isEnabled())
            painter.setOpacity(0.4);
        const QImage& picture = m_images[std::size_t(nIndex)];
        painter.drawImage(image.center() - QPoint(picture.width() / 2, picture.height() / 2) + QPoint(1, 1), picture);
        painter.setOpacity(1.0);
    }
    DrawFocus(painter, image.adjusted(3, 3, -1, -3));
}
