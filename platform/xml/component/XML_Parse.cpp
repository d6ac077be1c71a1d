// SPDX-License-Identifier: Apache-2.0
// XML texts come from outside, so parsing one touches nothing else: files and hosts that it refers to are not read. The
// hook for that is one for the whole process, and other code may be parsing on other threads: it is in place only while
// a text is parsed, and refuses only the thread that does it. What entities may grow to is bounded by the parser itself.
#include <atomic>
#include <cstring>
#include <stdexcept>

#include <glibmm/exception.h>
#include <libxml++/libxml++.h>
#include <libxml/parser.h>

#include <orvlang/platform/xml/XML_ComponentTable.h>

namespace {

std::atomic<xmlExternalEntityLoader> theFormerLoader{ nullptr };

/// Lets no file and no host be read for the text, and nothing be written to standard error about it.
class Isolation {
public:
    Isolation() {
        theFormerLoader = xmlGetExternalEntityLoader();
        isParsing = true;
        wasAsked = false;
        xmlSetExternalEntityLoader(load);
        xmlSetGenericErrorFunc(nullptr, discard);
    }
    ~Isolation() {
        xmlSetGenericErrorFunc(formerContext, formerFunction);
        xmlSetExternalEntityLoader(theFormerLoader);
        isParsing = false;
    }
    Isolation(const Isolation &) = delete;
    Isolation &operator=(const Isolation &) = delete;

    bool refusedAny() const { return wasAsked; }

private:
    static xmlParserInputPtr load(const char *url, const char *id, xmlParserCtxtPtr context) {
        if (!isParsing)
            return theFormerLoader.load()(url, id, context);
        wasAsked = true;
        return nullptr;
    }

    static void discard(void *, const char *, ...) {}

    static inline thread_local bool isParsing = false;
    static inline thread_local bool wasAsked = false;

    // Those of this thread.
    void *const formerContext = xmlGenericErrorContext;
    const xmlGenericErrorFunc formerFunction = xmlGenericError;
};

void give(const XML_PieceTaker &taker, XML_Piece piece, const char *text, std::size_t length) {
    taker.take(taker.target, piece, text, length);
}

void giveRoot(const xmlpp::Node &root, const XML_PieceTaker &taker) {
    const Glib::ustring name = root.get_name();
    give(taker, XML_Piece::RootName, name.data(), name.bytes());
    for (const xmlpp::Node *const child : root.get_children()) {
        if (const auto *const node = dynamic_cast<const xmlpp::ContentNode *>(child)) {
            const Glib::ustring content = node->get_content();
            give(taker, XML_Piece::Content, content.data(), content.bytes());
        }
    }
}

void parse(const char *text, const XML_PieceTaker &taker) {
    xmlpp::DomParser parser;
    parser.set_substitute_entities(true);
    {
        const Isolation isolation;
        parser.parse_memory(Glib::ustring(text));
        // The parser itself would leave a hole in the content and go on.
        if (isolation.refusedAny())
            throw std::runtime_error("External entities are not read");
    }
    const xmlpp::Document *const document = parser ? parser.get_document() : nullptr;
    if (const xmlpp::Node *const root = document ? document->get_root_node() : nullptr)
        giveRoot(*root, taker);
}

}   // namespace

extern "C" CMD_API XML_ParseFunction XML_PARSE_FUNCTION;

void XML_PARSE_FUNCTION(const char *text, const XML_PieceTaker &taker) {
    try {
        parse(text, taker);
    } catch (const std::exception &exception) {
        give(taker, XML_Piece::Failure, exception.what(), std::strlen(exception.what()));
    } catch (const Glib::Exception &exception) {   // is no std::exception
        const Glib::ustring what = exception.what();
        give(taker, XML_Piece::Failure, what.data(), what.bytes());
    }
}
