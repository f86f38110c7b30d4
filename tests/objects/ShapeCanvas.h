#pragma once

#include "document/CArchive.h"
#include "document/CView.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QString>
#include <memory>
#include <vector>

// A small label to draw shapes on, as the view draws it: a white bitmap under a device mapping
// that turns y upward with the origin in the middle, the world transform left alone, and the
// application's drawing settings.
class ShapeCanvas {
public:
    explicit ShapeCanvas(int size = 200) : m_bitmap(size, size)
    {
        m_bitmap.image().fill(Qt::white);
        m_painter.begin(&m_bitmap.image());
        m_dc = std::make_unique<gfx::DeviceContext>(m_painter, 300, 300, false);
        m_dc->SetViewportOrg(size / 2, size / 2);
        m_dc->SetViewportExt(1, -1);
        m_graphics = std::make_unique<gfx::Graphics>(*m_dc);
        RenderQuality::Apply(*m_graphics);
    }

    gfx::Graphics& graphics() { return *m_graphics; }

    // The pixels drawn so far; ends the drawing.
    QImage image()
    {
        m_graphics.reset();
        if (m_painter.isActive())
            m_painter.end();
        return m_bitmap.image().convertToFormat(QImage::Format_ARGB32);
    }

    // The device pixel of a document point.
    static QPoint device(int x, int y, int size = 200) { return QPoint(size / 2 + x, size / 2 - y); }

    // The objects drawn one after the other on a fresh canvas.
    template <class Objects> static QImage render(const Objects& objects, int size = 200)
    {
        ShapeCanvas canvas(size);
        for (const auto& object : objects)
            object->Draw(canvas.graphics(), 300, 300, nullptr);
        return canvas.image();
    }

private:
    gfx::Bitmap m_bitmap;
    QPainter m_painter;
    std::unique_ptr<gfx::DeviceContext> m_dc;
    std::unique_ptr<gfx::Graphics> m_graphics;
};

// One object drawn on a fresh canvas.
template <class Object> QImage drawn(Object& object, int size = 200)
{
    return ShapeCanvas::render(std::vector<Object*>{&object}, size);
}

inline bool near(QRgb pixel, QColor color, int tolerance = 8)
{
    return std::abs(qRed(pixel) - color.red()) <= tolerance && std::abs(qGreen(pixel) - color.green()) <= tolerance
           && std::abs(qBlue(pixel) - color.blue()) <= tolerance;
}

// A picture file of w by h pixels: the top half red, the bottom half blue.
inline QImage twoBandPicture(int w, int h)
{
    QImage picture(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            picture.setPixel(x, y, y < h / 2 ? qRgb(255, 0, 0) : qRgb(0, 0, 255));
    return picture;
}

// Whether a one-unit square at (x, y) picks the object.
inline bool picks(CDrawObj& object, int x, int y)
{
    return object.Intersects(CRect(x, y, x + 1, y + 1));
}

// A view that counts the repaints asked of it, with the keys held and the screen resolution
// a test gives it.
class CountingView : public CView {
public:
    CDrawDoc* GetDocument() const override { return nullptr; }
    Qt::KeyboardModifiers Modifiers() const override { return keys; }
    int ScreenResolution() const override { return resolution; }
    void OnUpdate(CView*, int, CDrawObj*) override { ++updates; }
    bool IsSelected(const CDrawObj*) const override { return false; }
    bool IsActive() const override { return true; }
    void Remove(CDrawObj*) override {}
    void InvalidateObject(CDrawObj*) override { ++invalidations; }
    int updates = 0;
    int invalidations = 0;
    Qt::KeyboardModifiers keys = Qt::NoModifier;
    int resolution = 96;
};

// What the object writes to a project file: equal bytes mean equal stored fields.
inline QByteArray stored(CDrawObj& object)
{
    CArchive archive;
    object.Serialize(archive);
    return archive.Buffer();
}

// A text in Liberation Sans (the face the measures below assume), laid out.
inline std::unique_ptr<CDrawText> makeText(const QString& content, const CRect& at = CRect(-100, 50, 100, -50),
                                           int kind = CDrawText::Straight, int justify = CDrawText::Left)
{
    auto text = std::make_unique<CDrawText>(at);
    text->m_fontName = QStringLiteral("Liberation Sans");
    text->m_text = content;
    text->m_textPathKind = kind;
    text->m_justify = justify;
    text->Layout();
    return text;
}

// Compares a drawing with the picture tests/objects/reference/<name>.png, checked by eye once; at
// most `share` of the pixels may differ by more than 8 in a channel (antialiased edges move with
// library updates). TESSARELLE_UPDATE_REFERENCES=1 writes the pictures anew.
inline void compareWithReference(const QString& name, QImage rendered, double share)
{
    const QString folder = QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/reference");
    const QString path = folder + "/" + name + ".png";
    rendered = rendered.convertToFormat(QImage::Format_ARGB32);
    if (qEnvironmentVariableIntValue("TESSARELLE_UPDATE_REFERENCES") == 1) {
        QDir().mkpath(folder);
        ASSERT_TRUE(rendered.save(path)) << path.toStdString();
        return;
    }
    const QImage reference = QImage(path).convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(reference.size(), rendered.size()) << "no reference " << path.toStdString();
    int differing = 0;
    for (int y = 0; y < rendered.height(); ++y)
        for (int x = 0; x < rendered.width(); ++x) {
            const QRgb p = reference.pixel(x, y), q = rendered.pixel(x, y);
            differing += !near(p, QColor(q)) || std::abs(qAlpha(p) - qAlpha(q)) > 8;
        }
    if (differing > rendered.width() * rendered.height() * share) {
        const QString actual = QDir::tempPath() + "/" + name + ".actual.png";
        rendered.save(actual);
        ADD_FAILURE() << name.toStdString() << ": " << differing << " pixels differ; drawn now: " << actual.toStdString();
    }
}
