#include "platform/Spooler.h"

#include <QFile>
#include <QHash>
#include <QSet>
#include <QStringDecoder>
#include <QTemporaryFile>

#include <algorithm>
#include <cups/cups.h>
#include <sys/socket.h>

namespace {

int g_timeoutSeconds = 30;
QString g_lastError;

int fail(int status, const QString& text, int* error)
{
    g_lastError = text;
    if (error)
        *error = status;
    return status;
}

int failFromCups(int* error)
{
    return fail(int(cupsLastError()), QString::fromUtf8(cupsLastErrorString()), error);
}

bool cupsFailed()
{
    return cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE;
}

// One connection to the scheduler for one call, closed when the call ends.
class Connection {
public:
    Connection()
    {
        m_http = httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                              g_timeoutSeconds * 1000, nullptr);
        // Without a callback a request that waits longer than this fails.
        if (m_http)
            httpSetTimeout(m_http, g_timeoutSeconds, nullptr, nullptr);
    }
    ~Connection() { httpClose(m_http); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    http_t* get() const { return m_http; }
    // Whether the connection stands; otherwise the error is set.
    bool ok(int* error) const
    {
        if (m_http)
            return true;
        fail(Spooler::ErrorUnavailable,
             QStringLiteral("The print spooler at %1 can't be reached").arg(QString::fromUtf8(cupsServer())), error);
        return false;
    }

private:
    http_t* m_http = nullptr;
};

class Dests {
public:
    explicit Dests(http_t* http) { m_count = cupsGetDests2(http, &m_dests); }
    ~Dests() { cupsFreeDests(m_count, m_dests); }
    Dests(const Dests&) = delete;
    Dests& operator=(const Dests&) = delete;

    int count() const { return m_count; }
    cups_dest_t* dests() const { return m_dests; }

private:
    int m_count = 0;
    cups_dest_t* m_dests = nullptr;
};

QString destOption(const cups_dest_t& dest, const char* name)
{
    return QString::fromUtf8(cupsGetOption(name, dest.num_options, dest.options));
}

QByteArray printerUri(const QString& queue)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof uri, "ipp", nullptr, "localhost", ippPort(), "/printers/%s",
                     queue.toUtf8().constData());
    return uri;
}

ipp_t* newRequest(ipp_op_t operation, const QString& queue)
{
    ipp_t* request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, printerUri(queue).constData());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    return request;
}

// The defaults of the options a PPD offers ("*OpenUI *Resolution/...", "*DefaultResolution: 300dpi").
QList<SpoolerOption> ppdDefaults(const QByteArray& ppd)
{
    QStringList offered;
    QList<SpoolerOption> defaults;
    for (const QByteArray& raw : ppd.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith("*OpenUI *") || line.startsWith("*JCLOpenUI *")) {
            const qsizetype start = line.indexOf('*', 1) + 1;
            qsizetype end = start;
            while (end < line.size() && line[end] != '/' && line[end] != ':')
                ++end;
            offered << QString::fromUtf8(line.mid(start, end - start));
        }
    }
    for (const QByteArray& raw : ppd.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (!line.startsWith("*Default"))
            continue;
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QString name = QString::fromUtf8(line.mid(8, colon - 8));
        if (offered.contains(name))
            defaults.append({name, QString::fromUtf8(line.mid(colon + 1).trimmed())});
    }
    return defaults;
}

// The queue's PPD; empty when it has none (*status HTTP_STATUS_NOT_FOUND) or can't be fetched.
// The queue's attributes of those named; null, with the error set, when the spooler won't say.
template <size_t Count>
ipp_t* printerAttributes(http_t* http, const QString& queue, const char* const (&wanted)[Count], int* error)
{
    ipp_t* request = newRequest(IPP_OP_GET_PRINTER_ATTRIBUTES, queue);
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", int(Count), nullptr, wanted);
    ipp_t* response = cupsDoRequest(http, request, "/");
    if (!response || cupsFailed()) {
        ippDelete(response);
        failFromCups(error);
        return nullptr;
    }
    return response;
}

