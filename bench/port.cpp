// SPDX-License-Identifier: Apache-2.0
// What a command port costs. The program starts `orvlang` with a port and is its clients: each connection sends a request
// when it has the reply to the one before. For each load it tells the requests per second, the time from a request to the
// end of its reply (median, and what 99 of 100 stay below), and the processor time that the server spent on each.
//
//     orvlang_port_bench PROGRAM     the path of `orvlang`
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char *what) {
    std::perror(what);
    std::exit(1);
}

double microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

/// The program with a port open; ended with this object.
class Server {
public:
    Server(const char *program, int number) : port(number), child(fork()) {
        if (child == 0) {
            const std::string text = "openport -w " + std::to_string(port);
            execl(program, program, "-c", text.c_str(), nullptr);
            _exit(127);
        }
    }
    ~Server() {
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
    }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// Microseconds that its main thread has run.
    double processorTime() const {
        double nanoseconds = 0;
        std::ifstream(folder() + "/schedstat") >> nanoseconds;
        return nanoseconds / 1000;
    }
    long descriptors() const {
        return std::distance(std::filesystem::directory_iterator(folder() + "/fd"), {});
    }

    const int port;

private:
    std::string folder() const { return "/proc/" + std::to_string(child); }

    const pid_t child;
};

class Connection {
public:
    explicit Connection(const Server &server) : descriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<in_port_t>(server.port));
        isOpen = connect(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
        const int on = 1;
        setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    ~Connection() { close(descriptor); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void send(std::string_view request) {
        received = 0;
        sent = Clock::now();
        while (!request.empty()) {
            const ssize_t n = ::send(descriptor, request.data(), request.size(), MSG_NOSIGNAL);
            if (n < 0)
                fail("send");
            request.remove_prefix(static_cast<size_t>(n));
        }
    }
    /// True at the end of a reply, which must have that size; NUL included.
    bool receive(size_t replySize) {
        static char piece[1 << 18];
        const ssize_t n = recv(descriptor, piece, sizeof piece, 0);
        received += n > 0 ? static_cast<size_t>(n) : 0;
        const bool atEnd = n > 0 && piece[n - 1] == 0;
        if (n <= 0 || received > replySize || atEnd != (received == replySize)) {
            std::fprintf(stderr, "a wrong reply, %zu bytes instead of %zu\n", received, replySize);
            std::exit(1);
        }
        return atEnd;
    }
    void ask(std::string_view request, size_t replySize) {
        send(request);
        while (!receive(replySize))
            ;
    }

    const int descriptor;
    bool isOpen = false;
    Clock::time_point sent;

private:
    size_t received = 0;
};

struct Load {
    const char *name;
    std::string_view request;
    size_t replySize;   // NUL included
    size_t connections, requests;
};

/// Gives the microseconds from each request to the end of its reply.
std::vector<double> run(const Server &server, const Load &load) {
    const int poll = epoll_create1(EPOLL_CLOEXEC);
    std::vector<std::unique_ptr<Connection>> connections;
    for (size_t i = 0; i < load.connections; ++i) {
        connections.push_back(std::make_unique<Connection>(server));
        epoll_event event = {};
        event.events = EPOLLIN;
        event.data.ptr = connections.back().get();
        epoll_ctl(poll, EPOLL_CTL_ADD, connections.back()->descriptor, &event);
    }
    size_t started = load.connections;
    for (const auto &connection : connections)
        connection->send(load.request);
    std::vector<double> times;
    times.reserve(load.requests);
    epoll_event events[64];
    while (times.size() < load.requests) {
        const int count = epoll_wait(poll, events, 64, 30000);
        if (count <= 0)
            fail("no reply");
        for (int i = 0; i < count; ++i) {
            Connection &connection = *static_cast<Connection *>(events[i].data.ptr);
            if (!connection.receive(load.replySize))
                continue;
            times.push_back(microseconds(Clock::now() - connection.sent));
            if (started++ < load.requests)
                connection.send(load.request);
        }
    }
    close(poll);
    return times;
}

void measure(const Server &server, const Load &load) {
    const double processorBefore = server.processorTime();
    const Clock::time_point start = Clock::now();
    std::vector<double> times = run(server, load);
    const double elapsed = microseconds(Clock::now() - start);
    const double processor = server.processorTime() - processorBefore;
    std::sort(times.begin(), times.end());
    const double count = static_cast<double>(times.size());
    std::printf("%-26s %4zu %8zu %10.0f %9.1f %9.1f %9.2f\n", load.name, load.connections, times.size(),
                count / elapsed * 1e6, times[times.size() / 2], times[times.size() * 99 / 100],
                processor / count);
}

/// Connections that come and go; none may leave anything behind.
void measureConnections(const Server &server, int count) {
    const long descriptors = server.descriptors();
    const double processorBefore = server.processorTime();
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < count; ++i)
        Connection(server).ask("echo x", 3);
    const double elapsed = microseconds(Clock::now() - start);
    std::printf("%-26s %4d %8d %10.0f %29.2f\n", "connect, ask, close", 1, count, count / elapsed * 1e6,
                (server.processorTime() - processorBefore) / count);
    // The server notices the last ones in turns to come.
    Connection last(server);
    for (int i = 0; i < 1000 && server.descriptors() > descriptors + 1; ++i)
        last.ask("echo x", 3);
    if (server.descriptors() > descriptors + 1)
        std::fprintf(stderr, "%ld descriptors are left\n", server.descriptors() - descriptors);
}

}   // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s PROGRAM\n", argv[0]);
        return 2;
    }
    const Server server(argv[1], 20000 + getpid() % 10000);
    while (!Connection(server).isOpen)
        usleep(1000);
    constexpr size_t theLongReply = 1 << 20;
    std::string text = "set -g long = " + std::string(theLongReply - 2, 'x') + "\n";
    Connection(server).ask(
        "POST / HTTP/1.1\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text + "\r\n",
        std::strlen("HTTP/1.1 200 OK\r\nContent-Length: 0\r\nContent-Type: text/plain\r\n\r\n") + 1);

    std::printf("%-26s %4s %8s %10s %9s %9s %9s\n", "", "conn", "requests", "per s", "p50 us", "p99 us",
                "cpu us");
    for (const Load &load : {
             Load{ "(warming up)", "echo x\n", 3, 1, 1000 },
             Load{ "echo x", "echo x\n", 3, 1, 30000 },
             Load{ "echo x", "echo x\n", 3, 50, 100000 },
             Load{ "echo x", "echo x\n", 3, 64, 64000 },
             Load{ "a reply of 1 MiB", "echo $long\n", theLongReply, 1, 1000 },
             Load{ "a reply of 1 MiB", "echo $long\n", theLongReply, 50, 1000 },
         })
        measure(server, load);
    measureConnections(server, 10000);
}
