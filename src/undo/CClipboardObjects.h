#pragma once

#include "document/CView.h"

#include <QByteArray>
#include <memory>
#include <vector>

class CDrawDoc;
class CDrawObj;

// Objects as the clipboard carries them: written as a project file writes a label's list, the
// count and then each object with its class tag.
class CClipboardObjects {
public:
    static QByteArray Store(const CDrawObjPtrList& objects);
    // New objects of the document, in the stored order. Damaged bytes give none at all, never
    // a part.
    static std::vector<std::unique_ptr<CDrawObj>> Load(const QByteArray& bytes, CDrawDoc* document);
};
