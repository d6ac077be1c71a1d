// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// A connection to a command port, from the client's side. What goes wrong is told on standard error.
class PortConnection {
public:
    PortConnection() = default;
    ~PortConnection();
    PortConnection(const PortConnection &) = delete;
    PortConnection &operator=(const PortConnection &) = delete;

    /// Connects to the port, mapped as a port that is opened with that number.
    bool open(const std::string &host, int port);
    /// Sends a request and waits for its reply, which comes without the NUL at its end.
    bool exchange(std::string_view request, std::string &reply);

private:
    bool tell(const char *what, const char *reason) const;
    bool send(std::string_view bytes);

    std::string address;   // for messages
    int descriptor = -1;
};
