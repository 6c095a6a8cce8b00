// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/TranslateCommand.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/InputFile.h"
#include "i18n/Translator.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

// Keys contain line breaks and tabs; with --escapes they can be given and
// printed as \n, \r, \t and \\ so that every text stays on one line.
QString unescape(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != u'\\' || i + 1 == text.size()) {
            result += c;
            continue;
        }
        switch (text.at(++i).unicode()) {
        case 'n':
            result += u'\n';
            break;
        case 'r':
            result += u'\r';
            break;
        case 't':
            result += u'\t';
            break;
        case '\\':
            result += u'\\';
            break;
        default:
            result += c;
            result += text.at(i);
            break;
        }
    }
    return result;
}

QString escape(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\n':
            result += u"\\n";
            break;
        case '\r':
            result += u"\\r";
            break;
        case '\t':
            result += u"\\t";
            break;
        case '\\':
            result += u"\\\\";
            break;
        default:
            result += c;
            break;
        }
    }
    return result;
}

} // namespace

int TranslateCommand::run(const CommandContext &context, const QStringList &arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption config(u"config"_s, QString(), u"F"_s);
    const QCommandLineOption language(u"language"_s, QString(), u"N"_s);
    const QCommandLineOption escapes(u"escapes"_s);
    parser.addOptions({config, language, escapes});
    if (!parser.parse(QStringList {u"translate"_s} + arguments))
        return context.usageError(u"translate: "_s + parser.errorText());
    if (!parser.isSet(language))
        return context.usageError(u"translate: --language N is required"_s);
    bool ok = false;
    const int number = parser.value(language).toInt(&ok);
    if (!ok)
        return context.usageError(
            u"translate: --language takes a number, not '%1'"_s.arg(parser.value(language)));
    const QStringList texts = parser.positionalArguments();
    if (texts.isEmpty())
        return context.usageError(u"translate: no TEXT given"_s);

    const QString path
        = parser.isSet(config) ? parser.value(config) : nelib::Translator::defaultPath();
    if (const auto refusal = InputFile::refusal(path))
        return context.fail(UsageError, *refusal);
    const QFileInfo file(path);
    if (!file.isFile() || !file.isReadable())
        return context.fail(UsageError, u"cannot read language file %1"_s.arg(path));

    const nelib::Translator translator(path, number);
    const bool escaped = parser.isSet(escapes);
    for (const QString &text : texts) {
        const QString translated = nelib::Translator::translate(escaped ? unescape(text) : text);
        context.out() << (escaped ? escape(translated) : translated) << '\n';
    }
    context.out().flush();
    return Success;
}

} // namespace cli
