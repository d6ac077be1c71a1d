// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_StringCshIO.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

// A frame that had a longer line than this, in bytes, is freed: its memory would stay for ever.
constexpr size_t theLargestKeptText = 1 << 20;

/// The working memory of one statement. A manager keeps one for each level of nested statements and reuses it, so
/// that running a statement does not allocate.
struct CMD_StatementFrame {
    std::string scanned;   // the line with blanks around its operators
    std::string expandedAlias;
    KIT_CshTemplate parsed;
    KIT_WorkArgs words;
    KIT_StringCshIO redirection;
    CMD_Args args;
};
