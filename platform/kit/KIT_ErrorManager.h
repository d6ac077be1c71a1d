// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/osl/KIT_Lock.h>

class KIT_String;

/// Errors that parts of the toolkit leave for a caller that can show them. Any thread may add some.
class CMD_API KIT_ErrorManager {
public:
    enum Severity { Message = 1, Warning = 2, Minor = 3, Failure = 4, Fatal = 5 };

    constexpr KIT_ErrorManager() = default;

    /// Adds an error, unless it is pending already. Severities begin at 1; 4 and above ends a save.
    void addError(int severity, std::string_view text);
    /// Replaces the text by the pending errors of at least that severity, one in a line, without a newline at the end;
    /// empty and cheap when there are none. OldestFirst 0 reverses the order. The errors remain pending.
    void getErrorMessages(KIT_String &text, int leastSeverity, int oldestFirst) const;
    void clearAndDestroyErrors();
    /// Returns the highest severity that is pending; 0 for none.
    int getSeverity() const { return severity.load(std::memory_order_relaxed); }

private:
    struct Error {
        int severity;
        std::string text;
    };

    mutable KIT_Lock lock{ false, true };
    std::vector<Error> errors;        // oldest first
    std::atomic<int> severity{ 0 };   // 0 exactly when there is no error
};

/// Returns the one of the process.
CMD_API KIT_ErrorManager *KITgetErrorManager();
/// Returns the highest severity that is pending there; 0 for none.
CMD_API int KITgetErrorSeverity();
/// Returns non-zero when the stream is good. Otherwise adds an error of severity 4, "WHAT: write failed".
/// The last argument is for callers that name a kind of stream; all are treated alike.
CMD_API int KITcheckOutStream(std::ostream &os, const char *what, int kind);
