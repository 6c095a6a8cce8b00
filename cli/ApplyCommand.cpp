// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/ApplyCommand.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/FieldCommands.h"
#include "cli/IgnoreList.h"
#include "cli/InputFile.h"
#include "cli/JsonSettings.h"
#include "cli/SecretMask.h"
#include "setup/FieldName.h"
#include "setup/RecordDump.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <map>
#include <mutex>

using namespace Qt::StringLiterals;
using setup::FieldName;
using setup::FieldTable;
using setup::RecordDump;
using setup::SetupRecordMap;

namespace cli {

namespace {

// A whole dump of every setting is some hundred kilobytes.
constexpr qint64 MaxFileBytes = 4 * 1024 * 1024;

// One setting of the file and where it stands ("FILE:12").
struct Setting
{
    QString where;
    QString name;
    QString value;
};

// One value to apply; a password given as the mask keeps the recorder's.
struct Wanted
{
    FieldCommands::Assignment assignment;
    bool keep = false;
};

struct Request
{
    bool check = false;
    IgnoreList ignores;
    QList<Wanted> wanted;
};

// A JSON value of dump --json (a string), or a plain number, a named value
// {"value": N, ...} or a list of bit names, as the text set takes.
QString valueText(const QJsonValue &value)
{
    if (value.isDouble())
        return QString::number(qint64(value.toDouble()));
    if (value.isObject())
        return valueText(value.toObject().value(u"value"_s));
    if (value.isArray()) {
        // No bit set: no name to list.
        if (value.toArray().isEmpty())
            return u"0"_s;
        QStringList names;
        for (const QJsonValue &name : value.toArray())
            names.append(name.toString());
        return names.join(u',');
    }
    return value.toString();
}

std::optional<QList<Setting>> jsonSettings(const QString &path, const QByteArray &bytes,
                                           QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    const QJsonValue settings = document.object().value(u"settings"_s);
    if (parseError.error != QJsonParseError::NoError || !settings.isArray()) {
        *error = parseError.error != QJsonParseError::NoError
                     ? u"%1: %2 at byte %3"_s.arg(path, parseError.errorString())
                           .arg(parseError.offset)
                     : u"%1: the JSON holds no \"settings\" list"_s.arg(path);
        return std::nullopt;
    }
    QList<Setting> list;
    for (const QJsonValue &item : settings.toArray()) {
        const QJsonObject object = item.toObject();
        const QString where = u"%1: setting %2"_s.arg(path).arg(list.size() + 1);
        if (!object.value(u"name"_s).isString() || !object.contains(u"value"_s)) {
            *error = where + u": not {\"name\": ..., \"value\": ...}"_s;
            return std::nullopt;
        }
        list.append({where, object.value(u"name"_s).toString(), valueText(object[u"value"_s])});
    }
    return list;
}

std::optional<QList<Setting>> textSettings(const QString &path, const QByteArray &bytes,
                                           QString *error)
{
    QList<Setting> list;
    const QStringList lines = QString::fromUtf8(bytes).split(u'\n');
    for (qsizetype k = 0; k < lines.size(); ++k) {
        const QString line = lines[k].trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QString where = u"%1:%2"_s.arg(path).arg(k + 1);
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0) {
            *error = where + u": not 'name = value'"_s;
            return std::nullopt;
        }
        list.append({where, line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return list;
}

std::optional<Request> parseRequest(const CommandContext &context, const QStringList &arguments,
                                    int *code)
{
    *code = UsageError;
    QStringList rest = arguments;
    QString error;
    auto ignores = IgnoreList::take(&rest, &error);
    if (!ignores) {
        context.usageError(error);
        return std::nullopt;
    }
    Request request;
    request.ignores = *ignores;
    request.check = rest.removeAll(u"--check"_s) > 0;
    if (rest.size() != 1 || rest.first().startsWith(u"--"_s)) {
        context.usageError(u"apply takes [--check] [--ignore GLOB]... FILE"_s);
        return std::nullopt;
    }
    const QString path = rest.first();
    if (const auto refusal = InputFile::refusal(path)) {
        context.fail(UsageError, *refusal);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxFileBytes) {
        context.fail(UsageError, file.isOpen()
                                     ? u"%1 is larger than %2 bytes"_s.arg(path).arg(MaxFileBytes)
                                     : u"cannot read %1: %2"_s.arg(path, file.errorString()));
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxFileBytes);
    // A fleet applies one file to every recorder: its settings are checked
    // once, not once per recorder.
    static std::mutex mutex;
    static std::optional<std::pair<QByteArray, Request>> checked;
    const std::lock_guard lock(mutex);
    if (checked && checked->first == bytes) {
        request.wanted = checked->second.wanted;
        *code = Success;
        return request;
    }
    const auto settings = bytes.trimmed().startsWith('{') ? jsonSettings(path, bytes, &error)
                                                          : textSettings(path, bytes, &error);
    if (!settings) {
        context.fail(UsageError, error + u"\nnothing was sent"_s);
        return std::nullopt;
    }

    // Bytes no field covers, as a dump shows them, are the recorder's own.
    static const QRegularExpression reserved(u"^[a-z0-9-]+\\.reserved\\[\\d+\\.\\.\\d+\\]$"_s);
    // Where each element was named first, by its record offset.
    std::map<int, QString> named;
    for (const Setting &s : *settings) {
        if (reserved.match(s.name).hasMatch())
            continue;
        Wanted wanted;
        const bool masked = s.value == SecretMask::Mask && SecretMask::isSecretName(s.name);
        const auto secret = masked ? FieldName::parse(s.name, &error) : std::nullopt;
        if (secret) {
            wanted.keep = true;
            wanted.assignment.name = *secret;
        } else if (const auto a
                   = masked ? std::nullopt : FieldCommands::assignment(s.name, s.value, &error)) {
            wanted.assignment = *a;
        } else {
            context.fail(UsageError, u"%1: %2\nnothing was sent"_s.arg(s.where, error));
            return std::nullopt;
        }
        const FieldName &name = wanted.assignment.name;
        for (const FieldName::Element &e : name.elements()) {
            const auto [it, fresh] = named.emplace(name.field->elementOffset(e.i, e.j), s.where);
            if (!fresh) {
                context.fail(UsageError, u"%1: %2 repeats a setting of %3\nnothing was sent"_s.arg(
                                             s.where, s.name, it->second));
                return std::nullopt;
            }
        }
        request.wanted.append(wanted);
    }
    checked.emplace(bytes, request);
    *code = Success;
    return request;
}

} // namespace

int ApplyCommand::check(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    parseRequest(context, arguments, &code);
    return code;
}

int ApplyCommand::run(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto request = parseRequest(context, arguments, &code);
    if (!request)
        return code;
    const SecretMask mask(context.options().showSecrets);

    // Every element applied, by its dump name.
    struct Element
    {
        QString name;
        const setup::FieldInfo *field;
        int i;
        int j;
    };
    QList<Element> applied;
    QByteArray wanted;
    {
        CliSession session(context);
        if ((code = session.open()))
            return code;
        const QByteArray before = session.worker().mirror();
        wanted = before;
        QList<FieldCommands::Assignment> assignments;
        std::set<setup::Section> sections;
        for (const Wanted &w : request->wanted) {
            const FieldName &a = w.assignment.name;
            for (const FieldName::Element &e : a.elements()) {
                const QString name = FieldName::elementName(*a.group, *a.field, e.i, e.j);
                if (w.keep || request->ignores.ignores(name))
                    continue;
                FieldTable::setBytes(wanted, *a.field, w.assignment.bytes, e.i, e.j);
                applied.append({name, a.field, e.i, e.j});
                if (FieldTable::bytes(before, *a.field, e.i, e.j) != w.assignment.bytes)
                    sections.insert(SetupRecordMap::findSection(a.group->key)->id);
            }
            if (!w.keep)
                assignments.append(w.assignment);
        }
        if (const auto rule
            = FieldCommands::pageRuleError(assignments, wanted, session.record().channelCount))
            return context.fail(UsageError, *rule + u"\nnothing was sent"_s);

        const QStringList changes = RecordDump::diff(before, wanted);
        if (context.options().json) {
            context.printJson({{u"changes"_s, JsonSettings::changes(before, wanted, changes, mask)},
                               {u"changed"_s, int(changes.size())},
                               {u"check"_s, request->check}});
        } else {
            for (const QString &line : mask.changes(changes))
                context.out() << line << '\n';
            context.out() << "changed: " << changes.size() << '\n';
            context.out().flush();
        }
        if (request->check || changes.isEmpty())
            return Success;

        QStringList written;
        if ((code = FieldCommands::writeSections(context, session, wanted, sections, &written))) {
            QStringList unwritten;
            for (const setup::Section id : sections) {
                const QLatin1StringView key(SetupRecordMap::section(id).key);
                if (!written.contains(key))
                    unwritten.append(key);
            }
            return context.fail(code, u"written: %1; not written: %2"_s.arg(
                                          written.isEmpty() ? u"nothing"_s : written.join(u", "_s),
                                          unwritten.join(u", "_s)));
        }
    }

    // A new session reads what the recorder keeps, not what this one sent.
    CliSession session(context);
    if ((code = session.open()))
        return code;
    const QByteArray &held = session.worker().mirror();
    QStringList lost;
    for (const Element &e : applied) {
        if (FieldTable::bytes(held, *e.field, e.i, e.j)
            == FieldTable::bytes(wanted, *e.field, e.i, e.j))
            continue;
        context.err() << e.name << " = "
                      << mask.value(e.name, RecordDump::value(held, *e.field, e.i, e.j))
                      << " (wanted "
                      << mask.value(e.name, RecordDump::value(wanted, *e.field, e.i, e.j)) << ")\n";
        lost.append(e.name);
    }
    if (!lost.isEmpty())
        return context.fail(Refused, u"the recorder did not keep %1"_s.arg(lost.join(u", "_s)));
    return Success;
}

} // namespace cli
