#include "DocumentFixture.h"

#include "platform/Profile.h"

#include <QFile>
#include <algorithm>

const QByteArray OneDiscSheet = "SHEET\nOne Disc\n\n6\n6\n1\n0\n0\n"
                                "DISC\n1\nDisc\n3\n3\n4.65\n0.7\nENDOBJECT\nEND\n";

const QByteArray DiscPrinter = "PRINTER\nTray\n\n4.724\n4.724\n0\n0\n"
                               "DISC\n1\nStandard\n2.362\n2.362\n4.646\n1.654\nENDOBJECT\n"
                               "DISC\n1\nFullFace\n2.362\n2.362\n4.72\n0.906\nENDOBJECT\n"
                               "BUSDISC\n1\nCard\n2.362\n2.362\n3.15\n0.906\n0\n2.4\nENDOBJECT\nEND\n";

void DocumentFixture::SetUp()
{
    QFile::remove(Profile::FilePath());
    doc.SetTemplates(&templates);
}

const CTemplateFile& DocumentFixture::addTemplate(const QByteArray& text)
{
    const QString path = folder.write(QStringLiteral("t%1.tmp").arg(templates.size()), text);
    CTemplateFile file;
    EXPECT_TRUE(file.LoadTemplate(path)) << text.constData();
    templates.push_back(file);
    return templates.back();
}

bool RecordingView::IsSelected(const CDrawObj* object) const
{
    return std::find(selection.begin(), selection.end(), object) != selection.end();
}
