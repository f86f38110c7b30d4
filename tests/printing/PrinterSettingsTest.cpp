#include "PrintSupport.h"

#include "platform/Profile.h"
#include "printing/AppPrinter.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"

#include <QFile>
#include <QtEndian>

#include <cerrno>

namespace {

const QString Settings = QStringLiteral("Settings");

QByteArray length(quint32 value)
{
    char bytes[4];
    qToLittleEndian(value, bytes);
    return QByteArray(bytes, 4);
}

// The per-printer file as it must stand: length, DEVMODE, length, DEVNAMES.
QByteArray fileOf(const QByteArray& devMode, const QByteArray& devNames)
{
    return length(quint32(devMode.size())) + devMode + length(quint32(devNames.size())) + devNames;
}

TEST(PrinterRecords, CopiesResolutionAndNames)
{
    // Copies: read, set in place among the other options, added when missing.
    QByteArray mode = DEVMODE::Build({{"Resolution", "600x300dpi"}, {"copies", "5"}, {"media", "iso_a4_210x297mm"}});
    EXPECT_EQ(DEVMODE::Copies(mode), 5);
    DEVMODE::SetCopies(mode, 1);
    EXPECT_EQ(mode, "Resolution=600x300dpi\ncopies=1\nmedia=iso_a4_210x297mm\n");
    QByteArray none = DEVMODE::Build({{"media", "a=b"}});
    EXPECT_FALSE(DEVMODE::HasCopies(none));
    EXPECT_EQ(DEVMODE::Options(none), QList<SpoolerOption>({{"media", "a=b"}}));
    DEVMODE::SetCopies(none, 2);
    EXPECT_EQ(DEVMODE::Copies(none), 2);

    // Resolution: the IPP default before a driver's own, 300 when neither says.
    EXPECT_EQ(DEVMODE::Resolution(mode), 600);
    EXPECT_EQ(DEVMODE::Resolution(DEVMODE::Build({{"Resolution", "1200dpi"}, {"printer-resolution", "360dpi"}})), 360);
    EXPECT_EQ(DEVMODE::Resolution(DEVMODE::Build({{"Resolution", "Normal"}})), 300);
    EXPECT_EQ(DEVMODE::Resolution(QByteArray()), 300);

    // Names round trip, with characters beyond Latin-1; the default flag sits in the header.
    QByteArray names = DEVNAMES::Build(QString::fromUtf8("Dr\u00E4ver"), "Disc \u2460", "usb://x", 0);
    DEVNAMES::SetDefault(names, DEVNAMES::DN_DEFAULTPRN);
    EXPECT_EQ(QStringList({DEVNAMES::Driver(names), DEVNAMES::Device(names), DEVNAMES::Output(names)}),
              QStringList({QString::fromUtf8("Dr\u00E4ver"), "Disc \u2460", "usb://x"}));
    EXPECT_EQ(DEVNAMES::Default(names), DEVNAMES::DN_DEFAULTPRN);
    // A record cut short names nothing beyond its end.
    EXPECT_EQ(DEVNAMES::Output(names.left(names.size() - 4)), "usb://");
    EXPECT_TRUE(DEVNAMES::Device(names.left(6)).isEmpty());
}

class PrinterSettingsTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        ASSERT_TRUE(CPrinterSettings::GetPrinterHandles("Raw", &rawMode, &rawNames));
        ASSERT_TRUE(CPrinterSettings::GetPrinterHandles("PDF", &pdfMode, &pdfNames));
    }
    void TearDown() override
    {
        CPrinterSettings::SetSetupDialog(nullptr);
        PrintingTest::TearDown();
    }

    static QString savedFile(const QString& name) { return CPrinterSettings::DataDirectory() + name; }
    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size());
    }

    HGLOBAL rawMode, rawNames, pdfMode, pdfNames;
};

