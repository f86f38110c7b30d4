#include "printing/DiscTray.h"

#include "document/CDrawDoc.h"
#include "printing/DEVMODE.h"

#include <QRegularExpression>

#include <cmath>

namespace {

constexpr double PointsPerInch = 72.0;
constexpr double PointsPerMm = 72.0 / 25.4;

// The sources that feed a disc tray, by the option that chooses them.
const struct {
    const char* option;
    const char* choice;
} Sources[] = {
    {"InputSlot", "CD"},        // Gutenprint
    {"InputSlot", "CDDVDTray"}, // HP
    {"InputSlot", "Disc"},      // the PPD of a driverless printer
    {"media-source", "disc"},   // a driverless printer without a PPD
};

// Drivers' tray pages: squares of this side in points, centred on the disc.
const struct {
    const char* choice;
    double side;
} Pages[] = {
    {"CD3Inch", 184}, {"CD5Inch", 329}, {"CDCustom", 340}, // Gutenprint
    {"CDDVD80", 80 * PointsPerMm}, {"CDDVD120", 120 * PointsPerMm}, // HP
};

const char* const PageOptions[] = {"PageSize", "media"};
const char* const TypeOptions[] = {"MediaType", "media-type"};

// Gutenprint's hub when it is not told to print to the hub: the default of its hub size.
constexpr double NormalHubPoints = 121;

const SpoolerChoice* find(const QList<SpoolerChoice>& offered, const QString& keyword)
{
    for (const SpoolerChoice& option : offered)
        if (option.keyword == keyword)
            return &option;
    return nullptr;
}

bool has(const SpoolerChoice& option, const QString& choice)
{
    for (const SpoolerChoice::Value& value : option.choices)
        if (value.keyword == choice)
            return true;
    return false;
}

bool isDiscType(const QString& keyword)
{
    return keyword.startsWith(QLatin1String("disc"), Qt::CaseInsensitive);
}

// The option and choice of the queue's disc source; a null option when it has none.
QPair<const SpoolerChoice*, QString> source(const QList<SpoolerChoice>& offered)
{
    for (const auto& [option, choice] : Sources) {
        const SpoolerChoice* found = find(offered, QLatin1String(option));
        if (found && has(*found, QLatin1String(choice)))
            return {found, QLatin1String(choice)};
    }
    return {nullptr, {}};
}

// The smallest tray page the disc fits on, else the largest; empty when none is offered.
QString fittingPage(const SpoolerChoice& option, double outerPoints)
{
    QString best;
    double bestSide = 0;
    for (const SpoolerChoice::Value& value : option.choices) {
        const double side = DiscTray::PageSide(value.keyword);
        if (side <= 0)
            continue;
        // A point of rounding: 4.57 inches fit CD5Inch's 329 points.
        const bool fits = side >= outerPoints - 1;
        const bool bestFits = !best.isEmpty() && bestSide >= outerPoints - 1;
        if (best.isEmpty() || (fits && (!bestFits || side < bestSide)) || (!fits && !bestFits && side > bestSide)) {
            best = value.keyword;
            bestSide = side;
        }
    }
    return best;
}

// Sets a numeric option to the offered number nearest to the value.
void setNearest(QByteArray& record, const QList<SpoolerChoice>& offered, const QString& keyword, double value)
{
    const SpoolerChoice* option = find(offered, keyword);
    if (!option)
        return;
    QString best;
    double distance = 0;
    for (const SpoolerChoice::Value& choice : option->choices) {
        bool ok = false;
        const double number = choice.keyword.toDouble(&ok);
        if (ok && (best.isEmpty() || std::abs(number - value) < distance)) {
            best = choice.keyword;
            distance = std::abs(number - value);
        }
    }
    if (!best.isEmpty())
        DEVMODE::SetOption(record, keyword, best);
}

} // namespace

