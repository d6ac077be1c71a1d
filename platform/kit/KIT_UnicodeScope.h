// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <locale.h>

/// Has the character classes of the calling thread be those of Unicode for as long as it lives, whatever locale a host has
/// set. On a system without such a locale nothing changes.
class KIT_UnicodeScope {
public:
    KIT_UnicodeScope() : before(uselocale(unicode())) {}
    ~KIT_UnicodeScope() { uselocale(before); }
    KIT_UnicodeScope(const KIT_UnicodeScope &) = delete;
    KIT_UnicodeScope &operator=(const KIT_UnicodeScope &) = delete;

private:
    static locale_t unicode() {
        static const locale_t made = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return made;
    }

    const locale_t before;
};
