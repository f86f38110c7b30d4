#pragma once

#include "TestSupport.h"
#include "document/CDrawDoc.h"
#include "document/CView.h"
#include "platform/MessageBox.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QDir>
#include <initializer_list>
#include <vector>

// A document over templates written as text. The profile and the program-wide data fields are
// emptied around each test, every message and question is recorded and answered with `answer`,
// and the current folder, which opening a project changes, is restored.
class DocumentFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Parses the template text and appends it to the document's list.
    const CTemplateFile& addTemplate(const QByteArray& text);
    // Selects the template in the list (writing it to the profile as the program does).
    void useTemplate(int index) { doc.SetTemplate(index); }
    QString path(const QString& name) const { return QDir(folder.path()).filePath(name); }

    TestFolder folder;
    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
    std::vector<QString> messages;
    int answer = MessageBox::IdNo;

private:
    QString m_folderBefore;
};

// One 4.65 inch disc with a 0.7 inch hole on a 6 by 6 inch page.
extern const QByteArray OneDiscSheet;
// A printer template with a standard disc, a full-face disc and a business-card disc.
extern const QByteArray DiscPrinter;

QByteArray readFile(const QString& path);

// Expects each point of the image to have its colour.
struct Pixel {
    int x, y;
    QRgb colour;
};
void expectPixels(const QImage& image, std::initializer_list<Pixel> pixels);

// A 200 by 200 bitmap whose world is the label's: y up, the origin at the given point.
struct LabelCanvas {
    explicit LabelCanvas(int originX = 100, int originY = 100) : bitmap(200, 200), graphics(bitmap)
    {
        graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, float(originX), float(originY)));
    }
    const QImage& image() const { return bitmap.image(); }
    gfx::Bitmap bitmap;
    gfx::Graphics graphics;
};

// A view that records what the document tells it.
class RecordingView : public CView {
public:
    explicit RecordingView(CDrawDoc* document = nullptr) : document(document) {}
    CDrawDoc* GetDocument() const override { return document; }
    void OnUpdate(CView*, int hint, CDrawObj*) override { hints.push_back(hint); }
    bool IsSelected(const CDrawObj* object) const override { return object == selected; }
    bool IsActive() const override { return true; }
    void Remove(CDrawObj* object) override { removed.push_back(object); }
    void InvalidateObject(CDrawObj*) override {}

    CDrawDoc* document;
    const CDrawObj* selected = nullptr;
    std::vector<int> hints;
    std::vector<CDrawObj*> removed;
};
