// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/LanguageConfigReader.h"

#include <QStringList>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace nelib;
using namespace Qt::StringLiterals;
using Status = LanguageConfigReader::Status;

namespace {

// Writes every entry as one line so that a case compares a single list.
class Recorder : public LanguageConfigReader::Consumer
{
public:
    void language(qint32 number, const QString &name) override
    {
        entries << u"language %1 %2"_s.arg(number).arg(name);
    }
    void item(qint32 number, const QString &text) override
    {
        entries << u"item %1 %2"_s.arg(number).arg(text);
    }
    void word(qint32 item, qint32 language, const QString &text) override
    {
        entries << u"word %1 %2 %3"_s.arg(item).arg(language).arg(text);
    }

    QStringList entries;
};

struct Case
{
    const char *name;
    QByteArray input;
    QString expected; // the entries joined by |
    Status status;
};

const QString x255 = QString(255, u'x');

} // namespace

TEST(LanguageConfigReader, ReadsEntriesAndStopsWhereTheStreamWouldFail)
{
    const Case cases[] = {
        {"AllThreeKinds",
         "# comment\nlanguage 1 \"Deutsch\"\nitem 7 \"Save\"\nword 7 1 \"Speichern\"\n"
         "itemtranslation 7 1 \"Sichern\"",
         u"language 1 Deutsch|item 7 Save|word 7 1 Speichern|word 7 1 Sichern"_s, Status::Complete},
        {"KeywordsIgnoreCase",
         "LANGUAGE 2 \"a\" Item -3 \"b\" WoRd +4 5 \"c\" ItemTranslation 6 7 \"\"",
         u"language 2 a|item -3 b|word 4 5 c|word 6 7 "_s, Status::Complete},
        {"HashOnlyAtTokenStart", "a#b item 1 \"x\" #item 2 \"y\"\nitem 3 \"z\"",
         u"item 1 x|item 3 z"_s, Status::Complete},
        {"UnknownTokensSkippedOneByOne", "items 1 \"x\" item 2 \"y\"", u"item 2 y"_s,
         Status::Complete},
        {"TextSpansLinesAndSkipsToItsQuote", "item 1 junk \"two\nlines\"item 2\"tight\"",
         u"item 1 two\nlines|item 2 tight"_s, Status::Complete},
        {"NumberEndsAtFirstNonDigit", "item 12abc \"x\"", u"item 12 x"_s, Status::Complete},
        {"Qint32Limits", "item 2147483647 \"max\" item -2147483648 \"min\"",
         u"item 2147483647 max|item -2147483648 min"_s, Status::Complete},
        {"BadNumberStopsButKeepsEarlierEntries", "item 1 \"a\"\nitem x \"b\"\nitem 3 \"c\"",
         u"item 1 a"_s, Status::Failed},
        {"SignWithoutDigitsFails", "item - 1 \"a\"", QString(), Status::Failed},
        {"OverflowFails", "item 2147483648 \"a\"", QString(), Status::Failed},
        {"SecondNumberOfAWordChecked", "word 1 \"a\"", QString(), Status::Failed},
        {"KeywordAtEnd", "item 1 \"a\" item", u"item 1 a"_s, Status::Failed},
        {"EndBeforeOpeningQuote", "item 1 ", QString(), Status::Failed},
        {"EndInsideTextKeepsTheBytes", "item 1 \"open", u"item 1 open"_s, Status::Failed},
        {"EndInsideCommentIsNormal", "item 1 \"a\" # last", u"item 1 a"_s, Status::Complete},
        {"ZeroByteEndsText", QByteArray("item 1 \"ab\0cd\" item 2 \"e\"", 25),
         u"item 1 ab|item 2 e"_s, Status::Complete},
        {"Utf8Decoded", "word 1 2 \"\xed\x95\x9c\xea\xb8\x80 \xc3\xa4\"", u"word 1 2 한글 ä"_s,
         Status::Complete},
        {"CommentRestOf299Fits", "# " + QByteArray(298, 'c') + "\nitem 1 \"a\"", u"item 1 a"_s,
         Status::Complete},
        {"CommentRestOf300Fails", "# " + QByteArray(299, 'c') + "\nitem 1 \"a\"", QString(),
         Status::Failed},
        {"LongFirstTokenOfCommentIsFree", "#" + QByteArray(1000, 'c') + "\nitem 1 \"a\"",
         u"item 1 a"_s, Status::Complete},
        {"Text255Fits", "item 1 \"" + QByteArray(255, 'x') + "\" item 2 \"b\"",
         u"item 1 "_s + x255 + u"|item 2 b"_s, Status::Complete},
        {"Text256KeptCutThenStops", "item 1 \"" + QByteArray(256, 'x') + "\" item 2 \"b\"",
         u"item 1 "_s + x255, Status::Failed},
        {"Skip255BeforeQuoteFits", "item 1" + QByteArray(255, ' ') + "\"a\"", u"item 1 a"_s,
         Status::Complete},
        {"Skip256BeforeQuoteFails", "item 1" + QByteArray(256, ' ') + "\"a\"", QString(),
         Status::Failed},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Recorder recorder;
        LanguageConfigReader reader(c.input);
        EXPECT_EQ(reader.read(recorder), c.status);
        EXPECT_EQ(recorder.entries.join(u'|'), c.expected);
    }
}
