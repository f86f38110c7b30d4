#include "PrintSupport.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawRect.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "printing/AppPrinter.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVNAMES.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

namespace {

// Runs a poppler tool on the document; its output, and the folder's path for files it wrote.
QString poppler(const QByteArray& pdf, const QString& tool, QStringList arguments, const QTemporaryDir& dir)
{
    QFile file(dir.filePath("in.pdf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
        return {};
    file.close();
    arguments.replaceInStrings("IN", file.fileName());
    QProcess process;
    process.start(tool, arguments);
    if (!process.waitForFinished(60000))
        process.kill();
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

} // namespace

int PrintOutput::PageCount(const QByteArray& pdf, QSizeF* pageSize)
{
    QTemporaryDir dir;
    const QString info = poppler(pdf, "pdfinfo", {"IN"}, dir);
    const auto match = [&](const char* pattern) {
        return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(info);
    };
    const QRegularExpressionMatch size = match("^Page size:\\s+([\\d.]+) x ([\\d.]+) pts");
    const QRegularExpressionMatch pages = match("^Pages:\\s+(\\d+)");
    if (pageSize)
        *pageSize = size.hasMatch() ? QSizeF(size.captured(1).toDouble(), size.captured(2).toDouble()) : QSizeF();
    return pages.hasMatch() ? pages.captured(1).toInt() : -1;
}

QImage PrintOutput::Render(const QByteArray& pdf, int dpi)
{
    QTemporaryDir dir;
    poppler(pdf, "pdftoppm", {"-r", QString::number(dpi), "-l", "1", "-png", "-singlefile", "IN", dir.filePath("out")},
            dir);
    return QImage(dir.filePath("out.png")).convertToFormat(QImage::Format_RGB32);
}

int PrintOutput::FirstRedColumn(const QImage& image, int row)
{
    for (int x = 0; row >= 0 && row < image.height() && x < image.width(); ++x) {
        const QColor c = image.pixelColor(x, row);
        if (c.red() > 200 && c.green() < 80 && c.blue() < 80)
            return x;
    }
    return -1;
}

Spooler::JobState finalState(const QString& queue, int job)
{
    const QDeadlineTimer deadline(30000);
    Spooler::JobState state = Spooler::Gone;
    while (!deadline.hasExpired()) {
        if (!Spooler::GetJobState(queue, job, &state) || state == Spooler::Gone || state >= Spooler::Canceled)
            return state;
        QThread::msleep(50);
    }
    return state;
}

QString appPrinter()
{
    PRINTDLG pd;
    return AppPrinter::GetPrinterDeviceDefaults(&pd) ? DEVNAMES::Device(*pd.hDevNames) : QString();
}

void addRedSquare(CDrawDoc& doc)
{
    auto square = std::make_unique<CDrawRect>(CRect(300, 0, 600, -300));
    square->m_flags = 2;
    square->m_fillColor1 = gfx::Color(255, 255, 0, 0);
    doc.Add(std::move(square));
}

QString writeBluePicture(const TestFolder& folder)
{
    QImage blue(300, 300, QImage::Format_RGB32);
    blue.fill(QColor(0, 0, 255));
    const QString path = folder.path() + "/picture.png";
    EXPECT_TRUE(blue.save(path));
    return path;
}

void PrintingTest::SetUp()
{
    ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
    cups.UseAgain();
    cups.RawPrinter().Clear();
    QDir(CPrinterSettings::DataDirectory()).removeRecursively();
    QDir().mkpath(CPrinterSettings::DataDirectory());
    QFile::remove(Profile::FilePath());
    AppPrinter::SelectPrinter({}, {});
}

void PrintingTest::TearDown()
{
    cups.UseAgain();
    EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();
}

QByteArray PrintingTest::received(int count)
{
    EXPECT_TRUE(cups.RawPrinter().WaitForJobs(count, 30000)) << cups.ErrorLog().toStdString();
    return cups.RawPrinter().Jobs().value(count - 1);
}

CaughtMessages::CaughtMessages()
{
    MessageBox::SetPresenter([this](const QString& text, int style) {
        append(text);
        return MessageBox::DefaultAnswer(style);
    });
}

CaughtMessages::~CaughtMessages()
{
    MessageBox::SetPresenter(nullptr);
}
