// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/TranslatorNoWordException.h"

namespace nelib {

const char *TranslatorNoWordException::what() const noexcept
{
    return "TranslatorNoWordException";
}

} // namespace nelib
