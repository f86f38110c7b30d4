#pragma once

#include "templates/CTemplateObject.h"

#include <QString>
#include <vector>

class QIODevice;

// What became of one file while the template list was read.
struct TemplateLoadResult {
    QString path;
    bool loaded = false;
    QString error; // why it failed; empty when loaded
};

// A template: one disc on a printer tray (IsPrinter 1) or a sheet of label areas (IsPrinter 0),
// read from a ".tmp" text file. The object is the reader and the result; once loaded it is a
// plain value that the template list holds by copy.
class CTemplateFile {
public:
    std::vector<CTemplateObject> Objects; // label areas in file order
    double OriginX = 0.0;     // inches; origin of the printed image on the paper
    double OriginY = 0.0;
    double PaperWidth = 0.0;  // inches; the sheet or tray
    double PaperHeight = 0.0;
    int LabelCount = 0;       // distinct labels; 1 for a printer template
    QString TemplateName;
    QString PrintNotice;      // shown before printing; empty for none
    int IsPrinter = 0;

    // Diagnostics for tools, never shown by the program: where the template came from and,
    // after a failed load, a human reason ("line 12: \"FOO\" is not a keyword here").
    QString m_strPath;
    QString m_strError;
    // Read from another program's template database (GlabelsTemplates), not from a ".tmp" file;
    // m_strPath is then that database's file.
    bool m_bImported = false;

    // Reads the file. Nonzero on success. Whatever was loaded before is dropped first.
    int LoadTemplate(const QString& path);
    // The same on an open device, read from its current position.
    int LoadTemplate(QIODevice& device);

    // The body parser. Modes: 0 top level (object null), 1 DISC, 2 BUSDISC, 3 RECT, 4 PERF,
    // the last four filling the given object. Answers 1 when its block ended with its closing
    // keyword, 0 otherwise. Works only while a load is under way; otherwise it answers 0.
    int ParseBody(int mode, CTemplateObject* object);

    // The text as a decimal number, rounded to the given number of digits, halves away from zero.
    static double ReadRounded(const QString& text, int digits);

    // The start-up list of a templates folder: Default.tmp first when it loads, then every
    // other "*.tmp" by name. For the program's own Templates/ folder, the disc templates of the
    // installed template databases follow (GlabelsTemplates), so that indices of our own never move. Each failure is reported with "Error opening %1 template file.";
    // results, when given, receive every file tried, in order, with the reason of a failure.
    static std::vector<CTemplateFile> LoadTemplateList(const QString& templatesFolder,
                                                       std::vector<TemplateLoadResult>* results = nullptr);

    static const QString DefaultFileName; // "Default.tmp"

    // Guards against files that are not templates at all. A longer line keeps only its start;
    // more areas and perforations than this make the file fail.
    static constexpr int MaxLineLength = 1024;
    static constexpr int MaxItems = 10000;

private:
    class Session;
    int Stop(const QString& reason);

    // The reader state of a load in progress. Not part of the value: a copy starts without one.
    struct SessionRef {
        Session* session = nullptr;
        SessionRef() = default;
        SessionRef(const SessionRef&) {}
        SessionRef& operator=(const SessionRef&) { return *this; }
    };
    SessionRef m_session;
};
