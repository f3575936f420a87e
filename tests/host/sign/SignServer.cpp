#include "tests/host/sign/SignServer.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <sstream>
#include <thread>

namespace kivo::test {

namespace {

sockaddr_in MakeLoopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

bool CanConnect(int port)
{
    const int socketNumber = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = MakeLoopback(port);
    const bool isOpen =
        connect(socketNumber, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(socketNumber);
    return isOpen;
}

// In the server's language. Its own log has the heads of stanzas alone.
constexpr char kManners[] = R"(
module:hook("pre-iq/bare", function (event)
    local text = tostring(event.stanza);
    module:log("debug", "hears %s", text);
    if text:find("poison") then
        event.origin:close({ condition = "not-well-formed" });
        return true;
    end
    if text:find("UNHEARD", 1, true) then
        return true;
    end
end, 1000);
)";

std::string Put(std::string text, const std::string& name, const std::string& value)
{
    for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos; at += value.size())
        text.replace(at, name.size(), value);
    return text;
}

std::string ReadFingerprint(const std::string& certificate)
{
    Process tool({"openssl", "x509", "-in", certificate, "-noout", "-fingerprint", "-sha256"});
    std::string digits;
    const std::string line = tool.WaitFor("sha256", 20000);
    for (const char digit : line.substr(line.find('=') + 1)) {
        if (digit != ':')
            digits += static_cast<char>(std::tolower(digit));
    }
    return digits;
}

} // namespace

int FindFreePort()
{
    const int socketNumber = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = MakeLoopback(0);
    socklen_t size = sizeof address;
    static_cast<void>(bind(socketNumber, reinterpret_cast<const sockaddr*>(&address), size));
    getsockname(socketNumber, reinterpret_cast<sockaddr*>(&address), &size);
    close(socketNumber);
    return ntohs(address.sin_port);
}

SignServer::SignServer()
    : SignServer(Options())
{
}

SignServer::SignServer(const Options& options)
    : options_(options)
    , port_(FindFreePort())
{
    // A server that can't be had is a failed test, not a skipped one.
    EXPECT_EQ(RunCommand({KIVO_PROSODY_SCRIPT}), 0) << "scripts/prosody says why";
    MakeCertificate();
}

SignServer::~SignServer() = default;

// An authority that nobody knows, and the server's own certificate below it.
void SignServer::MakeCertificate()
{
    const std::string base = folder_.GetNative().native() + "/";
    const std::string name = options_.certificateName;
    const auto make = [&](const std::string& arguments) {
        const std::string key = " -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 ";
        EXPECT_EQ(RunCommand({"sh", "-c", "exec openssl req -x509" + key + arguments + " 2>&1"}),
                  0);
    };
    make("-subj /CN=authority -keyout " + base + "ca.key -out " + base + "ca.pem");
    make("-subj /CN=" + name + " -addext subjectAltName=DNS:" + name +
         " -addext basicConstraints=CA:FALSE -CA " + base + "ca.pem -CAkey " + base +
         "ca.key -keyout " + base + "key.pem -out " + base + "leaf.pem");
    folder_.Write("chain.pem", folder_.Read("leaf.pem") + folder_.Read("ca.pem"));
    fingerprint_ = ReadFingerprint(base + "leaf.pem");
}

void SignServer::WriteSettings() const
{
    std::string text = R"(
daemonize = false
run_as_root = true
pidfile = "BASE/pid"
data_path = "BASE/data"
certificates = "BASE"
plugin_paths = { "BASE/modules" }
log = { { levels = { min = "debug" }, to = "file", filename = "BASE/log" } }
modules_enabled = { EVENTING "manners", "roster", "saslauth", "tls", "disco", "ping" }
modules_disabled = { "s2s", "offline" }
authentication = "internal_plain"
c2s_ports = { PORT }
c2s_interfaces = { "127.0.0.1" }
s2s_ports = { }
VirtualHost "DOMAIN"
    ssl = { key = "BASE/key.pem", certificate = "BASE/chain.pem" }
)";
    text = Put(text, "BASE", folder_.GetNative().native());
    text = Put(text, "PORT", std::to_string(port_));
    text = Put(text, "DOMAIN", kDomain);
    text = Put(text, "EVENTING", options_.hasEventing ? "\"pep\"," : "");
    folder_.Write("prosody.cfg.lua", text);
    folder_.Write("modules/mod_manners.lua", Put(kManners, "UNHEARD", options_.unheard));
}

void SignServer::AddUser(const std::string& name) const
{
    folder_.Write("data/sign%2eexample/accounts/" + name + ".dat",
                  "return { [\"password\"] = \"" + GetPassword(name) + "\" }\n");
}

void SignServer::Befriend(const std::string& a, const std::string& b) const
{
    const auto write = [&](const std::string& owner, const std::string& other) {
        folder_.Write("data/sign%2eexample/roster/" + owner + ".dat",
                      "return { [false] = { version = 1 }, [\"" + other + "@" + kDomain +
                          "\"] = { subscription = \"both\", groups = {}, name = \"" + other +
                          "\" } }\n");
    };
    write(a, b);
    write(b, a);
}

bool SignServer::HasHeard(const std::string& text) const
{
    std::istringstream log(ReadLog());
    for (std::string line; std::getline(log, line);) {
        if (line.find("hears ") != std::string::npos && line.find(text) != std::string::npos)
            return true;
    }
    return false;
}

void SignServer::Start()
{
    WriteSettings();
    const std::string base = folder_.GetNative().native();
    process_ = std::make_unique<Process>(std::vector<std::string>{
        KIVO_PROSODY_PROGRAM, "-F", "--config", base + "/prosody.cfg.lua"});
    // It says nothing when it is ready; knocking is the only way to know.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!CanConnect(port_) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(CanConnect(port_)) << ReadLog();
}

void SignServer::Kill()
{
    process_->Kill();
}

void SignServer::Stop()
{
    process_->Signal(SIGTERM);
    EXPECT_EQ(process_->WaitForEnd(), 0);
}

host::SignAccount SignServer::GetAccount(const std::string& name) const
{
    return {GetId(name), u"127.0.0.1", port_, fingerprint_};
}

std::string SignServer::GetPassword(const std::string& name)
{
    return name + "-secret";
}

String SignServer::GetId(const std::string& name)
{
    const std::string id = name + "@" + kDomain;
    return {id.begin(), id.end()};
}

} // namespace kivo::test
