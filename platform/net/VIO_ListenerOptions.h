// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// How the listeners of a port treat their peers and what these send. An option text consists of words of the form
/// name=value or name:value with blanks between, which change the default.
struct VIO_ListenerOptions {
    enum Form : unsigned { Text = 1, Xml = 2, Http = 4 };

    std::string bind;            // numeric address to listen at besides loopback, "any" for all; empty for none
    bool anyUser = false;        // accept processes of other users and machines
    bool passBrowsers = false;   // accept what a browser sends
    bool anyHost = false;        // accept HTTP requests that are addressed to any host
    std::vector<std::string> hosts;   // allowed besides loopback and the address of `bind`; in lower case
    long long wait = 5000000000;      // nanoseconds without progress until a request or a reply is given up
    size_t maxBytes = 64 << 20;
    size_t clients = 1000;
    unsigned accept = Text | Xml | Http;

    // A null text counts as empty. A wrong word changes nothing and is reported on `complaints`, unless that is null.

    /// Returns the default of the host, changed by this text.
    static VIO_ListenerOptions parse(const char *text, std::ostream *complaints);
    /// Sets the default of the host.
    static void setDefault(const char *text, std::ostream *complaints);

    /// Returns the address of `bind` as a URL has it.
    std::string bindHost() const;

private:
    void readWords(const char *text, std::ostream *complaints);
    bool readWord(std::string_view name, std::string_view value);
};
