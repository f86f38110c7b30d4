#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// The program's font collection: the fonts it ships in the install directory's fonts/ folder
// joined to the system's own, so that the font lists and the text drawing see one set of
// families. The main window owns the one instance and publishes it once it is filled; until
// then Published() is null.
class FontCollection {
public:
    FontCollection() = default;
    // The added fonts leave the program's font list with the collection.
    ~FontCollection();
    FontCollection(const FontCollection&) = delete;
    FontCollection& operator=(const FontCollection&) = delete;

    // Adds every file of the folder. A file that is no font is passed over without a word, as
    // is a folder that does not exist. Answers how many files were taken as fonts.
    int AddFontFiles(const QString& folder);
    // Every family the program can use, system and added fonts together.
    QStringList Families() const;
    int AddedCount() const { return int(m_fontIds.size()); }

    static FontCollection* Published();
    // Null clears the published collection.
    static void Publish(FontCollection* collection);

private:
    std::vector<int> m_fontIds;
};
