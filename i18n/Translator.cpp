// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Translator.h"

#include <QFile>

#include "i18n/AutoMutex.h"
#include "i18n/DataFiles.h"
#include "i18n/TranslatorNoWordException.h"

namespace nelib {

std::atomic<Translator *> Translator::s_instance {nullptr};

Translator::Translator(const QString &path, qint32 currentLanguage)
    : m_path(path)
    , m_currentLanguage(currentLanguage)
{
    s_instance.store(this);
    load();
}

Translator::~Translator()
{
    Translator *self = this;
    s_instance.compare_exchange_strong(self, nullptr);
}

QString Translator::defaultPath()
{
    return DataFiles::path(QStringLiteral("language.config"));
}

QString Translator::translate(const QString &text)
{
    const Translator *self = s_instance.load();
    // Language 0 is the English the program is written in.
    if (!self || self->m_currentLanguage == 0)
        return text;

    AutoMutex lock(self->m_mutex);
    const auto language = self->m_languages.find(self->m_currentLanguage);
    if (language == self->m_languages.end())
        return text;
    try {
        return self->lookup(text, *language->second);
    } catch (const TranslatorNoWordException &) {
        return text;
    }
}

void Translator::load()
{
    AutoMutex lock(m_mutex);
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    file.close();
    LanguageConfigReader(bytes).read(*this);

    // Only the language in use is ever looked up; the others would only
    // hold memory.
    if (m_currentLanguage < 0)
        return;
    const auto current = m_languages.find(m_currentLanguage);
    if (current == m_languages.end())
        return;
    std::shared_ptr<Language> kept = current->second;
    m_languages.clear();
    m_languages.emplace(m_currentLanguage, std::move(kept));
}

QString Translator::lookup(const QString &text, const Language &language) const
{
    const auto item = m_itemsByText.find(text);
    if (item == m_itemsByText.end())
        throw TranslatorNoWordException();
    const auto word = language.words.find(item->second->number);
    if (word == language.words.end())
        throw TranslatorNoWordException();
    return word->second;
}

void Translator::language(qint32 number, const QString &name)
{
    m_languages[number] = std::make_shared<Language>(Language {number, name, {}});
}

void Translator::item(qint32 number, const QString &text)
{
    // An earlier item with this number leaves the table by number only: its
    // text keeps leading to an item of the same number, so it shares the
    // words given for that number.
    auto entry = std::make_shared<Item>(Item {number, text});
    // Files list items and words by ascending number; the hint makes those
    // inserts constant time.
    m_items.insert_or_assign(m_items.end(), number, entry);
    m_itemsByText[text] = std::move(entry);
}

void Translator::word(qint32 itemNumber, qint32 languageNumber, const QString &text)
{
    const auto entry = m_languages.find(languageNumber);
    if (entry == m_languages.end() || !m_items.contains(itemNumber))
        return;
    auto &words = entry->second->words;
    words.insert_or_assign(words.end(), itemNumber, text);
}

QString tr(const char *english)
{
    return Translator::translate(QString::fromUtf8(english));
}

} // namespace nelib
