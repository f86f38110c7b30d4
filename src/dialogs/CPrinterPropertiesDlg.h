#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/Spooler.h"

#include <QByteArray>
#include <QList>

class QComboBox;

// The set-up of one printer: a list per option the queue offers (its driver's options, or the
// standard job attributes of a queue without a driver), grouped as the driver groups them. Each
// list shows what the printer's set-up record holds, else the queue's default; OK writes the
// choices into the record, leaving its other lines, copies among them, as they were.
class CPrinterPropertiesDlg : public CToolTipDialog {
    Q_OBJECT

public:
    // True when the user confirmed, the record then holding the choices. When the spooler
    // can't tell the queue's options the user is told why, and the answer is false.
    static bool Run(QWidget* parent, const QString& queue, const QString& printerName, QByteArray* devMode);

private:
    CPrinterPropertiesDlg(QWidget* parent, const QString& printerName, const QList<SpoolerChoice>& options,
                          const QByteArray& devMode);
    void CreateControls();
    // The record with the choices made.
    QByteArray Result() const;

    QList<SpoolerChoice> m_options;
    QByteArray m_devMode;
    // One list per option, in m_options' order, and the choice each showed at the start.
    QList<QComboBox*> m_combos;
    QList<int> m_initial;
};
