// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldInfo.h"

namespace setup {

const char *FieldInfo::valueName(quint32 value) const
{
    for (const ValueName &n : valueNames) {
        if (n.value == value)
            return n.name;
    }
    return nullptr;
}

} // namespace setup
