// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/CodePage.h"
#include "tests/TestSupport.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace nelib;
using namespace Qt::StringLiterals;

TEST(CodePage, EveryByteRoundTrips)
{
    QByteArray bytes;
    for (int b = 1; b < 256; ++b)
        bytes.append(char(b));
    for (const char *name : {"", "KOI8-R", "CP437"}) {
        const CodePage codePage {QByteArray(name)};
        const QString decoded = codePage.decode(bytes);
        ASSERT_EQ(decoded.size(), 255) << name;
        EXPECT_EQ(codePage.encode(decoded), bytes) << name;
    }
    // The built-in Windows-1252 is iconv's.
    EXPECT_EQ(CodePage().decode(bytes), CodePage("CP1252").decode(bytes));
}

// A code page of one byte per character by its name, else Windows-1252
// with a warning. Zero padding ends a text, and a character the code page
// lacks is written as a question mark.
TEST(CodePage, DecodesAndEncodesInTheNamedSingleByteCodePage)
{
    testsupport::WarningCapture warnings;
    const CodePage windows;
    const CodePage cyrillic("KOI8-R");
    const CodePage multiByte("UTF-8");
    const CodePage unknown("NO-SUCH-CODEPAGE");
    EXPECT_EQ(warnings.messages.size(), 2) << warnings.messages.join(u'|').toStdString();
    EXPECT_EQ(
        QList<QByteArray>({windows.name(), cyrillic.name(), multiByte.name(), unknown.name()}),
        QList<QByteArray>({"WINDOWS-1252", "KOI8-R", "WINDOWS-1252", "WINDOWS-1252"}));

    EXPECT_EQ(windows.decode("\x80\x81\x8d\x8f\x90\x9d\x9f\xe9"),
              u"\u20ac\u0081\u008d\u008f\u0090\u009d\u0178\u00e9"_s);
    EXPECT_EQ(windows.decode(QByteArrayView("ab\0cd", 5)), u"ab"_s);
    EXPECT_EQ(cyrillic.decode("\xc1"), u"\u0430"_s);
    EXPECT_EQ(windows.encode(u"a\u20ac\ud55c\U0001F600b\u0080"_s), "a\x80??b?");
    EXPECT_EQ(windows.encode(QString(QChar(0xd800)) + u'x'), "?x") << "lone surrogate";
    EXPECT_EQ(windows.encode(u"\xe9t\xe9"_s, 2), "\xe9t");
    EXPECT_EQ(windows.encode(u"abc"_s, 0), "");
    EXPECT_EQ(cyrillic.encode(u"\u0430\u20ac"_s), "\xc1?");
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
