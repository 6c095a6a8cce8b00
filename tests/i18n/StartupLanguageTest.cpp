// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/StartupLanguage.h"

#include <QStringList>
#include <QTemporaryDir>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace nelib;
using namespace Qt::StringLiterals;

// A number in the environment wins; else the locale chooses the first
// language whose name, code or code in parentheses matches it.
TEST(StartupLanguage, EnvironmentNumberWinsElseTheLocaleChooses)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"language.config"_s);
    testsupport::writeFile(path, "language 1 \"Deutsch\"\n"
                                 "language 2 \"Korean (ko)\"\n"
                                 "language 3 \"FR\"\n"
                                 "language 4 \"english\"\n"
                                 "language 5 \"German\"\n");
    testsupport::WarningCapture warnings;
    const QLocale german(QLocale::German, QLocale::Germany);
    const struct
    {
        const char *environment; // nullptr: unset
        QLocale locale;
        qint32 expected;
    } cases[] = {
        {"2", german, 2},
        {"0", german, 0},
        {"-1", german, -1},
        {" 7 ", german, 7},
        {"", german, 1},
        {"de", german, 1}, // warns
        {"99999999999", german, 1}, // warns
        {nullptr, QLocale(QLocale::German, QLocale::Austria), 1}, // native name, before "German"
        {nullptr, QLocale(QLocale::Korean), 2}, // code in parentheses
        {nullptr, QLocale(QLocale::French), 3}, // code, any case
        {nullptr, QLocale(QLocale::English, QLocale::UnitedKingdom), 4},
        {nullptr, QLocale(QLocale::Japanese), -1},
        {nullptr, QLocale::c(), -1},
    };
    for (const auto &c : cases) {
        if (c.environment)
            qputenv("REMOTE_SETUP_LANGUAGE", c.environment);
        else
            qunsetenv("REMOTE_SETUP_LANGUAGE");
        EXPECT_EQ(StartupLanguage::choose(path, c.locale), c.expected)
            << (c.environment ? c.environment : c.locale.name().toStdString());
    }
    qunsetenv("REMOTE_SETUP_LANGUAGE");
    EXPECT_EQ(warnings.messages.size(), 2) << warnings.messages.join(u'|').toStdString();
    EXPECT_EQ(StartupLanguage::choose(dir.filePath(u"absent"_s), german), -1);

    const std::pair<QString, bool> names[] = {
        {u" deutsch "_s, true}, {u"GERMAN"_s, true},   {u"Deutsch (DE)"_s, true},
        {u"Germany"_s, false},  {u"Code de"_s, false}, {u""_s, false},
    };
    for (const auto &[name, matches] : names)
        EXPECT_EQ(StartupLanguage::matches(name, german), matches) << name.toStdString();
}
