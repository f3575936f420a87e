#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/ui/Types.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

class TiXmlNode;

namespace kivo::ui {

// What a colour of the skin is: a palette role of the desktop (window, base, text, …), or a value.
struct SkinColour {
    String role;           // Not empty: the palette's colour of that name.
    std::uint32_t rgb = 0; // 0x00RRGGBB, of the light or dark desktop in force.
    int weight = 0;        // Font weight that goes with it; 0: as it is.
    double size = 0.0;     // Factor on the font's size; 0: as it is.
    bool isMapped = false; // False: the skin has no such colour; `rgb` is the key itself.
};

// A picture file of the skin: its states from left to right, and the colour that tints it.
struct SkinPicture {
    String file;                // As it was asked for.
    std::vector<String> states; // "normal", "hover", "down", "disabled"; empty: one for all.
    String tint;                // A class or a palette role; empty: as drawn.
    bool isMirrored = false;    // Drawn mirrored in right-to-left windows.
};

// Colours, pictures and the descriptions of pages and forms, read from skin.xml and build.xml. What
// they don't say is the desktop's. Later files win. Thread: user interface.
class KIVO_API CSkinManager {
public:
    [[nodiscard]] static CSkinManager* GetInstance();
    CSkinManager();
    CSkinManager(const CSkinManager&) = delete;
    CSkinManager& operator=(const CSkinManager&) = delete;
    ~CSkinManager();

    // 1: read. 0: missing, too large, or not well-formed; nothing of it is taken. Its folder
    // becomes one in which pictures are found ("skin" below it, then itself).
    int IncludeSkinFile(const String& path);
    int IncludeSkinBuildFile(const String& path);
    void Clear();

    // Takes the same from memory; for tests.
    int IncludeSkinText(const std::string& xml);
    int IncludeBuildText(const std::string& xml);

    // What builds met that isn't in the vocabulary: "button PlayBtn: colour". Empties the list.
    [[nodiscard]] std::vector<String> TakeBuildFaults();
    void NoteBuildFault(const String& fault);

    // The `node` of the build files whose key is this one; blanks between its words count as one,
    // letter case matters. Null: none. It lives until the next Include or Clear.
    [[nodiscard]] const TiXmlNode* GetBuildNode(const String& key) const;
    [[nodiscard]] const TiXmlNode* GetFormNode(const String& id) const; // The same for `form`.

    // The path of a skin file: "public\group_fold.png" lies below "skin" of the application's
    // folder. `reserved` is 0.
    [[nodiscard]] String TranslatePath(const String& file, int reserved) const;
    // A picture's path: an absolute one stands; a name is looked for in "skin" beside each skin
    // file, the last first (the picture itself or an ".svg" in its place), then below the
    // application's "skin", which is also the answer when it is nowhere.
    [[nodiscard]] String FindPicture(const String& file) const;
    [[nodiscard]] SkinPicture GetPicture(const String& file) const; // By its last name.
    [[nodiscard]] String GetIconPicture(int icon) const; // `icon` of skin.xml; empty: none.

    // The colour behind a key: looked up in the classes in the order given, first hit wins.
    [[nodiscard]] SkinColour GetColour(std::initializer_list<StringView> classes,
                                       COLORREF key) const;
    // The class's own colour (`light`, `dark`), and its `background`, which may name a class.
    [[nodiscard]] SkinColour GetClassColour(StringView name) const;
    [[nodiscard]] SkinColour GetBackground(StringView className) const; // Unmapped: none.

    // Set by the desktop side; controls follow at the next ResetSkinData.
    void SetDark(bool dark) { dark_ = dark; }
    [[nodiscard]] bool IsDark() const { return dark_; }
    void SetRightToLeft(bool on) { rightToLeft_ = on; }
    [[nodiscard]] bool IsRightToLeft() const { return rightToLeft_; }

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    bool dark_ = false;
    bool rightToLeft_ = false;
};

} // namespace kivo::ui
