#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace kivo::test {

struct HttpRequest {
    std::string method;
    std::string path; // Or a whole address, as other protocols of the same shape have it.
    std::map<std::string, std::string> heads; // Names in lower case.
};

// One answer under way. Thread: the connection's.
class HttpAnswer {
public:
    explicit HttpAnswer(int socket)
        : socket_(socket)
    {
    }

    // The next request on the same connection, for those who keep it. As Send.
    bool Receive(HttpRequest& next) const;

    // False: the other side is gone, or the server is at its end.
    bool Send(std::string_view bytes) const;
    bool SendChunk(std::string_view bytes) const; // As a chunk; empty: the last one.

    // Waits until the other side or the server has gone: what a silent server does.
    void Hang() const;

    // Waits that long, unless the other side or the server goes first: false then.
    bool Pause(int milliseconds) const;

private:
    int socket_;
};

// A small HTTP server on a port of its own of this machine, that can misbehave as a test wants it.
// Thread: the test's, but for handlers.
class HttpServer {
public:
    using Handler = std::function<void(const HttpRequest&, HttpAnswer&)>;

    HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer(); // Cuts what is under way.

    // Each handler runs on a thread of its connection, which ends with it. Paths without one: 404.
    void Serve(const std::string& path, Handler handler);

    // The whole body with ranges.
    void ServeBytes(const std::string& path, std::string body, const std::string& type);

    [[nodiscard]] std::string GetUrl(const std::string& path) const;
    [[nodiscard]] std::size_t CountRequests(const std::string& path) const;
    [[nodiscard]] std::size_t CountAllRequests() const;
    [[nodiscard]] std::size_t CountConnections() const; // Also those that asked for nothing.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::test
