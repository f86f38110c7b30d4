#include "document/CRuntimeClass.h"

#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"

#include <typeinfo>

namespace {

template <typename T>
std::unique_ptr<CDrawObj> create()
{
    return std::make_unique<T>();
}

template <typename T>
bool isExactly(const CDrawObj& object)
{
    return typeid(object) == typeid(T);
}

// Every schema is 0. CDrawObj itself can be read but never stands on a label.
const CRuntimeClass Classes[] = {
    {"CDrawRect", 0, &create<CDrawRect>, &isExactly<CDrawRect>},
    {"CDrawPoly", 0, &create<CDrawPoly>, &isExactly<CDrawPoly>},
    {"CDrawText", 0, &create<CDrawText>, &isExactly<CDrawText>},
    {"CDrawObj", 0, &create<CDrawObj>, &isExactly<CDrawObj>},
};

} // namespace

const CRuntimeClass* CRuntimeClass::FromName(std::string_view name)
{
    for (const CRuntimeClass& runtimeClass : Classes) {
        if (name == runtimeClass.m_lpszClassName)
            return &runtimeClass;
    }
    return nullptr;
}

const CRuntimeClass* CRuntimeClass::Of(const CDrawObj& object)
{
    for (const CRuntimeClass& runtimeClass : Classes) {
        if (runtimeClass.m_pfnIsExactly(object))
            return &runtimeClass;
    }
    return nullptr;
}
