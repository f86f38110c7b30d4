#pragma once

#include "TestSupport.h"
#include "document/CDrawDoc.h"
#include "document/CView.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <vector>

// A document over templates written as text, with the profile emptied before each test.
class DocumentFixture : public ::testing::Test {
protected:
    void SetUp() override;

    // Parses the template text and appends it to the document's list.
    const CTemplateFile& addTemplate(const QByteArray& text);
    // Selects the template in the list (writing it to the profile as the program does).
    void useTemplate(int index) { doc.SetTemplate(index); }

    TestFolder folder;
    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
};

// One 4.65 inch disc with a 0.7 inch hole on a 6 by 6 inch page.
extern const QByteArray OneDiscSheet;
// A printer template with a standard disc, a full-face disc and a business-card disc.
extern const QByteArray DiscPrinter;

// A view that records what the document tells it.
class RecordingView : public CView {
public:
    void OnUpdate(CView*, int hint, CDrawObj* object) override { updates.push_back({hint, object}); }
    bool IsSelected(const CDrawObj* object) const override;
    bool IsActive() const override { return active; }
    void Remove(CDrawObj* object) override { removed.push_back(object); }
    void InvalidateObject(CDrawObj* object) override { invalidated.push_back(object); }

    bool active = true;
    std::vector<const CDrawObj*> selection;
    std::vector<std::pair<int, CDrawObj*>> updates;
    std::vector<CDrawObj*> removed;
    std::vector<CDrawObj*> invalidated;
};
