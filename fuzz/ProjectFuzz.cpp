// libFuzzer target for the project reader: any bytes as a project file, read as opening a
// project reads them (the question about a foreign header answered Yes, to read on). Whatever
// was read, even from a file that failed half-way, is then saved, and the saved project must
// load without a fault and save again to the same bytes. Last, its texts are laid out again
// with the project's data fields, as opening a project does once the fields are read.
#include "FuzzSupport.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawObj.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

// Reads the bytes into the document; false when the archive gave up.
bool load(CDrawDoc& doc, const QByteArray& bytes)
{
    CArchive ar(bytes);
    ar.m_pDocument = &doc;
    try {
        doc.Serialize(ar);
    } catch (const CArchiveException&) {
        return false;
    }
    return true;
}

QByteArray save(CDrawDoc& doc)
{
    CArchive ar;
    ar.m_pDocument = &doc;
    doc.Serialize(ar);
    return ar.Buffer();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    FuzzSetUp(*argc, *argv, true);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Every open appends the file's fields to the program's; each input starts without any.
    g_dataFields.clear();
    QByteArray saved;
    {
        CDrawDoc doc;
        load(doc, QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
        saved = save(doc);
    }

    g_dataFields.clear();
    CDrawDoc again;
    if (!load(again, saved))
        std::abort(); // the program can't read back what it wrote
    if (save(again) != saved)
        std::abort(); // a saved project changes when it is opened and saved again

    // Expanding the fields' tags is where a hostile field would hang or run out of bounds.
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        for (const auto& object : again.GetObjects(label))
            object->Layout();
    }
    g_dataFields.clear();
    return 0;
}
