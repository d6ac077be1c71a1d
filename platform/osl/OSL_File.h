// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

#include <orvlang/platform/kit/KIT_Export.h>

// Whole jobs made of single system calls. All of them go on when a signal interrupts them.

/// Opens as OSL_System::open does.
int OSLopen(const char *path, int flags, int mode);
/// Reads until count bytes came, the file ends or a read fails; gives how many came. Failed is set in the last case.
size_t OSLreadAll(int descriptor, void *buffer, size_t count, bool &failed);
/// Writes all bytes, and waits for room where a descriptor does not block. False, with errno set, when a write fails.
CMD_API bool OSLwriteAll(int descriptor, const void *data, size_t count);
/// Replaces the text by what a file holds. False when it does not open, is a directory or a read fails; what came
/// before that is in the text.
bool OSLreadFile(const char *path, std::string &content);
