// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <array>
#include <utility>
#include <vector>

namespace nelib {

// Conversion between QString and the system's single-byte code page, in
// which the recorder keeps its texts (camera titles, passwords). The table is
// built once from glibc's iconv. Bytes the code page leaves undefined decode
// to the code point of the same value (0x81 -> U+0081 in Windows-1252), so
// every byte survives decode() then encode(); a character without a byte
// encodes as '?'.
class CodePage
{
public:
    static constexpr const char *DefaultName = "WINDOWS-1252";

    // An empty name means Windows-1252. A name iconv does not know, or one
    // that is not a single-byte code page, falls back to Windows-1252 with a
    // warning on stderr.
    explicit CodePage(const QByteArray &name = {});

    // The code page named by REMOTE_SETUP_CODEPAGE, built on first use.
    static const CodePage &system();

    // The code page in use after any fallback.
    QByteArray name() const { return m_name; }

    // Stops at the first zero byte: record text fields are zero-padded.
    QString decode(QByteArrayView bytes) const;
    // At most maxBytes bytes when maxBytes >= 0; no terminator is added.
    QByteArray encode(QStringView text, qsizetype maxBytes = -1) const;

private:
    bool build(const QByteArray &name);
    char byteFor(char16_t unit) const;

    QByteArray m_name;
    std::array<char16_t, 256> m_toUnicode;
    std::vector<std::pair<char16_t, char>> m_fromUnicode; // sorted by code unit
    char m_substitute = '?';
};

} // namespace nelib
