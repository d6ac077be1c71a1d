// SPDX-License-Identifier: Apache-2.0
// The road of a request, step 4. `findRequest` is asked by the connection (VIO_Connection.cpp) each time bytes have come
// or the time of its last answer is over. It drops a line end that was added before, recognises the kind of request and
// answers: wait, deliver or refuse. A delivered request goes to `processSocketDataCallback`
// (CMD_ConnectedSocketCommandListener.cpp), which asks here for its head.
#include <orvlang/port/CMD_RequestFramer.h>

#include <algorithm>
#include <climits>

#include <orvlang/port/CMD_HttpHead.h>
#include <orvlang/port/CMD_PortProtocol.h>

using namespace CMD_PortProtocol;

namespace {

constexpr long long theMillisecond = 1000000;   // nanoseconds
constexpr long long theHeadSilence = 100 * theMillisecond;
constexpr long long theTextSilence = 20 * theMillisecond;
constexpr long long theLineSilence = 1 * theMillisecond;   // after a newline, which is likely to be the end
constexpr long long theLineEndSilence = 20 * theMillisecond;
constexpr size_t theLongestPlainText = 4096;
constexpr size_t theLongestHead = 65536;
/// The part of a head that comes in one piece whatever the network. A longer head that breaks off may be from a browser
/// that was stopped before it sent the lines that identify it.
constexpr size_t theLeastPiece = 512;

constexpr std::string_view theMethod = "POST ";
/// Begins a TLS handshake. A web page can choose some of its bytes. They follow a NUL, but in a second piece they would be
/// a request of their own.
constexpr std::string_view theTlsStart = "\x16\x03";

VIO_RequestExtent deliver(size_t length) {
    return { .action = VIO_RequestExtent::Deliver, .length = length };
}

VIO_RequestExtent refuse() {
    return { .action = VIO_RequestExtent::Refuse };
}

bool isCutByBrowser(std::string_view head) {
    const size_t target = head.find(' ') + 1;
    return head.size() > theLeastPiece && head.substr(target).starts_with('/');
}

}   // namespace

VIO_RequestExtent CMD_RequestFramer::findRequest(const VIO_ReceivedBytes &received) {
    const auto end =
        std::mismatch(late.begin(), late.end(), received.bytes.begin(), received.bytes.end()).first;
    const size_t skip = static_cast<size_t>(end - late.begin());
    late.remove_prefix(skip);
    VIO_RequestExtent found = findNext(received.bytes.substr(skip), received);
    found.skip = skip;
    return found;
}

VIO_RequestExtent CMD_RequestFramer::findNext(std::string_view text, const VIO_ReceivedBytes &received) {
    if (text.size() != seen)
        lastProgress = received.now;
    seen = text.size();
    if (text.empty())
        return { .action = VIO_RequestExtent::Wait };
    late = {};
    const long long silence = received.isEnded ? LLONG_MAX : received.now - lastProgress;
    const VIO_RequestExtent found = decideForm({ text, received.isEnded, silence });
    if (found.action == VIO_RequestExtent::Deliver)
        endRequest();
    return found;
}

void CMD_RequestFramer::endRequest() {
    deliveredHead.reset();
    if (*form == Form::Post)
        deliveredHead = frame->head;
    form.reset();
    frame.reset();
    scanned = seen = 0;
}

CMD_RequestFramer::Form CMD_RequestFramer::classify(std::string_view text) {
    if (text.starts_with(thePostLine))
        return Form::Post;
    if (text.starts_with(theXmlStart))
        return Form::Xml;
    if (theXmlStart.starts_with(text))
        return Form::MaybeXml;
    const CMD_HttpLine line = CMDfindHttpLine(text, scanned);
    if (line == CMD_HttpLine::Maybe) {
        scanned = text.size();
        return Form::MaybeHttp;
    }
    scanned = 0;
    return line == CMD_HttpLine::Yes ? Form::OtherHttp : Form::Text;
}

VIO_RequestExtent CMD_RequestFramer::decideForm(const Input &input) {
    if (input.text.starts_with(theTlsStart))
        return refuse();
    if (!form || *form == Form::MaybeXml || *form == Form::MaybeHttp)
        form = classify(input.text);
    switch (*form) {
    case Form::Post:
    case Form::OtherHttp:
        return decideHttp(input);
    case Form::MaybeHttp:
        return decideRequestLine(input);
    case Form::Xml:
    case Form::MaybeXml:
        return decideText(input, theTextSilence);
    case Form::Text:
        break;
    }
    if (input.text.size() <= theLongestPlainText)
        return decideText(input, 0);
    return decideText(input, input.text.back() == '\n' ? theLineSilence : theTextSilence);
}

VIO_RequestExtent CMD_RequestFramer::decideText(const Input &input, long long neededSilence) const {
    if (input.text.size() > options.maxBytes)
        return refuse();
    if (input.silence < neededSilence)
        return waitFor(neededSilence);
    return isAccepted() ? deliver(input.text.size()) : refuse();
}

