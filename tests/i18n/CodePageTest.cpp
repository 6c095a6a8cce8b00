#include "i18n/CodePage.h"
#include "tests/TestSupport.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace nelib;
using namespace Qt::StringLiterals;

namespace {

QByteArray allBytesButZero()
{
    QByteArray bytes;
    for (int b = 1; b < 256; ++b)
        bytes.append(char(b));
    return bytes;
}

} // namespace

TEST(CodePage, EveryByteRoundTrips)
{
    for (const char *name : {"", "KOI8-R", "CP437"}) {
        const CodePage codePage {QByteArray(name)};
        const QString decoded = codePage.decode(allBytesButZero());
        ASSERT_EQ(decoded.size(), 255) << name;
        EXPECT_EQ(codePage.encode(decoded), allBytesButZero()) << name;
    }
}

TEST(CodePage, DecodesWindows1252)
{
    const CodePage codePage;
    EXPECT_EQ(codePage.name(), "WINDOWS-1252");
    EXPECT_EQ(codePage.decode("\x80\x81\x8d\x8f\x90\x9d\x9f\xe9"),
              u"\u20ac\u0081\u008d\u008f\u0090\u009d\u0178\u00e9"_s);
    EXPECT_EQ(codePage.decode(QByteArrayView("ab\0cd", 5)), u"ab"_s) << "zero padding ends text";
}

TEST(CodePage, EncodesUnmappableAsQuestionMarkAndRespectsTheLimit)
{
    const CodePage codePage;
    EXPECT_EQ(codePage.encode(u"a\u20ac\ud55c\U0001F600b\u0080"_s), "a\x80??b?");
    EXPECT_EQ(codePage.encode(u"\xe9t\xe9"_s, 2), "\xe9t");
    EXPECT_EQ(codePage.encode(u"abc"_s, 0), "");
    EXPECT_EQ(codePage.encode(QString(QChar(0xd800)) + u'x'), "?x") << "lone surrogate";
}

TEST(CodePage, NamedCodePageOrWindows1252WithAWarning)
{
    testsupport::WarningCapture warnings;
    const CodePage cyrillic("KOI8-R");
    const CodePage multiByte("UTF-8");
    const CodePage unknown("NO-SUCH-CODEPAGE");

    EXPECT_EQ(cyrillic.name(), "KOI8-R");
    EXPECT_EQ(cyrillic.decode("\xc1"), u"\u0430"_s);
    EXPECT_EQ(cyrillic.encode(u"\u0430\u20ac"_s), "\xc1?");
    EXPECT_EQ(multiByte.name(), "WINDOWS-1252");
    EXPECT_EQ(unknown.name(), "WINDOWS-1252");
    EXPECT_EQ(warnings.messages.size(), 2) << warnings.messages.join(u'|').toStdString();
}

// The system code page is built once per process, so the override is checked
// in a process of its own.
TEST(CodePageDeathTest, SystemHonoursTheEnvironment)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            qputenv("REMOTE_SETUP_CODEPAGE", "KOI8-R");
            std::exit(CodePage::system().name() == "KOI8-R" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
