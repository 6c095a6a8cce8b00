#include "i18n/StartupLanguage.h"

#include <QStringList>
#include <QTemporaryDir>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace nelib;
using namespace Qt::StringLiterals;

namespace {

class StartupLanguageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        path = dir.filePath(u"language.config"_s);
        testsupport::writeFile(path, "language 1 \"Deutsch\"\n"
                                     "language 2 \"Korean (ko)\"\n"
                                     "language 3 \"FR\"\n"
                                     "language 4 \"english\"\n"
                                     "language 5 \"German\"\n");
        warnings = std::make_unique<testsupport::WarningCapture>();
    }
    void TearDown() override
    {
        warnings.reset();
        qunsetenv("REMOTE_SETUP_LANGUAGE");
    }

    QTemporaryDir dir;
    QString path;
    std::unique_ptr<testsupport::WarningCapture> warnings;
};

} // namespace

TEST_F(StartupLanguageTest, EnvironmentNumberWins)
{
    const QLocale german(QLocale::German, QLocale::Germany);
    const std::pair<const char *, qint32> cases[] = {
        {"2", 2}, {"0", 0}, {"-1", -1}, {" 7 ", 7}, {"", 1}, {"de", 1}, {"99999999999", 1},
    };
    for (const auto &[value, expected] : cases) {
        qputenv("REMOTE_SETUP_LANGUAGE", value);
        EXPECT_EQ(StartupLanguage::choose(path, german), expected) << value;
    }
    EXPECT_EQ(warnings->messages.size(), 2) << warnings->messages.join(u'|').toStdString();
}

TEST_F(StartupLanguageTest, LocaleChoosesTheFirstMatchingLanguage)
{
    const std::pair<QLocale, qint32> cases[] = {
        {QLocale(QLocale::German, QLocale::Austria), 1}, // native name, before "German"
        {QLocale(QLocale::Korean), 2}, // code in parentheses
        {QLocale(QLocale::French), 3}, // code, any case
        {QLocale(QLocale::English, QLocale::UnitedKingdom), 4},
        {QLocale(QLocale::Japanese), -1},
        {QLocale::c(), -1},
    };
    for (const auto &[locale, expected] : cases)
        EXPECT_EQ(StartupLanguage::choose(path, locale), expected) << locale.name().toStdString();
    EXPECT_EQ(StartupLanguage::choose(dir.filePath(u"absent"_s), QLocale(QLocale::German)), -1);
}

TEST_F(StartupLanguageTest, MatchesNameCodeOrCodeInParentheses)
{
    const QLocale german(QLocale::German);
    EXPECT_TRUE(StartupLanguage::matches(u" deutsch "_s, german));
    EXPECT_TRUE(StartupLanguage::matches(u"GERMAN"_s, german));
    EXPECT_TRUE(StartupLanguage::matches(u"Deutsch (DE)"_s, german));
    EXPECT_FALSE(StartupLanguage::matches(u"Germany"_s, german));
    EXPECT_FALSE(StartupLanguage::matches(u"Code de"_s, german));
    EXPECT_FALSE(StartupLanguage::matches(u""_s, german));
}
