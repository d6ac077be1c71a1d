// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

class CMD_Args;
class KIT_WorkBuffer;

/// Writes the words from the index `first` on, with single blanks between them and no line end.
void CMDprintArgs(const CMD_Args &args, int first, std::ostream &os);
/// The same into a buffer. Without a word in range the buffer stays as it is.
void CMDjoinArgs(const CMD_Args &args, int first, KIT_WorkBuffer &buffer);
