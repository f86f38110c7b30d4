#include "controls/CFontCombo.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int PictureSize = 12;

// The picture of an outline font: two overlapping letters T, the second set lower and to the
// right, as font lists have always shown them.
const QPixmap& FontPicture()
{
    static const QPixmap picture = [] {
        QPixmap pixmap(PictureSize, PictureSize);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        const auto letterT = [&painter](int x, int y, QColor colour) {
            painter.fillRect(x, y, 7, 2, colour);
            painter.fillRect(x + 2, y, 3, 8, colour);
        };
        letterT(0, 0, QColor(128, 128, 128));
        letterT(5, 4, QColor(0, 0, 0));
        return pixmap;
    }();
    return picture;
}

// Draws each list entry itself: the highlight when selected, the picture at 3 pixels from the
// left and 1 from the top, the family 15 pixels further on, centred by height.
class FontItemDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const bool selected = option.state & QStyle::State_Selected;
        const QPalette& palette = option.palette;
        painter->save();
        painter->fillRect(option.rect, selected ? palette.highlight() : palette.base());
        const QRect& r = option.rect;
        painter->drawPixmap(r.left() + 3, r.top() + 1, FontPicture());
        painter->setPen(selected ? palette.highlightedText().color() : palette.text().color());
        const QRect text(r.left() + 3 + 15, r.top(), r.width() - 18, r.height());
        painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter, index.data(Qt::DisplayRole).toString());
        if (option.state & QStyle::State_HasFocus) {
            QStyleOptionFocusRect focus;
            focus.rect = r;
            focus.state = option.state;
            focus.backgroundColor = selected ? palette.highlight().color() : palette.base().color();
            QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter);
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setWidth(size.width() + 18);
        size.setHeight(std::max(size.height(), PictureSize + 2));
        return size;
    }
};

} // namespace

CFontCombo::CFontCombo(QWidget* parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    // What the user types is the family asked for; no completion puts other words in.
    setCompleter(nullptr);
    setItemDelegate(new FontItemDelegate(this));
    // Family names run long; the box keeps to its column and its list opens as wide as they need.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
}

int CFontCombo::AddString(const QString& text, int data)
{
    // After the entries that sort before it or equal to it, as a sorted list box inserts.
    int low = 0, high = count();
    while (low < high) {
        const int middle = (low + high) / 2;
        if (itemText(middle).compare(text, Qt::CaseInsensitive) <= 0)
            low = middle + 1;
        else
            high = middle;
    }
    insertItem(low, text, data);
    return low;
}

int CFontCombo::FindStringExact(const QString& text) const
{
    return findText(text, Qt::MatchFixedString);
}
