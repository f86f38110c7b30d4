// libFuzzer target for the template parser: any bytes as a ".tmp" file. A load either succeeds
// with a template inside the reader's limits or fails with a reason; the parser is also called
// with no load under way, as a caller might.
#include "FuzzSupport.h"

#include "templates/CTemplateFile.h"

#include <QBuffer>
#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    FuzzSetUp(*argc, *argv, false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);

    CTemplateFile file;
    if (file.LoadTemplate(device)) {
        if (!file.m_strError.isEmpty() || file.Objects.size() > size_t(CTemplateFile::MaxItems))
            std::abort();
        // The list holds templates by copy; a copy must stand on its own.
        const CTemplateFile copy = file;
        if (copy.Objects.size() != file.Objects.size() || copy.TemplateName != file.TemplateName)
            std::abort();
    } else if (file.m_strError.isEmpty()) {
        std::abort(); // a failure always says why
    }
    CTemplateObject object;
    if (file.ParseBody(3, &object) != 0 || file.ParseBody(0, nullptr) != 0)
        std::abort(); // the parser works only inside a load
    return 0;
}
