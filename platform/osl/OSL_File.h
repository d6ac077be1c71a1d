// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

// Whole jobs made of single system calls. All of them go on when a signal interrupts them.

/// Opens as OSL_System::open does.
int OSLopen(const char *path, int flags, int mode);
/// Reads until count bytes came, the file ends or a read fails; gives how many came. Failed is set in the last case.
size_t OSLreadAll(int descriptor, void *buffer, size_t count, bool &failed);
/// False when not all could be written.
bool OSLwriteAll(int descriptor, const void *data, size_t count);
/// Replaces the text by what a file holds. False when it does not open, is a directory or a read fails; what came
/// before that is in the text.
bool OSLreadFile(const char *path, std::string &content);