QByteArray fetchPpd(http_t* http, const QString& queue, http_status_t* status = nullptr)
{
    QTemporaryFile file;
    if (!file.open())
        return {};
    const QByteArray resource = "/printers/" + queue.toUtf8() + ".ppd";
    const http_status_t got = cupsGetFd(http, resource.constData(), file.handle());
    if (status)
        *status = got;
    if (got != HTTP_STATUS_OK)
        return {};
    file.seek(0);
    return file.readAll();
}

// A PPD text: "<E9>" stands for the byte 0xE9, and the bytes are UTF-8 or, failing that, the
// ISO Latin 1 that most drivers write.
QString ppdText(const QByteArray& raw)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const qsizetype end = raw[i] == '<' ? raw.indexOf('>', i) : -1;
        if (end < 0) {
            bytes += raw[i];
            continue;
        }
        const QByteArray hex = QByteArray::fromHex(raw.mid(i + 1, end - i - 1));
        bytes += hex;
        i = end;
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

// One line of a PPD: "*Main Option/Label: value", each part but the first possibly empty.
struct PpdLine {
    QByteArray main;
    QByteArray option;
    QByteArray label;
    QByteArray value;
};

// False for comments, the ends of long values and anything else without a keyword and colon.
bool splitPpdLine(const QByteArray& line, PpdLine* parts)
{
    if (!line.startsWith('*') || line.startsWith("*%"))
        return false;
    const qsizetype colon = line.indexOf(':');
    if (colon < 0)
        return false;
    const QByteArray head = line.mid(1, colon - 1).trimmed();
    qsizetype blank = 0;
    while (blank < head.size() && head[blank] != ' ' && head[blank] != '\t')
        ++blank;
    parts->main = head.left(blank);
    const QByteArray rest = head.mid(blank).trimmed();
    const qsizetype slash = rest.indexOf('/');
    parts->option = slash < 0 ? rest : rest.left(slash).trimmed();
    parts->label = slash < 0 ? QByteArray() : rest.mid(slash + 1).trimmed();
    parts->value = line.mid(colon + 1).trimmed();
    return true;
}

// "Name/Label" as a value (of *OpenGroup, *OpenUI's keyword); the label, else the name.
QString labelOf(const QByteArray& nameAndLabel, QByteArray* name = nullptr)
{
    const qsizetype slash = nameAndLabel.indexOf('/');
    const QByteArray key = (slash < 0 ? nameAndLabel : nameAndLabel.left(slash)).trimmed();
    if (name)
        *name = key;
    const QByteArray label = slash < 0 ? QByteArray() : nameAndLabel.mid(slash + 1).trimmed();
    return ppdText(label.isEmpty() ? key : label);
}

