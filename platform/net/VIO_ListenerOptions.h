// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// How the listeners of a port treat who connects and what arrives: what an option text, words of the form name=value
/// or name:value with blanks between, says over the default.
struct VIO_ListenerOptions {
    enum Form : unsigned { Text = 1, Xml = 2, Http = 4 };

    std::string bind;            // numeric address to listen at besides loopback, "any" for all; empty for none
    bool anyUser = false;        // let in processes of other users and machines
    bool passBrowsers = false;   // run what a browser sends
    bool anyHost = false;        // run HTTP requests that are addressed to any host
    std::vector<std::string> hosts;   // allowed besides loopback and the address of `bind`; in lower case
    long long wait = 5000000000;      // nanoseconds without progress until a request or a reply is given up
    size_t maxBytes = 64 << 20;
    size_t clients = 1000;
    unsigned accept = Text | Xml | Http;

    // A null text counts as empty. A wrong word changes nothing and is named on `complaints`, unless that is null.

    /// The host's default, with what this text says over it.
    static VIO_ListenerOptions parse(const char *text, std::ostream *complaints);
    /// What holds from now on where a text says nothing else.
    static void setDefault(const char *text, std::ostream *complaints);

    /// Returns the address of `bind` as a URL has it.
    std::string bindHost() const;

private:
    void readWords(const char *text, std::ostream *complaints);
    bool readWord(std::string_view name, std::string_view value);
};
