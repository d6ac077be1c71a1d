// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <locale.h>

/// Gives the calling thread the character classes of Unicode during its lifetime, in any locale of the host. Does
/// nothing on a system without such a locale.
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
