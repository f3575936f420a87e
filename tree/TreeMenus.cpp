#include "tree/TreeMenus.h"

#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "player/PlayMode.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"

#include <initializer_list>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr int kSeparator = 0;

// What the keyboard does on a row.
constexpr char16_t kPlayKeys[] = u"Return";
constexpr char16_t kPauseKeys[] = u"Space";
constexpr char16_t kDeleteKeys[] = u"Del";
constexpr char16_t kRenameKeys[] = u"F2";

struct EntryText {
    int command;
    const char16_t* textId;
};

constexpr EntryText kEntryTexts[] = {
    {kCommandPlay,             u"STRID_TUNEHIVE_MENU_PLAY"           },
    {kCommandPause,            u"STRID_TUNEHIVE_MENU_PAUSE"          },
    {kCommandNewGroup,         u"STRID_TUNEHIVE_MENU_NEWGROUP"       },
    {kCommandSaveGroup,        u"STRID_TUNEHIVE_MENU_SAVEGROUP"      },
    {kCommandClearGroup,       u"STRID_TUNEHIVE_MENU_CLEARGROUP"     },
    {kCommandDeleteGroup,      u"STRID_TUNEHIVE_MENU_DELETEGROUP"    },
    {kCommandRenameGroup,      u"STRID_TUNEHIVE_MENU_RENAMEGROUP"    },
    {kCommandSearch,           u"STRID_TUNEHIVE_MENU_SEARCHLIB"      },
    {kCommandDeleteTrack,      u"STRID_TUNEHIVE_MENU_DELETEITEM"     },
    {kCommandRenameTrack,      u"STRID_TUNEHIVE_MENU_RENAMEITEM"     },
    {kCommandOpenTrack,        u"STRID_TUNEHIVE_MENU_OPENITEM"       },
    {kCommandAddFiles,         u"STRID_TUNEHIVE_MENU_ADD_LOCALFILE"  },
    {kCommandAddFolder,        u"STRID_TUNEHIVE_MENU_ADD_LOCALFOLDER"},
    {kCommandAddURL,           u"STRID_TUNEHIVE_MENU_ADD_URL"        },
    {kCommandAddGroup,         u"STRID_TUNEHIVE_MENU_NEWGROUP"       },
    {kCommandDeleteTracks,     u"STRID_TUNEHIVE_MENU_DEL_TRACK"      },
    {kCommandDeleteDuplicates, u"STRID_TUNEHIVE_MENU_DEL_DUPLICATE"  },
    {kCommandDeleteGroups,     u"STRID_TUNEHIVE_MENU_DEL_GROUP"      },
};

// The groups that the last track or multi-selection menu named, by index.
std::vector<String>& TargetGroups()
{
    static std::vector<String> groups;
    return groups;
}

String GetLanguageText(const char16_t* id)
{
    return common::CMutiLanSupport::GetInstance()->GetStringViaID(id);
}

String GetEntryText(int command)
{
    for (const EntryText& row : kEntryTexts) {
        if (row.command == command)
            return GetLanguageText(row.textId);
    }
    return {};
}

class MenuBuilder {
public:
    explicit MenuBuilder(const ui::MenuDelegate& delegate)
        : delegate_(delegate)
        , menu_(new ui::IMenu)
    {
    }

    void Add(int command, int disabled = 0)
    {
        if (command == kSeparator) {
            menu_->AddMenu(String(), 0, 0, 0, ui::MenuDelegate(), nullptr, String());
            return;
        }
        AddText(*menu_, GetEntryText(command), command, disabled, 0);
    }

    // An entry that a key does as well.
    void AddWithKeys(int command, const char16_t* keys)
    {
        Add(command);
        menu_->SetLastKeys(keys);
    }

    void Add(std::initializer_list<int> commands)
    {
        for (const int command : commands)
            Add(command);
    }

    void AddChecked(const char16_t* textId, int command, bool checked)
    {
        AddText(*menu_, GetLanguageText(textId), command, 0, checked ? 1 : 0);
    }

    void AddAddMenu()
    {
        auto* sub = MakeSubMenu(u"STRID_TUNEHIVE_MENU_ADDTOGROUP", 0);
        for (const int command : {kCommandAddFiles, kCommandAddFolder, kCommandAddURL})
            AddText(*sub, GetEntryText(command), command, 0, 0);
        menu_->AddMenu(sub);
    }

    void AddTargets(const char16_t* textId, MenuCommand base, int disabled)
    {
        auto* sub = MakeSubMenu(textId, disabled);
        IMediaResManager* manager = FindMediaResManager();
        int command = base;
        for (const String& id : TargetGroups()) {
            IMediaResGroup* group = manager != nullptr ? manager->GetGroup(id) : nullptr;
            AddText(*sub, group != nullptr ? group->GetName() : id, command++, disabled, 0);
        }
        menu_->AddMenu(sub);
    }

    [[nodiscard]] ui::IMenu* Take() { return menu_.release(); }

private:
    [[nodiscard]] static ui::IMenu* MakeSubMenu(const char16_t* textId, int disabled)
    {
        return new ui::IMenu(GetLanguageText(textId), -1, disabled, 0, String());
    }

