// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Whether the other end of a connection is a socket of this machine that a process of this user, or of root, has open
/// now. It asks the kernel's table of sockets, so there is nothing that a peer could pretend.
bool VIOisPeerOfThisUser(int descriptor);