double DiscTray::PageSide(const QString& keyword)
{
    for (const auto& [choice, side] : Pages)
        if (keyword == QLatin1String(choice))
            return side;
    // Disc media name their hole and outer diameters: "disc_12cm_18x120mm".
    static const QRegularExpression disc(QStringLiteral("^disc.*x(\\d+(?:\\.\\d+)?)mm$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = disc.match(keyword);
    const double outer = match.hasMatch() ? match.captured(1).toDouble() : 0;
    return outer > 0 && outer < 1000 ? outer * PointsPerMm : 0;
}

double DiscTray::PageSideOf(const QByteArray& devMode)
{
    for (const char* option : {"media", "PageSize"})
        if (const double side = PageSide(DEVMODE::Option(devMode, QLatin1String(option))))
            return side;
    return 0;
}

bool DiscTray::Offers(const QList<SpoolerChoice>& offered)
{
    return source(offered).first != nullptr;
}

bool DiscTray::Apply(QByteArray& devMode, const QList<SpoolerChoice>& offered, const CDrawDoc& doc)
{
    // The document's getters only cache what they read from the template and the profile.
    CDrawDoc& document = const_cast<CDrawDoc&>(doc);
    if (!document.IsPrinterTemplate())
        return false;
    return Apply(devMode, offered, document.GetOuterDia(), document.GetInnerDia());
}

bool DiscTray::ApplyFor(QByteArray& devMode, const QString& deviceName, const CDrawDoc& doc)
{
    if (!const_cast<CDrawDoc&>(doc).IsPrinterTemplate())
        return false;
    QString queue;
    QList<SpoolerChoice> offered;
    return Spooler::FindPrinter(deviceName, &queue) && Spooler::GetOptionChoices(queue, &offered) &&
           Apply(devMode, offered, doc);
}

bool DiscTray::Apply(QByteArray& devMode, const QList<SpoolerChoice>& offered, double outerDia, double innerDia)
{
    const auto [slot, disc] = source(offered);
    if (!slot)
        return false;
    const QString held = DEVMODE::Option(devMode, slot->keyword);
    if (!held.isEmpty() && held != disc && held != slot->defaultChoice)
        return false;

    QByteArray record = devMode;
    DEVMODE::SetOption(record, slot->keyword, disc);

    const double outerPoints = outerDia * PointsPerInch;
    for (const char* name : PageOptions) {
        const SpoolerChoice* option = find(offered, QLatin1String(name));
        if (!option)
            continue;
        const QString page = DEVMODE::Option(record, option->keyword);
        if (PageSide(page) > 0 && has(*option, page))
            continue;
        const QString fitting = fittingPage(*option, outerPoints);
        if (fitting.isEmpty())
            continue;
        DEVMODE::SetOption(record, option->keyword, fitting);
        // A PPD's page size and region go together, and the spooler's "media" would otherwise
        // name the paper the record started with.
        if (option->keyword == QLatin1String("PageSize")) {
            for (const char* twin : {"PageRegion", "media"})
                if (!DEVMODE::Option(record, QLatin1String(twin)).isEmpty())
                    DEVMODE::SetOption(record, QLatin1String(twin), fitting);
        }
    }

    for (const char* name : TypeOptions) {
        const SpoolerChoice* option = find(offered, QLatin1String(name));
        if (!option || isDiscType(DEVMODE::Option(record, option->keyword)))
            continue;
        QString type;
        for (const SpoolerChoice::Value& value : option->choices)
            if (isDiscType(value.keyword) && (type.isEmpty() || value.keyword.compare(QLatin1String("disc"), Qt::CaseInsensitive) == 0))
                type = value.keyword;
        if (!type.isEmpty())
            DEVMODE::SetOption(record, option->keyword, type);
    }

    // Gutenprint masks its print to a ring of these diameters, in points.
    setNearest(record, offered, QStringLiteral("StpCDOuterDiameter"), outerPoints);
    setNearest(record, offered, QStringLiteral("StpCDInnerDiameter"), innerDia * PointsPerInch);
    const QString hubOption = QStringLiteral("StpCDInnerRadius");
    if (const SpoolerChoice* hub = find(offered, hubOption)) {
        // A label that reaches inside the normal hub prints to the hub; what lies inside the
        // label's own hole is white and takes no ink.
        const QString wanted = innerDia * PointsPerInch < NormalHubPoints - 0.5 ? QStringLiteral("Small")
                                                                               : QStringLiteral("None");
        if (has(*hub, wanted))
            DEVMODE::SetOption(record, hubOption, wanted);
    }

    devMode = record;
    return true;
}
