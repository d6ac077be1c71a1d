// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

// The seam between the library and the component around libxml++, a shared object that is loaded at the first use.

/// The kinds of pieces of a parsed text.
enum class XML_Piece { RootName, Content, Failure };

/// Receives the pieces. The bytes are valid for the call only.
struct XML_PieceTaker {
    void *target;
    void (*take)(void *target, XML_Piece piece, const char *text, std::size_t length);
};

/// Parses a text and passes on the name of the root element and its content, or the failure; nothing at all when there is
/// neither a document nor a failure. Throws nothing.
using XML_ParseFunction = void(const char *text, const XML_PieceTaker &taker);

/// The name that the component exports it by. The number changes with the declarations above.
#define XML_PARSE_FUNCTION XMLparse1