TEST_F(PrinterSettingsTest, RecordsOfAPrinterAndTheMessagesWhenThereIsNone)
{
    // Driver, device and port: make and model, description (the queue's name without one),
    // device URI; job options with the copies.
    EXPECT_EQ(QStringList({DEVNAMES::Driver(*pdfNames), DEVNAMES::Device(*pdfNames), DEVNAMES::Output(*pdfNames)}),
              QStringList({"Generic CUPS-PDF Printer (w/ options)", "PDF printer", "cups-pdf:/"}));
    EXPECT_EQ(DEVNAMES::Default(*pdfNames), 0);
    EXPECT_EQ(DEVNAMES::Device(*rawNames), "Raw");
    EXPECT_TRUE(DEVNAMES::Output(*rawNames).startsWith("socket://127.0.0.1:"));
    // The header: offsets in 16-bit units, the driver's at 4, each name behind the last.
    const QByteArray& names = *pdfNames;
    EXPECT_EQ(qFromLittleEndian<quint16>(names.constData()), 4);
    EXPECT_EQ(qFromLittleEndian<quint16>(names.constData() + 2), 4 + 37 + 1);
    EXPECT_EQ(names.size(), 2 * (4 + 38 + 12 + 11));
    EXPECT_EQ(DEVMODE::Copies(*pdfMode), 1);
    EXPECT_EQ(DEVMODE::Resolution(*pdfMode), 300);

    // The description finds the queue, too.
    HGLOBAL mode, devNames;
    EXPECT_TRUE(CPrinterSettings::GetPrinterHandles("PDF printer", &mode, &devNames));
    EXPECT_EQ(devNames, pdfNames);

    EXPECT_FALSE(CPrinterSettings::GetPrinterHandles("Nowhere", &mode, &devNames));
    EXPECT_FALSE(CPrinterSettings::GetPrinterHandles("Raw", nullptr, &devNames));
    Spooler::UseServer("127.0.0.1:1");
    EXPECT_FALSE(CPrinterSettings::GetPrinterHandles("Raw", &mode, &devNames));
    EXPECT_EQ(messages, QStringList({"Error:  Unable to connect to Nowhere. Error 1030",
                                     "Error: DevMode or DevNames are invalid\n",
                                     "Error:  Unable to connect to Raw. Error 1283"}));
    messages.clear();
}

TEST_F(PrinterSettingsTest, LoadReadsTheSavedFileOrTakesTheDefaultPrinter)
{
    // Nothing saved for this name: the error, and the default printer in its place, which
    // becomes the last printer and gets its own file.
    CPrinterSettings first;
    EXPECT_EQ(first.Load("PDF printer"), ENOENT);
    EXPECT_EQ(first.PrinterName, "Raw");
    EXPECT_EQ(Profile::GetString(Settings, "PrinterName"), "Raw");
    ASSERT_TRUE(first.hDevMode && first.hDevNames);
    EXPECT_EQ(*first.hDevMode, *rawMode);
    EXPECT_EQ(DEVNAMES::Default(*first.hDevNames), DEVNAMES::DN_DEFAULTPRN);
    EXPECT_EQ(readFile(savedFile("Raw")), fileOf(*first.hDevMode, *first.hDevNames));
    EXPECT_FALSE(QFile::exists(savedFile("PDF printer")));

    // Now it is there, and it is read as it stands, also when the queue has changed since.
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Raw", "-o", "copies-default=3"}));
    CPrinterSettings second;
    EXPECT_EQ(second.Load("Raw"), 0);
    EXPECT_EQ(std::tie(second.PrinterName, second.hDevMode, second.hDevNames),
              std::tie(first.PrinterName, first.hDevMode, first.hDevNames));
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Raw", "-o", "copies-default=1"}));

    // Save joins the data folder to the name it is given, so a full path goes nowhere.
    EXPECT_EQ(second.Save(CPrinterSettings::DataDirectory() + "settings"), ENOENT);
    EXPECT_FALSE(QFile::exists(CPrinterSettings::DataDirectory() + "settings"));

    // A network printer's name stands sanitised in its file's name.
    const QByteArray networkNames = DEVNAMES::Build("Driver", "\\\\server\\printer", "ipp://server/printer");
    writeFile(savedFile("__server_printer"), fileOf("copies=2\n", networkNames));
    CPrinterSettings network;
    EXPECT_EQ(network.Load("\\\\server\\printer"), 0);
    EXPECT_EQ(network.GetName(true), "__server_printer");
    EXPECT_EQ(DEVMODE::Copies(*network.hDevMode), 2);

    // No printer anywhere (the spooler gone, nothing held, nothing saved): no records, and
    // the error.
    Spooler::UseServer("127.0.0.1:1");
    AppPrinter::SelectPrinter({}, {});
    CPrinterSettings none;
    EXPECT_EQ(none.Load("Elsewhere"), ENOENT);
    EXPECT_FALSE(none.hDevMode || none.hDevNames || !none.PrinterName.isEmpty());
}

TEST_F(PrinterSettingsTest, DamagedFilesAreReadAsFarAsTheyGo)
{
    // The DEVMODE's length asks for more than there is: zero-filled; no second record length
    // at all: an empty DEVNAMES, which gives no name.
    writeFile(savedFile("Short"), length(20) + "copies=4\n");
    CPrinterSettings shortFile;
    EXPECT_EQ(shortFile.Load("Short"), 0);
    ASSERT_TRUE(shortFile.hDevMode && shortFile.hDevNames);
    EXPECT_EQ(*shortFile.hDevMode, QByteArray("copies=4\n") + QByteArray(11, '\0'));
    EXPECT_EQ(DEVMODE::Copies(*shortFile.hDevMode), 4);
    EXPECT_TRUE(shortFile.hDevNames->isEmpty());
    EXPECT_FALSE(shortFile.UpdateName() || !shortFile.PrinterName.isEmpty());

    // A length no printer record can have fails as an allocation does, keeping what was read.
    writeFile(savedFile("Huge"), length(8) + "copies=1" + length(0xFFFFFFFFu));
    CPrinterSettings huge;
    EXPECT_EQ(huge.Load("Huge"), ENOMEM);
    EXPECT_EQ(huge.hDevMode, QByteArray("copies=1"));
    EXPECT_FALSE(huge.hDevNames);

    // Records that don't parse as printer records give empty values, never more.
    writeFile(savedFile("Garbage"),
              length(3) + QByteArray::fromHex("FFFE00") + length(5) + QByteArray::fromHex("FFFFFFFF01"));
    CPrinterSettings garbage;
    EXPECT_EQ(garbage.Load("Garbage"), 0);
    EXPECT_TRUE(garbage.UpdateName() && garbage.PrinterName.isEmpty());
    EXPECT_FALSE(DEVMODE::HasCopies(*garbage.hDevMode));
}

