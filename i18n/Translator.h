// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <atomic>
#include <map>
#include <memory>

#include "i18n/LanguageConfigReader.h"
#include "i18n/Mutex.h"

// Marks an English text that is stored now and passed to nelib::tr() later,
// e.g. in a table of labels. The completeness check of language.config looks
// for exactly the spellings tr("...") and RS_TEXT("..."), so texts must be
// written as literals in one of these two forms.
#define RS_TEXT(s) s

namespace nelib {

// The translation table: loads language.config once and answers, for an
// English text, its word in the language chosen at start-up. The constructor
// publishes the object in one process-wide pointer and translate() always goes
// through it, so callers never hold the translator. The table is read-only
// after the load; one mutex guards the load and every lookup, so translate()
// may run on any thread. Destroy the translator only when no translate() can
// still be running.
class Translator : private LanguageConfigReader::Consumer
{
public:
    struct Language
    {
        qint32 number;
        QString name;
        std::map<qint32, QString> words; // item number -> translation
    };

    struct Item
    {
        qint32 number;
        QString text; // the English text
    };

    // currentLanguage 0 is the built-in English; a negative number or one
    // the file lacks turns translation off.
    Translator(const QString &path, qint32 currentLanguage);
    ~Translator() override;

    Translator(const Translator &) = delete;
    Translator &operator=(const Translator &) = delete;

    // The installed language.config (see DataFiles); needs a QCoreApplication.
    static QString defaultPath();

    // The text in the current language, or the text itself when there is
    // no translator, no such language or no word for the text. Never throws
    // TranslatorNoWordException.
    static QString translate(const QString &text);

    QString path() const { return m_path; }
    qint32 currentLanguage() const { return m_currentLanguage; }

private:
    void load();
    // Throws TranslatorNoWordException when the text or its word is missing.
    QString lookup(const QString &text, const Language &language) const;

    void language(qint32 number, const QString &name) override;
    void item(qint32 number, const QString &text) override;
    void word(qint32 itemNumber, qint32 languageNumber, const QString &text) override;

    static std::atomic<Translator *> s_instance;

    mutable Mutex m_mutex;
    const QString m_path;
    std::map<qint32, std::shared_ptr<Language>> m_languages;
    std::map<qint32, std::shared_ptr<Item>> m_items;
    std::map<QString, std::shared_ptr<Item>> m_itemsByText;
    const qint32 m_currentLanguage;
};

// Translates an English UTF-8 literal through the published translator.
// Inside QObject subclasses call it as nelib::tr(), since QObject::tr() would
// hide it.
QString tr(const char *english);

} // namespace nelib
