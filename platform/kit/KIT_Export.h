// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what a host or a plug-in library may use; everything else is hidden in the shared library.
#define CMD_API __attribute__((visibility("default")))