// A keyword as a person reads it: "two-sided-long-edge" as "Two sided long edge".
QString readable(const QString& keyword)
{
    QString text = keyword;
    text.replace(QLatin1Char('-'), QLatin1Char(' ')).replace(QLatin1Char('_'), QLatin1Char(' '));
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

// The options of a queue without a PPD, from the attributes of a Get-Printer-Attributes answer.
QList<SpoolerChoice> ippChoices(ipp_t* response)
{
    static const struct {
        const char* keyword;
        const char* label;
    } known[] = {{"media", "Paper Size"},       {"media-source", "Paper Source"},
                 {"media-type", "Media Type"},  {"print-quality", "Print Quality"},
                 {"print-color-mode", "Color Mode"}, {"sides", "Two-Sided"}};
    // print-quality is an enum; a job option names its values as CUPS spells them, "high".
    const auto keywordOf = [](ipp_attribute_t* attribute, int index) {
        if (ippGetValueTag(attribute) == IPP_TAG_ENUM)
            return QString::fromUtf8(ippEnumString(ippGetName(attribute), ippGetInteger(attribute, index)));
        return QString::fromUtf8(ippGetString(attribute, index, nullptr));
    };
    QList<SpoolerChoice> options;
    for (const auto& [keyword, label] : known) {
        const QByteArray name = keyword;
        ipp_attribute_t* supported = ippFindAttribute(response, (name + "-supported").constData(), IPP_TAG_ZERO);
        if (!supported || ippGetValueTag(supported) < IPP_TAG_INTEGER)
            continue;
        SpoolerChoice option{QString::fromLatin1(keyword), QString::fromLatin1(label), QStringLiteral("General"), {},
                             {}};
        for (int i = 0; i < ippGetCount(supported); ++i) {
            const QString value = keywordOf(supported, i);
            if (value.isEmpty())
                continue;
            QString text = readable(value);
            // Sizes by the names people know them by: "iso_a4_210x297mm" is "A4".
            const pwg_media_t* media = name == "media" ? pwgMediaForPWG(value.toUtf8().constData()) : nullptr;
            if (media && media->ppd)
                text = QString::fromUtf8(media->ppd);
            option.choices.append({value, text});
        }
        if (option.choices.isEmpty())
            continue;
        ipp_attribute_t* preset = ippFindAttribute(response, (name + "-default").constData(), IPP_TAG_ZERO);
        const QString wanted = preset && ippGetValueTag(preset) >= IPP_TAG_INTEGER ? keywordOf(preset, 0) : QString();
        option.defaultChoice = option.choices.first().keyword;
        for (const SpoolerChoice::Value& choice : option.choices)
            if (choice.keyword == wanted)
                option.defaultChoice = wanted;
        options.append(option);
    }
    return options;
}

} // namespace

void Spooler::UseServer(const QString& server)
{
    cupsSetServer(server.isEmpty() ? nullptr : server.toUtf8().constData());
}

void Spooler::SetTimeout(int seconds)
{
    g_timeoutSeconds = std::max(1, seconds);
}

bool Spooler::Destinations(QList<SpoolerPrinter>* printers, int* error)
{
    printers->clear();
    Connection connection;
    if (!connection.ok(error))
        return false;
    const Dests dests(connection.get());
    if (dests.count() == 0 && cupsFailed())
        return failFromCups(error), false;
    for (int i = 0; i < dests.count(); ++i) {
        const cups_dest_t& dest = dests.dests()[i];
        if (dest.instance)
            continue;
        SpoolerPrinter printer;
        printer.name = QString::fromUtf8(dest.name);
        printer.info = destOption(dest, "printer-info");
        printer.makeAndModel = destOption(dest, "printer-make-and-model");
        printer.deviceUri = destOption(dest, "device-uri");
        printer.state = destOption(dest, "printer-state").toInt();
        printer.acceptingJobs = destOption(dest, "printer-is-accepting-jobs") == QLatin1String("true");
        printer.isDefault = dest.is_default != 0;
        printers->append(printer);
    }
    return true;
}

bool Spooler::DefaultDestination(QString* name, int* error)
{
    name->clear();
    Connection connection;
    if (!connection.ok(error))
        return false;
    cups_dest_t* dest = cupsGetNamedDest(connection.get(), nullptr, nullptr);
    if (!dest) {
        if (cupsFailed())
            failFromCups(error);
        else
            fail(ErrorNotFound, QStringLiteral("There is no default printer"), error);
        return false;
    }
    *name = QString::fromUtf8(dest->name);
    cupsFreeDests(1, dest);
    return true;
}

