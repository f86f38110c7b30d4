#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

class CDrawObj;

// A class that can stand in an archive: the name files spell it with, its schema, how to make
// an empty one while reading, and whether an object is exactly of this class while writing.
struct CRuntimeClass {
    const char* m_lpszClassName;
    std::uint16_t m_wSchema;
    std::unique_ptr<CDrawObj> (*m_pfnCreateObject)();
    bool (*m_pfnIsExactly)(const CDrawObj& object);

    // The drawable classes a project may hold; null for any other name or object.
    static const CRuntimeClass* FromName(std::string_view name);
    static const CRuntimeClass* Of(const CDrawObj& object);
};
