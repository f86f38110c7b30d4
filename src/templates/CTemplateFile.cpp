#include "templates/CTemplateFile.h"

#include "fields/Windows1252.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "templates/GlabelsTemplates.h"
#include "platform/NumberText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

const QString CTemplateFile::DefaultFileName = QStringLiteral("Default.tmp");

namespace {

// Number lines are read as the C runtime reads them, always with a decimal point.
int ParseInt(const QByteArray& line)
{
    return NumberText::ToInt(QString::fromLatin1(line));
}

double ParseDouble(const QByteArray& line)
{
    return NumberText::ToDouble(QString::fromLatin1(line));
}

// Names and notices are 8-bit text in the program's code page, so that a name with "€" or "é"
// reads the same whatever the machine's locale.
QString TextLine(const QByteArray& line)
{
    QString text;
    AppendFromCodePage(0, line.constData(), line.size(), text);
    return text;
}

double RoundTo(double value, int digits)
{
    if (value == 0)
        return value;
    const double sign = std::fabs(value) / value;
    const double scaled = std::fabs(std::pow(10.0, digits) * value);
    const double fraction = scaled - std::trunc(scaled);
    const double rounded = fraction >= 0.5 ? std::ceil(scaled) : std::floor(scaled);
    // Dividing by the exact power of ten gives the double nearest to the decimal, so that the
    // file's "1.65" equals 1.65 typed elsewhere; multiplying by 10^-digits would miss it by a bit.
    return rounded / std::pow(10.0, digits) * sign;
}

// A line as it may appear inside a message: short, with control bytes made visible.
QString Shown(const QByteArray& line)
{
    constexpr int shown = 40;
    QString text;
    for (int i = 0; i < std::min<int>(line.size(), shown); ++i) {
        const uchar c = uchar(line[i]);
        if (c < 0x20 || c == 0x7f)
            text += QStringLiteral("\\x%1").arg(c, 2, 16, QLatin1Char('0'));
        else
            text += QChar(c);
    }
    if (line.size() > shown)
        text += QStringLiteral("...");
    return QLatin1Char('"') + text + QLatin1Char('"');
}

const char* BlockName(int mode)
{
    static const char* const names[] = {"top", "DISC", "BUSDISC", "RECT", "PERF"};
    return names[mode];
}

} // namespace

// Reads the device line by line, lazily, keeping at most MaxLineLength bytes of a line and
// skipping over the rest, so that neither a huge file nor a huge line fills the memory.
class CTemplateFile::Session {
public:
    explicit Session(QIODevice& device) : m_device(device) {}

    bool Next(QByteArray& line)
    {
        line.clear();
        bool any = false;
        bool ended = false;
        bool truncated = false;
        for (;;) {
            if (m_pos >= m_buffer.size() && !Fill())
                break;
            any = true;
            const char* start = m_buffer.constData() + m_pos;
            const qsizetype available = m_buffer.size() - m_pos;
            const char* newline = static_cast<const char*>(std::memchr(start, '\n', size_t(available)));
            const qsizetype length = newline ? newline - start : available;
            const qsizetype room = MaxLineLength + 1 - line.size();
            line.append(start, std::min(length, room));
            truncated = truncated || length > room;
            m_pos += length;
            if (newline) {
                ++m_pos;
                ended = true;
                break;
            }
        }
        if (!any)
            return false;
        ++m_line;
        // CR LF ends a line as LF does; a CR elsewhere stays part of the text.
        if (ended && !truncated && line.endsWith('\r'))
            line.chop(1);
        if (line.size() > MaxLineLength)
            line.truncate(MaxLineLength);
        return true;
    }

    int LineNumber() const { return m_line; }

    // Counts one more area or perforation; false once there are too many.
    bool CountItem()
    {
        if (++m_items > MaxItems)
            aborted = true;
        return !aborted;
    }

    bool aborted = false;
    QString note; // the first early stop inside the current top-level block

private:
    bool Fill()
    {
        if (m_atEnd)
            return false;
        m_buffer = m_device.read(64 * 1024);
        m_pos = 0;
        if (m_buffer.isEmpty())
            m_atEnd = true;
        return !m_atEnd;
    }

    QIODevice& m_device;
    QByteArray m_buffer;
    qsizetype m_pos = 0;
    bool m_atEnd = false;
    int m_line = 0;
    int m_items = 0;
};

