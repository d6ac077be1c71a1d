// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_StringCshIO.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

// A frame that had a longer line than this, in bytes, is given back: its memory would stay for ever.
constexpr size_t theLargestKeptText = 1 << 20;

/// The working memory of one statement. A manager keeps one for each nested statement and uses it again, so that
/// a statement that runs needs no memory of its own.
struct CMD_StatementFrame {
    std::string scanned;   // the line with its operators set apart
    std::string expandedAlias;
    KIT_CshTemplate parsed;
    KIT_WorkArgs words;
    KIT_StringCshIO redirection;
    CMD_Args args;
};
