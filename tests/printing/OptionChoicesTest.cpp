#include "PrintSupport.h"

namespace {

using OptionChoicesTest = PrintingTest;

// What a person sees of an option: "group|keyword/label=default: choice/label choice/label".
QString describe(const SpoolerChoice& option)
{
    QStringList choices;
    for (const SpoolerChoice::Value& choice : option.choices)
        choices << choice.keyword + '/' + choice.label;
    return QStringLiteral("%1|%2/%3=%4: %5")
        .arg(option.group, option.keyword, option.label, option.defaultChoice, choices.join(' '));
}

TEST(PpdOptions, UserOptionsOfAnUntidyFile)
{
    const QByteArray ppd =
        "*PPD-Adobe: \"4.3\"\r\n"
        "*DefaultStpQuality: High\r\n"
        "*OpenUI *Duplex/Both Sides: PickOne\n" // before any group
        "*Duplex None/Off: \"\"\n"
        "*Duplex DuplexNoTumble: \"\"\n"
        "*CloseUI: *Duplex\n"
        "*OpenGroup: InstallableOptions/Installed Options\n"
        "*OpenUI *Tray2/Second Tray: Boolean\n*Tray2 True/Yes: \"\"\n*CloseUI: *Tray2\n"
        "*CloseGroup: InstallableOptions\n"
        "*OpenGroup: Paper/Papier & Co\n"
        "*OpenUI *PageSize/Page Size: PickOne\n"
        "*DefaultPageSize: Letter\n"
        "*PageSize A4/A4: \"<</PageSize[595 842]\n"
        "*PageSize Bogus/Inside a long value: x\n"
        "/ImagingBBox null>>setpagedevice\"\n"
        "*End\n"
        "*PageSize Letter/US Letter: \"\"\n"
        "*PageSize A4/Again: \"\"\n"
        "*CloseUI: *PageSize\n"
        "*OpenUI *PageRegion: PickOne\n*PageRegion A4: \"\"\n*CloseUI: *PageRegion\n"
        "*CustomPageSize True: \"\"\n*ParamCustomPageSize Width: 1 points 36 1000\n"
        "*OpenUI *InputSlot/Source: PickOne\n" // no *CloseUI
        "*DefaultInputSlot: Unknown\n"
        "*InputSlot CD/Disc Tray: \"\"\n"
        "*InputSlot Auto: \"\"\n"
        "*OpenUI *Finish/Finish<E9>: PickMany\n*Finish Gloss: \"\"\n*CloseUI: *Finish\n"
        "*OpenUI *Empty/Nothing: PickOne\n*CloseUI: *Empty\n"
        "*CloseGroup: Paper\n"
        "*OpenGroup: Quality/Qualit<E9>\n"
        "*OpenUI *StpQuality/Qualit\xc3\xa9: PickOne\n*StpQuality Draft: \"\"\n*StpQuality High/Fine: \"\"\n"
        "*CloseUI: *stpquality\n"
        "*JCLOpenUI *JCLEcoMode/Toner Saver: Boolean\n*DefaultJCLEcoMode: True\n"
        "*JCLEcoMode False/Off: \"\"\n*JCLEcoMode True/On: \"\"\n*JCLCloseUI: *JCLEcoMode\n"
        "*CloseGroup: Quality\n"
        "*OpenUI *Broken/Cut short: PickOne\n*Broken One: \"never closed\n";
    QStringList seen;
    for (const SpoolerChoice& option : Spooler::ParsePpd(ppd))
        seen << describe(option);
    EXPECT_EQ(seen.join('\n').toStdString(), QStringList({"General|Duplex/Both Sides=None: None/Off DuplexNoTumble/DuplexNoTumble",
                                 "Papier & Co|PageSize/Page Size=Letter: A4/A4 Letter/US Letter",
                                 "Papier & Co|InputSlot/Source=CD: CD/Disc Tray Auto/Auto",
                                 "Qualit\u00e9|StpQuality/Qualit\u00e9=High: Draft/Draft High/Fine",
                                 "Qualit\u00e9|JCLEcoMode/Toner Saver=True: False/Off True/On",
                                 "General|Broken/Cut short=One: One/One"}).join('\n').toStdString());

    // A driver with a great many choices is read whole, and nothing at all is no option.
    QByteArray huge = "*OpenUI *Media: PickOne\n";
    for (int i = 0; i < 200000; ++i)
        huge += "*Media M" + QByteArray::number(i) + "/Media " + QByteArray::number(i) + ": \"\"\n";
    const QList<SpoolerChoice> many = Spooler::ParsePpd(huge);
    ASSERT_EQ(many.size(), 1);
    EXPECT_EQ(many[0].choices.size(), 200000);
    EXPECT_EQ(many[0].choices.last().label, "Media 199999");
    EXPECT_TRUE(Spooler::ParsePpd(QByteArray()).isEmpty());
}

TEST_F(OptionChoicesTest, DriverOptionsOrNoneAndTheFailures)
{
    // The driver's options in its order, PageRegion (which follows PageSize) left out; a raw
    // queue has neither a driver nor supported job attributes to offer.
    QList<SpoolerChoice> options;
    ASSERT_TRUE(Spooler::GetOptionChoices("PDF", &options)) << Spooler::ErrorText().toStdString();
    QStringList keywords;
    for (const SpoolerChoice& option : options)
        keywords << option.keyword;
    EXPECT_EQ(keywords,
              QStringList({"PageSize", "Resolution", "PDFVer", "Truncate", "Label", "TitlePref", "LogType"}));
    ASSERT_FALSE(options.isEmpty());
    const SpoolerChoice& size = options[0];
    EXPECT_EQ(QStringList({size.label, size.group, size.defaultChoice}), QStringList({"Page Size", "General", "A4"}));
    EXPECT_TRUE(std::any_of(size.choices.begin(), size.choices.end(), [](const SpoolerChoice::Value& choice) {
        return choice.keyword == QLatin1String("Letter") && choice.label == QLatin1String("US Letter");
    }));
    ASSERT_TRUE(Spooler::GetOptionChoices("Raw", &options));
    EXPECT_TRUE(options.isEmpty());

    int error = 0;
    EXPECT_FALSE(Spooler::GetOptionChoices("Nowhere", &options, &error));
    EXPECT_EQ(error, Spooler::ErrorNotFound);
    Spooler::UseServer("127.0.0.1:1");
    EXPECT_FALSE(Spooler::GetOptionChoices("PDF", &options, &error));
    EXPECT_EQ(error, Spooler::ErrorUnavailable);
}

} // namespace
