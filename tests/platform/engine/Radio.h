#pragma once

#include "tests/support/HttpServer.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

namespace kivo::test {

// A server of this machine with an address for each mood that one can be in:
//   /file.mp3 /long.mp3 /film.mp4   files of a known length
//   /hls/list.m3u8                  a closed list of segments
//   /moved /moved-to-a-file         redirects, to /file.mp3 and to the disk of this machine
//   /dies /chunks                   a second of a song, then the end; the same in chunks
//   /stalls                         a second, 2.5 s of nothing, three seconds more
//   /waits                          a second, nothing until GoOn, then slowly the rest
//   /hangs /silent                  a second, or nothing at all, and no end
//   /titles                         a radio that names its songs, first "First", then "Second"
//   /cut /page                      a head without its body; a page that is no music
class Radio {
public:
    Radio();

    [[nodiscard]] HttpServer& GetServer() { return server_; }
    [[nodiscard]] std::string GetUrl(const std::string& path) const { return server_.GetUrl(path); }
    void GoOn() { goesOn_ = true; }

private:
    void ServeFiles();
    void ServeMoods();
    void SendTitles(HttpAnswer& answer) const;
    [[nodiscard]] std::string_view GetSeconds(std::size_t from, std::size_t to) const;

    const std::string song_;
    std::atomic<bool> goesOn_ = false;
    HttpServer server_; // Ends first: its threads use what is above.
};

} // namespace kivo::test