bool Spooler::FindPrinter(const QString& name, QString* queue, int* error)
{
    queue->clear();
    Connection connection;
    if (!connection.ok(error))
        return false;
    const Dests dests(connection.get());
    if (dests.count() == 0 && cupsFailed())
        return failFromCups(error), false;
    if (!name.isEmpty()) {
        if (const cups_dest_t* dest = cupsGetDest(name.toUtf8().constData(), nullptr, dests.count(), dests.dests())) {
            *queue = QString::fromUtf8(dest->name);
            return true;
        }
        for (int i = 0; i < dests.count(); ++i) {
            const cups_dest_t& dest = dests.dests()[i];
            if (!dest.instance && destOption(dest, "printer-info") == name) {
                *queue = QString::fromUtf8(dest.name);
                return true;
            }
        }
    }
    fail(ErrorNotFound, QStringLiteral("No printer is called %1").arg(name), error);
    return false;
}

bool Spooler::GetPrinter(const QString& queue, SpoolerPrinter* printer, int* error)
{
    *printer = SpoolerPrinter();
    Connection connection;
    if (!connection.ok(error))
        return false;
    static const char* const wanted[] = {"printer-name", "printer-info", "printer-make-and-model", "device-uri",
                                         "printer-state", "printer-is-accepting-jobs", "printer-defaults"};
    ipp_t* response = printerAttributes(connection.get(), queue, wanted, error);
    if (!response)
        return false;

    auto text = [response](const char* name) {
        ipp_attribute_t* attribute = ippFindAttribute(response, name, IPP_TAG_ZERO);
        return attribute ? QString::fromUtf8(ippGetString(attribute, 0, nullptr)) : QString();
    };
    printer->name = text("printer-name");
    printer->info = text("printer-info");
    printer->makeAndModel = text("printer-make-and-model");
    printer->deviceUri = text("device-uri");
    if (ipp_attribute_t* state = ippFindAttribute(response, "printer-state", IPP_TAG_ENUM))
        printer->state = ippGetInteger(state, 0);
    if (ipp_attribute_t* accepting = ippFindAttribute(response, "printer-is-accepting-jobs", IPP_TAG_BOOLEAN))
        printer->acceptingJobs = ippGetBoolean(accepting, 0) != 0;

    for (ipp_attribute_t* attribute = ippFirstAttribute(response); attribute;
         attribute = ippNextAttribute(response)) {
        const char* rawName = ippGetName(attribute);
        if (!rawName)
            continue;
        const QString name = QString::fromUtf8(rawName);
        // A default that is not set ("no-value") is no option to hand on to a job.
        if (!name.endsWith(QLatin1String("-default")) || name.startsWith(QLatin1String("notify-")) ||
            name.startsWith(QLatin1String("document-format")) || ippGetValueTag(attribute) < IPP_TAG_INTEGER)
            continue;
        char value[1024];
        ippAttributeString(attribute, value, sizeof value);
        printer->jobOptions.append({name.chopped(8), QString::fromUtf8(value)});
    }
    ippDelete(response);

    printer->jobOptions.append(ppdDefaults(fetchPpd(connection.get(), queue)));
    const auto isCopies = [](const SpoolerOption& option) { return option.first == QLatin1String("copies"); };
    const bool hasCopies = std::any_of(printer->jobOptions.begin(), printer->jobOptions.end(), isCopies);
    if (!hasCopies)
        printer->jobOptions.append({QStringLiteral("copies"), QStringLiteral("1")});
    std::stable_sort(printer->jobOptions.begin(), printer->jobOptions.end(),
                     [](const SpoolerOption& a, const SpoolerOption& b) { return a.first < b.first; });
    return true;
}

