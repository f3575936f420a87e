#include "tests/host/sign/Keyring.h"

#include <cstdlib>

namespace kivo::test {

Keyring::Keyring()
{
    const std::string home = folder_.GetNative().native();
    const std::vector<std::string> variables{
        "HOME=" + home, "XDG_RUNTIME_DIR=" + home, "XDG_DATA_HOME=" + home + "/data"};
    daemon_ = std::make_unique<Process>(std::vector<std::string>{"dbus-daemon",
                                                                 "--session",
                                                                 "--nofork",
                                                                 "--nopidfile",
                                                                 "--print-address=1",
                                                                 "--address=unix:dir=" + home},
                                        variables);
    bus_ = daemon_->WaitFor("unix:");
    // NOLINTNEXTLINE(concurrency-mt-unsafe): before the first thread that reads it
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_.c_str(), 1);
    std::vector<std::string> onBus = variables;
    onBus.push_back("DBUS_SESSION_BUS_ADDRESS=" + bus_);
    keyring_ = std::make_unique<Process>(
        std::vector<std::string>{
            "gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"},
        onBus);
    keyring_->Say("word");
    keyring_->CloseInput();
    const std::string name = "org.freedesktop.secrets";
    isUp_ = RunCommand({"dbus-send",
                        "--bus=" + bus_,
                        "--print-reply",
                        "--dest=org.freedesktop.DBus",
                        "/",
                        "org.freedesktop.DBus.ListNames"}) == 0;
    for (int turn = 0; isUp_ && turn < 200; ++turn) {
        if (RunCommand({"sh",
                        "-c",
                        "dbus-send --bus='" + bus_ +
                            "' --print-reply --dest=org.freedesktop.DBus / "
                            "org.freedesktop.DBus.GetNameOwner string:" +
                            name + " >/dev/null 2>&1"}) == 0)
            return;
    }
    isUp_ = false;
}

Keyring::~Keyring() = default;

void Keyring::KillKeyring()
{
    keyring_->Kill();
}

void Keyring::KillBus()
{
    daemon_->Kill();
}

bool Keyring::HoldsOnDisk(const std::string& text) const
{
    for (const std::string& name : folder_.List()) {
        if (folder_.Read(name).find(text) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace kivo::test
