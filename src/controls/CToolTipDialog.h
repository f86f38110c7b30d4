#pragma once

#include <QDialog>

class QShowEvent;
class QWidget;

// Control ids. A control carries its number in the dynamic property "controlId" (an int), set
// by SetControlId where the control is built; a widget without one answers 0, which no text
// and no command uses. Tooltips find their text by this number, as anything else keyed by a
// control's id may.
void SetControlId(QWidget* pWidget, int nId);
int ControlId(const QWidget* pWidget);

// A dialog whose controls explain themselves with no code of their own: each time it shows,
// the widgets inside it get their tooltips and accessible names as AddToolTips tells. A class
// that overrides showEvent calls this one's.
class CToolTipDialog : public QDialog {
    Q_OBJECT

public:
    explicit CToolTipDialog(QWidget* pParent = nullptr);

    // Walks every widget inside pParent, at any depth, windows excepted:
    // - a control without a tooltip whose control id has a text in the string table takes that
    //   text as its tooltip, so the same id shows the same text in every dialog;
    // - a control without an accessible name is named by its caption (the text of a button,
    //   label or group box as shown, without its '&' mnemonic marks) or, having none, by its
    //   tooltip, so that screen readers and tests find it by the words the user sees;
    // - a list view whose tooltip is "TOOLTIPEXPAND" shows instead the text of the item under
    //   the mouse, and nothing beside the items: entries wider than the list can be read whole.
    // Panels and dialogs that don't derive from this class call it once their children are
    // built, and again when they add controls; tooltips and names given before are kept.
    static void AddToolTips(QWidget* pParent);

protected:
    void showEvent(QShowEvent* pEvent) override;
};
