#include "DocumentFixture.h"

#include "fields/DataFields.h"
#include "platform/Profile.h"

#include <QFile>

const QByteArray OneDiscSheet = "SHEET\nOne Disc\n\n6\n6\n1\n0\n0\n"
                                "DISC\n1\nDisc\n3\n3\n4.65\n0.7\nENDOBJECT\nEND\n";

const QByteArray DiscPrinter = "PRINTER\nTray\n\n4.724\n4.724\n0\n0\n"
                               "DISC\n1\nStandard\n2.362\n2.362\n4.646\n1.654\nENDOBJECT\n"
                               "DISC\n1\nFullFace\n2.362\n2.362\n4.72\n0.906\nENDOBJECT\n"
                               "BUSDISC\n1\nCard\n2.362\n2.362\n3.15\n0.906\n0\n2.4\nENDOBJECT\nEND\n";

void DocumentFixture::SetUp()
{
    QFile::remove(Profile::FilePath());
    g_dataFields.clear();
    m_folderBefore = QDir::currentPath();
    doc.SetTemplates(&templates);
    MessageBox::SetPresenter([this](const QString& text, int style) {
        messages.push_back(text);
        return (style & 0xF) == MessageBox::YesNo ? answer : int(MessageBox::IdOk);
    });
}

void DocumentFixture::TearDown()
{
    MessageBox::SetPresenter(nullptr);
    QDir::setCurrent(m_folderBefore);
    g_dataFields.clear();
}

const CTemplateFile& DocumentFixture::addTemplate(const QByteArray& text)
{
    const QString file = folder.write(QStringLiteral("t%1.tmp").arg(templates.size()), text);
    CTemplateFile loaded;
    EXPECT_TRUE(loaded.LoadTemplate(file)) << text.constData();
    templates.push_back(loaded);
    return templates.back();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void expectPixels(const QImage& image, std::initializer_list<Pixel> pixels)
{
    for (const Pixel& p : pixels)
        EXPECT_EQ(image.pixel(p.x, p.y), p.colour) << "at " << p.x << ", " << p.y;
}
