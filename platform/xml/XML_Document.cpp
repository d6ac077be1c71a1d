// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/xml/XML_Document.h>

#include <orvlang/platform/kit/KIT_Component.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/xml/XML_ComponentTable.h>

namespace {

struct Component {
    Component()
        : parse(reinterpret_cast<XML_ParseFunction *>(
              KIT_Component::load("liborvlang_xml.so", KIT_NAME_OF(XML_PARSE_FUNCTION), nullptr, failure))) {}

    std::string failure;   // before what fills it in
    XML_ParseFunction *parse;
};

void takePiece(void *target, XML_Piece piece, const char *text, std::size_t length) {
    XML_Document &document = *static_cast<XML_Document *>(target);
    switch (piece) {
    case XML_Piece::RootName:
        document.hasRoot = true;
        document.rootName.assign(text, length);
        break;
    case XML_Piece::Content:
        document.content.append(text, length);
        break;
    case XML_Piece::Failure:
        document.isFailure = true;
        document.failure.assign(text, length);
        break;
    }
}

}   // namespace

XML_Document XMLparse(const char *text) {
    static KIT_Immortal<const Component> component{ Component() };
    XML_Document document;
    if (component.object.parse) {
        component.object.parse(text, { &document, takePiece });
        return document;
    }
    document.isFailure = true;
    document.failure = "XML is not available: " + component.object.failure;
    return document;
}
