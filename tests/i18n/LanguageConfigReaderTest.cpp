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

void PrintTo(const Case &c, std::ostream *os)
{
    *os << c.name;
}

class LanguageConfigReaderTest : public testing::TestWithParam<Case>
{
};

QByteArray repeated(char c, qsizetype n)
{
    return QByteArray(n, c);
}

const QString x255 = QString(255, u'x');

} // namespace

TEST_P(LanguageConfigReaderTest, ReadsEntriesAndStopsWhereTheStreamWouldFail)
{
    const Case &c = GetParam();
    Recorder recorder;
    LanguageConfigReader reader(c.input);
    EXPECT_EQ(reader.read(recorder), c.status);
    EXPECT_EQ(recorder.entries.join(u'|'), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Format, LanguageConfigReaderTest,
    testing::Values(
        Case {"AllThreeKinds",
              "# comment\nlanguage 1 \"Deutsch\"\nitem 7 \"Save\"\nword 7 1 \"Speichern\"\n"
              "itemtranslation 7 1 \"Sichern\"",
              u"language 1 Deutsch|item 7 Save|word 7 1 Speichern|word 7 1 Sichern"_s,
              Status::Complete},
        Case {"KeywordsIgnoreCase",
              "LANGUAGE 2 \"a\" Item -3 \"b\" WoRd +4 5 \"c\" ItemTranslation 6 7 \"\"",
              u"language 2 a|item -3 b|word 4 5 c|word 6 7 "_s, Status::Complete},
        Case {"HashOnlyAtTokenStart", "a#b item 1 \"x\" #item 2 \"y\"\nitem 3 \"z\"",
              u"item 1 x|item 3 z"_s, Status::Complete},
        Case {"UnknownTokensSkippedOneByOne", "items 1 \"x\" item 2 \"y\"", u"item 2 y"_s,
              Status::Complete},
        Case {"TextSpansLinesAndSkipsToItsQuote", "item 1 junk \"two\nlines\"item 2\"tight\"",
              u"item 1 two\nlines|item 2 tight"_s, Status::Complete},
        Case {"NumberEndsAtFirstNonDigit", "item 12abc \"x\"", u"item 12 x"_s, Status::Complete},
        Case {"Qint32Limits", "item 2147483647 \"max\" item -2147483648 \"min\"",
              u"item 2147483647 max|item -2147483648 min"_s, Status::Complete},
        Case {"BadNumberStopsButKeepsEarlierEntries", "item 1 \"a\"\nitem x \"b\"\nitem 3 \"c\"",
              u"item 1 a"_s, Status::Failed},
        Case {"SignWithoutDigitsFails", "item - 1 \"a\"", QString(), Status::Failed},
        Case {"OverflowFails", "item 2147483648 \"a\"", QString(), Status::Failed},
        Case {"SecondNumberOfAWordChecked", "word 1 \"a\"", QString(), Status::Failed},
        Case {"KeywordAtEnd", "item 1 \"a\" item", u"item 1 a"_s, Status::Failed},
        Case {"EndBeforeOpeningQuote", "item 1 ", QString(), Status::Failed},
        Case {"EndInsideTextKeepsTheBytes", "item 1 \"open", u"item 1 open"_s, Status::Failed},
        Case {"EndInsideCommentIsNormal", "item 1 \"a\" # last", u"item 1 a"_s, Status::Complete},
        Case {"ZeroByteEndsText", QByteArray("item 1 \"ab\0cd\" item 2 \"e\"", 25),
              u"item 1 ab|item 2 e"_s, Status::Complete},
        Case {"Utf8Decoded", "word 1 2 \"\xed\x95\x9c\xea\xb8\x80 \xc3\xa4\"", u"word 1 2 한글 ä"_s,
              Status::Complete},
        Case {"CommentRestOf299Fits", "# " + repeated('c', 298) + "\nitem 1 \"a\"", u"item 1 a"_s,
              Status::Complete},
        Case {"CommentRestOf300Fails", "# " + repeated('c', 299) + "\nitem 1 \"a\"", QString(),
              Status::Failed},
        Case {"LongFirstTokenOfCommentIsFree", "#" + repeated('c', 1000) + "\nitem 1 \"a\"",
              u"item 1 a"_s, Status::Complete},
        Case {"Text255Fits", "item 1 \"" + repeated('x', 255) + "\" item 2 \"b\"",
              u"item 1 "_s + x255 + u"|item 2 b"_s, Status::Complete},
        Case {"Text256KeptCutThenStops", "item 1 \"" + repeated('x', 256) + "\" item 2 \"b\"",
              u"item 1 "_s + x255, Status::Failed},
        Case {"Skip255BeforeQuoteFits", "item 1" + repeated(' ', 255) + "\"a\"", u"item 1 a"_s,
              Status::Complete},
        Case {"Skip256BeforeQuoteFails", "item 1" + repeated(' ', 256) + "\"a\"", QString(),
              Status::Failed}));

TEST(LanguageConfigReader, ReportsWhereItStopped)
{
    Recorder recorder;
    LanguageConfigReader reader("item 1 \"a\"\nitem x");
    EXPECT_EQ(reader.read(recorder), Status::Failed);
    EXPECT_EQ(reader.position(), 16);

    LanguageConfigReader empty(QByteArrayView {});
    EXPECT_EQ(empty.read(recorder), Status::Complete);
    EXPECT_EQ(empty.position(), 0);
}
