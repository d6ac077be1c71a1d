// SPDX-License-Identifier: Apache-2.0
#include <orvlang/builtins/CMD_WordLists.h>

#include <ostream>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

void CMDprintArgs(const CMD_Args &args, int first, std::ostream &os) {
    if (first >= args.argc())
        return;
    os << args.argv(first);
    for (int i = first + 1; i < args.argc(); ++i)
        os << ' ' << args.argv(i);
}

void CMDjoinArgs(const CMD_Args &args, int first, KIT_WorkBuffer &buffer) {
    if (first < args.argc())
        args.fillCommandLine(buffer, first, false);
}
