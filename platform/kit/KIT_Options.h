// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

/// Texts by name: the header of a request, settings. A later text of a name replaces the earlier one.
class CMD_API KIT_Options {
public:
    void setString(std::string_view name, std::string_view value);
    /// Returns null for an unknown name. Valid until the next change.
    const KIT_String *findString(std::string_view name) const;
    std::size_t entries() const { return values.size(); }

private:
    std::map<std::string, KIT_String, std::less<>> values;
};
