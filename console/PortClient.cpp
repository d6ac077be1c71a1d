// SPDX-License-Identifier: Apache-2.0
#include "PortClient.h"

#include <charconv>
#include <iostream>

#include <unistd.h>

#include <orvlang/platform/osl/KIT_Interrupt.h>

#include "ConsoleSignals.h"

namespace {

std::string thePrompt;

/// Separates output and errors in a reply of a port that keeps them apart.
constexpr std::string_view theErrorMarker = "\n~~~~~\n";

/// In an HTTP request, text of any length and with any line ends arrives as a whole.
std::string makeHTTPRequest(std::string_view body) {
    std::string request = "POST / HTTP/1.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    return request.append(body).append("\r\n");
}

/// Removes the head. Returns false when the request was refused; the reply is the reason then.
bool removeHTTPHead(std::string &reply) {
    const bool isRefused = !reply.starts_with("HTTP/1.1 200 ");
    const size_t blankLine = reply.find("\r\n\r\n");
    if (blankLine != reply.npos)
        reply.erase(0, blankLine + 4);
    return !isRefused;
}

}   // namespace

PortClient::PortClient(const ConsoleOptions &options)
    : options(options), onTerminal(isatty(STDIN_FILENO)), reader(getPrompt, nullptr) {
    thePrompt = std::to_string(options.port) + " -> ";
}

int PortClient::run() {
    if (!connection.open(options.host, options.port)) {
        connection.reportFailure();
        return 1;
    }
    const bool isDone = options.action == ConsoleOptions::Action::Text ? runText() : runLines();
    if (!isDone)
        return 1;
    // What is open would consume the question as its next line.
    return reportOpenInput(sent.getPending()) ? 1 : askStatus();
}

bool PortClient::runText() {
    if (!exchange(makeHTTPRequest(options.text)))
        return false;
    if (!removeHTTPHead(reply)) {
        std::cerr << "orvlang: " << reply << std::endl;
        return false;
    }
    sent.addText(options.text);
    show(reply);
    return true;
}

/// Sends each line as a request of its own. The port treats it as one that was typed at the console: it can be
/// continued, answer a `read`, or belong to a loop.
bool PortClient::runLines() {
    if (reader.isEditing()) {
        ConsoleSignals::installForEnding();
        recall.seed(reader);
    }
    while (readLine()) {
        sent.addLine(line.view());
        // Not a newline, so that an empty line is a request too.
        line.append('\r');
        if (!exchange(line.view()))
            return false;
        show(reply);
    }
    if (onTerminal)
        std::cout << std::endl;
    return true;
}

bool PortClient::exchange(std::string_view request) {
    if (connection.exchange(request, reply))
        return isServed = true;
    connection.reportFailure();
    return false;
}

/// On a terminal an interrupt drops the line that is being typed. During the wait for a reply it ends the program.
bool PortClient::readLine() {
    if (!reader.isEditing()) {
        if (onTerminal)
            std::cout << thePrompt << std::flush;
        return reader.readLine(line);
    }
    const ConsoleSignals::InterruptScope scope;
    while (!readLineOnce()) {
        if (!ConsoleSignals::clearInterrupt())
            return false;
        KIT_CmdLineReader::dropInput();
        std::cout << "^C" << std::endl;
    }
    recall.add(reader, line.c_str());
    return true;
}

bool PortClient::readLineOnce() {
    const KIT_Operation operation("Read a line");
    return !ConsoleSignals::pending() && reader.readLine(line);
}

const char *PortClient::getPrompt() {
    return thePrompt.c_str();
}

/// Returns the status of the latest statement that ran in the other program, whoever sent it.
int PortClient::askStatus() {
    if (!connection.exchange("echo $status", reply)) {
        // The statements may have closed the port, or ended the program. Whether it still answers then is chance.
        if (isServed && connection.hasEnded())
            return 0;
        connection.reportFailure();
        return 1;
    }
    if (reply == "\n")
        return 0;   // no statement has ended there yet
    int status = 0;
    const auto [end, error] = std::from_chars(reply.data(), reply.data() + reply.size(), status);
    if (error == std::errc() && end != reply.data() + reply.size() && *end == '\n')
        return status & 0xff;
    std::cerr
        << "orvlang: the status is not told; a `read`, a loop or an if block may be waiting for more lines"
        << std::endl;
    return 1;
}

void PortClient::show(std::string_view text) const {
    const size_t marker = text.find(theErrorMarker);
    std::cout << text.substr(0, marker) << std::flush;
    if (marker != text.npos)
        std::cerr << text.substr(marker + theErrorMarker.size()) << std::flush;
}
