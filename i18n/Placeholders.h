// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <initializer_list>
#include <variant>

namespace nelib {

// Fills the printf-style placeholders of a translated text, so that no
// translation ever reaches a printf-style format: %d and %s take the next
// value in turn, a width (%2d) pads with blanks and a leading zero (%02d)
// with zeros. A placeholder with no value left, or of another kind, stays
// as it is written, so a translation with a stray "%s" shows it instead of
// crashing the program.
class Placeholders
{
public:
    using Value = std::variant<int, QString>;

    static QString fill(const QString &text, std::initializer_list<Value> values);
};

} // namespace nelib
