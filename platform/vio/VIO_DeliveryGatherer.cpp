// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/vio/VIO_DeliveryGatherer.h>

#include <algorithm>
#include <climits>

#include <orvlang/platform/vio/VIO_HttpHead.h>

namespace {

constexpr long long theMillisecond = 1000000;   // nanoseconds
constexpr long long theHeadSilence = 100 * theMillisecond;
constexpr long long theTextSilence = 20 * theMillisecond;
constexpr long long theLineSilence = 1 * theMillisecond;   // behind a newline, which is likely to be the end
constexpr long long theLineEndSilence = 20 * theMillisecond;
constexpr size_t theLongestPlainText = 4096;
constexpr size_t theLongestHead = 65536;
/// The part of a head that comes in one piece whatever the network. A longer head that breaks off may be that of a
/// browser which was stopped in time, before the lines that show it.
constexpr size_t theLeastPiece = 512;

constexpr std::string_view thePostLine = "POST / HTTP/1.1\r\n";
constexpr std::string_view theMethod = "POST ";
constexpr std::string_view theXmlStart = "<?xml";
/// Of a TLS handshake. It holds bytes that a web page chose, behind a NUL; but what comes in a second piece would be a
/// request of its own.
constexpr std::string_view theTlsStart = "\x16\x03";
constexpr std::string_view theBlankLine = "\r\n\r\n";
constexpr std::string_view theLineEnd = "\r\n";   // what the protocol reads behind a body

bool isCutByBrowser(std::string_view head) {
    const size_t target = head.find(' ') + 1;
    return head.size() > theLeastPiece && head.substr(target).starts_with('/');
}

}   // namespace

VIO_Delivery VIO_DeliveryGatherer::decide(std::string_view gathered, bool ended, long long now) {
    if (gathered.size() != seen)
        lastProgress = now;
    seen = gathered.size();
    if (gathered.empty())
        return { VIO_Delivery::Wait };
    if (!late.empty() && late.front() == gathered.front()) {
        late.remove_prefix(1);
        seen = 0;
        return { VIO_Delivery::Drop, 1 };
    }
    late = {};
    const VIO_Delivery decision = decideForm({ gathered, ended, ended ? LLONG_MAX : now - lastProgress });
    if (decision.action == VIO_Delivery::Deliver)
        beginNext();
    return decision;
}

void VIO_DeliveryGatherer::beginNext() {
    if (frame && frame->completed)
        late = theLineEnd;
    form.reset();
    frame.reset();
    scanned = seen = 0;
}

VIO_DeliveryGatherer::Form VIO_DeliveryGatherer::classify(std::string_view text) {
    if (text.starts_with(thePostLine))
        return Form::Post;
    if (text.starts_with(theXmlStart))
        return Form::Xml;
    if (theXmlStart.starts_with(text))
        return Form::MaybeXml;
    const VIO_HttpLine line = VIOfindHttpLine(text, scanned);
    if (line == VIO_HttpLine::Maybe) {
        scanned = text.size();
        return Form::MaybeHttp;
    }
    scanned = 0;
    return line == VIO_HttpLine::Yes ? Form::OtherHttp : Form::Text;
}

VIO_Delivery VIO_DeliveryGatherer::decideForm(const Look &look) {
    if (look.text.starts_with(theTlsStart))
        return { VIO_Delivery::Refuse };
    if (!form || *form == Form::MaybeXml || *form == Form::MaybeHttp)
        form = classify(look.text);
    switch (*form) {
    case Form::Post:
    case Form::OtherHttp:
        return decideHttp(look);
    case Form::MaybeHttp:
        return decideRequestLine(look);
    case Form::Xml:
    case Form::MaybeXml:
        return decideText(look, theTextSilence);
    case Form::Text:
        break;
    }
    if (look.text.size() <= theLongestPlainText)
        return decideText(look, 0);
    return decideText(look, look.text.back() == '\n' ? theLineSilence : theTextSilence);
}

VIO_Delivery VIO_DeliveryGatherer::decideText(const Look &look, long long neededSilence) const {
    if (look.text.size() > options.maxBytes)
        return { VIO_Delivery::Refuse };
    if (look.silence < neededSilence)
        return waitFor(neededSilence);
    return isAccepted() ? VIO_Delivery{ VIO_Delivery::Deliver, look.text.size() }
                        : VIO_Delivery{ VIO_Delivery::Refuse };
}

