// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What an XML text holds at its top.
struct XML_Document {
    bool isFailure = false;   // `failure` tells why the text could not be read
    bool hasRoot = false;     // false also when the parser had nothing to say
    std::string rootName;
    /// The texts, CDATA sections, comments and processing instructions that stand directly in the root element, in
    /// their order; elements in it are left out.
    std::string content;
    std::string failure;
};

/// Reads an XML text, internal entities replaced. Nothing outside of the text is read, whatever it refers to, and
/// nothing is written anywhere. The parser is loaded by the first call.
XML_Document XMLparse(const char *text);
