#pragma once

#include <QString>

// Holds back the data fields' messages while a label is drawn: in the window each different
// text reaches the user once, when the outermost scope ends, instead of from the middle of the
// painting once for every occurrence of a tag. A composition off the user interface thread
// (printing, pictures of the label) holds every occurrence, in order, and shows them when it
// ends. Scopes nest; the outermost one decides. Without a scope (tools, no display) a message
// shows at once. While a message is up, those of the drawings behind it are dropped, so a
// repaint under the message never stacks up further ones.
class CFieldMessageScope {
public:
    enum Holding { EachTextOnce, EveryOccurrence };

    explicit CFieldMessageScope(Holding holding = EachTextOnce);
    ~CFieldMessageScope();
    CFieldMessageScope(const CFieldMessageScope&) = delete;
    CFieldMessageScope& operator=(const CFieldMessageScope&) = delete;

    // Shows the text, or keeps it for the end of the open scope.
    static void Report(const QString& text);
};
