// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/LanguageConfigReader.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace nelib {

namespace {

// The C locale's isspace(), without the locale lookup per byte.
bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isKeyword(QByteArrayView token, QByteArrayView lowerKeyword)
{
    if (token.size() != lowerKeyword.size())
        return false;
    for (qsizetype i = 0; i < token.size(); ++i) {
        char c = token[i];
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
        if (c != lowerKeyword[i])
            return false;
    }
    return true;
}

enum class Keyword { None, Language, Item, Word };

Keyword keywordOf(QByteArrayView token)
{
    if (isKeyword(token, "language"))
        return Keyword::Language;
    if (isKeyword(token, "item"))
        return Keyword::Item;
    if (isKeyword(token, "itemtranslation") || isKeyword(token, "word"))
        return Keyword::Word;
    return Keyword::None;
}

} // namespace

LanguageConfigReader::LanguageConfigReader(QByteArrayView bytes)
    : m_bytes(bytes)
{ }

LanguageConfigReader::Status LanguageConfigReader::read(Consumer &consumer)
{
    m_pos = 0;
    for (;;) {
        const QByteArrayView t = token();
        if (t.isEmpty())
            return Status::Complete;
        if (t.front() == '#') {
            if (!skipCommentRest())
                return Status::Failed;
            continue;
        }

        const Keyword keyword = keywordOf(t);
        if (keyword == Keyword::None)
            continue;

        qint32 first = 0;
        qint32 second = 0;
        if (!number(first) || (keyword == Keyword::Word && !number(second)))
            return Status::Failed;
        QString text;
        const Text found = quotedText(text);
        if (found == Text::Missing)
            return Status::Failed;

        switch (keyword) {
        case Keyword::Language:
            consumer.language(first, text);
            break;
        case Keyword::Item:
            consumer.item(first, text);
            break;
        case Keyword::Word:
            consumer.word(first, second, text);
            break;
        case Keyword::None:
            break;
        }

        if (found == Text::Cut)
            return Status::Failed;
    }
}

void LanguageConfigReader::skipSpace()
{
    while (!atEnd() && isSpace(m_bytes[m_pos]))
        ++m_pos;
}

QByteArrayView LanguageConfigReader::token()
{
    skipSpace();
    const qsizetype start = m_pos;
    while (!atEnd() && !isSpace(m_bytes[m_pos]))
        ++m_pos;
    return m_bytes.sliced(start, m_pos - start);
}

bool LanguageConfigReader::skipCommentRest()
{
    const qsizetype rest = m_bytes.size() - m_pos;
    const qsizetype window = std::min(rest, CommentLimit + 1);
    const void *end = std::memchr(m_bytes.data() + m_pos, '\n', size_t(window));
    if (end) {
        m_pos = static_cast<const char *>(end) - m_bytes.data() + 1;
        return true;
    }
    // A last line without '\n' ends the data normally as long as it fits.
    if (rest <= CommentLimit) {
        m_pos = m_bytes.size();
        return true;
    }
    m_pos += CommentLimit;
    return false;
}

bool LanguageConfigReader::number(qint32 &value)
{
    skipSpace();
    bool negative = false;
    if (!atEnd() && (m_bytes[m_pos] == '+' || m_bytes[m_pos] == '-')) {
        negative = m_bytes[m_pos] == '-';
        ++m_pos;
    }
    // One digit past qint32's range fits in qint64; stopping there keeps the
    // accumulator from overflowing on a long run of digits.
    constexpr qint64 Max = std::numeric_limits<qint32>::max();
    qint64 magnitude = 0;
    qsizetype digits = 0;
    while (!atEnd() && m_bytes[m_pos] >= '0' && m_bytes[m_pos] <= '9') {
        magnitude = magnitude * 10 + (m_bytes[m_pos] - '0');
        if (magnitude > Max + 1)
            return false;
        ++m_pos;
        ++digits;
    }
    if (digits == 0 || (!negative && magnitude > Max))
        return false;
    value = qint32(negative ? -magnitude : magnitude);
    return true;
}

bool LanguageConfigReader::quoteRun(QByteArrayView &run)
{
    const qsizetype rest = m_bytes.size() - m_pos;
    const qsizetype window = std::min(rest, TextLimit + 1);
    const void *quote = std::memchr(m_bytes.data() + m_pos, '"', size_t(window));
    if (quote) {
        const qsizetype length = static_cast<const char *>(quote) - m_bytes.data() - m_pos;
        run = m_bytes.sliced(m_pos, length);
        m_pos += length + 1;
        return true;
    }
    run = m_bytes.sliced(m_pos, std::min(rest, TextLimit));
    m_pos += run.size();
    return false;
}

LanguageConfigReader::Text LanguageConfigReader::quotedText(QString &text)
{
    QByteArrayView run;
    if (!quoteRun(run))
        return Text::Missing;
    const bool closed = quoteRun(run);
    if (const void *zero = std::memchr(run.data(), '\0', size_t(run.size())))
        run = run.first(static_cast<const char *>(zero) - run.data());
    // At most 255 bytes never decode to more UTF-16 units than the 500 that
    // translated texts are allowed to hold.
    text = QString::fromUtf8(run);
    return closed ? Text::Complete : Text::Cut;
}

} // namespace nelib
