#include "platform/ui/qt/SkinLook.h"

#include "platform/ui/qt/QtText.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>

namespace kivo::ui::qt {

namespace {

constexpr int kSmallest = 11; // Pixels.

bool highContrast = false;

// What stands for a token when the desktop asks for high contrast.
struct ContrastRole {
    StringView token;
    QPalette::ColorRole role;
    QPalette::ColorGroup group;
};

constexpr std::array kContrastRoles = {
    ContrastRole{u"window",  QPalette::Window,          QPalette::Active  },
    ContrastRole{u"base",    QPalette::Base,            QPalette::Active  },
    ContrastRole{u"raised",  QPalette::Base,            QPalette::Active  },
    ContrastRole{u"text",    QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"soft",    QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"ink",     QPalette::Link,            QPalette::Active  },
    ContrastRole{u"mark",    QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"honey",   QPalette::Highlight,       QPalette::Active  },
    ContrastRole{u"onhoney", QPalette::HighlightedText, QPalette::Active  },
    ContrastRole{u"sel",     QPalette::Highlight,       QPalette::Active  },
    ContrastRole{u"cur",     QPalette::AlternateBase,   QPalette::Active  },
    ContrastRole{u"hover",   QPalette::Midlight,        QPalette::Active  },
    ContrastRole{u"press",   QPalette::Mid,             QPalette::Active  },
    ContrastRole{u"line",    QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"edge",    QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"channel", QPalette::Mid,             QPalette::Active  },
    ContrastRole{u"danger",  QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"ok",      QPalette::WindowText,      QPalette::Active  },
    ContrastRole{u"off",     QPalette::WindowText,      QPalette::Disabled},
    ContrastRole{u"tip",     QPalette::ToolTipBase,     QPalette::Active  },
    ContrastRole{u"ontip",   QPalette::ToolTipText,     QPalette::Active  },
};

struct NamedRole {
    StringView name;
    QPalette::ColorRole role;
};

constexpr std::array kPaletteRoles = {
    NamedRole{u"window",          QPalette::Window         },
    NamedRole{u"base",            QPalette::Base           },
    NamedRole{u"button",          QPalette::Button         },
    NamedRole{u"text",            QPalette::WindowText     },
    NamedRole{u"windowtext",      QPalette::WindowText     },
    NamedRole{u"buttontext",      QPalette::ButtonText     },
    NamedRole{u"highlight",       QPalette::Highlight      },
    NamedRole{u"highlightedtext", QPalette::HighlightedText},
    NamedRole{u"link",            QPalette::Link           },
    NamedRole{u"mid",             QPalette::Mid            },
    NamedRole{u"dark",            QPalette::Dark           },
    NamedRole{u"midlight",        QPalette::Midlight       },
    NamedRole{u"tooltipbase",     QPalette::ToolTipBase    },
    NamedRole{u"tooltiptext",     QPalette::ToolTipText    },
};

// What a token falls back on when no skin is there.
constexpr std::array kSilentRoles = {
    NamedRole{u"raised",  QPalette::Button         },
    NamedRole{u"soft",    QPalette::PlaceholderText},
    NamedRole{u"ink",     QPalette::Link           },
    NamedRole{u"mark",    QPalette::Highlight      },
    NamedRole{u"honey",   QPalette::Highlight      },
    NamedRole{u"onhoney", QPalette::HighlightedText},
    NamedRole{u"sel",     QPalette::Highlight      },
    NamedRole{u"cur",     QPalette::AlternateBase  },
    NamedRole{u"hover",   QPalette::Midlight       },
    NamedRole{u"press",   QPalette::Mid            },
    NamedRole{u"line",    QPalette::Mid            },
    NamedRole{u"edge",    QPalette::Dark           },
    NamedRole{u"channel", QPalette::Mid            },
    NamedRole{u"tip",     QPalette::ToolTipBase    },
    NamedRole{u"ontip",   QPalette::ToolTipText    },
};

template <class Table>
const NamedRole* FindRole(const Table& table, StringView name)
{
    const auto* found = std::find_if(
        table.begin(), table.end(), [name](const NamedRole& role) { return role.name == name; });
    return found == table.end() ? nullptr : found;
}

QColor GetContrastColour(StringView name)
{
    const QPalette palette = QApplication::palette();
    for (const ContrastRole& entry : kContrastRoles)
        if (entry.token == name)
            return palette.color(entry.group, entry.role);
    return palette.color(QPalette::WindowText);
}

QColor GetRoleColour(StringView name)
{
    const QPalette palette = QApplication::palette();
    if (const NamedRole* role = FindRole(kPaletteRoles, name))
        return palette.color(role->role);
    if (const NamedRole* role = FindRole(kSilentRoles, name))
        return palette.color(role->role);
    if (name == u"off")
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    return palette.color(QPalette::WindowText);
}

// As asked for: to see what the font's own file makes of it, the file would be opened.
int GetPixelSize(const QFont& font)
{
    if (font.pixelSize() > 0)
        return font.pixelSize();
    constexpr qreal kPointsPerInch = 72.0;
    const QScreen* const screen = QGuiApplication::primaryScreen();
    const qreal dots = screen != nullptr ? screen->logicalDotsPerInchY() : 96.0;
    return static_cast<int>(std::lround(font.pointSizeF() * dots / kPointsPerInch));
}

} // namespace

QColor Resolve(const SkinColour& colour)
{
    // The colour alone is left of the class that it came from.
    if (highContrast && colour.role.empty()) {
        for (const ContrastRole& entry : kContrastRoles) {
            const SkinColour token = CSkinManager::GetInstance()->GetClassColour(entry.token);
            if (token.isMapped && token.rgb == colour.rgb)
                return GetContrastColour(entry.token);
        }
    }
    return colour.role.empty() ? QColor(QRgb{colour.rgb}) : GetToken(colour.role);
}

QColor GetToken(StringView name)
{
    if (highContrast)
        return GetContrastColour(name);
    const SkinColour own = CSkinManager::GetInstance()->GetClassColour(name);
    if (own.isMapped && own.role.empty())
        return QColor(QRgb{own.rgb});
    return GetRoleColour(own.isMapped ? StringView(own.role) : name);
}

QColor GetGround(StringView className)
{
    const SkinColour ground = CSkinManager::GetInstance()->GetBackground(className);
    return ground.isMapped ? Resolve(ground) : QColor();
}

QFont GetScaledFont(double scale, int weight)
{
    QFont font = QApplication::font();
    if (scale > 0.0 && scale != 1.0) {
        const int base = GetPixelSize(font);
        const int smallest = std::min(base, kSmallest);
        font.setPixelSize(std::max(smallest, static_cast<int>(std::lround(base * scale))));
    }
    if (weight > 0)
        font.setWeight(static_cast<QFont::Weight>(std::clamp(weight, 100, 900)));
    return font;
}

TextLook GetTextLook(const LOGFONT& font, std::initializer_list<StringView> classes, COLORREF key)
{
    const SkinColour colour = CSkinManager::GetInstance()->GetColour(classes, key);
    const double factor = colour.size > 0.0 ? colour.size : 1.0;
    const int weight = colour.weight > 0 ? colour.weight : font.weight;
    TextLook look;
    look.font = GetScaledFont(font.scale * factor, weight);
    if (highContrast)
        look.colour = GetContrastColour(u"text");
    else if (colour.isMapped)
        look.colour = Resolve(colour);
    else if (key == 0)
        look.colour = GetToken(u"text");
    else
        look.colour = QColor(static_cast<int>(key & 0xFFU),
                             static_cast<int>((key >> 8U) & 0xFFU),
                             static_cast<int>((key >> 16U) & 0xFFU));
    return look;
}

void SetHighContrast(bool on)
{
    highContrast = on;
}

bool IsHighContrast()
{
    return highContrast;
}

QPalette MakePalette(const QPalette& desktop)
{
    if (highContrast || !CSkinManager::GetInstance()->GetClassColour(u"window").isMapped)
        return desktop;
    struct Entry {
        QPalette::ColorRole role;
        StringView token;
    };
    static constexpr Entry kEntries[] = {
        {QPalette::Window,          u"window"},
        {QPalette::Base,            u"base"  },
        {QPalette::AlternateBase,   u"window"},
        {QPalette::Button,          u"raised"},
        {QPalette::Text,            u"text"  },
        {QPalette::WindowText,      u"text"  },
        {QPalette::ButtonText,      u"text"  },
        {QPalette::BrightText,      u"danger"},
        {QPalette::PlaceholderText, u"soft"  },
        {QPalette::Highlight,       u"sel"   },
        {QPalette::HighlightedText, u"text"  },
        {QPalette::Link,            u"ink"   },
        {QPalette::LinkVisited,     u"ink"   },
        {QPalette::Light,           u"raised"},
        {QPalette::Midlight,        u"hover" },
        {QPalette::Mid,             u"line"  },
        {QPalette::Dark,            u"edge"  },
        {QPalette::Shadow,          u"edge"  },
        {QPalette::ToolTipBase,     u"tip"   },
        {QPalette::ToolTipText,     u"ontip" },
    };
    QPalette palette = desktop;
    for (const Entry& entry : kEntries)
        palette.setColor(entry.role, GetToken(entry.token));
    for (const auto role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, GetToken(u"off"));
    return palette;
}

} // namespace kivo::ui::qt
