#include "TemplateSamples.h"

#include "TestSupport.h"

const QByteArray TwoDiscsAndACard = "SHEET\nTwo Discs and a Card\n\n8.5\n11\n2\n0.1\n0.1\n"
                                    "DISC\n1\nDisc Label\n4.25\n2.75\n4.65\n0.7\nENDOBJECT\n"
                                    "DISC\n1\nDisc Label\n4.25\n7.75\n4.65\n0.7\nENDOBJECT\n"
                                    "RECT\n2\nCard\n4.25\n10.25\n3.5\n1\n0\n"
                                    "PERF\n0\n1.75\n0\n1.75\n1\nENDPERF\n"
                                    "ENDOBJECT\nEND\n";

QByteArray SheetHeader(int labelCount)
{
    return "SHEET\nSheet\n\n8.5\n11\n" + QByteArray::number(labelCount) + "\n0\n0\n";
}

QByteArray PrinterHeader()
{
    return "PRINTER\nTray\n\n4.724\n4.724\n0\n0\n";
}

CTemplateFile LoadText(const QByteArray& text, bool* loaded)
{
    TestFolder folder;
    CTemplateFile file;
    const bool ok = file.LoadTemplate(folder.write(QStringLiteral("t.tmp"), text)) != 0;
    if (loaded)
        *loaded = ok;
    return file;
}
