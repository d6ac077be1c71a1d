// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The root element of an XML text.
struct XML_Document {
    bool isFailure = false;   // `failure` is the reason why the text could not be read
    bool hasRoot = false;     // false also when the parser reported nothing
    std::string rootName;
    /// The texts, CDATA sections, comments and processing instructions directly in the root element, in their order;
    /// elements in it are left out.
    std::string content;
    std::string failure;
};

/// Reads an XML text, internal entities replaced. Nothing outside of the text is read, whatever it refers to, and
/// nothing is written anywhere. The parser is loaded by the first call.
XML_Document XMLparse(const char *text);
