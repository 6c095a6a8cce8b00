// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/LanguageConfigReader.h"
#include "setup/FieldTable.h"
#include "tests/TestSupport.h"

#include <QDirIterator>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

// Checks the shipped language.config against the program: every text the
// program passes to the translator must be an item with a word in every
// language, and each word must keep the placeholders of its text.
namespace {

struct ShippedFile : nelib::LanguageConfigReader::Consumer
{
    std::map<qint32, QString> languages;
    std::map<QString, qint32> itemsByText;
    std::map<qint32, QString> items;
    std::map<std::pair<qint32, qint32>, QString> words; // (item, language)

    void language(qint32 number, const QString &name) override { languages[number] = name; }
    void item(qint32 number, const QString &text) override
    {
        items[number] = text;
        itemsByText[text] = number;
    }
    void word(qint32 item, qint32 language, const QString &text) override
    {
        words[{item, language}] = text;
    }
};

QString decodeCLiteral(const QString &body)
{
    QString text;
    for (qsizetype i = 0; i < body.size(); ++i) {
        if (body[i] != u'\\' || i + 1 == body.size()) {
            text += body[i];
            continue;
        }
        // \n, \r and \t; any other escaped character stands for itself.
        const qsizetype escape = u"nrt"_s.indexOf(body[++i]);
        text += escape < 0 ? body[i] : u"\n\r\t"_s[escape];
    }
    return text;
}

// Texts in tr("...") and RS_TEXT("..."), adjacent literals joined.
std::set<QString> textsShownByTheProgram()
{
    static const QRegularExpression call(
        uR"re((?:\btr|\bRS_TEXT)\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re"_s);
    static const QRegularExpression literal(uR"re("((?:[^"\\]|\\.)*)")re"_s);
    std::set<QString> texts;
    for (const char *folder :
         {"app", "session", "setup", "i18n", "pages", "cli", "sim", "firmware"}) {
        QDirIterator it(testsupport::sourceDir() + u'/' + QLatin1StringView(folder),
                        {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            // Comment lines may quote the spellings themselves.
            static const QRegularExpression commentLine(u"^\\s*//.*$"_s,
                                                        QRegularExpression::MultilineOption);
            const QString source
                = QString::fromUtf8(testsupport::readFile(it.next())).remove(commentLine);
            for (const auto &m : call.globalMatch(source)) {
                QString text;
                for (const auto &part : literal.globalMatch(m.captured(1)))
                    text += decodeCLiteral(part.captured(1));
                texts.insert(text);
            }
        }
    }
    // The pages show the labels of the fields they bind, with their value and bit names.
    for (const setup::FieldGroup &group : setup::FieldTable::groups()) {
        for (const setup::FieldInfo &field : group.fields) {
            if (!field.label)
                continue;
            texts.insert(QString::fromLatin1(field.label));
            for (const auto names : {field.valueNames, field.bitNames}) {
                for (const setup::ValueName &name : names) {
                    // Plain numbers read the same in every language.
                    if (!QString::fromLatin1(name.name).contains(QRegularExpression(u"\\D"_s)))
                        continue;
                    texts.insert(QString::fromLatin1(name.name));
                }
            }
        }
    }
    return texts;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression format(u"%[0-9]*[sd]"_s);
    QStringList found;
    for (const auto &m : format.globalMatch(text))
        found.append(m.captured());
    return found;
}

} // namespace

TEST(LanguageConfig, EveryTextTheProgramShowsHasAWordInEveryLanguageWithItsPlaceholders)
{
    ShippedFile file;
    const QByteArray bytes
        = testsupport::readFile(testsupport::sourceDir() + u"/i18n/language.config"_s);
    nelib::LanguageConfigReader reader(bytes);
    ASSERT_EQ(reader.read(file), nelib::LanguageConfigReader::Status::Complete)
        << "the parse stopped at byte " << reader.position();
    ASSERT_GE(file.languages.size(), 2u);
    EXPECT_EQ(file.items.size(), file.itemsByText.size()) << "two items share an English text";
    for (const auto &[number, text] : file.items) {
        for (const auto &[language, name] : file.languages) {
            const auto word = file.words.find({number, language});
            if (word == file.words.end()) {
                ADD_FAILURE() << "item " << number << " has no " << name.toStdString() << " word";
                continue;
            }
            EXPECT_EQ(placeholders(word->second), placeholders(text))
                << "item " << number << " in " << name.toStdString();
        }
    }

    const std::set<QString> texts = textsShownByTheProgram();
    ASSERT_FALSE(texts.empty());
    for (const QString &text : texts) {
        // The file format cannot carry a double quote; such texts stay English.
        if (text.contains(u'"'))
            continue;
        const auto item = file.itemsByText.find(text);
        if (item == file.itemsByText.end()) {
            ADD_FAILURE() << "no item for \"" << text.toStdString() << "\"";
            continue;
        }
        for (const auto &[language, name] : file.languages)
            EXPECT_TRUE(file.words.count({item->second, language}))
                << name.toStdString() << " lacks \"" << text.toStdString() << "\"";
    }
}
