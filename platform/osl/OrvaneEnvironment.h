// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// The value of an environment variable of the process, null when there is none (a null name included). The text
/// stays readable, but shows the newer value once the variable is set again: copy it when another thread may do so.
CMD_API const char *OrvaneGetenv(const char *name);

/// Sets a variable of the process environment; a null value counts as empty. Non-zero when it is set: a name that is
/// null, empty or holds a `=` is refused. Safe among threads that use these three operations only.
CMD_API int OrvaneSetenv(const char *name, const char *value);

/// Removes a variable. Non-zero when it is gone, also when there was none.
CMD_API int OrvaneUnsetenv(const char *name);