int CTemplateFile::LoadTemplate(const QString& path)
{
    // A FIFO or a device would block the reader or never end; only regular files are templates.
    const QFileInfo info(path);
    if (info.isDir() || (info.exists() && !info.isFile())) {
        *this = CTemplateFile();
        m_strPath = path;
        m_strError = info.isDir() ? QStringLiteral("cannot open: it is a folder")
                                  : QStringLiteral("cannot open: not a regular file");
        return 0;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *this = CTemplateFile();
        m_strPath = path;
        m_strError = QStringLiteral("cannot open: %1").arg(file.errorString());
        return 0;
    }
    const int result = LoadTemplate(file);
    m_strPath = path;
    return result;
}

int CTemplateFile::LoadTemplate(QIODevice& device)
{
    const QString path = m_strPath;
    *this = CTemplateFile();
    m_strPath = path;

    Session session(device);
    m_session.session = &session;
    struct Detach {
        SessionRef& ref;
        ~Detach() { ref.session = nullptr; }
    } detach{m_session};

    QByteArray line;
    if (!session.Next(line)) {
        m_strError = QStringLiteral("the file is empty");
        return 0;
    }
    if (line == "SHEET") {
        IsPrinter = 0;
    } else if (line == "PRINTER") {
        IsPrinter = 1;
    } else {
        m_strError = QStringLiteral("the first line is neither SHEET nor PRINTER: %1").arg(Shown(line));
        return 0;
    }

    auto next = [&](const char* field) {
        if (session.Next(line))
            return true;
        m_strError = QStringLiteral("the file ends before the %1 line").arg(QLatin1String(field));
        return false;
    };
    if (!next("TemplateName"))
        return 0;
    TemplateName = TextLine(line);
    if (!next("PrintNotice"))
        return 0;
    PrintNotice = TextLine(line);
    if (!next("PaperWidth"))
        return 0;
    PaperWidth = RoundTo(ParseDouble(line), 3);
    if (!next("PaperHeight"))
        return 0;
    PaperHeight = RoundTo(ParseDouble(line), 3);
    if (IsPrinter) {
        LabelCount = 1;
    } else {
        if (!next("LabelCount"))
            return 0;
        LabelCount = ParseInt(line);
    }
    if (!next("OriginX"))
        return 0;
    OriginX = ParseDouble(line);
    if (!next("OriginY"))
        return 0;
    OriginY = ParseDouble(line);

    const int result = ParseBody(0, nullptr);
    if (!result) {
        if (m_strError.isEmpty())
            m_strError = QStringLiteral("the template is incomplete");
        return 0;
    }
    if (!IsPrinter) {
        for (CTemplateObject& object : Objects)
            object.Selected = 1;
    }
    return result;
}

int CTemplateFile::Stop(const QString& reason)
{
    if (m_session.session && m_session.session->note.isEmpty())
        m_session.session->note = reason;
    return 0;
}

