#include "printing/CPrinterSettings.h"

#include "platform/FileDescriptor.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/Spooler.h"
#include "printing/AppPrinter.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"

#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString Settings = QStringLiteral("Settings");

// A record larger than this can't come from a spooler; a length field that asks for more
// belongs to a damaged file and fails as an allocation would.
constexpr quint32 MaxRecordSize = 16u << 20;

CPrinterSettings::SetupDialog& setupDialog()
{
    static CPrinterSettings::SetupDialog instance;
    return instance;
}

// Reads up to size bytes; what the file doesn't have stays as it is in the buffer.
void readSome(int fd, char* data, size_t size)
{
    while (size > 0) {
        const ssize_t got = ::read(fd, data, size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return;
        data += got;
        size -= size_t(got);
    }
}

bool writeRecord(const FileDescriptor& file, const HGLOBAL& record)
{
    const QByteArray bytes = record.value_or(QByteArray());
    char length[4];
    qToLittleEndian<quint32>(quint32(bytes.size()), length);
    return file.WriteAll(length, 4) && file.WriteAll(bytes.constData(), size_t(bytes.size()));
}

// Reads one length and the record behind it, zero-filled where the file ends early.
bool readRecord(int fd, HGLOBAL* record)
{
    char length[4] = {};
    readSome(fd, length, 4);
    const quint32 size = qFromLittleEndian<quint32>(length);
    if (size > MaxRecordSize) {
        errno = ENOMEM;
        return false;
    }
    QByteArray bytes(qsizetype(size), '\0');
    readSome(fd, bytes.data(), size);
    *record = bytes;
    return true;
}

// Opens a saved set-up for reading; a folder of that name fails as a missing file does.
int openFile(const QByteArray& path)
{
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (fd >= 0 && ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(fd);
        errno = EISDIR;
        return -1;
    }
    return fd;
}

} // namespace

CPrinterSettings::~CPrinterSettings()
{
    if (SavedDevMode || SavedDevNames)
        EndJob();
}

QString CPrinterSettings::SanitiseName(QString name)
{
    name.replace('\\', '_');
    name.replace('/', '_');
    return name;
}

QString CPrinterSettings::DataDirectory()
{
    return Folders::GetSpecialFolder(QStringLiteral("AppData")) + QStringLiteral("Quorvane/Tessarelle/");
}

int CPrinterSettings::Save(const QString& name) const
{
    const QByteArray path = QFile::encodeName(DataDirectory() + name);
    const FileDescriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.get() < 0)
        return errno;
    if (!writeRecord(file, hDevMode) || !writeRecord(file, hDevNames))
        return errno;
    return 0;
}

int CPrinterSettings::Load(const QString& name)
{
    const QByteArray path = QFile::encodeName(DataDirectory() + SanitiseName(name));
    hDevMode.reset();
    hDevNames.reset();

    // An empty name names the data folder itself, which holds no set-up: the spooler's
    // default printer is taken then, as on a first start.
    const FileDescriptor file(openFile(path));
    if (file.get() >= 0) {
        if (!readRecord(file.get(), &hDevMode) || !readRecord(file.get(), &hDevNames))
            return errno;
        UpdateName();
        return 0;
    }

    const int error = errno;
    PRINTDLG pd;
    if (AppPrinter::GetPrinterDeviceDefaults(&pd)) {
        hDevMode = pd.hDevMode;
        hDevNames = pd.hDevNames;
        if (UpdateName()) {
            Profile::WriteString(Settings, QStringLiteral("PrinterName"), GetName(false));
            Save(GetName(true));
        }
    }
    return error;
}

bool CPrinterSettings::Choose(QObject* parent, const QString& name)
{
    PRINTDLG pd;
    pd.Flags = (0x14004Cu & ~PRINTDLG::PD_RETURNDC) | PRINTDLG::PD_PRINTTOFILE;

    HGLOBAL keptDevMode;
    HGLOBAL keptDevNames;
    if (!name.isEmpty()) {
        if (GetPrinterHandles(name, &keptDevMode, &keptDevNames)) {
            pd.hDevMode = keptDevMode;
            pd.hDevNames = keptDevNames;
        }
    } else {
        pd.hDevMode = hDevMode;
        pd.hDevNames = hDevNames;
    }

    // Takes the given records as the printer's, and keeps them if they name a printer.
    auto take = [this](HGLOBAL devMode, HGLOBAL devNames) {
        hDevMode = std::move(devMode);
        hDevNames = std::move(devNames);
        if (!UpdateName())
            return false;
        Profile::WriteString(Settings, QStringLiteral("PrinterName"), GetName(false));
        Save(GetName(true));
        return true;
    };

    const bool confirmed = setupDialog() && setupDialog()(pd, parent);
    if (confirmed)
        return take(pd.hDevMode, pd.hDevNames);
    // A named printer stands even when the dialog is dismissed.
    if (!name.isEmpty())
        return take(keptDevMode, keptDevNames);
    return false;
}

void CPrinterSettings::TakeFrom(const PRINTDLG& pd)
{
    hDevMode = pd.hDevMode;
    hDevNames = pd.hDevNames;
}

void CPrinterSettings::SelectForJob()
{
    PRINTDLG pd;
    AppPrinter::GetPrinterDeviceDefaults(&pd);
    SavedDevMode = pd.hDevMode;
    SavedDevNames = pd.hDevNames;
    // Marked as the default, the printer would give way to the spooler's default the next
    // time the application's printer is asked for.
    if (hDevNames)
        DEVNAMES::SetDefault(*hDevNames, DEVNAMES::Default(*hDevNames) & ~DEVNAMES::DN_DEFAULTPRN);
    AppPrinter::SelectPrinter(hDevNames, hDevMode);
}

void CPrinterSettings::EndJob()
{
    if (SavedDevMode && SavedDevNames)
        AppPrinter::SelectPrinter(SavedDevNames, SavedDevMode);
    SavedDevMode.reset();
    SavedDevNames.reset();
}

bool CPrinterSettings::GetPrinterHandles(const QString& name, HGLOBAL* pDevMode, HGLOBAL* pDevNames)
{
    if (!pDevMode || !pDevNames) {
        MessageBox::Show(QStringLiteral("Error: DevMode or DevNames are invalid\n"));
        return false;
    }
    QString queue;
    int error = 0;
    if (!Spooler::FindPrinter(name, &queue, &error)) {
        MessageBox::Show(
            QStringLiteral("Error:  Unable to connect to %1. Error %2").arg(name, QString::number(unsigned(error))));
        return false;
    }
    SpoolerPrinter printer;
    if (!Spooler::GetPrinter(queue, &printer, &error)) {
        MessageBox::Show(QStringLiteral("Error: Failed getting printer info. Error %1").arg(unsigned(error)));
        return false;
    }
    *pDevMode = DEVMODE::For(printer);
    *pDevNames = DEVNAMES::For(printer);
    return true;
}

bool CPrinterSettings::UpdateName()
{
    // An empty block can't be locked.
    if (hDevNames && !hDevNames->isEmpty()) {
        PrinterName = DEVNAMES::Device(*hDevNames);
        return hDevMode.has_value();
    }
    PrinterName.clear();
    return false;
}

void CPrinterSettings::SetSetupDialog(SetupDialog dialog)
{
    setupDialog() = std::move(dialog);
}
