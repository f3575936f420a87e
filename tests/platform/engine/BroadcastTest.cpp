// Streams of the older schemes: mms over http and over its own transport, and rtsp.

#include "tests/platform/engine/EngineRun.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace kivo::test {

namespace {

std::string WithScheme(std::string url, const char* scheme)
{
    return url.replace(0, url.find(':'), scheme);
}

std::string LittleEnd(std::uint32_t number, int count)
{
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFFU));
    return bytes;
}

std::string BigEnd(std::uint32_t number, int count)
{
    const std::string bytes = LittleEnd(number, count);
    return {bytes.rbegin(), bytes.rend()};
}

// The file cut into the pieces in which a media server sends it: its head, then packet by packet.
std::string FrameForMms(const std::string& file)
{
    constexpr std::size_t kDataHead = 50;
    constexpr std::size_t kPacketSizeAt = 92;
    const std::string fileProperties("\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11", 8);
    const auto readAt = [&](std::size_t at) {
        std::uint32_t number = 0;
        std::memcpy(&number, file.data() + at, sizeof number);
        return number;
    };
    const auto chunk = [](const char* type, const std::string& bytes) {
        return type + LittleEnd(static_cast<std::uint32_t>(bytes.size() + 8), 2) +
               std::string(8, '\0') + bytes;
    };
    const std::size_t head = readAt(16) + kDataHead;
    const std::size_t packet = readAt(file.find(fileProperties) + kPacketSizeAt);
    std::string frames = chunk("$H", file.substr(0, head));
    for (std::size_t at = head; at + packet <= file.size(); at += packet)
        frames += chunk("$D", file.substr(at, packet));
    return frames + "$E" + LittleEnd(4, 2) + std::string(4, '\0');
}

TEST(Broadcast, AnMmsStreamWaitsPlaysAndEnds)
{
    HttpServer server;
    server.Serve("/tone", [](const HttpRequest&, HttpAnswer& answer) {
        answer.Send("HTTP/1.0 200 OK\r\nContent-Type: application/x-mms-framed\r\n\r\n" +
                    FrameForMms(ReadMedia("tone.wma")));
    });
    EngineRun run;
    run.SetBytes(WithScheme(server.GetUrl("/tone"), "mms"));
    run.Do("@8");
    EXPECT_EQ(run.GetTrace(), "9 6 7 3 8");
}

TEST(Broadcast, AnMmsAddressIsTriedOverBothTransports)
{
    const HttpServer server;
    EngineRun run;
    run.SetBytes(WithScheme(server.GetUrl("/tone"), "MMS"));
    run.Do("@8");
    EXPECT_EQ(run.GetTrace(), "9 8");
    EXPECT_GE(server.CountRequests("/tone"), 1U) << "Over http first.";
    EXPECT_GT(server.CountConnections(), server.CountAllRequests()) << "Then over its own.";
}

// A second of telephone sound, in packets of 20 ms between the lines of the control connection.
void SendRtspSound(HttpAnswer& answer)
{
    constexpr int kPackets = 50;
    constexpr int kSamples = 160;
    std::string sound;
    for (int i = 0; i < kSamples; ++i)
        sound.push_back(static_cast<char>(i % 16 < 8 ? 0x20 : 0xA0));
    for (std::uint32_t i = 0; i < kPackets; ++i) {
        const std::string packet =
            "\x80" + BigEnd(0, 1) + BigEnd(i, 2) + BigEnd(i * kSamples, 4) + BigEnd(1, 4) + sound;
        if (!answer.Send("$" + BigEnd(0, 1) + BigEnd(static_cast<std::uint32_t>(packet.size()), 2) +
                         packet) ||
            !answer.Pause(10))
            return;
    }
}

void AnswerRtsp(HttpRequest request, HttpAnswer& answer)
{
    const std::string description =
        "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=Tone\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
        "m=audio 0 RTP/AVP 0\r\na=control:track1\r\n";
    do {
        std::string rest = "\r\n";
        if (request.method == "OPTIONS")
            rest = "Public: OPTIONS, DESCRIBE, SETUP, PLAY, TEARDOWN\r\n\r\n";
        else if (request.method == "SETUP")
            rest = "Transport: RTP/AVP/TCP;unicast;interleaved=0-1\r\n\r\n";
        else if (request.method == "DESCRIBE")
            rest = "Content-Type: application/sdp\r\nContent-Length: " +
                   std::to_string(description.size()) + "\r\n\r\n" + description;
        answer.Send("RTSP/1.0 200 OK\r\nCSeq: " + request.heads["cseq"] + "\r\nSession: 1\r\n" +
                    rest);
        if (request.method == "PLAY")
            return SendRtspSound(answer);
    } while (answer.Receive(request));
}

TEST(Broadcast, AnRtspStreamWaitsPlaysAndEnds)
{
    HttpServer server;
    const std::string url = WithScheme(server.GetUrl("/tone"), "rtsp");
    server.Serve(url, AnswerRtsp);
    EngineRun run;
    run.SetBytes(WithScheme(url, "RTSP"));
    EXPECT_TRUE(run.RunToState(8));
    // The end of the connection may be waited for; whether that is told depends on the moment.
    EXPECT_TRUE(run.GetTrace().starts_with("9 6 7 3")) << run.GetTrace();
    EXPECT_EQ(run.Get().GetDuration(), 0);
}

} // namespace

} // namespace kivo::test