int CTemplateFile::ParseBody(int mode, CTemplateObject* object)
{
    Session* session = m_session.session;
    if (!session || session->aborted || mode < 0 || mode > 4 || (mode != 0 && !object))
        return 0;

    const int blockLine = session->LineNumber();
    auto stop = [&](const QString& why) {
        return Stop(QStringLiteral("the %1 block of line %2 stopped %3")
                        .arg(QLatin1String(BlockName(mode)))
                        .arg(blockLine)
                        .arg(why));
    };
    auto atLine = [&](const QString& what) {
        return QStringLiteral("at line %1: %2").arg(session->LineNumber()).arg(what);
    };
    QByteArray line;
    auto next = [&] { return session->Next(line); };
    auto endOfFile = QStringLiteral("at the end of the file");

    if (mode >= 1 && mode <= 3) {
        // Fixed by the kind of area, whether or not its lines are all there.
        object->IsRect = mode == 3 ? 1 : 0;
        object->Rotation = 0.0;
        object->EdgeDia = mode == 1 ? 4.72 : 0.0;

        if (!next())
            return stop(endOfFile);
        object->LabelNumber = ParseInt(line);
        if (object->LabelNumber == 0)
            return stop(atLine(QStringLiteral("LabelNumber 0")));
        // Compared unsigned, so a negative number is too large as well.
        if (quint32(object->LabelNumber) > quint32(LabelCount))
            return stop(atLine(QStringLiteral("LabelNumber %1 is above LabelCount %2")
                                   .arg(object->LabelNumber)
                                   .arg(LabelCount)));
        if (!next())
            return stop(endOfFile);
        object->ObjectName = TextLine(line);
        double* const fields[] = {&object->CentreX, &object->CentreY, &object->OuterDia, &object->InnerDia,
                                  &object->Rotation, &object->EdgeDia};
        const int count = mode == 1 ? 4 : mode == 3 ? 5 : 6;
        for (int i = 0; i < count; ++i) {
            if (!next())
                return stop(endOfFile);
            *fields[i] = RoundTo(ParseDouble(line), 3);
        }
    } else if (mode == 4) {
        double values[5];
        for (double& value : values) {
            if (!next())
                return stop(endOfFile);
            value = RoundTo(ParseDouble(line), 3);
        }
        if (!session->CountItem()) {
            m_strError = QStringLiteral("more than %1 areas and perforations").arg(MaxItems);
            return 0;
        }
        // Stored on the sheet: the file measures from the area's top-left corner.
        const double left = object->LeftEdge();
        const double top = object->TopEdge();
        object->Perfs.push_back(Perf{values[0], left + values[1], top + values[2], left + values[3], top + values[4]});
    }

    for (;;) {
        if (!next()) {
            if (mode != 0)
                return stop(endOfFile);
            m_strError = QStringLiteral("the file ends before END");
            if (!session->note.isEmpty())
                m_strError += QStringLiteral(" (%1)").arg(session->note);
            return 0;
        }
        if (mode == 0) {
            const int area = line == "DISC" ? 1 : line == "BUSDISC" ? 2 : line == "RECT" ? 3 : 0;
            if (area) {
                if (!session->CountItem()) {
                    m_strError = QStringLiteral("more than %1 areas and perforations").arg(MaxItems);
                    return 0;
                }
                session->note.clear();
                // Deliberately unchecked: an area that stopped early is kept with what it has,
                // and reading goes on here with the line behind the one that stopped it.
                CTemplateObject added;
                ParseBody(area, &added);
                Objects.push_back(std::move(added));
                if (session->aborted)
                    return 0;
                continue;
            }
            if (line == "END")
                return 1;
            m_strError = QStringLiteral("line %1: %2 is not a keyword here").arg(session->LineNumber()).arg(Shown(line));
            if (!session->note.isEmpty())
                m_strError += QStringLiteral(" (%1)").arg(session->note);
            return 0;
        }
        if (mode <= 3) {
            if (line == "PERF") {
                // As above: a perforation block that stopped early doesn't end the area.
                ParseBody(4, object);
                if (session->aborted)
                    return 0;
                continue;
            }
            if (line == "ENDOBJECT")
                return 1;
        } else if (line == "ENDPERF") {
            return 1;
        }
        return stop(atLine(QStringLiteral("%1 is not a keyword there").arg(Shown(line))));
    }
}

double CTemplateFile::ReadRounded(const QString& text, int digits)
{
    return RoundTo(NumberText::ToDouble(text), digits);
}

std::vector<CTemplateFile> CTemplateFile::LoadTemplateList(const QString& templatesFolder,
                                                           std::vector<TemplateLoadResult>* results)
{
    const QDir folder(templatesFolder);
    QStringList names;
    // "*.tmp" as Windows matches it: the extension in any case.
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden, QDir::NoSort)) {
        if (name.endsWith(QLatin1String(".tmp"), Qt::CaseInsensitive))
            names.append(name);
    }
    // The file system's order is arbitrary on Linux; by name the list is the same on every run.
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int c = a.compare(b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a < b;
    });

    // Default.tmp is found whatever its case, as on the file system the format comes from.
    QString defaultName = DefaultFileName;
    if (!names.contains(defaultName)) {
        for (const QString& name : names) {
            if (name.compare(DefaultFileName, Qt::CaseInsensitive) == 0) {
                defaultName = name;
                break;
            }
        }
    }

    std::vector<CTemplateFile> list;
    auto load = [&](const QString& name) {
        const QString path = folder.filePath(name);
        CTemplateFile file;
        const bool loaded = file.LoadTemplate(path) != 0;
        if (results)
            results->push_back({path, loaded, loaded ? QString() : file.m_strError});
        if (loaded)
            list.push_back(std::move(file));
        else
            MessageBox::Show(QStringLiteral("Error opening %1 template file.").arg(path));
    };

    load(defaultName);
    for (const QString& name : names) {
        if (name.compare(DefaultFileName, Qt::CaseInsensitive) != 0)
            load(name);
    }

    // Only the program's own list takes the imported templates, behind ours: a folder of
    // templates given to a tool is read as it stands.
    const QString own = QDir(Folders::InstallDirectory() + QStringLiteral("Templates")).canonicalPath();
    if (!own.isEmpty() && folder.canonicalPath() == own)
        GlabelsTemplates::AppendFolders(GlabelsTemplates::SearchFolders(), list, results);
    return list;
}
