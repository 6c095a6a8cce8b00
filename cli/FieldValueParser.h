// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <optional>

namespace nelib {
class CodePage;
}

namespace cli {

// One value of `set`, as the bytes of one element of its field.
//
// Numbers: a value name of the field ("On", "High"; any case), a decimal or
// 0x-hexadecimal number, the dump's number with its name ("0xFF03 (Low)"),
// and for fields with bit names a comma-separated list of them ("Ch 01,Ch 03"). Named fields
// without a range take only their names' values; a range, where the table gives one, bounds the
// rest. Text: the text itself in the code page, or quoted as the dump shows it ("\"A\x41\""). Raw
// bytes: dotted decimal for addresses, else hex pairs.
class FieldValueParser
{
public:
    explicit FieldValueParser(const nelib::CodePage &codePage);

    // The element's bytes (little-endian for numbers, zero-padded for text),
    // or nullopt with `error` saying why the value does not fit.
    std::optional<QByteArray> parse(const setup::FieldInfo &field, QStringView value,
                                    QString *error) const;

private:
    std::optional<quint32> number(const setup::FieldInfo &field, QStringView value,
                                  QString *error) const;
    std::optional<QByteArray> text(const setup::FieldInfo &field, QStringView value,
                                   QString *error) const;
    std::optional<QByteArray> raw(const setup::FieldInfo &field, QStringView value,
                                  QString *error) const;

    const nelib::CodePage &m_codePage;
};

} // namespace cli
