#pragma once

#include <QIcon>

// The pictures of the tool column's buttons. They are drawn, not loaded, so that they are
// sharp at any size and on any screen: dark strokes of about a sixteenth of their size over
// light fills, on a transparent ground, greyed when disabled.
struct ToolPictures {
    // The picture of the button with the command id; a null icon for an id without one.
    static QIcon Icon(int commandId);
};
