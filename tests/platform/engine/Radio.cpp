#include "tests/platform/engine/Radio.h"

#include "tests/platform/engine/EngineRun.h"

namespace kivo::test {

namespace {

constexpr std::size_t kBytesOfASecond = 4'000; // Of long.mp3, at 32 kbit a second.

const std::string kHead = "HTTP/1.1 200 OK\r\nContent-Type: audio/mpeg\r\nConnection: close\r\n";

} // namespace

Radio::Radio()
    : song_(ReadMedia("long.mp3"))
{
    ServeFiles();
    ServeMoods();
}

void Radio::ServeFiles()
{
    server_.ServeBytes("/file.mp3", ReadMedia("tone.mp3"), "audio/mpeg");
    server_.ServeBytes("/long.mp3", song_, "audio/mpeg");
    server_.ServeBytes("/film.mp4", ReadMedia("tone.mp4"), "video/mp4");
    server_.ServeBytes("/page", "<html><body>Not music.</body></html>", "text/html");
    for (const char* name : {"hls/list.m3u8", "hls/part0.ts", "hls/part1.ts", "hls/part2.ts"})
        server_.ServeBytes(std::string("/") + name, ReadMedia(name), "application/octet-stream");
    const auto redirect = [this](const std::string& path, const std::string& target) {
        server_.Serve(path, [target](const HttpRequest&, HttpAnswer& answer) {
            answer.Send("HTTP/1.1 302 Found\r\nLocation: " + target +
                        "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        });
    };
    redirect("/moved", "/file.mp3");
    redirect("/moved-to-a-file", "file://" + GetMediaPath("tone.mp3"));
}

void Radio::ServeMoods()
{
    // A second of the song, then whatever `rest` does.
    const auto serve = [this](const std::string& path, auto rest) {
        server_.Serve(path, [this, rest](const HttpRequest&, HttpAnswer& answer) {
            if (answer.Send(kHead + "\r\n") && answer.Send(GetSeconds(0, 1)))
                rest(answer);
        });
    };
    serve("/dies", [](HttpAnswer&) {});
    serve("/hangs", [](HttpAnswer& answer) { answer.Hang(); });
    serve("/stalls", [this](HttpAnswer& answer) {
        if (answer.Pause(2'500))
            answer.Send(GetSeconds(1, 4));
    });
    serve("/waits", [this](HttpAnswer& answer) {
        while (!goesOn_ && answer.Pause(20)) {
        }
        for (std::size_t second = 1; second < 30; ++second)
            if (!answer.Send(GetSeconds(second, second + 1)) || !answer.Pause(500))
                return;
    });
    server_.Serve("/chunks", [this](const HttpRequest&, HttpAnswer& answer) {
        answer.Send(kHead + "Transfer-Encoding: chunked\r\n\r\n");
        answer.SendChunk(GetSeconds(0, 1));
        answer.SendChunk("");
    });
    server_.Serve("/silent", [](const HttpRequest&, HttpAnswer& answer) { answer.Hang(); });
    server_.Serve("/cut", [](const HttpRequest&, HttpAnswer& answer) {
        answer.Send(kHead + "Content-Length: 100000\r\n\r\n\xFF");
    });
    server_.Serve("/titles",
                  [this](const HttpRequest&, HttpAnswer& answer) { SendTitles(answer); });
}

void Radio::SendTitles(HttpAnswer& answer) const
{
    constexpr std::size_t kInterval = 2'000;
    answer.Send(kHead + "icy-name: Radio \x01Loopback\r\nicy-metaint: " +
                std::to_string(kInterval) + "\r\n\r\n");
    for (std::size_t at = 0; at + kInterval < song_.size(); at += kInterval) {
        std::string title = at < 8'000 ? "StreamTitle='First';" : "StreamTitle='Second';";
        title.resize((title.size() + 15) / 16 * 16);
        const char length = static_cast<char>(title.size() / 16);
        if (!answer.Send(std::string_view(song_).substr(at, kInterval)) ||
            !answer.Send({&length, 1}) || !answer.Send(title) || !answer.Pause(100))
            return;
    }
}

std::string_view Radio::GetSeconds(std::size_t from, std::size_t to) const
{
    return std::string_view(song_).substr(from * kBytesOfASecond, (to - from) * kBytesOfASecond);
}

} // namespace kivo::test
