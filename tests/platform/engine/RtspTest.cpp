#include "tests/platform/engine/EngineRun.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <thread>

namespace kivo::test {

namespace {

constexpr int kPacketSamples = 160; // 20 ms.
constexpr int kPackets = 50;

// Serves one listener one second of telephone sound over its own connection, then hangs up.
class RtspServer {
public:
    RtspServer()
        : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        static_cast<void>(bind(listener_, general, size));
        static_cast<void>(listen(listener_, 4));
        getsockname(listener_, general, &size);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread(&RtspServer::Run, this);
    }
    RtspServer(const RtspServer&) = delete;
    RtspServer& operator=(const RtspServer&) = delete;
    ~RtspServer()
    {
        shutdown(listener_, SHUT_RDWR);
        thread_.join();
        close(listener_);
    }

    [[nodiscard]] std::string GetUrl() const
    {
        return "RTSP://127.0.0.1:" + std::to_string(port_) + "/tone";
    }

private:
    void Run() const
    {
        const int client = accept(listener_, nullptr, nullptr);
        if (client < 0)
            return;
        std::string request;
        while (ReadRequest(client, request)) {
            Answer(client, request);
            if (request.starts_with("PLAY")) {
                SendSound(client);
                break;
            }
        }
        close(client);
    }

    static bool ReadRequest(int client, std::string& request)
    {
        request.clear();
        char byte = 0;
        while (!request.ends_with("\r\n\r\n")) {
            if (recv(client, &byte, 1, 0) != 1)
                return false;
            request.push_back(byte);
        }
        return true;
    }

    static void Answer(int client, const std::string& request)
    {
        const std::size_t at = request.find("CSeq:");
        const std::string sequence = request.substr(at, request.find('\r', at) - at);
        std::string heads = "Session: 1\r\n";
        std::string body;
        if (request.starts_with("OPTIONS"))
            heads = "Public: OPTIONS, DESCRIBE, SETUP, PLAY, TEARDOWN\r\n";
        if (request.starts_with("SETUP"))
            heads += "Transport: RTP/AVP/TCP;unicast;interleaved=0-1\r\n";
        if (request.starts_with("DESCRIBE")) {
            body = "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=Tone\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                   "m=audio 0 RTP/AVP 0\r\na=control:track1\r\n";
            heads =
                "Content-Type: application/sdp\r\nContent-Length: " + std::to_string(body.size()) +
                "\r\n";
        }
        Send(client, "RTSP/1.0 200 OK\r\n" + sequence + "\r\n" + heads + "\r\n" + body);
    }

    static void SendSound(int client)
    {
        for (int i = 0; i < kPackets; ++i) {
            const auto length = static_cast<std::uint16_t>(12 + kPacketSamples);
            std::string packet = {'$',
                                  '\0',
                                  static_cast<char>(length >> 8),
                                  static_cast<char>(length & 0xFF),
                                  '\x80',
                                  '\0'};
            AppendBig(packet, static_cast<std::uint32_t>(i), 2);
            AppendBig(packet, static_cast<std::uint32_t>(i * kPacketSamples), 4);
            AppendBig(packet, 1, 4);
            for (int sample = 0; sample < kPacketSamples; ++sample)
                packet.push_back(static_cast<char>(sample % 16 < 8 ? 0x20 : 0xA0));
            if (!Send(client, packet) || poll(nullptr, 0, 10) != 0)
                return;
        }
    }

    static void AppendBig(std::string& bytes, std::uint32_t number, int count)
    {
        for (int i = count - 1; i >= 0; --i)
            bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFFU));
    }

    static bool Send(int client, std::string_view bytes)
    {
        return send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(bytes.size());
    }

    int listener_;
    int port_ = 0;
    std::thread thread_;
};

TEST(Rtsp, AStreamWaitsPlaysAndEnds)
{
    const RtspServer server;
    EngineRun run;
    run.SetBytes(server.GetUrl());
    EXPECT_TRUE(run.RunToState(8));
    // The end of the connection may be waited for; whether that is told depends on the moment.
    EXPECT_TRUE(run.GetTrace().starts_with("9 6 7 3")) << run.GetTrace();
    EXPECT_EQ(run.Get().GetDuration(), 0);
}

} // namespace

} // namespace kivo::test
