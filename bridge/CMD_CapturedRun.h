// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>

/// Runs a text as a block, without echo of its statements, and keeps what it writes.
class CMD_CapturedRun {
public:
    CMD_CapturedRun(CMD_Manager &manager, const char *text) {
        const SilentEcho silence(manager);
        manager.execute(text, 0, &output, &errors, 1, true);
    }
    CMD_CapturedRun(const CMD_CapturedRun &) = delete;
    CMD_CapturedRun &operator=(const CMD_CapturedRun &) = delete;

    std::string_view getOutput() const { return output.view(); }
    std::string_view getErrors() const { return errors.view(); }

private:
    struct SilentEcho {
        explicit SilentEcho(CMD_Manager &manager) : manager(manager) { manager.echoOff(); }
        ~SilentEcho() { manager.echoOn(); }

        CMD_Manager &manager;
    };

    KIT_OStrStream output, errors;
};