TEST_F(PrinterSettingsTest, ChooseTakesANamedPrinterWithOrWithoutTheDialog)
{
    CPrinterSettings settings;
    ASSERT_EQ(settings.Load("Raw"), ENOENT);

    // No dialog can be shown here: an empty name changes nothing.
    EXPECT_FALSE(settings.Choose(nullptr, QString()));
    EXPECT_EQ(settings.PrinterName, "Raw");

    // A named printer is taken although the dialog was dismissed.
    EXPECT_TRUE(settings.Choose(nullptr, "PDF"));
    EXPECT_EQ(settings.PrinterName, "PDF printer");
    EXPECT_EQ(settings.hDevNames, pdfNames);
    EXPECT_EQ(Profile::GetString(Settings, "PrinterName"), "PDF printer");
    EXPECT_EQ(readFile(savedFile("PDF printer")), fileOf(*pdfMode, *pdfNames));

    // The dialog starts with the present printer, or the named one, with the set-up flags.
    QStringList shown;
    bool confirm = false;
    CPrinterSettings::SetSetupDialog([&](PRINTDLG& pd, QObject*) {
        shown << DEVNAMES::Device(pd.hDevNames.value_or(QByteArray()));
        EXPECT_EQ(pd.Flags, 0x14006Cu);
        if (confirm) {
            pd.hDevMode = rawMode;
            pd.hDevNames = rawNames;
        }
        return confirm;
    });
    EXPECT_FALSE(settings.Choose(nullptr, QString()));
    EXPECT_EQ(settings.PrinterName, "PDF printer");
    confirm = true;
    EXPECT_TRUE(settings.Choose(nullptr, "PDF"));
    EXPECT_EQ(shown, QStringList({"PDF printer", "PDF printer"}));
    EXPECT_EQ(settings.PrinterName, "Raw");
    EXPECT_EQ(Profile::GetString(Settings, "PrinterName"), "Raw");

    // An unknown name: its message, and no printer is left.
    confirm = false;
    EXPECT_FALSE(settings.Choose(nullptr, "Nowhere"));
    EXPECT_EQ(messages, QStringList({"Error:  Unable to connect to Nowhere. Error 1030"}));
    EXPECT_TRUE(settings.PrinterName.isEmpty());
    messages.clear();
}

TEST_F(PrinterSettingsTest, AJobPrintsOnTheSettingsPrinterAndPutsTheFormerOneBack)
{
    CPrinterSettings settings;
    ASSERT_TRUE(settings.Choose(nullptr, "PDF"));
    EXPECT_EQ(appPrinter(), "Raw");

    settings.SelectForJob();
    EXPECT_EQ(appPrinter(), "PDF printer");
    EXPECT_EQ(settings.SavedDevNames.value_or(QByteArray()), DEVNAMES::Build(DEVNAMES::Driver(*rawNames), "Raw",
                                                                             DEVNAMES::Output(*rawNames),
                                                                             DEVNAMES::DN_DEFAULTPRN));
    settings.EndJob();
    EXPECT_EQ(appPrinter(), "Raw");
    EXPECT_FALSE(settings.SavedDevMode || settings.SavedDevNames);

    // A printer taken as the default is no longer marked so once a job has put it in force:
    // the application keeps it even when the spooler's default changes.
    CPrinterSettings fromDefault;
    ASSERT_EQ(fromDefault.Load("Raw"), ENOENT);
    AppPrinter::SelectPrinter(pdfNames, pdfMode);
    fromDefault.SelectForJob();
    EXPECT_EQ(DEVNAMES::Default(*fromDefault.hDevNames), 0);
    ASSERT_TRUE(cups.Run("lpadmin", {"-d", "PDF"}));
    EXPECT_EQ(appPrinter(), "Raw");
    ASSERT_TRUE(cups.Run("lpadmin", {"-d", "Raw"}));

    // Settings that go away in the middle of a job put the former printer back.
    {
        CPrinterSettings during;
        ASSERT_TRUE(during.Choose(nullptr, "Raw"));
        during.SelectForJob();
    }
    EXPECT_EQ(appPrinter(), "Raw");
    fromDefault.EndJob();
    EXPECT_EQ(appPrinter(), "PDF printer");
}

} // namespace
