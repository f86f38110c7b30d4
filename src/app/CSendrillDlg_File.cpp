// The File menu's commands and the way out of the program.

#include "app/CSendrillDlg.h"

#include "document/CDrawDoc.h"
#include "panels/CSubForm1_1.h"
#include "panels/CSubForm2_1.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/graphics/Image.h"
#include "templates/CTemplateFile.h"
#include "view/CNetworkView.h"

#include <QFileDialog>
#include <QImageWriter>

#include <cstdio>

namespace {

const QString ProjectFilter = QStringLiteral("Tessarelle Project File (*.dst) (*.dst)");
const QString ImageFilter = QStringLiteral(
    "JPEG (*.jpg;*.jpeg) (*.jpg *.jpeg);;Windows Bitmap (*.bmp) (*.bmp);;Portable Network Graphics (*.PNG) (*.png)");
const QString EraseQuestion = QStringLiteral("The current document has been modified\r\nAre you sure you want to erase it?");
const QString SaveQuestion =
    QStringLiteral("The current document has been modified\r\nSave the document before exiting?");

// The writer's format for a picture's path: the extension after the last full stop, among the
// formats this system writes; empty when there is none.
QByteArray encoderFor(const QString& path)
{
    const QString lower = path.toLower();
    const qsizetype dot = lower.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return {};
    const QByteArray extension = lower.mid(dot + 1).toLatin1();
    const QList<QByteArray> formats = QImageWriter::supportedImageFormats();
    return formats.contains(extension) ? extension : QByteArray();
}

} // namespace

void CSendrillDlg::WriteProjectPath(const QString& path)
{
    // A program that started this one can follow what was opened and saved.
    std::printf("%s\n", path.toLocal8Bit().constData());
    std::fflush(stdout);
}

QString CSendrillDlg::AskFileName(bool save, const QString& filter, const QString& suffix, QSize size, const QString& start)
{
    QFileDialog dialog(this, QString(), Folders::GetSpecialFolder(QStringLiteral("Personal")), filter);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(suffix);
    if (!start.isEmpty())
        dialog.selectFile(start);
    dialog.resize(size);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().front();
}

bool CSendrillDlg::MayDiscard()
{
    return !m_pDoc->IsModified() || MessageBox::Show(EraseQuestion, MessageBox::YesNo) == MessageBox::IdYes;
}

void CSendrillDlg::OnFileNew()
{
    if (!MayDiscard())
        return;
    // The template, the diameters, the current label and the data fields stay.
    m_pView->ClearSelection();
    m_pDoc->ClearLabels();
    m_pView->viewport()->update();
    m_pSubForm2_1->LoadFromDocument();
    m_pDoc->SetModifiedFlag(false);
    m_strProjectPath.clear();
}

void CSendrillDlg::OnFileOpen()
{
    if (!MayDiscard())
        return;
    const QString path = AskFileName(false, ProjectFilter, QStringLiteral("dst"), QSize(600, 400));
    if (path.isEmpty())
        return;
    m_strProjectPath = path;
    OpenProject(path);
    AddToRecentFileList(path);
    WriteProjectPath(path);
}

void CSendrillDlg::OpenFromOutside(const QString& path)
{
    const QString lower = path.trimmed().toLower();
    if (!lower.endsWith(QLatin1String(".dst"))) {
        MessageBox::Show(QStringLiteral("Unknown file type"));
        return;
    }
    // Lower-cased as the shell's path always was, unless only the name as given exists on a
    // file system that tells case apart.
    m_strProjectPath = UnattendedPath(lower, path.trimmed());
    OpenProject(m_strProjectPath);
    WriteProjectPath(m_strProjectPath);
}

void CSendrillDlg::OnFileSave()
{
    if (m_strProjectPath.isEmpty())
        return;
    m_pDoc->OnSaveDocument(m_strProjectPath);
    WriteProjectPath(m_strProjectPath);
}

void CSendrillDlg::OnFileSaveAs()
{
    const QString path = AskFileName(true, ProjectFilter, QStringLiteral("dst"), QSize(600, 400), m_strProjectPath);
    if (path.isEmpty())
        return;
    m_strProjectPath = path;
    m_pDoc->OnSaveDocument(path);
    AddToRecentFileList(path);
    WriteProjectPath(path);
}

void CSendrillDlg::OnFileSaveImage()
{
    const QString path = AskFileName(true, ImageFilter, QStringLiteral("jpg"), QSize(400, 275));
    if (path.isEmpty())
        return;
    // Exactly what would print: the template's whole sheet at 300 units per inch, on white.
    const std::unique_ptr<gfx::Bitmap> sheet = m_pDoc->RenderBitmap(300, 300, true, true);
    const QByteArray format = encoderFor(path);
    // An extension no encoder takes writes nothing, and says nothing.
    if (!sheet || format.isEmpty())
        return;
    QImageWriter writer(path, format);
    if (format == "jpg" || format == "jpeg")
        writer.setQuality(100);
    else if (format == "tif" || format == "tiff")
        writer.setCompression(1);
    writer.write(sheet->image());
}

void CSendrillDlg::OnFilePrint()
{
    if (const CTemplateFile* templateFile = m_pDoc->GetTemplateFile(); templateFile && !templateFile->PrintNotice.isEmpty())
        MessageBox::Show(templateFile->PrintNotice);
    m_pView->PrintJob(QString(), QString(), false);
}

void CSendrillDlg::OnPrinterSetup()
{
    // The diameters are kept per printer: the disc panel shows the new printer's.
    if (m_pDoc->GetPrinter().Choose(this, QString())) {
        m_pSubForm1_1->LoadUnits();
        m_pSubForm1_1->LoadFromDocument();
    }
}

void CSendrillDlg::OnExit()
{
    ExitStep();
    // A running update worker is awaited even when the user chose to stay: the dialog then
    // stays open once it has ended.
    WaitForUpdateWorker();
}

void CSendrillDlg::ExitStep()
{
    if (m_pView && m_pDoc->IsModified()) {
        const int answer = MessageBox::Show(SaveQuestion, MessageBox::YesNoCancel);
        if (answer == MessageBox::IdCancel)
            return;
        // Yes always asks for a name, and a cancelled dialog still leaves.
        if (answer == MessageBox::IdYes)
            OnFileSaveAs();
    }
    done(0);
}
