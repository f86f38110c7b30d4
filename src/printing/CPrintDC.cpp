#include "printing/CPrintDC.h"

#include "platform/Spooler.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/DiscTray.h"

#include <QPdfWriter>
#include <QRegularExpression>

CPrintDC::CPrintDC(const HGLOBAL& devMode, const HGLOBAL& devNames)
{
    if (devNames)
        m_strDevice = DEVNAMES::Device(*devNames);
    ResetDC(devMode.value_or(QByteArray()));
}

CPrintDC::~CPrintDC()
{
    if (m_bInDoc)
        AbortDoc();
}

void CPrintDC::ResetDC(const QByteArray& devMode)
{
    m_devMode = devMode;
    m_nResolution = DEVMODE::Resolution(devMode);
    m_pageSize = PaperOf(devMode);
    m_bTrayPage = DiscTray::PageSideOf(devMode) > 0;
    m_dc = std::make_unique<gfx::DeviceContext>(m_painter, m_nResolution, m_nResolution, true);
}

int CPrintDC::GetDeviceCaps(int index) const
{
    switch (index) {
    case gfx::LOGPIXELSX:
    case gfx::LOGPIXELSY:
        return m_nResolution;
    case HORZRES:
        return m_pageSize.sizePixels(m_nResolution).width();
    case VERTRES:
        return m_pageSize.sizePixels(m_nResolution).height();
    }
    return 0;
}

QPageSize CPrintDC::PaperOf(const QByteArray& devMode)
{
    if (const double side = DiscTray::PageSideOf(devMode))
        return QPageSize(QSizeF(side, side), QPageSize::Point, QStringLiteral("Disc tray"), QPageSize::ExactMatch);
    QString media;
    QString pageSize;
    for (const SpoolerOption& option : DEVMODE::Options(devMode)) {
        if (option.first == QLatin1String("media"))
            media = option.second;
        else if (option.first == QLatin1String("PageSize"))
            pageSize = option.second;
    }
    static const QRegularExpression selfDescribing(QStringLiteral("_(\\d+(?:\\.\\d+)?)x(\\d+(?:\\.\\d+)?)(mm|in)$"));
    const QRegularExpressionMatch match = selfDescribing.match(media);
    if (match.hasMatch()) {
        const QSizeF size(match.captured(1).toDouble(), match.captured(2).toDouble());
        // A size of nothing, or one no paper has, is no paper.
        if (size.width() > 0 && size.height() > 0 && size.width() < 100000 && size.height() < 100000)
            return QPageSize(size, match.captured(3) == QLatin1String("mm") ? QPageSize::Millimeter : QPageSize::Inch,
                             QString(), QPageSize::FuzzyMatch);
    }
    for (int id = 0; id <= int(QPageSize::LastPageSize); ++id) {
        if (!pageSize.isEmpty() && QPageSize::key(QPageSize::PageSizeId(id)).compare(pageSize, Qt::CaseInsensitive) == 0)
            return QPageSize(QPageSize::PageSizeId(id));
    }
    return QPageSize(QPageSize::Letter);
}

int CPrintDC::StartDoc(const DOCINFO& info)
{
    if (m_bInDoc)
        return SP_ERROR;
    m_strDocName = info.lpszDocName;
    m_nJob = 0;
    m_strQueue.clear();
    if (!info.lpszOutput.isEmpty()) {
        m_output.setFileName(info.lpszOutput);
        if (!m_output.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return SP_ERROR;
    } else {
        // The device name is the queue's description or its name; either finds it.
        if (!Spooler::FindPrinter(m_strDevice, &m_strQueue))
            return SP_ERROR;
        m_nJob = Spooler::CreateJob(m_strQueue, m_strDocName, DEVMODE::Options(m_devMode));
        if (m_nJob <= 0)
            return SP_ERROR;
    }

    m_buffer.setData(QByteArray());
    m_buffer.open(QIODevice::WriteOnly);
    m_writer = std::make_unique<QPdfWriter>(&m_buffer);
    m_writer->setResolution(m_nResolution);
    m_writer->setPageSize(m_pageSize);
    m_writer->setPageMargins(QMarginsF(0, 0, 0, 0));
    m_writer->setTitle(m_strDocName);
    m_writer->setCreator(QStringLiteral("Tessarelle"));
    m_nPages = 0;
    m_bInDoc = true;
    return info.lpszOutput.isEmpty() ? m_nJob : 1;
}

int CPrintDC::StartPage()
{
    if (!m_bInDoc || m_bInPage)
        return SP_ERROR;
    if (m_nPages == 0) {
        if (!m_painter.begin(m_writer.get()))
            return SP_ERROR;
    } else if (!m_writer->newPage()) {
        return SP_ERROR;
    }
    ++m_nPages;
    m_bInPage = true;
    return 1;
}

int CPrintDC::EndPage()
{
    if (!m_bInPage)
        return SP_ERROR;
    m_bInPage = false;
    return 1;
}

void CPrintDC::SaveDC()
{
    if (m_painter.isActive())
        m_painter.save();
}

void CPrintDC::RestoreDC()
{
    if (m_painter.isActive())
        m_painter.restore();
}

void CPrintDC::CloseDocument()
{
    if (m_painter.isActive())
        m_painter.end();
    m_writer.reset();
    m_buffer.close();
    m_bInPage = false;
    m_bInDoc = false;
}

int CPrintDC::EndDoc()
{
    if (!m_bInDoc)
        return SP_ERROR;
    const bool hasPages = m_nPages > 0;
    CloseDocument();
    const QByteArray document = hasPages ? m_buffer.data() : QByteArray();
    m_buffer.setData(QByteArray());
    if (m_output.isOpen()) {
        const bool written = m_output.write(document) == document.size();
        m_output.close();
        return written ? 1 : SP_ERROR;
    }
    // A job without pages has nothing to send.
    if (!hasPages)
        return Spooler::CancelJob(m_strQueue, m_nJob) ? 1 : SP_ERROR;
    if (!Spooler::SendDocument(m_strQueue, m_nJob, m_strDocName, document)) {
        Spooler::CancelJob(m_strQueue, m_nJob);
        return SP_ERROR;
    }
    return 1;
}

int CPrintDC::AbortDoc()
{
    if (!m_bInDoc)
        return SP_ERROR;
    CloseDocument();
    m_buffer.setData(QByteArray());
    if (m_output.isOpen()) {
        m_output.close();
        return 1;
    }
    return Spooler::CancelJob(m_strQueue, m_nJob) ? 1 : SP_ERROR;
}
