#pragma once

namespace kivo::tunehive {

// How the group "playing" goes on when a track ends. The process-wide value may be any number; one
// that is not listed chooses no track at all.
enum class PlayMode : int {
    Track = 0,       // One track, then stop.
    RepeatTrack = 1, // The same again.
    Sequence = 2,    // Through the group once; the default.
    RepeatGroup = 3, // Through the group again and again.
    Random = 4,      // Random, without end.
};

// A play mode as the menu offers it. The command is among those of tree/TreeMenus.h, each once.
struct PlayModeEntry {
    PlayMode mode;
    const char16_t* textId;
    int command;
};

inline constexpr PlayModeEntry kPlayModes[] = {
    {PlayMode::Track,       u"STRID_TUNEHIVE_MENU_MODE_TRACK",     12},
    {PlayMode::RepeatTrack, u"STRID_TUNEHIVE_MENU_MODE_TRACKRREP", 13},
    {PlayMode::Sequence,    u"STRID_TUNEHIVE_MENU_MODE_SEQ",       14},
    {PlayMode::RepeatGroup, u"STRID_TUNEHIVE_MENU_MODE_GROUPREP",  15},
    {PlayMode::Random,      u"STRID_TUNEHIVE_MENU_MODE_RANDOMREP", 16},
};

} // namespace kivo::tunehive