bool Spooler::GetOptionChoices(const QString& queue, QList<SpoolerChoice>* options, int* error)
{
    options->clear();
    Connection connection;
    if (!connection.ok(error))
        return false;
    static const char* const wanted[] = {"media-supported",            "media-default",
                                         "media-source-supported",     "media-source-default",
                                         "media-type-supported",       "media-type-default",
                                         "print-quality-supported",    "print-quality-default",
                                         "print-color-mode-supported", "print-color-mode-default",
                                         "sides-supported",            "sides-default"};
    ipp_t* response = printerAttributes(connection.get(), queue, wanted, error);
    if (!response)
        return false;
    http_status_t status = HTTP_STATUS_ERROR;
    const QByteArray ppd = fetchPpd(connection.get(), queue, &status);
    if (status == HTTP_STATUS_OK)
        *options = ParsePpd(ppd);
    else if (status == HTTP_STATUS_NOT_FOUND)
        *options = ippChoices(response);
    ippDelete(response);
    if (status != HTTP_STATUS_OK && status != HTTP_STATUS_NOT_FOUND)
        return fail(ErrorUnavailable, QStringLiteral("The driver of %1 can't be read: %2")
                                          .arg(queue, QString::fromUtf8(httpStatus(status))), error), false;
    return true;
}

QList<SpoolerChoice> Spooler::ParsePpd(const QByteArray& ppd)
{
    QList<SpoolerChoice> options;
    QHash<QString, QString> defaults;
    QString group;
    bool installable = false;
    // The option whose choices are being read; none between *CloseUI and the next *OpenUI, and
    // none for an option left out.
    SpoolerChoice* current = nullptr;
    QSet<QString> seen;
    bool inQuotes = false;
    PpdLine line;
    for (QByteArray raw : ppd.split('\n')) {
        if (raw.endsWith('\r'))
            raw.chop(1);
        // A quoted value may run over several lines, which are no keywords of their own.
        if (inQuotes) {
            inQuotes = raw.count('"') % 2 == 0;
            continue;
        }
        if (!splitPpdLine(raw, &line))
            continue;
        inQuotes = line.value.count('"') % 2 == 1;
        if (line.main == "OpenGroup") {
            QByteArray name;
            group = labelOf(line.value, &name);
            installable = name == "InstallableOptions";
            current = nullptr;
        } else if (line.main == "CloseGroup") {
            group.clear();
            installable = false;
            current = nullptr;
        } else if ((line.main == "OpenUI" || line.main == "JCLOpenUI") && line.option.startsWith('*')) {
            current = nullptr;
            const QString keyword = QString::fromUtf8(line.option.mid(1));
            const bool wanted = line.value == "PickOne" || line.value == "Boolean";
            if (!wanted || installable || keyword == QLatin1String("PageRegion") || seen.contains(keyword))
                continue;
            seen.insert(keyword);
            const QString label = ppdText(line.label.isEmpty() ? line.option.mid(1) : line.label);
            options.append({keyword, label, group.isEmpty() ? QStringLiteral("General") : group, {}, {}});
            current = &options.last();
        } else if (line.main == "CloseUI" || line.main == "JCLCloseUI") {
            current = nullptr;
        } else if (line.main.startsWith("Default") && line.option.isEmpty()) {
            defaults.insert(QString::fromUtf8(line.main.mid(7)), QString::fromUtf8(line.value));
        } else if (current && !line.option.isEmpty() && QString::fromUtf8(line.main) == current->keyword) {
            const QString choice = QString::fromUtf8(line.option);
            const QString key = current->keyword + QLatin1Char('/') + choice;
            if (seen.contains(key))
                continue;
            seen.insert(key);
            current->choices.append({choice, ppdText(line.label.isEmpty() ? line.option : line.label)});
        }
    }
    options.removeIf([](const SpoolerChoice& option) { return option.choices.isEmpty(); });
    for (SpoolerChoice& option : options) {
        const QString wanted = defaults.value(option.keyword);
        option.defaultChoice = option.choices.first().keyword;
        for (const SpoolerChoice::Value& choice : option.choices)
            if (choice.keyword == wanted)
                option.defaultChoice = wanted;
    }
    return options;
}

