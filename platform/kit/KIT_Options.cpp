// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Options.h>

void KIT_Options::setString(std::string_view name, std::string_view value) {
    const auto found = values.find(name);
    if (found != values.end())
        found->second = value;
    else
        values.emplace(name, value);
}

const KIT_String *KIT_Options::findString(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}