bool CMD_RequestFramer::isAccepted() const {
    using Options = VIO_ListenerOptions;
    switch (*form) {
    case Form::Xml:
        return options.accept & Options::Xml;
    case Form::Post:
        return options.accept & Options::Http;
    case Form::OtherHttp:   // which runs as text
        return (options.accept & Options::Http) && (options.accept & Options::Text);
    default:
        return options.accept & Options::Text;
    }
}

/// Decides on a request line that has not ended.
VIO_RequestExtent CMD_RequestFramer::decideRequestLine(const Input &input) const {
    const bool isPost = input.text.starts_with(theMethod) && thePostLine.starts_with(input.text);
    const long long patience = isPost ? options.wait : theHeadSilence;
    const bool isHttp = isPost ? !input.isEnded : isCutByBrowser(input.text);
    if (input.silence >= patience && isHttp)
        return refuse();
    return decideText(input, patience);
}

VIO_RequestExtent CMD_RequestFramer::decideHttp(const Input &input) {
    if (!isAccepted())
        return refuse();
    if (!frame)
        frame = findFrame(input);
    return frame ? decideFramed(input) : waitFor(getHeadPatience());
}

long long CMD_RequestFramer::getHeadPatience() const {
    return *form == Form::Post ? options.wait : theHeadSilence;
}

/// Returns nothing as long as more of the head may come.
std::optional<CMD_RequestFramer::Frame> CMD_RequestFramer::findFrame(const Input &input) {
    const std::optional<size_t> bodyOffset = findBody(input.text);
    const size_t headLength = bodyOffset.value_or(input.text.size());
    const bool isTooLong = headLength > theLongestHead;
    if (!bodyOffset && !isTooLong && input.silence < getHeadPatience())
        return std::nullopt;

    const bool isPost = *form == Form::Post;
    const CMD_HttpHead head = CMD_HttpHead::parse(input.text, bodyOffset, options);
    const bool isCounted = isPost && head.contentLength;
    const long long body = isCounted ? *head.contentLength : head.anyContentLength.value_or(0);
    const long long needed =
        isCounted ? head.getRequestLength(headLength) : static_cast<long long>(headLength) + body;
    // Without a blank line it is not known where the body begins.
    const bool isBodyUnknown = !bodyOffset && (isPost || body > 0 || isCutByBrowser(input.text));
    return Frame{ .head = head,
                  .length = static_cast<size_t>(std::max(needed, static_cast<long long>(headLength))),
                  .isCounted = isCounted,
                  .isRefused = isRefused(head),
                  .isFailed = isTooLong || head.hasTransferEncoding ||
                              body > static_cast<long long>(options.maxBytes) || isBodyUnknown };
}

VIO_RequestExtent CMD_RequestFramer::decideFramed(const Input &input) {
    if (frame->isRefused)
        return refuse();
    if (frame->isFailed)
        return fail(input);
    const size_t size = input.text.size();
    if (size >= frame->length)
        return deliver(size);
    if (input.isEnded)
        return *form == Form::OtherHttp ? deliver(size) : fail(input);
    const bool lacksLineEnd = frame->isCounted && frame->length - size == theLineEnd.size();
    const long long patience = lacksLineEnd ? std::min(theLineEndSilence, options.wait) : options.wait;
    if (input.silence < patience)
        return waitFor(patience);
    if (!lacksLineEnd)
        return fail(input);
    late = theLineEnd;
    return deliver(size);
}

/// Returns the offset after the blank line; nothing while that has not come.
std::optional<size_t> CMD_RequestFramer::findBody(std::string_view text) {
    std::optional<size_t> offset = CMD_HttpHead::findBody(text, scanned);
    if (*form == Form::OtherHttp) {
        // Other requests than those of the port may end their lines with a newline alone.
        const size_t loose = text.substr(0, offset.value_or(text.npos)).find("\n\n", scanned);
        if (loose != text.npos)
            offset = loose + 2;
    }
    if (!offset)
        scanned = text.size() - std::min(text.size(), theBlankLine.size() - 1);
    return offset;
}

CMD_HttpHead CMD_RequestFramer::parseHead(std::string_view request) const {
    return CMD_HttpHead::parse(request, CMD_HttpHead::findBody(request, 0), options);
}

bool CMD_RequestFramer::isRefused(const CMD_HttpHead &head) const {
    return (head.isFromBrowser && !options.passBrowsers) || head.namesOtherHost;
}

VIO_RequestExtent CMD_RequestFramer::fail(const Input &input) const {
    // Only this kind of request has a reply for it; it is delivered without its body.
    return *form == Form::Post
               ? VIO_RequestExtent{ .action = VIO_RequestExtent::Deliver,
                                    .length = frame->head.bodyOffset.value_or(input.text.size()),
                                    .isLast = true }
               : refuse();
}
