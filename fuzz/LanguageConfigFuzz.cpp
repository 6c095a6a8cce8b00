// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/LanguageConfigReader.h"
#include "i18n/Translator.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// Checks what the reader promises about every entry and keeps a language and
// a few texts, so that the translator afterwards looks up words that exist.
class Collector : public nelib::LanguageConfigReader::Consumer
{
public:
    void language(qint32 number, const QString &name) override
    {
        check(name);
        if (firstLanguage < 0)
            firstLanguage = number;
    }
    void item(qint32, const QString &text) override
    {
        check(text);
        if (texts.size() < 4)
            texts << text;
    }
    void word(qint32, qint32, const QString &text) override { check(text); }

    qint32 firstLanguage = -1;
    QStringList texts;

private:
    static void check(const QString &text)
    {
        if (text.size() > nelib::LanguageConfigReader::TextLimit || text.contains(QChar(0)))
            std::abort();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    Collector collector;
    nelib::LanguageConfigReader reader(bytes);
    reader.read(collector);
    if (reader.position() < 0 || reader.position() > bytes.size())
        std::abort();

    static QTemporaryDir dir;
    static const QString path = dir.filePath(u"language.config"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(bytes.data(), bytes.size()) != bytes.size())
        std::abort();
    file.close();

    const nelib::Translator translator(path, collector.firstLanguage);
    collector.texts << u"Save"_s << QString();
    for (const QString &text : std::as_const(collector.texts))
        nelib::Translator::translate(text);
    return 0;
}