    void AddText(ui::IMenu& menu, const String& text, int command, int disabled, int checked) const
    {
        menu.AddMenu(text, command, disabled, checked, delegate_, nullptr, String());
    }

    ui::MenuDelegate delegate_;
    Released<ui::IMenu> menu_;
};

// Every group that can be changed, in display order, but for one.
void FillTargetGroups(const String& except)
{
    TargetGroups().clear();
    IMediaResManager* manager = FindMediaResManager();
    if (manager == nullptr)
        return;
    std::vector<String> ids;
    manager->GetSortedGroupIDs(ids);
    for (const String& id : ids) {
        IMediaResGroup* group = manager->GetGroup(id);
        if (id != except && group != nullptr && group->IsEditable() != 0)
            TargetGroups().push_back(id);
    }
}

} // namespace

ui::IMenu* MakeGroupMenu(const ui::MenuDelegate& delegate, const String& group)
{
    MenuBuilder menu(delegate);
    if (group == kHotGroup) {
        menu.Add(kCommandPlay);
        menu.Add(kCommandSearch, /*disabled=*/1);
        return menu.Take();
    }
    if (group != kPlayingGroup)
        menu.Add(kCommandPlay);
    menu.AddAddMenu();
    menu.Add({kSeparator, kCommandNewGroup});
    if (group == kPlayingGroup) {
        menu.Add(kCommandSaveGroup);
    } else if (group != kMineGroup) {
        menu.AddWithKeys(kCommandDeleteGroup, kDeleteKeys);
        menu.AddWithKeys(kCommandRenameGroup, kRenameKeys);
    }
    menu.Add({kSeparator, kCommandClearGroup});
    return menu.Take();
}

ui::IMenu* MakeTrackMenu(const ui::MenuDelegate& delegate, const String& group, bool offersPause)
{
    MenuBuilder menu(delegate);
    IMediaResManager* manager = FindMediaResManager();
    IMediaResGroup* own = manager != nullptr ? manager->GetGroup(group) : nullptr;
    if (own == nullptr)
        return menu.Take();
    FillTargetGroups(group);
    const bool isPlaying = group == kPlayingGroup;
    if (isPlaying && offersPause)
        menu.AddWithKeys(kCommandPause, kPauseKeys);
    else
        menu.AddWithKeys(kCommandPlay, kPlayKeys);
    menu.AddTargets(
        u"STRID_TUNEHIVE_MENU_MOVETOGROUP", kCommandMoveTo, own->IsEditable() == 0 ? 1 : 0);
    menu.AddTargets(u"STRID_TUNEHIVE_MENU_COPYTOGROUP", kCommandCopyTo, /*disabled=*/0);
    menu.Add(kSeparator);
    if (isPlaying)
        menu.Add(kCommandSaveGroup);
    if (group != kHotGroup) {
        menu.AddWithKeys(kCommandDeleteTrack, kDeleteKeys);
        menu.AddWithKeys(kCommandRenameTrack, kRenameKeys);
        menu.Add({kSeparator, kCommandOpenTrack});
    }
    return menu.Take();
}

ui::IMenu* MakeMultiSelectMenu(const ui::MenuDelegate& delegate)
{
    MenuBuilder menu(delegate);
    FillTargetGroups(String());
    menu.Add(kCommandPlay);
    menu.AddTargets(u"STRID_TUNEHIVE_MENU_MOVETOGROUP", kCommandMoveTo, /*disabled=*/0);
    menu.AddTargets(u"STRID_TUNEHIVE_MENU_COPYTOGROUP", kCommandCopyTo, /*disabled=*/0);
    menu.Add(kSeparator);
    menu.AddWithKeys(kCommandDeleteTrack, kDeleteKeys);
    return menu.Take();
}

ui::IMenu* MakeAddMenu(const ui::MenuDelegate& delegate)
{
    MenuBuilder menu(delegate);
    menu.Add({kCommandAddFiles, kCommandAddFolder, kCommandAddURL, kSeparator, kCommandAddGroup});
    return menu.Take();
}

ui::IMenu* MakeDeleteMenu(const ui::MenuDelegate& delegate, int hasGroup, int canDeleteGroup)
{
    MenuBuilder menu(delegate);
    menu.Add(kCommandDeleteTracks, hasGroup != 0 ? 1 : 0);
    menu.Add(kCommandDeleteDuplicates);
    menu.Add(kSeparator);
    menu.Add(kCommandDeleteGroups, hasGroup == 0 || canDeleteGroup == 0 ? 1 : 0);
    return menu.Take();
}

ui::IMenu* MakeModeMenu(const ui::MenuDelegate& delegate)
{
    MenuBuilder menu(delegate);
    for (const auto& [mode, textId, command] : kPlayModes)
        menu.AddChecked(textId, command, GetPlayMode() == static_cast<int>(mode));
    return menu.Take();
}

String GroupFromCommand(int command, MenuCommand base)
{
    const int index = command - base;
    const auto& groups = TargetGroups();
    return index >= 0 && index < static_cast<int>(groups.size())
               ? groups[static_cast<std::size_t>(index)]
               : String();
}

} // namespace kivo::tunehive
