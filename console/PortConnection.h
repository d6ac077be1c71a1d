// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// A connection to a command port, from the client's side.
class PortConnection {
public:
    PortConnection() = default;
    ~PortConnection();
    PortConnection(const PortConnection &) = delete;
    PortConnection &operator=(const PortConnection &) = delete;

    /// Connects to the port that `openport` opens for that number.
    bool open(const std::string &host, int port);
    /// Sends a request and waits for its reply, which does not include the NUL at its end.
    bool exchange(std::string_view request, std::string &reply);
    /// Returns true when an exchange failed because the other side ended the connection.
    bool hasEnded() const { return ended; }
    /// Reports on standard error why the latest call failed.
    void reportFailure() const;

private:
    bool fail(const char *what, const std::string &reason);
    bool failExchange(int error);
    bool send(std::string_view bytes);

    std::string address;   // for messages
    std::string failure;
    int descriptor = -1;
    bool ended = false;
};
