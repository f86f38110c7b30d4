#pragma once

#include <memory>
#include <vector>

class CArchive;
class CDrawObj;

// One label's objects in z-order, bottom first. The list owns what it holds.
class CDrawObjList {
public:
    CDrawObjList();
    ~CDrawObjList();
    CDrawObjList(CDrawObjList&&) noexcept;
    CDrawObjList& operator=(CDrawObjList&&) noexcept;

    void AddTail(std::unique_ptr<CDrawObj> object);
    void AddHead(std::unique_ptr<CDrawObj> object);
    // Puts the object at a zero-based position; past the end it goes to the tail.
    void InsertAt(int index, std::unique_ptr<CDrawObj> object);
    // Hands the object over to the caller; null when it is not in the list.
    std::unique_ptr<CDrawObj> Take(const CDrawObj* object);
    void RemoveAll();
    // The count, then each object with its class tag, bottom first. Loading appends; a null
    // reference in a file adds nothing.
    void Serialize(CArchive& ar);

    // Zero-based position, or -1.
    int Find(const CDrawObj* object) const;
    int GetCount() const { return int(m_objects.size()); }
    bool IsEmpty() const { return m_objects.empty(); }
    CDrawObj* GetAt(int index) const { return m_objects[size_t(index)].get(); }

    auto begin() const { return m_objects.begin(); }
    auto end() const { return m_objects.end(); }
    auto rbegin() const { return m_objects.rbegin(); }
    auto rend() const { return m_objects.rend(); }

private:
    std::vector<std::unique_ptr<CDrawObj>> m_objects;
};
