#include "i18n/Translator.h"

#include <QTemporaryDir>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>
#include <vector>

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

class TranslatorTest : public testing::Test
{
protected:
    QString write(const QByteArray &bytes)
    {
        const QString path = dir.filePath(u"language.config"_s);
        testsupport::writeFile(path, bytes);
        return path;
    }

    QTemporaryDir dir;
};

} // namespace

TEST_F(TranslatorTest, AppliesReplacementAndLookupRules)
{
    const Translator translator(write(Config), 1);
    const std::pair<QString, QString> cases[] = {
        {u"Save"_s, u"Sichern"_s}, // the later word replaces the earlier
        {u"Cancel"_s, u""_s}, // an empty word is a translation
        {u"Close"_s, u"Schliessen"_s}, // both texts of item 3 share its word
        {u"Shut"_s, u"Schliessen"_s},
        {u"Early"_s, u"Early"_s}, // its word came before the item
        {u"Help"_s, u"Help"_s}, // item without a word
        {u"Line one\nline two"_s, u"Zeile eins\nZeile zwei"_s},
        {u"Open"_s, u"Acht"_s}, // a repeated text leads to its latest item
        {u"save"_s, u"save"_s}, // keys are case-sensitive
        {u"Save "_s, u"Save "_s}, // and exact
        {u"Not in the file"_s, u"Not in the file"_s},
    };
    for (const auto &[english, expected] : cases)
        EXPECT_EQ(Translator::translate(english), expected) << english.toStdString();
}

TEST_F(TranslatorTest, ReplacedLanguageLosesItsEarlierWords)
{
    const Translator translator(write(Config), 2);
    EXPECT_EQ(Translator::translate(u"Cancel"_s), u"Chwiso"_s);
    EXPECT_EQ(Translator::translate(u"Save"_s), u"Save"_s);
    EXPECT_EQ(translator.languageNames(), (std::map<qint32, QString> {{2, u"Hangul"_s}}));
}

TEST_F(TranslatorTest, LanguageZeroAbsentOrNegativeOrNoFileLeavesTextsAlone)
{
    const QString path = write(Config);
    const struct
    {
        QString path;
        qint32 language;
        std::size_t names;
    } cases[] = {
        {path, 0, 1}, // language 0 is held, just never looked up
        {path, -1, 3}, // nothing pruned for a language that is absent
        {path, 7, 3},
        {dir.filePath(u"absent.config"_s), 1, 0},
    };
    for (const auto &c : cases) {
        const Translator translator(c.path, c.language);
        EXPECT_EQ(Translator::translate(u"Save"_s), u"Save"_s) << c.language;
        EXPECT_EQ(translator.languageNames().size(), c.names) << c.language;
    }
}

TEST_F(TranslatorTest, ParseFailureKeepsWhatCameBefore)
{
    const Translator translator(write("language 1 \"D\" item 1 \"Save\" item 2 \"Open\"\n"
                                      "word 2 1 \"Auf\"\n"
                                      "word 1 1 \""
                                      + QByteArray(300, 'y')
                                      + "\"\n"
                                        "word 2 1 \"never read\""),
                                1);
    EXPECT_EQ(Translator::translate(u"Save"_s), QString(255, u'y'));
    EXPECT_EQ(Translator::translate(u"Open"_s), u"Auf"_s);
}

TEST_F(TranslatorTest, TranslateGoesThroughThePublishedInstance)
{
    const QString path = write(Config);
    auto first = std::make_unique<Translator>(path, 1);
    auto second = std::make_unique<Translator>(path, 0);
    EXPECT_EQ(Translator::instance(), second.get());
    EXPECT_EQ(Translator::translate(u"Save"_s), u"Save"_s);
    first.reset();
    EXPECT_EQ(Translator::instance(), second.get()) << "the older translator cleared the newer";
    second.reset();
    EXPECT_EQ(Translator::instance(), nullptr);
    EXPECT_EQ(Translator::translate(u"Save"_s), u"Save"_s);

    const Translator third(path, 1);
    EXPECT_EQ(tr("Save"), u"Sichern"_s);
    EXPECT_EQ(tr(RS_TEXT("Cancel")), u""_s);
    EXPECT_EQ(tr("Gr\xc3\xb6\xc3\x9f"
                 "e"),
              u"Größe"_s);
}

TEST_F(TranslatorTest, ConcurrentLookupsAgree)
{
    const Translator translator(write(Config), 1);
    std::vector<std::future<int>> workers;
    for (int t = 0; t < 4; ++t) {
        workers.push_back(std::async(std::launch::async, [] {
            int wrong = 0;
            for (int i = 0; i < 2000; ++i) {
                wrong += Translator::translate(u"Save"_s) != u"Sichern"_s;
                wrong += Translator::translate(u"Help"_s) != u"Help"_s;
            }
            return wrong;
        }));
    }
    for (auto &w : workers)
        EXPECT_EQ(w.get(), 0);
}
