// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/StartupLanguage.h"

#include <QFile>

#include <map>

#include "i18n/LanguageConfigReader.h"

namespace nelib {

namespace {

class LanguageNames : public LanguageConfigReader::Consumer
{
public:
    void language(qint32 number, const QString &name) override { names[number] = name; }
    void item(qint32, const QString &) override { }
    void word(qint32, qint32, const QString &) override { }

    std::map<qint32, QString> names;
};

} // namespace

qint32 StartupLanguage::choose(const QString &configPath, const QLocale &locale)
{
    const QString fromEnvironment = qEnvironmentVariable("REMOTE_SETUP_LANGUAGE");
    if (!fromEnvironment.isEmpty()) {
        bool ok = false;
        const qint32 number = fromEnvironment.toInt(&ok, 10);
        if (ok)
            return number;
        qWarning("REMOTE_SETUP_LANGUAGE=%s is not a language number; ignored",
                 qUtf8Printable(fromEnvironment));
    }

    QFile file(configPath);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    LanguageNames languages;
    LanguageConfigReader(file.readAll()).read(languages);
    for (const auto &[number, name] : languages.names) {
        if (matches(name, locale))
            return number;
    }
    return -1;
}

bool StartupLanguage::matches(const QString &languageName, const QLocale &locale)
{
    const QLocale::Language language = locale.language();
    // The C locale names no language, so it must not match one called "C".
    if (language == QLocale::C || language == QLocale::AnyLanguage)
        return false;

    const QString name = languageName.trimmed();
    const QString code = QLocale::languageToCode(language);
    const auto same = [&name](const QString &candidate) {
        return !candidate.isEmpty() && name.compare(candidate, Qt::CaseInsensitive) == 0;
    };
    // A territory can change the native name ("Österreichisches Deutsch"),
    // so the language's plain native name counts as well.
    return same(locale.nativeLanguageName()) || same(QLocale(language).nativeLanguageName())
           || same(QLocale::languageToString(language)) || same(code)
           || name.endsWith(u'(' + code + u')', Qt::CaseInsensitive);
}

} // namespace nelib
