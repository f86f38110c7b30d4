#include "controls/CToolTipDialog.h"

#include "controls/StringTable.h"

#include <QAbstractButton>
#include <QEvent>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QTextDocumentFragment>
#include <QToolTip>

namespace {

constexpr char ControlIdProperty[] = "controlId";
const QString ExpandMarker = QStringLiteral("TOOLTIPEXPAND");

// The tooltip of a list whose entries may be wider than the list: the text of the item under
// the mouse, shown over that item only. Tooltip events reach the list's viewport; taking them
// there keeps the list's own tooltip (and its parents') from showing beside the items.
class ItemTextToolTip : public QObject {
public:
    explicit ItemTextToolTip(QListView* pList) : QObject(pList), m_pList(pList)
    {
        pList->viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject* /*pWatched*/, QEvent* pEvent) override
    {
        if (pEvent->type() != QEvent::ToolTip)
            return false;
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const QModelIndex index = m_pList->indexAt(pHelp->pos());
        if (index.isValid())
            QToolTip::showText(pHelp->globalPos(), index.data(Qt::DisplayRole).toString(), m_pList->viewport(),
                               m_pList->visualRect(index));
        else
            QToolTip::hideText();
        return true;
    }

private:
    QListView* m_pList;
};

// A caption as the user reads it: "&&" shows as '&', a single '&' marks the next letter.
QString WithoutMnemonics(const QString& strText)
{
    QString strShown;
    strShown.reserve(strText.size());
    for (qsizetype i = 0; i < strText.size(); ++i) {
        if (strText[i] == u'&' && ++i == strText.size())
            break;
        strShown += strText[i];
    }
    return strShown;
}

QString Caption(const QWidget* pWidget)
{
    if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget))
        return WithoutMnemonics(pButton->text());
    if (const auto* pBox = qobject_cast<const QGroupBox*>(pWidget))
        return WithoutMnemonics(pBox->title());
    if (const auto* pLabel = qobject_cast<const QLabel*>(pWidget)) {
        const QString& strText = pLabel->text();
        const Qt::TextFormat format = pLabel->textFormat();
        if (format == Qt::RichText || (format == Qt::AutoText && Qt::mightBeRichText(strText)))
            return QTextDocumentFragment::fromHtml(strText).toPlainText();
        // A plain label draws its '&' as typed unless it has a buddy to give the mnemonic to.
        return pLabel->buddy() ? WithoutMnemonics(strText) : strText;
    }
    return {};
}

} // namespace

void SetControlId(QWidget* pWidget, int nId)
{
    pWidget->setProperty(ControlIdProperty, nId);
}

int ControlId(const QWidget* pWidget)
{
    return pWidget->property(ControlIdProperty).toInt();
}

CToolTipDialog::CToolTipDialog(QWidget* pParent) : QDialog(pParent)
{
}

void CToolTipDialog::AddToolTips(QWidget* pParent)
{
    for (QWidget* pChild : pParent->findChildren<QWidget*>()) {
        if (pChild->isWindow())
            continue;
        if (pChild->toolTip().isEmpty()) {
            if (const auto strTip = StringTable::LoadString(ControlId(pChild)))
                pChild->setToolTip(*strTip);
        }
        if (auto* pList = qobject_cast<QListView*>(pChild); pList && pList->toolTip() == ExpandMarker) {
            // The marker asks for the behaviour; it is no text to show or to name the list by.
            pList->setToolTip(QString());
            new ItemTextToolTip(pList);
        }
        if (pChild->accessibleName().isEmpty()) {
            QString strName = Caption(pChild);
            if (strName.isEmpty())
                strName = pChild->toolTip();
            if (!strName.isEmpty())
                pChild->setAccessibleName(strName);
        }
    }
}

void CToolTipDialog::showEvent(QShowEvent* pEvent)
{
    QDialog::showEvent(pEvent);
    AddToolTips(this);
}
