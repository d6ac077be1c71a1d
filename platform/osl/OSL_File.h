// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

#include <orvlang/platform/kit/KIT_Export.h>

// Operations made of several system calls. All of them continue when a signal interrupts one.

/// Opens as OSL_System::open does.
int OSLopen(const char *path, int flags, int mode);
/// Reads until count bytes came, the file ends or a read fails, which sets `failed`. Returns how many bytes came.
size_t OSLreadAll(int descriptor, void *buffer, size_t count, bool &failed);
/// Writes all bytes, and waits for room where a descriptor does not block. Returns false, with errno set, when a write
/// fails.
CMD_API bool OSLwriteAll(int descriptor, const void *data, size_t count);
/// Replaces the text by the content of a file. Returns false when the file does not open, is a directory or a read fails;
/// what came before the failure is in the text.
bool OSLreadFile(const char *path, std::string &content);
