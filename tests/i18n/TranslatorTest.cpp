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
    const QString path = write(Config);
    const QString absent = dir.filePath(u"absent.config"_s);
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
        {1, u"Save"_s, u"Save"_s, absent},
    };
    for (const auto &c : cases) {
        const Translator translator(c.file.isEmpty() ? path : c.file, c.language);
        EXPECT_EQ(Translator::translate(c.english), c.expected)
            << c.language << " " << c.english.toStdString();
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

TEST_F(TranslatorTest, TranslateGoesThroughTheNewestTranslator)
{
    const QString path = write(Config);
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
