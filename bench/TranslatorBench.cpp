// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Translator.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int Items = 10000;
constexpr int Languages = 3;
constexpr int CurrentLanguage = 2;

QString englishText(int item)
{
    return u"Setting number %1 of the recorder"_s.arg(item);
}

// A table the size of a large real one: 10,000 items in 3 languages, one
// entry a line (about 40,000 lines).
QByteArray generateConfig()
{
    QByteArray bytes = "# benchmark table\n";
    for (int l = 1; l <= Languages; ++l)
        bytes += "language " + QByteArray::number(l) + " \"Language " + QByteArray::number(l)
                 + "\"\n";
    for (int i = 0; i < Items; ++i)
        bytes += "item " + QByteArray::number(i) + " \"" + englishText(i).toUtf8() + "\"\n";
    for (int l = 1; l <= Languages; ++l) {
        for (int i = 0; i < Items; ++i)
            bytes += "word " + QByteArray::number(i) + ' ' + QByteArray::number(l)
                     + " \"\xc3\x9c"
                       "bersetzung "
                     + QByteArray::number(i) + " in Sprache " + QByteArray::number(l) + "\"\n";
    }
    return bytes;
}

const QString &configPath()
{
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(u"language.config"_s);
        QFile file(p);
        if (!file.open(QIODevice::WriteOnly) || file.write(generateConfig()) < 0)
            std::abort();
        return p;
    }();
    return path;
}

void loadTable(benchmark::State &state)
{
    const QString &path = configPath();
    for (auto _ : state) {
        const nelib::Translator translator(path, CurrentLanguage);
        benchmark::DoNotOptimize(&translator);
    }
    state.SetLabel("goal < 20 ms");
}
BENCHMARK(loadTable)->Unit(benchmark::kMillisecond);

void translateText(benchmark::State &state, bool known)
{
    const nelib::Translator translator(configPath(), CurrentLanguage);
    QStringList texts;
    for (int i = 0; i < Items; i += 97)
        texts << (known ? englishText(i) : englishText(i) + u'!');
    qsizetype next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(nelib::Translator::translate(texts[next]));
        next = (next + 1) % texts.size();
    }
    state.SetLabel("goal < 2 us");
}
BENCHMARK_CAPTURE(translateText, word, true);
// A text without a word takes the exception path inside the lookup.
BENCHMARK_CAPTURE(translateText, missing, false);

} // namespace