int Spooler::CreateJob(const QString& queue, const QString& title, const QList<SpoolerOption>& options, int* error)
{
    Connection connection;
    if (!connection.ok(error))
        return 0;
    int count = 0;
    cups_option_t* cupsOptions = nullptr;
    for (const SpoolerOption& option : options)
        count = cupsAddOption(option.first.toUtf8().constData(), option.second.toUtf8().constData(), count,
                              &cupsOptions);
    const int job = cupsCreateJob(connection.get(), queue.toUtf8().constData(), title.toUtf8().constData(), count,
                                  cupsOptions);
    cupsFreeOptions(count, cupsOptions);
    if (job <= 0) {
        failFromCups(error);
        return 0;
    }
    return job;
}

bool Spooler::SendDocument(const QString& queue, int job, const QString& documentName, const QByteArray& data,
                           const QString& format, int* error)
{
    Connection connection;
    if (!connection.ok(error))
        return false;
    const QByteArray name = queue.toUtf8();
    if (cupsStartDocument(connection.get(), name.constData(), job, documentName.toUtf8().constData(),
                          format.toUtf8().constData(), 1) != HTTP_STATUS_CONTINUE)
        return failFromCups(error), false;
    constexpr qsizetype chunk = 65536;
    for (qsizetype offset = 0; offset < data.size(); offset += chunk) {
        const size_t length = size_t(std::min(chunk, data.size() - offset));
        if (cupsWriteRequestData(connection.get(), data.constData() + offset, length) != HTTP_STATUS_CONTINUE) {
            // Ends the request so that the scheduler reports why.
            cupsFinishDocument(connection.get(), name.constData());
            return failFromCups(error), false;
        }
    }
    if (cupsFinishDocument(connection.get(), name.constData()) > IPP_STATUS_OK_EVENTS_COMPLETE)
        return failFromCups(error), false;
    return true;
}

bool Spooler::CancelJob(const QString& queue, int job, int* error)
{
    Connection connection;
    if (!connection.ok(error))
        return false;
    if (cupsCancelJob2(connection.get(), queue.toUtf8().constData(), job, 0) > IPP_STATUS_OK_EVENTS_COMPLETE)
        return failFromCups(error), false;
    return true;
}

bool Spooler::GetJobState(const QString& queue, int job, JobState* state, int* error)
{
    Connection connection;
    if (!connection.ok(error))
        return false;
    ipp_t* request = newRequest(IPP_OP_GET_JOB_ATTRIBUTES, queue);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, "job-state");
    ipp_t* response = cupsDoRequest(connection.get(), request, "/");
    const ipp_status_t status = cupsLastError();
    if (status == IPP_STATUS_ERROR_NOT_FOUND) {
        ippDelete(response);
        *state = Gone;
        return true;
    }
    ipp_attribute_t* attribute = response ? ippFindAttribute(response, "job-state", IPP_TAG_ENUM) : nullptr;
    if (!response || status > IPP_STATUS_OK_EVENTS_COMPLETE || !attribute) {
        ippDelete(response);
        return failFromCups(error), false;
    }
    *state = JobState(ippGetInteger(attribute, 0));
    ippDelete(response);
    return true;
}

bool Spooler::GetJobOptions(const QString& queue, int job, QList<SpoolerOption>* options, int* error)
{
    options->clear();
    Connection connection;
    if (!connection.ok(error))
        return false;
    ipp_t* request = newRequest(IPP_OP_GET_JOB_ATTRIBUTES, queue);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, "all");
    ipp_t* response = cupsDoRequest(connection.get(), request, "/");
    if (!response || cupsFailed()) {
        ippDelete(response);
        return failFromCups(error), false;
    }
    for (ipp_attribute_t* attribute = ippFirstAttribute(response); attribute;
         attribute = ippNextAttribute(response)) {
        const char* name = ippGetName(attribute);
        if (!name || ippGetGroupTag(attribute) != IPP_TAG_JOB)
            continue;
        char value[1024];
        ippAttributeString(attribute, value, sizeof value);
        options->append({QString::fromUtf8(name), QString::fromUtf8(value)});
    }
    ippDelete(response);
    return true;
}

QString Spooler::ErrorText()
{
    return g_lastError;
}