bool VIO_DeliveryGatherer::isAccepted() const {
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

/// A request line that has not ended.
VIO_Delivery VIO_DeliveryGatherer::decideRequestLine(const Look &look) const {
    const bool isPost = look.text.starts_with(theMethod) && thePostLine.starts_with(look.text);
    const long long patience = isPost ? options.wait : theHeadSilence;
    const bool isHttp = isPost ? !look.ended : isCutByBrowser(look.text);
    if (look.silence >= patience && isHttp)
        return { VIO_Delivery::Refuse };
    return decideText(look, patience);
}

VIO_Delivery VIO_DeliveryGatherer::decideHttp(const Look &look) {
    if (!isAccepted())
        return { VIO_Delivery::Refuse };
    if (!frame)
        frame = findFrame(look);
    return frame ? decideFramed(look) : waitFor(getHeadPatience());
}

long long VIO_DeliveryGatherer::getHeadPatience() const {
    return *form == Form::Post ? options.wait : theHeadSilence;
}

/// Nothing as long as more of the head may come.
std::optional<VIO_DeliveryGatherer::Frame> VIO_DeliveryGatherer::findFrame(const Look &look) {
    const size_t end = findHeadEnd(look.text);
    const bool cut = end == look.text.npos;
    const bool tooLong = std::min(end, look.text.size()) > theLongestHead;
    if (cut && !tooLong && look.silence < getHeadPatience())
        return std::nullopt;
    const size_t length = cut ? look.text.size() : end;
    const VIO_HttpHead head = VIO_HttpHead::parse(look.text.substr(0, length), options);
    const bool isPost = *form == Form::Post;
    const bool counted = isPost && head.contentLength;

    Frame found = { .head = length, .length = length, .counted = counted, .refused = isRefused(head) };
    const long long body = counted ? *head.contentLength : head.anyContentLength.value_or(0);
    const long long needed = static_cast<long long>(length + (counted ? theLineEnd.size() : 0)) + body;
    found.length = static_cast<size_t>(std::max<long long>(needed, static_cast<long long>(length)));
    found.failed = tooLong || head.hasTransferEncoding || body > static_cast<long long>(options.maxBytes) ||
                   // Where the body begins cannot be told.
                   (cut && (isPost || body > 0 || isCutByBrowser(look.text)));
    return found;
}

VIO_Delivery VIO_DeliveryGatherer::decideFramed(const Look &look) {
    if (frame->refused)
        return { VIO_Delivery::Refuse };
    if (frame->failed)
        return fail();
    const size_t size = look.text.size();
    if (size >= frame->length)
        return { VIO_Delivery::Deliver, size };
    if (look.ended)
        return *form == Form::OtherHttp ? VIO_Delivery{ VIO_Delivery::Deliver, size } : fail();
    const bool lacksLineEnd = frame->counted && frame->length - size == theLineEnd.size();
    const long long patience = lacksLineEnd ? std::min(theLineEndSilence, options.wait) : options.wait;
    if (look.silence < patience)
        return waitFor(patience);
    if (!lacksLineEnd)
        return fail();
    frame->completed = true;
    return { VIO_Delivery::Complete };
}

/// Behind the blank line; npos when it has not come.
size_t VIO_DeliveryGatherer::findHeadEnd(std::string_view text) {
    // The protocol looks for this one only; what is not for it may end its lines as it likes.
    const size_t strict = text.find(theBlankLine, scanned);
    size_t end = strict == text.npos ? text.npos : strict + theBlankLine.size();
    if (*form == Form::OtherHttp) {
        const size_t loose = text.substr(0, end).find("\n\n", scanned);
        if (loose != text.npos)
            end = loose + 2;
    }
    if (end == text.npos)
        scanned = text.size() - std::min(text.size(), theBlankLine.size() - 1);
    return end;
}

bool VIO_DeliveryGatherer::isRefused(const VIO_HttpHead &head) const {
    return (head.isFromBrowser && !options.passBrowsers) || head.namesOtherHost;
}

VIO_Delivery VIO_DeliveryGatherer::fail() const {
    // Only the one kind of request has a reply for this.
    return *form == Form::Post ? VIO_Delivery{ VIO_Delivery::Fail, frame->head }
                               : VIO_Delivery{ VIO_Delivery::Refuse };
}
