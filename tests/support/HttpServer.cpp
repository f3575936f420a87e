#include "tests/support/HttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <list>
#include <mutex>
#include <sstream>
#include <thread>
#include <utility>

namespace kivo::test {

namespace {

constexpr std::size_t kLongestHead = 64 * 1024;

std::string ToLower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(std::tolower(c));
    });
    return text;
}

bool ReadHead(int socket, HttpRequest& request)
{
    std::string head;
    while (head.find("\r\n\r\n") == std::string::npos) {
        std::array<char, 4096> bytes{};
        const ssize_t count = recv(socket, bytes.data(), bytes.size(), 0);
        if (count <= 0 || head.size() > kLongestHead)
            return false;
        head.append(bytes.data(), static_cast<std::size_t>(count));
        if (std::isalpha(static_cast<unsigned char>(head.front())) == 0)
            return false; // Another protocol.
    }
    std::istringstream lines(head);
    lines >> request.method >> request.path;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line) && line.size() > 1) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        const std::size_t value = line.find_first_not_of(' ', colon + 1);
        request.heads[ToLower(line.substr(0, colon))] =
            value == std::string::npos ? "" : line.substr(value, line.size() - value - 1);
    }
    return true;
}

// Where a "bytes=N-" begins; -1 without one.
std::int64_t GetRangeStart(const HttpRequest& request)
{
    const auto range = request.heads.find("range");
    if (range == request.heads.end() || !range->second.starts_with("bytes="))
        return -1;
    std::int64_t start = -1;
    const std::string& text = range->second;
    std::from_chars(text.data() + 6, text.data() + text.size(), start);
    return start;
}

void SendBody(const HttpRequest& request,
              HttpAnswer& answer,
              const std::string& body,
              const std::string& type)
{
    const std::int64_t asked = GetRangeStart(request);
    const auto size = static_cast<std::int64_t>(body.size());
    const std::int64_t start = std::clamp<std::int64_t>(asked, 0, size);
    std::ostringstream head;
    head << (asked < 0 ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 206 Partial Content\r\n")
         << "Content-Type: " << type << "\r\nAccept-Ranges: bytes\r\nConnection: close\r\n"
         << "Content-Length: " << size - start << "\r\n";
    if (asked >= 0)
        head << "Content-Range: bytes " << start << '-' << size - 1 << '/' << size << "\r\n";
    answer.Send(head.str() + "\r\n");
    answer.Send(std::string_view(body).substr(static_cast<std::size_t>(start)));
}

} // namespace

bool HttpAnswer::Receive(HttpRequest& next) const
{
    next = {};
    return ReadHead(socket_, next);
}

bool HttpAnswer::Send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool HttpAnswer::SendChunk(std::string_view bytes) const
{
    std::ostringstream head;
    head << std::hex << bytes.size() << "\r\n";
    return Send(head.str()) && Send(bytes) && Send("\r\n");
}

void HttpAnswer::Hang() const
{
    Pause(-1);
}

bool HttpAnswer::Pause(int milliseconds) const
{
    pollfd end = {socket_, POLLIN | POLLRDHUP, 0};
    return poll(&end, 1, milliseconds) == 0;
}

struct HttpServer::Impl {
    struct Connection {
        int socket;
        std::thread thread;
    };

    void Accept();
    void Talk(int socket);

    int listener = -1;
    int port = 0;
    std::thread acceptor;

    mutable std::mutex mutex; // Guards all below.
    std::list<Connection> connections;
    std::map<std::string, Handler> handlers;
    std::map<std::string, std::size_t> requests;
    std::size_t requestCount = 0;
};

void HttpServer::Impl::Accept()
{
    for (;;) {
        const int socket = accept(listener, nullptr, nullptr);
        if (socket < 0)
            return;
        const std::lock_guard<std::mutex> lock(mutex);
        connections.push_back({socket, std::thread(&Impl::Talk, this, socket)});
    }
}

void HttpServer::Impl::Talk(int socket)
{
    HttpRequest request;
    HttpAnswer answer(socket);
    if (ReadHead(socket, request)) {
        Handler handler;
        {
            const std::lock_guard<std::mutex> lock(mutex);
            ++requestCount;
            ++requests[request.path];
            const auto found = handlers.find(request.path);
            if (found != handlers.end())
                handler = found->second;
        }
        if (handler)
            handler(request, answer);
        else
            answer.Send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    }
    shutdown(socket, SHUT_RDWR); // Closed with the server, so that its number isn't used anew.
}

HttpServer::HttpServer()
    : impl_(std::make_unique<Impl>())
{
    impl_->listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    static_cast<void>(bind(impl_->listener, general, size));
    static_cast<void>(listen(impl_->listener, 64));
    getsockname(impl_->listener, general, &size);
    impl_->port = ntohs(address.sin_port);
    impl_->acceptor = std::thread(&Impl::Accept, impl_.get());
}

HttpServer::~HttpServer()
{
    shutdown(impl_->listener, SHUT_RDWR);
    impl_->acceptor.join();
    close(impl_->listener);
    for (const auto& connection : impl_->connections)
        shutdown(connection.socket, SHUT_RDWR);
    for (auto& connection : impl_->connections) {
        connection.thread.join();
        close(connection.socket);
    }
}

void HttpServer::Serve(const std::string& path, Handler handler)
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->handlers[path] = std::move(handler);
}

void HttpServer::ServeBytes(const std::string& path, std::string body, const std::string& type)
{
    Serve(path, [body = std::move(body), type](const HttpRequest& request, HttpAnswer& answer) {
        SendBody(request, answer, body, type);
    });
}

std::string HttpServer::GetUrl(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(impl_->port) + path;
}

std::size_t HttpServer::CountRequests(const std::string& path) const
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    const auto found = impl_->requests.find(path);
    return found == impl_->requests.end() ? 0 : found->second;
}

std::size_t HttpServer::CountAllRequests() const
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    return impl_->requestCount;
}

std::size_t HttpServer::CountConnections() const
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    return impl_->connections.size();
}

} // namespace kivo::test
