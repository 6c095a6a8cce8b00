// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QString>

namespace nelib {

// Reads language.config: whitespace-separated tokens from a byte stream. The
// rules mirror the stream reads the file format grew up with, limits included,
// so that a file behaves the same wherever it is read:
//
// - Whitespace is ' ', '\t', '\n', '\v', '\f' and '\r'; any other byte,
//   NUL and bytes >= 0x80 included, belongs to a token.
// - A token beginning with '#' discards the rest of its line: at most 299
//   bytes after the token, then the '\n' or the end of the data. A longer
//   rest fails the parse. Only a leading '#' counts.
// - Keywords are ASCII case-insensitive: "language" number text,
//   "item" number text, "itemtranslation" or "word" item language text. Any
//   other token is skipped on its own.
// - A number reads like `>> int`: leading whitespace, an optional sign, at
//   least one decimal digit, within qint32. It ends at the first non-digit,
//   which stays for the next read. Anything else fails the parse.
// - A quoted text skips up to and including the next '"', then takes the
//   bytes up to the next '"', which is consumed. Each run may hold at most 255
//   bytes before its quote; the text may span lines and has no escapes. A zero
//   byte ends the text early, the rest up to the quote is dropped. The bytes
//   are decoded as UTF-8; invalid sequences become U+FFFD.
//
// A failure stops the parse; every entry reported before it stands. How the
// entry being read ends:
// - a bad number, or no '"' within 256 bytes before the text: not reported;
// - the end of the data before the opening '"': not reported;
// - a text longer than 255 bytes: reported cut to 255 bytes, then the parse
//   fails;
// - the end of the data inside a text (no closing '"'): reported with the
//   bytes up to the end, then the parse fails.
// The end of the data between tokens or inside a comment ends the parse
// normally. A UTF-8 byte-order mark is no exception: it is part of the first
// token, so a file must not start with one when its first line is a comment.
class LanguageConfigReader
{
public:
    // Receives the entries in file order. Which entry wins when numbers or
    // texts repeat is the consumer's decision.
    class Consumer
    {
    public:
        virtual ~Consumer() = default;
        virtual void language(qint32 number, const QString &name) = 0;
        virtual void item(qint32 number, const QString &text) = 0;
        virtual void word(qint32 item, qint32 language, const QString &text) = 0;
    };

    enum class Status {
        Complete, // the data ended where an entry could begin
        Failed, // a limit, a bad number or a truncated entry stopped the parse
    };

    static constexpr qsizetype CommentLimit = 299;
    static constexpr qsizetype TextLimit = 255;

    explicit LanguageConfigReader(QByteArrayView bytes);

    Status read(Consumer &consumer);

    // The byte offset at which the last read() stopped.
    qsizetype position() const { return m_pos; }

private:
    enum class Text { Complete, Cut, Missing };

    bool atEnd() const { return m_pos >= m_bytes.size(); }
    void skipSpace();
    QByteArrayView token();
    bool skipCommentRest();
    bool number(qint32 &value);
    // The run before the next '"', which is consumed. False when no quote
    // follows within TextLimit bytes; the run then holds the bytes read.
    bool quoteRun(QByteArrayView &run);
    Text quotedText(QString &text);

    QByteArrayView m_bytes;
    qsizetype m_pos = 0;
};

} // namespace nelib
