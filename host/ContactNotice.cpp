#include "host/ContactNotice.h"

#include "host/PlainLine.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"

#include <cctype>

namespace kivo::host {

namespace {

// The word is STRID_KIVO_NAME, the sentence STRID_KIVO_NOTICE_NAME.
struct ConnectionLook {
    SignConnection connection;
    StringView name;
    bool hasNotice;
    NoticeDeed deed;
};

constexpr ConnectionLook kLooks[] = {
    {SignConnection::LocalOnly,             u"NOTSIGNEDIN",    false, NoticeDeed::None            },
    {SignConnection::Connecting,            u"CONNECTING",     true,  NoticeDeed::None            },
    {SignConnection::PasswordNeeded,        u"PASSWORDNEEDED", true,  NoticeDeed::GivePassword    },
    {SignConnection::Online,                u"ONLINE",         false, NoticeDeed::None            },
    {SignConnection::Waiting,               u"WAITING",        true,  NoticeDeed::TryNow          },
    {SignConnection::Refused,               u"REFUSED",        true,  NoticeDeed::SetUpAccount    },
    {SignConnection::UntrustedCertificate,  u"UNTRUSTED",      true,  NoticeDeed::JudgeCertificate},
    {SignConnection::Unavailable,           u"UNAVAILABLE",    true,  NoticeDeed::None            },
    {SignConnection::ServerWithoutEventing, u"NOEVENTING",     true,  NoticeDeed::None            },
};

struct DeedText {
    NoticeDeed deed;
    const char16_t* text;
};

constexpr DeedText kDeeds[] = {
    {NoticeDeed::SetUpAccount,     u"STRID_KIVO_DO_ACCOUNT"    },
    {NoticeDeed::GivePassword,     u"STRID_KIVO_DO_PASSWORD"   },
    {NoticeDeed::JudgeCertificate, u"STRID_KIVO_DO_CERTIFICATE"},
    {NoticeDeed::TryNow,           u"STRID_KIVO_DO_TRYNOW"     },
};

const ConnectionLook& GetLook(SignConnection connection)
{
    for (const ConnectionLook& look : kLooks) {
        if (look.connection == connection)
            return look;
    }
    return kLooks[0];
}

String GetNamedText(StringView prefix, StringView name)
{
    return GetText((String(prefix) + String(name)).c_str());
}

String GetDeedText(NoticeDeed deed)
{
    for (const DeedText& known : kDeeds) {
        if (known.deed == deed)
            return GetText(known.text);
    }
    return {};
}

constexpr std::size_t kDigits = 64;
constexpr std::size_t kPairsInLine = 8;

} // namespace

ContactNotice
MakeNotice(const SignState& state, SignConnection connection, const String& server, int secondsLeft)
{
    const ConnectionLook& look = GetLook(connection);
    ContactNotice notice;
    if (connection == SignConnection::Online && state.losesPassword)
        notice.text = GetText(u"STRID_KIVO_NOTICE_NOTKEPT");
    if (!look.hasNotice)
        return notice;
    // The next try is under way, though nobody has said so yet.
    const bool isTrying = connection == SignConnection::Waiting && secondsLeft <= 0;
    const StringView name = isTrying ? GetLook(SignConnection::Connecting).name : look.name;
    // A text takes what it has places for, in this order.
    notice.text = common::FormatText(GetNamedText(u"STRID_KIVO_NOTICE_", name),
                                     {ToPlainLine(server, 80), common::ToText(secondsLeft)});
    // A certificate without a fingerprint can't be trusted by it.
    const bool isNothingToJudge =
        look.deed == NoticeDeed::JudgeCertificate && state.fingerprint.empty();
    notice.deed = isNothingToJudge ? NoticeDeed::TryNow : look.deed;
    notice.button = GetDeedText(notice.deed);
    const String reason = ToPlainLine(state.reason);
    if (!reason.empty() && connection == SignConnection::UntrustedCertificate)
        notice.text += u" " + common::FormatText(GetText(u"STRID_KIVO_REASON"), {reason});
    return notice;
}

String GetConnectionWord(SignConnection connection)
{
    return GetNamedText(u"STRID_KIVO_", GetLook(connection).name);
}

String FormatFingerprint(const std::string& fingerprint)
{
    std::string digits;
    for (const char digit : fingerprint) {
        if (std::isxdigit(static_cast<unsigned char>(digit)) != 0)
            digits += static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
        else if (digit != ':' && digit != ' ')
            return ToPlainLine(common::utf8_to_CString(fingerprint));
    }
    if (digits.size() != kDigits)
        return ToPlainLine(common::utf8_to_CString(fingerprint));
    String lines;
    for (std::size_t place = 0; place < digits.size(); place += 2) {
        if (place > 0)
            lines += place % (2 * kPairsInLine) == 0 ? u'\n' : u' ';
        lines += common::utf8_to_CString(digits.substr(place, 2));
    }
    return lines;
}

} // namespace kivo::host
