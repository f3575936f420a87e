#pragma once

#include "host/sign/ISignNetwork.h"

namespace kivo::host {

// What a button below a notice does.
enum class NoticeDeed { None, SetUpAccount, GivePassword, JudgeCertificate, TryNow };

// A plain sentence about the connection, and what can be done about it.
struct ContactNotice {
    String text;   // Empty: there is nothing to say.
    String button; // Empty: there is nothing to do.
    NoticeDeed deed = NoticeDeed::None;
};

// What the page of contacts says. `server` is the one that is meant, `secondsLeft` until the next
// try of a connection that waits.
[[nodiscard]] ContactNotice MakeNotice(const SignState& state,
                                       SignConnection connection,
                                       const String& server,
                                       int secondsLeft);

// The word below the user's own name.
[[nodiscard]] String GetConnectionWord(SignConnection connection);

// 64 hexadecimal digits as lines of eight pairs, for comparing; anything else as one plain line.
[[nodiscard]] String FormatFingerprint(const std::string& fingerprint);

} // namespace kivo::host
