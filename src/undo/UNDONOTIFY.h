#pragma once

#include <cstdint>

class CDocument;
class CUndoManager;

// What an action manager tells its target's callback after each Do, Undo and Redo.
struct UNDONOTIFY {
    CUndoManager* pManager;
    std::uint32_t nMessage; // g_nDoMessage, g_nUndoMessage or g_nRedoMessage
    int nCount;             // steps done
    bool bModified;         // the history no longer stands where the saved file does
};

// Tags of the notification; nothing is posted anywhere, they only tell the three kinds apart.
inline constexpr std::uint32_t g_nDoMessage = 1;
inline constexpr std::uint32_t g_nUndoMessage = 2;
inline constexpr std::uint32_t g_nRedoMessage = 3;

using UndoCallback = void (*)(CDocument* target, const UNDONOTIFY& notify);
