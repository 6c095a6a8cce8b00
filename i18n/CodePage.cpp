// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/CodePage.h"

#include <QtEndian>

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <iconv.h>

namespace nelib {

namespace {

// Windows-1252 as iconv reads it, built in, so that a session's start loads
// none of iconv's modules for the code page it nearly always uses. Bytes
// 0x80 to 0x9F; zero where the code page defines no character. Every other
// byte is the code point of its value.
constexpr char16_t Windows1252Controls[32]
    = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
       0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
       0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void windows1252(std::array<char16_t, 256> &table, std::bitset<256> &defined)
{
    for (int b = 0; b < 256; ++b) {
        const char16_t unit = b >= 0x80 && b < 0xA0 ? Windows1252Controls[b - 0x80] : char16_t(b);
        table[b] = unit ? unit : char16_t(b);
        defined.set(b, unit != 0 || b == 0);
    }
}

} // namespace

CodePage::CodePage(const QByteArray &name)
{
    // Until a table is built every byte stands for itself (ISO-8859-1), which
    // is what remains should even Windows-1252 be missing from iconv.
    for (std::size_t b = 0; b < m_toUnicode.size(); ++b)
        m_toUnicode[b] = char16_t(b);
    m_name = "ISO-8859-1";

    if (!name.isEmpty() && build(name))
        return;
    if (!name.isEmpty())
        qWarning("code page %s is unknown or not single-byte; using %s", name.constData(),
                 DefaultName);
    if (!build(DefaultName)) {
        qWarning("code page %s is not available; using ISO-8859-1", DefaultName);
        build({});
    }
}

const CodePage &CodePage::system()
{
    static const CodePage codePage(qgetenv("REMOTE_SETUP_CODEPAGE"));
    return codePage;
}

QString CodePage::decode(QByteArrayView bytes) const
{
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        if (byte == '\0')
            break;
        text.append(QChar(m_toUnicode[uchar(byte)]));
    }
    return text;
}

QByteArray CodePage::encode(QStringView text, qsizetype maxBytes) const
{
    QByteArray bytes;
    bytes.reserve(maxBytes >= 0 ? std::min(maxBytes, text.size()) : text.size());
    for (qsizetype i = 0; i < text.size() && (maxBytes < 0 || bytes.size() < maxBytes); ++i) {
        const char16_t unit = text[i].unicode();
        // A surrogate pair is one character outside every single-byte code
        // page: one substitute for both halves.
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        bytes.append(byteFor(unit));
    }
    return bytes;
}

// An empty name rebuilds the reverse map of the current table.
bool CodePage::build(const QByteArray &name)
{
    std::array<char16_t, 256> table = m_toUnicode;
    std::bitset<256> defined;
    if (name == DefaultName) {
        windows1252(table, defined);
        m_name = name;
    } else if (!name.isEmpty()) {
        const iconv_t cd = iconv_open("UTF-32LE", name.constData());
        if (cd == iconv_t(-1))
            return false;
        bool singleByte = true;
        for (int b = 0; b < 256 && singleByte; ++b) {
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
            char in = char(b);
            char *inPtr = &in;
            std::size_t inLeft = 1;
            char out[16];
            char *outPtr = out;
            std::size_t outLeft = sizeof out;
            if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == std::size_t(-1)) {
                // EILSEQ: a byte the code page leaves undefined keeps its own
                // value. EINVAL: the byte begins a multi-byte sequence.
                singleByte = errno == EILSEQ;
                table[b] = char16_t(b);
                continue;
            }
            // Stateful encodings produce nothing for a shift byte; a byte
            // must give exactly one character of the Basic Multilingual Plane.
            iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
            const std::size_t produced = sizeof out - outLeft;
            const quint32 codePoint = qFromLittleEndian<quint32>(out);
            singleByte
                = produced == 4 && codePoint <= 0xFFFF && !QChar::isSurrogate(char32_t(codePoint));
            table[b] = char16_t(codePoint);
            defined.set(b);
        }
        iconv_close(cd);
        if (!singleByte)
            return false;
        m_name = name;
    }
    m_toUnicode = table;

    // Defined bytes claim their characters first, so an undefined byte whose
    // value collides with a defined character cannot take it over.
    m_fromUnicode.clear();
    std::bitset<0x10000> taken;
    for (const bool definedPass : {true, false}) {
        for (int b = 0; b < 256; ++b) {
            const char16_t unit = m_toUnicode[b];
            if (defined.test(b) == definedPass && !taken.test(unit)) {
                taken.set(unit);
                m_fromUnicode.emplace_back(unit, char(b));
            }
        }
    }
    std::sort(m_fromUnicode.begin(), m_fromUnicode.end());
    // The code page's own question mark; 0x3F when it has none.
    m_substitute = '?';
    m_substitute = byteFor(u'?');
    return true;
}

char CodePage::byteFor(char16_t unit) const
{
    const auto it = std::lower_bound(
        m_fromUnicode.begin(), m_fromUnicode.end(), std::make_pair(unit, char(0)),
        [](const auto &a, const auto &b) { return a.first < b.first; });
    return it != m_fromUnicode.end() && it->first == unit ? it->second : m_substitute;
}

} // namespace nelib
