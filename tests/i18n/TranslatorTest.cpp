// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Translator.h"

#include <QTemporaryDir>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

using namespace nelib;
using namespace Qt::StringLiterals;

namespace {

// Exercises each replacement rule; the comments say which entries must lose.
const QByteArray Config = R"(# test table
language 1 "Deutsch"
language 2 "Korean"
word 4 1 "Frueh"
item 1 "Save"
item 2 "Cancel"
item 3 "Close"
item 3 "Shut"
item 4 "Early"
item 5 "Help"
item 6 "Line one
line two"
item 7 "Open"
item 8 "Open"
word 1 1 "Speichern"
word 1 1 "Sichern"
word 2 1 ""
word 3 1 "Schliessen"
word 6 1 "Zeile eins
Zeile zwei"
word 7 1 "Sieben"
word 8 1 "Acht"
word 9 1 "unknown item"
word 1 9 "unknown language"
word 1 2 "lost with its language"
language 2 "Hangul"
word 2 2 "Chwiso"
language 0 "English"
word 1 0 "never used"
)";

// A parse that fails keeps what came before the failure.
const QByteArray Broken = "language 1 \"D\" item 1 \"Save\" item 2 \"Open\"\n"
                          "word 2 1 \"Auf\"\n"
                          "word 1 1 \""
                          + QByteArray(300, 'y') + "\"\nword 2 1 \"never read\"";

class TranslatorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        testsupport::writeFile(path, Config);
        testsupport::writeFile(broken, Broken);
    }

    QTemporaryDir dir;
    const QString path = dir.filePath(u"language.config"_s);
    const QString broken = dir.filePath(u"broken.config"_s);
};

} // namespace

TEST_F(TranslatorTest, AppliesReplacementAndLookupRules)
{
    const struct
    {
        qint32 language;
        QString english;
        QString expected;
        QString file = {};
    } cases[] = {
        {1, u"Save"_s, u"Sichern"_s}, // the later word replaces the earlier
        {1, u"Cancel"_s, u""_s}, // an empty word is a translation
        {1, u"Close"_s, u"Schliessen"_s}, // both texts of item 3 share its word
        {1, u"Shut"_s, u"Schliessen"_s},
        {1, u"Early"_s, u"Early"_s}, // its word came before the item
        {1, u"Help"_s, u"Help"_s}, // item without a word
        {1, u"Line one\nline two"_s, u"Zeile eins\nZeile zwei"_s},
        {1, u"Open"_s, u"Acht"_s}, // a repeated text leads to its latest item
        {1, u"save"_s, u"save"_s}, // keys are case-sensitive
        {1, u"Save "_s, u"Save "_s}, // and exact
        {1, u"Not in the file"_s, u"Not in the file"_s},
        {2, u"Cancel"_s, u"Chwiso"_s}, // a replaced language loses its earlier words
        {2, u"Save"_s, u"Save"_s},
        {0, u"Save"_s, u"Save"_s}, // language 0 is never looked up
        {-1, u"Save"_s, u"Save"_s},
        {7, u"Save"_s, u"Save"_s},
        {1, u"Save"_s, u"Save"_s, dir.filePath(u"absent.config"_s)},
        {1, u"Save"_s, QString(255, u'y'), broken},
        {1, u"Open"_s, u"Auf"_s, broken},
    };
    for (const auto &c : cases) {
        const Translator translator(c.file.isEmpty() ? path : c.file, c.language);
        EXPECT_EQ(Translator::translate(c.english), c.expected)
            << c.language << " " << c.english.toStdString() << " " << c.file.toStdString();
    }
}

TEST_F(TranslatorTest, TranslateGoesThroughTheNewestTranslator)
{
    auto first = std::make_unique<Translator>(path, 1);
    auto second = std::make_unique<Translator>(path, 2);
    EXPECT_EQ(Translator::translate(u"Cancel"_s), u"Chwiso"_s);
    first.reset();
    EXPECT_EQ(Translator::translate(u"Cancel"_s), u"Chwiso"_s)
        << "the older translator cleared the newer";
    second.reset();
    EXPECT_EQ(Translator::translate(u"Cancel"_s), u"Cancel"_s);

    const Translator third(path, 1);
    EXPECT_EQ(tr("Save"), u"Sichern"_s);
    EXPECT_EQ(tr(RS_TEXT("Cancel")), u""_s);
    EXPECT_EQ(tr("Gr\xc3\xb6\xc3\x9f"
                 "e"),
              u"Größe"_s);
}
