#pragma once

#include <QAbstractButton>

class CDrawDoc;
class CTemplateFile;

// The preview of a template: its paper on grey, fitted into the control, with its label areas
// outlined (discs, business-card discs with their flat edges, rotated rectangles and their
// perforations). On a sheet, the areas that take part in printing are highlighted, and a click
// switches every area under the mouse in or out; disabled, the preview draws all areas plain
// and ignores clicks. The areas' state lives in the templates themselves.
class CTemplateButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit CTemplateButton(QWidget* parent = nullptr);

    void SetDocument(CDrawDoc* document) { m_pDocument = document; }
    // The template shown, an index into the document's list; repaints.
    void SetTemplateIndex(int index);
    int GetTemplateIndex() const { return m_nTemplate; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    CDrawDoc* m_pDocument = nullptr;
    int m_nTemplate = 0;
};
