#pragma once

#include "templates/CTemplateFile.h"

#include <QString>
#include <QStringList>
#include <vector>

class QByteArray;

// Reads the XML template databases that other label programs install on Linux (a root
// "Glabels-templates" of "Template" elements) and turns their disc templates ("Label-cd", with
// their layouts and business-card clipping) into sheet templates of our own kind. Other shapes
// are skipped. Imported templates are named by brand and part with " (imported)" behind, carry
// m_bImported, and keep the XML file in m_strPath.
//
// These files come from anywhere, so everything is bounded: the size of a file, the depth of its
// elements, the number of templates and of areas, and every length must be a finite, plausible
// number. A file that fails is skipped whole; a template with absurd values is skipped alone.
class GlabelsTemplates {
public:
    // Where the databases are looked for, in reading order: the data folders' (the user's own
    // first, then the system's) "libglabels-3.0/templates" and "glabels-qt/templates", then the
    // user's configuration folder's "libglabels/templates".
    static QStringList SearchFolders();

    // Reads the "*.xml" and "*.template" files of the folders, each folder's files by name,
    // appending the disc templates not yet read under the same brand and part. Each failing file
    // and each skipped template is one line on standard error. Results, when given, receive
    // one entry per imported template and one per failing file, in order.
    static void AppendFolders(const QStringList& folders, std::vector<CTemplateFile>& list,
                              std::vector<TemplateLoadResult>* results = nullptr);

    // The disc templates of one file's text. False, with the reason, when the file as a whole
    // is not usable (malformed, too deep, too many templates); `skipped` receives a line per
    // template left out for its values.
    static bool Read(const QByteArray& xml, const QString& path, std::vector<CTemplateFile>& out, QString& error,
                     QStringList* skipped = nullptr);

    // Bounds against hostile files.
    static constexpr qint64 MaxFileSize = 4 * 1024 * 1024;
    static constexpr int MaxDepth = 16;
    static constexpr int MaxTemplates = 5000; // per file
    static constexpr int MaxAreas = 500;      // per template
    static constexpr double MaxPaper = 100.0; // inches, either side
};
