#pragma once

#include <memory>
#include <thread>

namespace kivo::host {

class SignMail;

// The network's thread: takes the commands out of the mail and lets a client work, until the mail
// says that it is to end and the client has signed out.
[[nodiscard]] std::thread StartXmppThread(std::shared_ptr<SignMail> mail);

} // namespace kivo::host
