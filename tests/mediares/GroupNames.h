#pragma once

#include "shell/contracts/common/Language.h"

namespace kivo::tunehive {

// The names of the groups in the language of a test, for as long as it stands.
class GroupNames {
public:
    GroupNames()
    {
        auto* const language = common::CMutiLanSupport::GetInstance();
        language->AddText(u"STRID_TUNEHIVE_NOWPLAYING", u"Playing");
        language->AddText(u"STRID_TUNEHIVE_MYMEDIA", u"Mine");
        language->AddText(u"STRID_TUNEHIVE_HOT", u"Hot");
        language->AddText(u"STRID_TUNEHIVE_NEW", u"Group ");
    }
    GroupNames(const GroupNames&) = delete;
    GroupNames& operator=(const GroupNames&) = delete;
    ~GroupNames() { common::CMutiLanSupport::GetInstance()->Clear(); }
};

} // namespace kivo::tunehive
