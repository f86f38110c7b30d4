#include "fields/DataFields.h"

#include "document/CDrawDoc.h"
#include "fields/CFieldMessageScope.h"
#include "fields/CTextFileRead.h"

std::vector<DATAFIELD> g_dataFields;

namespace {

const char* const MonthNames[12] = {"January", "February", "March", "April", "May", "June",
                                    "July", "August", "September", "October", "November", "December"};
const char* const DayNames[7] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

QString TimeValue(const DATAFIELD& field, const QTime& time)
{
    const unsigned hour = time.hour();
    const unsigned minute = time.minute();
    const unsigned second = time.second();
    if (field.Hours24)
        return field.ShowSeconds ? QString::asprintf("%u:%2.2u:%2.2u", hour, minute, second)
                                 : QString::asprintf("%u:%2.2u", hour, minute);
    // Up to 12 is morning: midnight shows as 0 AM and the hour after noon as 12 AM.
    const bool afternoon = hour > 12;
    const unsigned shown = afternoon ? hour - 12 : hour;
    const char* suffix = afternoon ? "PM" : "AM";
    return field.ShowSeconds ? QString::asprintf("%u:%2.2u:%2.2u %s", shown, minute, second, suffix)
                             : QString::asprintf("%u:%2.2u %s", shown, minute, suffix);
}

} // namespace

QString FieldValue(int index, const QDateTime& now)
{
    if (index < 0 || size_t(index) >= g_dataFields.size())
        return {};
    const DATAFIELD& field = g_dataFields[size_t(index)];
    const QDate date = now.date();
    switch (field.Type) {
    case DATAFIELD::Year:
        // Unsigned, so a year before 2000 wraps round.
        return field.TwoDigitYear ? QString::asprintf("%2.2u", uint32_t(date.year()) - 2000u)
                                  : QString::asprintf("%u", unsigned(date.year()));
    case DATAFIELD::Month:
        if (!field.MonthNames)
            return QString::asprintf("%u", unsigned(date.month()));
        // An invalid date has month 0 and no name.
        return date.isValid() ? QString::fromLatin1(MonthNames[date.month() - 1]) : QString();
    case DATAFIELD::Day:
        // dayOfWeek counts Monday as 1 and Sunday as 7; the names start at Sunday.
        if (!field.DayNames)
            return QString::asprintf("%u", unsigned(date.day()));
        return date.isValid() ? QString::fromLatin1(DayNames[date.dayOfWeek() % 7]) : QString();
    case DATAFIELD::Time:
        return TimeValue(field, now.time());
    case DATAFIELD::Disc:
        return QString::asprintf("%u of %u", field.DiscNumber, field.DiscTotal);
    case DATAFIELD::SerialNumber:
        return QString::number(field.Serial);
    case DATAFIELD::DataFile:
        return ReadFieldRecord(index);
    default:
        return {};
    }
}

QString ExpandTags(const QString& text)
{
    QString result = text;
    int replacements = 0;
    for (size_t i = 0; i < g_dataFields.size(); ++i) {
        const QString tag = g_dataFields[i].Tag;
        if (tag.isEmpty())
            continue;
        for (;;) {
            const qsizetype position = result.indexOf(tag, 0, Qt::CaseSensitive);
            if (position < 0)
                break;
            if (replacements == MaxTagReplacements || result.size() - text.size() > MaxExpansionGrowth)
                return result;
            result.remove(position, tag.size());
            result.insert(position, FieldValue(int(i), QDateTime::currentDateTime()));
            ++replacements;
        }
    }
    return result;
}

QChar FieldSeparator(int delimiter)
{
    switch (delimiter) {
    case DATAFIELD::Comma:
        return u',';
    case DATAFIELD::SemiColon:
        return u';';
    default:
        return u'\n';
    }
}

QString FieldRecord(const QString& content, QChar separator, uint32_t index)
{
    // Walks from record to record with an offset rather than cutting each one off the front.
    qsizetype start = 0;
    qsizetype found = -1;
    for (uint64_t i = 0; i <= index; ++i) {
        if (found >= 0)
            start += found + 1;
        const qsizetype at = content.indexOf(separator, start);
        // Without a further separator every later index is empty too.
        if (at < 0)
            return {};
        found = at - start;
    }
    return content.mid(start, found);
}

QString ReadFieldRecord(int index)
{
    if (index < 0 || size_t(index) >= g_dataFields.size())
        return {};
    // A copy: the message below may run a dialog while the list changes.
    const DATAFIELD field = g_dataFields[size_t(index)];
    CTextFileRead file(field.FileName);
    if (!file.IsOpen()) {
        CFieldMessageScope::Report(QStringLiteral("Invalid DataField Filename specififed in tag ") + field.Tag + u'.');
        return {};
    }
    QString content;
    file.ReadAll(content, QStringLiteral("\r\n"));
    return FieldRecord(content, FieldSeparator(field.Delimiter), field.FileIndex);
}

void AdvanceFields(CDrawDoc& doc)
{
    for (DATAFIELD& field : g_dataFields) {
        switch (field.Type) {
        case DATAFIELD::Disc:
            if (++field.DiscNumber > field.DiscTotal)
                field.DiscNumber = 1;
            doc.SetModifiedFlag();
            break;
        case DATAFIELD::SerialNumber:
            field.Serial += field.SerialIncrement;
            doc.SetModifiedFlag();
            break;
        case DATAFIELD::DataFile:
            field.FileIndex += field.FileIncrement;
            doc.SetModifiedFlag();
            break;
        default:
            break;
        }
    }
}
