// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocale>
#include <QString>

namespace nelib {

// Chooses the language number the Translator starts with.
class StartupLanguage
{
public:
    // REMOTE_SETUP_LANGUAGE when it holds a decimal number (empty counts as
    // unset; anything else is ignored with a warning on stderr); otherwise the
    // first language of the config file, by number, that matches the locale;
    // otherwise -1, which leaves every text in English.
    static qint32 choose(const QString &configPath, const QLocale &locale = QLocale::system());

    // A language name matches when, ignoring case and surrounding spaces, it
    // equals the locale's native language name (with or without its
    // territory's variant), the English language name or the ISO 639 code,
    // or ends with that code in parentheses: "Deutsch", "German", "de" and
    // "German (de)" all match a German or Austrian locale.
    static bool matches(const QString &languageName, const QLocale &locale);
};

} // namespace nelib
