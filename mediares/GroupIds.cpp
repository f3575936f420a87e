#include "mediares/GroupIds.h"

#include "mediares/SIDGenerator.h"
#include "shell/contracts/common/Language.h"

#include <algorithm>
#include <iterator>

namespace kivo::tunehive {

namespace {

constexpr StringView kExtension = u".kvm";

struct NamedId {
    StringView id;
    const char16_t* textId;
    int order;
};

constexpr NamedId kNamedIds[] = {
    {kPlayingGroup, u"STRID_TUNEHIVE_NOWPLAYING", 0 },
    {kMineGroup,    u"STRID_TUNEHIVE_MYMEDIA",    1 },
    {kHotGroup,     u"STRID_TUNEHIVE_HOT",        3 },
    {kUserGroup,    u"STRID_TUNEHIVE_NEW",        -1},
};
constexpr int kUserOrder = 2;

const NamedId* FindNamed(StringView id)
{
    const auto* const found = std::find_if(std::begin(kNamedIds),
                                           std::end(kNamedIds),
                                           [id](const NamedId& named) { return named.id == id; });
    return found != std::end(kNamedIds) ? found : nullptr;
}

} // namespace

bool IsFixedGroupID(StringView id)
{
    return id == kMineGroup || id == kPlayingGroup || id == kHotGroup;
}

bool IsUserGroupID(StringView id)
{
    return !UserGroupSuffix(id).empty();
}

String UserGroupSuffix(StringView id)
{
    if (!id.starts_with(kUserGroup))
        return {};
    const StringView suffix = id.substr(kUserGroup.size());
    return SIDGenerator::IsValidSID(suffix) ? String(suffix) : String();
}

String GroupDefaultName(StringView id)
{
    const NamedId* const named = FindNamed(id);
    return named != nullptr ? common::CMutiLanSupport::GetInstance()->GetStringViaID(named->textId)
                            : String();
}

bool IsDefaultGroupName(StringView name)
{
    return name == GroupDefaultName(kMineGroup) || name == GroupDefaultName(kPlayingGroup) ||
           name == GroupDefaultName(kHotGroup);
}

int GroupDisplayOrder(StringView id)
{
    if (IsUserGroupID(id))
        return kUserOrder;
    const NamedId* const named = FindNamed(id);
    return named != nullptr ? named->order : -1;
}

String GroupFileName(StringView id)
{
    return String(id) + String(kExtension);
}

String GroupIdFromFileName(StringView name)
{
    if (!name.ends_with(kExtension))
        return {};
    const StringView id = name.substr(0, name.size() - kExtension.size());
    return IsFixedGroupID(id) || IsUserGroupID(id) ? String(id) : String();
}

} // namespace kivo::tunehive
