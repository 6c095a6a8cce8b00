// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>

namespace nelib {

// Raised inside the Translator when a text has no word in the current
// language; Translator::translate() catches it and shows the English text.
class TranslatorNoWordException : public std::exception
{
public:
    const char *what() const noexcept override;
};

} // namespace nelib
