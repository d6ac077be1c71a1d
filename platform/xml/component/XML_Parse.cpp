// SPDX-License-Identifier: Apache-2.0
// XML texts come from outside, so parsing one touches nothing else: files and hosts that it refers to are not read. The
// hook for that is one for the whole process, and other code may be parsing on other threads: it is in place only while
// a text is parsed, and refuses only the thread that does it. The parser bounds how far general entities expand, but
// not parameter entities: a few hundred bytes of nested ones would keep it busy for hours, so their declaration is
// refused.
#include <atomic>
#include <cstring>
#include <stdexcept>

#include <glibmm/exception.h>
#include <libxml++/libxml++.h>
#include <libxml/SAX2.h>
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

/// Stops at the first declaration of a parameter entity.
class Parser : public xmlpp::DomParser {
public:
    /// Parses the text. Whatever the parser says about one that it was stopped in, the reason is what is reported.
    void parse(const Glib::ustring &text) {
        wasStopped = false;
        try {
            parse_memory(text);
        } catch (const xmlpp::exception &) {
            if (!wasStopped)
                throw;
        }
        if (wasStopped)
            throw std::runtime_error("Parameter entities are not read");
    }

protected:
    void initialize_context() override {
        DomParser::initialize_context();
        context_->sax->entityDecl = declareEntity;
    }

private:
    static void declareEntity(void *context, const xmlChar *name, int type, const xmlChar *publicId,
                              const xmlChar *systemId, xmlChar *content) {
        if (type != XML_INTERNAL_PARAMETER_ENTITY && type != XML_EXTERNAL_PARAMETER_ENTITY)
            return xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
        wasStopped = true;
        xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
    }

    static inline thread_local bool wasStopped = false;
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
    Parser parser;
    parser.set_substitute_entities(true);
    {
        const Isolation isolation;
        parser.parse(Glib::ustring(text));
        // The parser itself would leave a gap in the content and continue.
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
    } catch (const Glib::Exception &exception) {   // not a std::exception
        const Glib::ustring what = exception.what();
        give(taker, XML_Piece::Failure, what.data(), what.bytes());
    }
}
