// make_examples: writes the example projects in examples/ and the background pictures they use
// in data/Backgrounds/, through the program's own document and objects, so that the examples
// are always files the program itself would write. Run it from anywhere:
//   make_examples [REPOSITORY]
// (the repository this was built from when no folder is given). The pictures are drawn here
// rather than taken from anywhere, so everything the examples show is our own.
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>

namespace {

constexpr double Pi = 3.141592653589793;
// Logical units: 300 to the inch, y up, (0, 0) at the label's centre.
constexpr int Inch = 300;
// The index of each template in the program's list: Default.tmp first, then the others by name.
constexpr int DiscPrinterTemplate = 0;
constexpr int ThreeDiscSheetTemplate = 4; // Data Becker 0562, three discs staggered on A4

// ---------------------------------------------------------------- pictures

// A night sky: a deep blue glow, two faint coloured clouds and a scatter of stars. 1400 pixels
// cover a 4.65 inch disc at 300 dots per inch.
QImage nebula()
{
    QImage image(1400, 1400, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QRadialGradient sky(QPointF(700, 620), 900);
    sky.setColorAt(0.0, QColor(38, 52, 120));
    sky.setColorAt(0.55, QColor(18, 20, 62));
    sky.setColorAt(1.0, QColor(5, 6, 20));
    p.fillRect(image.rect(), sky);

    const auto cloud = [&p](QPointF centre, double radius, QColor colour) {
        QRadialGradient g(centre, radius);
        g.setColorAt(0.0, colour);
        colour.setAlpha(0);
        g.setColorAt(1.0, colour);
        p.setPen(Qt::NoPen);
        p.setBrush(g);
        p.drawEllipse(centre, radius, radius);
    };
    cloud(QPointF(430, 420), 520, QColor(190, 60, 170, 90));
    cloud(QPointF(1000, 980), 560, QColor(30, 170, 190, 80));
    cloud(QPointF(980, 360), 300, QColor(120, 90, 230, 70));

    std::minstd_rand random(1977);
    std::uniform_real_distribution<double> place(0, 1400), unit(0, 1);
    for (int i = 0; i < 900; ++i) {
        const QPointF at(place(random), place(random));
        const double size = 0.6 + 2.4 * std::pow(unit(random), 4);
        const int light = 150 + int(105 * unit(random));
        p.setBrush(QColor(light, light, std::min(255, light + 30)));
        p.drawEllipse(at, size, size);
    }
    for (int i = 0; i < 14; ++i) {
        // A few bright stars with a soft halo.
        const QPointF at(place(random), place(random));
        cloud(at, 18, QColor(255, 255, 255, 120));
        p.setBrush(Qt::white);
        p.drawEllipse(at, 3.2, 3.2);
    }
    return image;
}

// A desert evening: a warm sky over layered dunes.
QImage dunes()
{
    QImage image(1400, 1400, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 1400);
    sky.setColorAt(0.0, QColor(86, 46, 120));
    sky.setColorAt(0.35, QColor(226, 98, 96));
    sky.setColorAt(0.6, QColor(252, 178, 92));
    sky.setColorAt(1.0, QColor(255, 226, 150));
    p.fillRect(image.rect(), sky);

    QRadialGradient sun(QPointF(880, 760), 190);
    sun.setColorAt(0.0, QColor(255, 250, 220));
    sun.setColorAt(0.45, QColor(255, 236, 170));
    sun.setColorAt(1.0, QColor(255, 220, 150, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(sun);
    p.drawEllipse(QPointF(880, 760), 190, 190);

    const QColor layers[] = {QColor(196, 96, 70), QColor(160, 70, 62), QColor(118, 48, 58), QColor(76, 32, 50)};
    for (int layer = 0; layer < 4; ++layer) {
        const double base = 800 + layer * 150;
        QPainterPath dune(QPointF(0, 1400));
        for (int x = 0; x <= 1400; x += 10) {
            const double y = base + 60 * std::sin(x / (260.0 - layer * 30) + layer * 1.7)
                + 25 * std::sin(x / 90.0 + layer);
            dune.lineTo(x, y);
        }
        dune.lineTo(1400, 1400);
        dune.closeSubpath();
        p.setBrush(layers[layer]);
        p.drawPath(dune);
    }
    return image;
}

bool savePicture(const QImage& image, const QString& path)
{
    if (image.save(path, "JPEG", 88))
        return true;
    std::fprintf(stderr, "make_examples: cannot write %s\n", qPrintable(path));
    return false;
}

// ---------------------------------------------------------------- objects

// A rectangle from its centre and size in logical units.
CRect around(int x, int y, int width, int height)
{
    return CRect(x - width / 2, y + height / 2, x + width / 2, y - height / 2);
}

struct TextLook {
    QString font;
    int size = 12;
    int fontStyle = 0; // 1 bold, 2 italic
    int pathKind = CDrawText::Straight;
    int justify = CDrawText::Centered;
    gfx::Color colour{255, 255, 255};
    float angle = 90;
    int tracking = 0;
    int leading = 0;
};

struct TextEffect {
    int style = CDrawText::Normal;
    gfx::Color edge{0, 0, 0};
    int edgeSize = 1;
    int edgeBlur = 0;
    bool shadow = false;
    int shadowX = 0;
    int shadowY = 0;
    int shadowBlur = 0;
    int shadowTransparency = 0;
};

CDrawText* addText(CDrawDoc& doc, const CRect& rect, const QString& text, const TextLook& look,
                   const TextEffect& effect = {})
{
    auto object = std::make_unique<CDrawText>(rect);
    object->SetEffects(effect.edge, std::uint8_t(effect.style), std::uint8_t(effect.edgeSize),
                       std::uint8_t(effect.edgeBlur), 0, effect.shadow ? 1 : 0, effect.shadowX, effect.shadowY,
                       std::uint8_t(effect.shadowBlur), std::uint8_t(effect.shadowTransparency));
    // The path kind first: a straight text's layout fits its rectangle to the text.
    object->SetTextProperties(text, look.pathKind, look.justify, look.colour, 0, look.angle, look.tracking,
                              look.leading);
    object->SetFont(look.font, look.size, look.fontStyle);
    return static_cast<CDrawText*>(doc.Add(std::move(object)));
}

CDrawRect* addShape(CDrawDoc& doc, int shape, const CRect& rect)
{
    auto object = std::make_unique<CDrawRect>(rect);
    object->m_shape = shape;
    return static_cast<CDrawRect*>(doc.Add(std::move(object)));
}

// A five-pointed star as a polygon, filled with a gradient.
CDrawPoly* addStar(CDrawDoc& doc, int x, int y, int radius, gfx::Color inner, gfx::Color outer)
{
    std::vector<CPoint> points;
    for (int i = 0; i < 10; ++i) {
        const double r = i % 2 == 0 ? radius : radius * 0.42;
        const double a = Pi / 2 + i * Pi / 5;
        points.push_back(CPoint(x + int(std::lround(r * std::cos(a))), y + int(std::lround(r * std::sin(a)))));
    }
    auto star = std::make_unique<CDrawPoly>(around(x, y, 2 * radius, 2 * radius));
    star->m_polyKind = CDrawPoly::Polygon;
    star->SetPoints(points, 10);
    star->RecalcBounds(nullptr);
    star->m_fillKind = 3; // path gradient: centre colour to the edge colour
    star->m_fillColor1 = inner;
    star->m_fillColor2 = outer;
    star->m_lineColor1 = outer;
    star->m_lineWidth = 2;
    return static_cast<CDrawPoly*>(doc.Add(std::move(star)));
}

void useDisc(CDrawDoc& doc, int templateIndex, double outer, double inner, double edge)
{
    doc.m_nTemplate = templateIndex;
    // Stored with the project, so that it opens the same whatever the printer's settings.
    doc.SetOuterDia(outer, false);
    doc.SetInnerDia(inner, false);
    doc.SetBusDia(edge, false);
}

bool save(CDrawDoc& doc, const QString& path)
{
    if (doc.OnSaveDocument(path)) {
        std::printf("%s\n", qPrintable(path));
        return true;
    }
    std::fprintf(stderr, "make_examples: cannot write %s\n", qPrintable(path));
    return false;
}

// ---------------------------------------------------------------- the projects

// A disc for the printer tray: a picture, a glowing title along the rim, an embossed line
// under it, a track list in neon on a spiral, a shadowed straight title and a few shapes.
bool makeSampleDisc(const QString& path)
{
    g_dataFields.clear();
    CDrawDoc doc;
    useDisc(doc, DiscPrinterTemplate, 4.65, 1.65, 4.72);
    LabelBackground& background = doc.Background(0);
    // Relative to the project's folder, which opening a project makes the current one.
    background.ImageFile = QStringLiteral("../data/Backgrounds/Nebula.jpg");
    background.WrapMode = 4;
    background.FitMode = 1;

    // A thin bright ring just inside the rim.
    CDrawRect* rim = addShape(doc, CDrawRect::Ellipse, around(0, 0, 1340, 1340));
    rim->m_flags = 1;
    rim->m_lineColor1 = gfx::Color(140, 200, 230, 255);
    rim->m_lineWidth = 3;

    // A soft white halo round the hole.
    CDrawRect* halo = addShape(doc, CDrawRect::Halo, around(0, 0, 600, 600));
    halo->m_flags = 2;
    halo->m_ringX = halo->m_ringY = 48;
    halo->m_fillColor1 = gfx::Color(235, 240, 255);
    halo->m_transparency = 70;

    addText(doc, around(0, 0, 1250, 1250), QStringLiteral("NIGHT SKY SESSIONS"),
            {.font = QStringLiteral("URW Gothic"), .size = 30, .fontStyle = 1, .pathKind = CDrawText::CurvedCW,
             .colour = gfx::Color(255, 255, 255), .angle = 90, .tracking = 14},
            {.style = CDrawText::Glowing, .edge = gfx::Color(255, 190, 60), .edgeSize = 10, .edgeBlur = 200});

    CDrawText* subtitle =
        addText(doc, around(0, 0, 1250, 1250), QStringLiteral("live at the old observatory"),
                {.font = QStringLiteral("C059"), .size = 17, .fontStyle = 2, .pathKind = CDrawText::CurvedCCW,
                 .colour = gfx::Color(250, 214, 120), .angle = 270, .tracking = 4},
                {.style = CDrawText::Embossed, .edge = gfx::Color(214, 160, 60)});
    // The embossed style lights its top layer with the object's fill colour.
    subtitle->m_fillColor1 = gfx::Color(255, 244, 200);

    addText(doc, around(0, 0, 840, 840),
            QStringLiteral("1 Nightfall \u00B7 2 Orion Rising \u00B7 3 Slow Comet \u00B7 4 Pale Blue Dot \u00B7 "
                           "5 Aurora \u00B7 6 Deep Field \u00B7 7 Zodiacal Light \u00B7 8 Morning Star"),
            {.font = QStringLiteral("Liberation Sans"), .size = 10, .fontStyle = 1, .pathKind = CDrawText::SpiralCW,
             .justify = CDrawText::Left, .colour = gfx::Color(255, 255, 255), .angle = 90, .tracking = 2,
             .leading = 30},
            {.style = CDrawText::Neon, .edge = gfx::Color(255, 140, 235), .edgeSize = 2, .edgeBlur = 12});

    addText(doc, around(-520, -150, 300, 100), QStringLiteral("Vol. 1"),
            {.font = QStringLiteral("Z003"), .size = 24, .colour = gfx::Color(255, 255, 255), .angle = 90},
            {.shadow = true, .shadowX = 8, .shadowY = -8, .shadowBlur = 120, .shadowTransparency = 30});

    addStar(doc, 420, -150, 60, gfx::Color(255, 250, 210), gfx::Color(240, 170, 40));
    addStar(doc, 500, -10, 34, gfx::Color(255, 250, 210), gfx::Color(240, 170, 40));
    addStar(doc, 380, -270, 24, gfx::Color(255, 250, 210), gfx::Color(240, 170, 40));
    return save(doc, path);
}

// A sheet of three discs, each label its own: a picture, a hatch and a plain colour, with
// text in the remaining styles (normal, outline, chiseled).
bool makeThreeLabels(const QString& path)
{
    g_dataFields.clear();
    CDrawDoc doc;
    // A sheet's discs come from its template; the diameters are those of the printer tray.
    useDisc(doc, ThreeDiscSheetTemplate, 4.65, 1.65, 4.72);

    doc.SetCurLabel(0);
    doc.Background(0).ImageFile = QStringLiteral("../data/Backgrounds/Dunes.jpg");
    addText(doc, around(0, 0, 1220, 1220), QStringLiteral("ROAD TRIP MIX"),
            {.font = QStringLiteral("URW Gothic"), .size = 32, .fontStyle = 1, .pathKind = CDrawText::CurvedCW,
             .colour = gfx::Color(255, 248, 230), .angle = 90, .tracking = 10},
            {.shadow = true, .shadowX = 6, .shadowY = -6, .shadowBlur = 90, .shadowTransparency = 40});
    addText(doc, around(0, -420, 400, 120), QStringLiteral("Side A"),
            {.font = QStringLiteral("Z003"), .size = 28, .colour = gfx::Color(255, 236, 200), .angle = 90});

    doc.SetCurLabel(1);
    LabelBackground& hatch = doc.Background(1);
    hatch.HatchStyle = 5; // diagonal cross
    hatch.BackColor = gfx::RGB(196, 214, 234);
    hatch.BackColor2 = gfx::RGB(240, 246, 250);
    CDrawRect* band = addShape(doc, CDrawRect::RoundRectangle, around(0, 420, 980, 230));
    band->m_flags = 3;
    band->m_fillColor1 = gfx::Color(34, 70, 120);
    band->m_lineColor1 = gfx::Color(255, 255, 255);
    band->m_lineWidth = 6;
    band->m_cornerSize = CPoint(90, 90);
    addText(doc, around(0, 420, 800, 200), QStringLiteral("BACKUP 2026"),
            {.font = QStringLiteral("Liberation Sans"), .size = 28, .fontStyle = 1,
             .colour = gfx::Color(255, 255, 255), .angle = 90},
            {.style = CDrawText::Outline, .edge = gfx::Color(120, 180, 255), .edgeSize = 5});
    addText(doc, around(0, -420, 800, 200), QStringLiteral("Photos\r\nDocuments\r\nMail"),
            {.font = QStringLiteral("Liberation Sans"), .size = 14, .colour = gfx::Color(34, 70, 120), .angle = 90});

    doc.SetCurLabel(2);
    doc.Background(2).BackColor = gfx::RGB(20, 84, 96);
    CDrawRect* glow = addShape(doc, CDrawRect::Ellipse, around(0, 0, 1100, 1100));
    glow->m_flags = 2;
    glow->m_fillKind = 3; // path gradient
    glow->m_fillColor1 = gfx::Color(90, 190, 180);
    glow->m_fillColor2 = gfx::Color(20, 84, 96);
    CDrawRect* arc = addShape(doc, CDrawRect::Arc, around(0, 0, 1240, 1240));
    arc->m_flags = 3;
    arc->m_startAngle = 200;
    arc->m_endAngle = 340;
    arc->m_ringX = arc->m_ringY = 30;
    arc->m_fillColor1 = gfx::Color(240, 200, 90);
    arc->m_lineColor1 = gfx::Color(240, 200, 90);
    CDrawText* title = addText(doc, around(0, 0, 1180, 1180), QStringLiteral("Family Photos"),
                               {.font = QStringLiteral("P052"), .size = 34, .fontStyle = 1,
                                .pathKind = CDrawText::CurvedCW, .colour = gfx::Color(240, 200, 90), .angle = 90},
                               {.style = CDrawText::Chiseled, .edge = gfx::Color(240, 200, 90)});
    title->m_fillColor1 = gfx::Color(255, 240, 190);
    doc.SetCurLabel(0);
    return save(doc, path);
}

// Every kind of data field in one label, with the data file beside the project. Printing the
// project moves the disc number, the serial number and the guest on by one.
bool makeDataFields(const QString& path, const QString& dataFile)
{
    QFile names(dataFile);
    if (!names.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "make_examples: cannot write %s\n", qPrintable(dataFile));
        return false;
    }
    // One guest to a record, separated by semicolons.
    names.write("Ada Lovelace;Grace Hopper;Alan Turing;Katherine Johnson;Edsger Dijkstra;"
                "Margaret Hamilton;Claude Shannon;Barbara Liskov;Donald Knuth;Frances Allen;\n");
    names.close();

    g_dataFields.clear();
    const auto field = [](const char* tag, int type) {
        DATAFIELD f;
        f.Tag = QString::fromLatin1(tag);
        f.Type = type;
        return f;
    };
    DATAFIELD year = field("{Year}", DATAFIELD::Year);
    DATAFIELD month = field("{Month}", DATAFIELD::Month);
    month.MonthNames = 1;
    DATAFIELD day = field("{Day}", DATAFIELD::Day);
    DATAFIELD weekday = field("{Weekday}", DATAFIELD::Day);
    weekday.DayNames = 1;
    DATAFIELD time = field("{Time}", DATAFIELD::Time);
    time.Hours24 = 1;
    DATAFIELD disc = field("{Disc}", DATAFIELD::Disc);
    disc.DiscNumber = 1;
    disc.DiscTotal = 10;
    DATAFIELD serial = field("{Serial}", DATAFIELD::SerialNumber);
    serial.Serial = 2026000001;
    DATAFIELD guest = field("{Guest}", DATAFIELD::DataFile);
    // Relative to the project's folder, which opening a project makes the current one.
    guest.FileName = QFileInfo(dataFile).fileName();
    guest.Delimiter = DATAFIELD::SemiColon;
    g_dataFields = {year, month, day, weekday, time, disc, serial, guest};

    // Laying out the texts reads the data file from the current folder, as it will once the
    // project is open.
    QDir::setCurrent(QFileInfo(path).absolutePath());
    CDrawDoc doc;
    useDisc(doc, DiscPrinterTemplate, 4.65, 1.65, 4.72);
    doc.Background(0).BackColor = gfx::RGB(250, 246, 236);

    CDrawRect* ring = addShape(doc, CDrawRect::Halo, around(0, 0, 1395, 1395));
    ring->m_flags = 2;
    ring->m_ringX = ring->m_ringY = 150;
    ring->m_fillKind = 4; // linear gradient
    ring->m_fillColor1 = gfx::Color(150, 30, 50);
    ring->m_fillColor2 = gfx::Color(210, 90, 60);

    // Fields stand in curved text only: a straight text fits its rectangle to what it shows,
    // so a field in it would move the rectangle with every value (and the project's bytes with it).
    addText(doc, around(0, 0, 1330, 1330), QStringLiteral("A COPY FOR {Guest}"),
            {.font = QStringLiteral("Liberation Serif"), .size = 20, .fontStyle = 1, .pathKind = CDrawText::CurvedCW,
             .colour = gfx::Color(255, 246, 230), .angle = 90, .tracking = 6});
    addText(doc, around(0, 0, 1330, 1330), QStringLiteral("disc {Disc}  \u00B7  serial no. {Serial}"),
            {.font = QStringLiteral("Liberation Sans"), .size = 13, .pathKind = CDrawText::CurvedCCW,
             .colour = gfx::Color(255, 246, 230), .angle = 270, .tracking = 4});
    addText(doc, around(0, 0, 1000, 1000), QStringLiteral("burned on {Weekday}, {Day} {Month} {Year} at {Time}"),
            {.font = QStringLiteral("Liberation Sans"), .size = 11, .pathKind = CDrawText::CurvedCCW,
             .colour = gfx::Color(90, 60, 60), .angle = 270, .tracking = 2});

    addText(doc, around(0, 390, 700, 200), QStringLiteral("Annual Meeting"),
            {.font = QStringLiteral("P052"), .size = 24, .fontStyle = 1, .colour = gfx::Color(150, 30, 50), .angle = 90},
            {.shadow = true, .shadowX = 5, .shadowY = -5, .shadowBlur = 60, .shadowTransparency = 60});
    addText(doc, around(0, 300, 700, 100), QStringLiteral("Proceedings and Slides"),
            {.font = QStringLiteral("Liberation Sans"), .size = 12, .colour = gfx::Color(60, 50, 50), .angle = 90});
    const bool saved = save(doc, path);
    g_dataFields.clear();
    return saved;
}

} // namespace

int main(int argc, char** argv)
{
    // Text is laid out through the font system, which needs a GUI application but no display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QString root = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(TESSARELLE_SOURCE_DIR);
    const QDir repository(root);
    if (!repository.mkpath(QStringLiteral("examples")) || !repository.mkpath(QStringLiteral("data/Backgrounds"))) {
        std::fprintf(stderr, "make_examples: cannot make the folders in %s\n", qPrintable(root));
        return 1;
    }
    const QString backgrounds = repository.filePath(QStringLiteral("data/Backgrounds/"));
    const QString examples = repository.filePath(QStringLiteral("examples/"));
    const bool made = savePicture(nebula(), backgrounds + QStringLiteral("Nebula.jpg"))
        && savePicture(dunes(), backgrounds + QStringLiteral("Dunes.jpg"))
        && makeSampleDisc(examples + QStringLiteral("sample.dst"))
        && makeThreeLabels(examples + QStringLiteral("three-labels.dst"))
        && makeDataFields(examples + QStringLiteral("data-fields.dst"), examples + QStringLiteral("guests.csv"));
    return made ? 0 : 1;
}
