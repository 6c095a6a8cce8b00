// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/FieldCommands.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/FieldValueParser.h"
#include "cli/HostsFile.h"
#include "cli/IgnoreList.h"
#include "cli/InputFile.h"
#include "cli/JsonSettings.h"
#include "cli/SecretMask.h"
#include "i18n/CodePage.h"
#include "i18n/Translator.h"
#include "session/SessionMessage.h"
#include "setup/ExportFile.h"
#include "setup/FieldName.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"
#include "setup/RecordDump.h"
#include "setup/SaveRules.h"
#include "setup/SetupRecordMap.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <map>
#include <set>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::FieldGroup;
using setup::FieldInfo;
using setup::FieldName;
using setup::FieldTable;
using setup::RecordDump;
using setup::SaveRules;
using setup::SetupRecordMap;

namespace cli {

namespace {

namespace fields = setup::fields;

using Assignment = FieldCommands::Assignment;

void printLines(const CommandContext &context, const QStringList &lines)
{
    for (const QString &line : lines)
        context.out() << line << '\n';
    context.out().flush();
}

// Rules that need no recorder: those of the pages that a value alone breaks.
std::optional<QString> valueRuleError(const Assignment &a, QStringView text)
{
    if (a.name.field && *a.name.field == fields::camera::title && !SaveRules::titleAllowed(text))
        return nelib::tr(SaveRules::TitleMessage);
    if (a.name.field && *a.name.field == fields::users::rights) {
        const quint32 rights = LittleEndian::u32(a.bytes, 0);
        if (rights & ~SaveRules::AllRights)
            return u"rights hold bits 0 to 17 only (at most 0x%1)"_s.arg(SaveRules::AllRights, 0,
                                                                         16);
        const bool touchesAdmin = !a.name.i || *a.name.i == SaveRules::AdminAccount;
        if (touchesAdmin && rights != SaveRules::AllRights)
            return u"the Admin account (users.rights[0]) always holds every right"_s;
    }
    return std::nullopt;
}

std::optional<QList<Assignment>> parseAssignments(const CommandContext &context,
                                                  const QStringList &arguments, int *code)
{
    if (arguments.isEmpty()) {
        *code = context.usageError(u"set takes NAME=VALUE..."_s);
        return std::nullopt;
    }
    QList<Assignment> assignments;
    // Every element assigned so far, by its record offset.
    std::map<int, QString> assigned;
    for (const QString &argument : arguments) {
        const qsizetype equals = argument.indexOf(u'=');
        if (equals < 0) {
            *code = context.usageError(u"'%1' is not NAME=VALUE"_s.arg(argument));
            return std::nullopt;
        }
        const QString nameText = argument.left(equals);
        QString error;
        const auto a
            = FieldCommands::assignment(nameText, QStringView(argument).mid(equals + 1), &error);
        if (!a) {
            *code = context.usageError(error);
            return std::nullopt;
        }
        for (const FieldName::Element &e : a->name.elements()) {
            const int at = a->name.field->elementOffset(e.i, e.j);
            const auto [it, fresh] = assigned.emplace(at, nameText);
            if (!fresh) {
                *code = context.usageError(
                    u"%1 and %2 assign the same setting"_s.arg(it->second, nameText));
                return std::nullopt;
            }
        }
        assignments.append(*a);
    }
    *code = Success;
    return assignments;
}

// Waits for one write acknowledgement without polling: the worker's signal,
// the end of the session (posted to the session object) or the time-out.
class AckWait : public QObject
{
public:
    enum class Result { Applied, Refused, Ended, TimedOut };

    AckWait(CliSession &session, int timeoutSeconds)
        : m_session(session)
        , m_timeoutMs(timeoutSeconds * 1000)
    {
        session.installEventFilter(this);
        connect(&session.worker(), &CWork::writeAcknowledged, this,
                [this](bool applied) { finish(applied ? Result::Applied : Result::Refused); });
    }
    ~AckWait() override { m_session.removeEventFilter(this); }

    Result wait()
    {
        m_result.reset();
        if (!m_session.await([this] { return m_result.has_value(); },
                             std::chrono::milliseconds(m_timeoutMs)))
            finish(Result::TimedOut);
        return *m_result;
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Type(SessionMessage::SessionEnded))
            finish(Result::Ended);
        return false;
    }

private:
    void finish(Result result)
    {
        if (m_result)
            return;
        m_result = result;
        m_session.wake();
    }

    CliSession &m_session;
    int m_timeoutMs;
    std::optional<Result> m_result;
};

// ---- sources of whole records ----------------------------------------------

// A setup read whole from a file: a default setup file holds the record as it
// is; an export file lacks the header's software version.
int readRecordFile(const CommandContext &context, const QString &path, QByteArray *record,
                   bool *exportFile)
{
    if (const auto refusal = InputFile::refusal(path))
        return context.fail(UsageError, *refusal);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return context.fail(UsageError, u"cannot read %1: %2"_s.arg(path, file.errorString()));
    const QByteArray bytes = file.read(SetupRecordMap::RecordSize + 1);
    using setup::ExportFile;
    if (bytes.size() == SetupRecordMap::RecordSize) {
        *record = bytes;
        return Success;
    }
    if (bytes.size() == ExportFile::Size
        && LittleEndian::u32(bytes, ExportFile::FirstMarkOffset) == ExportFile::FirstMark
        && LittleEndian::u32(bytes, ExportFile::SecondMarkOffset) == ExportFile::SecondMark) {
        *exportFile = true;
        *record = ExportFile::toRecord(bytes);
        return Success;
    }
    return context.fail(UsageError,
                        u"%1 is neither an export file (%2 bytes with its file marks) nor a setup "
                        u"record (%3 bytes)"_s.arg(path)
                            .arg(ExportFile::Size)
                            .arg(SetupRecordMap::RecordSize));
}

int readLiveRecord(const CommandContext &context, QByteArray *record)
{
    CliSession session(context);
    if (const int code = session.open())
        return code;
    *record = session.worker().mirror();
    return Success;
}

// FILE, @HOST[:PORT], or the recorder of the global options when empty.
int readSource(const CommandContext &context, const QString &source, QByteArray *record,
               bool *exportFile = nullptr)
{
    bool fromExport = false;
    if (exportFile)
        *exportFile = false;
    if (source.isEmpty())
        return readLiveRecord(context, record);
    if (!source.startsWith(u'@'))
        return readRecordFile(context, source, record, exportFile ? exportFile : &fromExport);
    QString error;
    const auto entry
        = HostsFile::parseAddress(QStringView(source).mid(1), context.options().port, &error);
    if (!entry)
        return context.usageError(error);
    GlobalOptions options = context.options();
    options.host = entry->host;
    options.port = entry->port;
    const CommandContext recorder(options, context.out(), context.err());
    return readLiveRecord(recorder, record);
}

} // namespace

namespace {

std::optional<QList<FieldName>> parseNames(const CommandContext &context,
                                           const QStringList &arguments, int *code)
{
    const QStringList &names = arguments;
    if (names.isEmpty()) {
        *code = context.usageError(u"get takes NAME..."_s);
        return std::nullopt;
    }
    QList<FieldName> parsed;
    for (const QString &text : names) {
        QString error;
        const auto name = FieldName::parse(text, &error);
        if (!name) {
            *code = context.usageError(error);
            return std::nullopt;
        }
        parsed.append(*name);
    }
    *code = Success;
    return parsed;
}

} // namespace

int FieldCommands::checkGet(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    parseNames(context, arguments, &code);
    return code;
}

int FieldCommands::get(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto parsed = parseNames(context, arguments, &code);
    if (!parsed)
        return code;
    QByteArray record;
    if (const int code = readLiveRecord(context, &record))
        return code;
    QStringList lines;
    for (const FieldName &name : *parsed) {
        if (!name.field) {
            lines += RecordDump::dump(record, *name.group);
            continue;
        }
        for (const FieldName::Element &e : name.elements()) {
            lines.append(FieldName::elementName(*name.group, *name.field, e.i, e.j) + u" = "_s
                         + RecordDump::value(record, *name.field, e.i, e.j));
        }
    }
    const SecretMask mask(context.options().showSecrets);
    if (context.options().json)
        context.printJson({{u"settings"_s, JsonSettings::settings(record, lines, mask)}});
    else
        printLines(context, mask.values(lines));
    return Success;
}

std::optional<FieldCommands::Assignment>
FieldCommands::assignment(QStringView nameText, QStringView valueText, QString *error)
{
    const auto name = FieldName::parse(nameText, error);
    if (!name)
        return std::nullopt;
    if (!name->field || name->group == &FieldTable::header()) {
        *error = name->group == &FieldTable::header()
                     ? u"the header is the recorder's own and is never written"_s
                     : u"%1 is a section; name one of its fields"_s.arg(nameText);
        return std::nullopt;
    }
    const FieldValueParser parser(nelib::CodePage::system());
    const auto bytes = parser.parse(*name->field, valueText, error);
    if (!bytes) {
        *error = u"%1: %2"_s.arg(nameText, *error);
        return std::nullopt;
    }
    Assignment a {*name, *bytes};
    const QString text = name->field->type == setup::FieldType::Text
                             ? nelib::CodePage::system().decode(*bytes)
                             : valueText.toString();
    if (const auto rule = valueRuleError(a, text)) {
        *error = u"%1: %2"_s.arg(nameText, *rule);
        return std::nullopt;
    }
    return a;
}

std::optional<QString> FieldCommands::pageRuleError(const QList<Assignment> &assignments,
                                                    const QByteArray &record, int channelCount)
{
    for (const Assignment &a : assignments) {
        if (auto refusal = SaveRules::refusal(record, *a.name.field, channelCount))
            return refusal;
    }
    return std::nullopt;
}

int FieldCommands::writeSections(const CommandContext &context, CliSession &session,
                                 const QByteArray &record, const std::set<setup::Section> &sections,
                                 QStringList *written)
{
    CWork &work = session.worker();
    // One section at a time, so that nothing follows a refused write.
    AckWait ack(session, context.options().timeoutSeconds);
    for (const setup::Section id : sections) {
        const setup::SectionInfo &s = SetupRecordMap::section(id);
        const QLatin1StringView key(s.key);
        // The caller says what was saved.
        work.setSilentNextAcknowledgement();
        if (!work.writeSection(id, QByteArrayView(record).sliced(s.offset, s.length)))
            return context.fail(NoSession, u"the session ended before %1 was sent"_s.arg(key));
        switch (ack.wait()) {
        case AckWait::Result::Applied:
            if (written)
                written->append(key);
            break;
        case AckWait::Result::Refused:
            return context.fail(Refused, u"the recorder refused the write of %1"_s.arg(key));
        case AckWait::Result::Ended:
            return context.fail(NoSession,
                                u"the session ended before %1 was acknowledged"_s.arg(key));
        case AckWait::Result::TimedOut:
            return context.fail(NoSession, u"no acknowledgement of %1 within %2 s"_s.arg(key).arg(
                                               context.options().timeoutSeconds));
        }
    }
    return Success;
}

int FieldCommands::checkSet(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    parseAssignments(context, arguments, &code);
    return code;
}

int FieldCommands::set(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto assignments = parseAssignments(context, arguments, &code);
    if (!assignments)
        return code;

    CliSession session(context);
    if ((code = session.open()))
        return code;
    QByteArray record = session.worker().mirror();
    std::set<setup::Section> sections;
    for (const Assignment &a : *assignments) {
        for (const FieldName::Element &e : a.name.elements())
            FieldTable::setBytes(record, *a.name.field, a.bytes, e.i, e.j);
        sections.insert(SetupRecordMap::findSection(a.name.group->key)->id);
    }
    if (const auto rule = pageRuleError(*assignments, record, session.record().channelCount))
        return context.fail(UsageError, *rule + u"\nnothing was sent"_s);
    if ((code = writeSections(context, session, record, sections)))
        return code;
    QStringList lines;
    for (const Assignment &a : *assignments) {
        for (const FieldName::Element &e : a.name.elements()) {
            lines.append(FieldName::elementName(*a.name.group, *a.name.field, e.i, e.j) + u" = "_s
                         + RecordDump::value(record, *a.name.field, e.i, e.j));
        }
    }
    const SecretMask mask(context.options().showSecrets);
    if (context.options().json)
        context.printJson({{u"settings"_s, JsonSettings::settings(record, lines, mask)}});
    else
        printLines(context, mask.values(lines));
    return Success;
}

int FieldCommands::dump(const CommandContext &context, const QStringList &arguments)
{
    const QStringList &sources = arguments;
    if (sources.size() > 1)
        return context.usageError(u"dump takes at most one FILE or @HOST[:PORT]"_s);
    const QString source = sources.value(0);
    QByteArray record;
    if (const int code = readSource(context, source, &record))
        return code;
    const QStringList lines = RecordDump::dump(record);
    const SecretMask mask(context.options().showSecrets);
    if (context.options().json) {
        context.printJson({{u"source"_s, source.isEmpty() ? u'@' + context.options().host : source},
                           {u"settings"_s, JsonSettings::settings(record, lines, mask)}});
    } else {
        printLines(context, mask.values(lines));
    }
    return Success;
}

namespace {

// diff's arguments: --ignore GLOB..., then one or two setups, the
// second being the recorder of the global options when left out. Input files
// are refused here, before any recorder is asked.
struct DiffArguments
{
    IgnoreList ignores;
    QStringList sources;
};

std::optional<DiffArguments> diffArguments(const CommandContext &context,
                                           const QStringList &arguments, int *code)
{
    DiffArguments d;
    d.sources = arguments;
    QString error;
    auto ignores = IgnoreList::take(&d.sources, &error);
    *code = UsageError;
    if (!ignores) {
        context.usageError(error);
        return std::nullopt;
    }
    d.ignores = *ignores;
    if (d.sources.isEmpty() || d.sources.size() > 2) {
        context.usageError(
            u"diff takes one or two setups, FILE or @HOST[:PORT] each (one is compared with "
            u"the recorder)"_s);
        return std::nullopt;
    }
    for (const QString &source : d.sources) {
        const auto refusal = source.startsWith(u'@') ? std::nullopt : InputFile::refusal(source);
        if (refusal) {
            context.fail(UsageError, *refusal);
            return std::nullopt;
        }
    }
    if (d.sources.size() == 1)
        d.sources.append(QString());
    *code = Success;
    return d;
}

// The two setups diff's arguments name and the lines in which they differ,
// the ignored ones left out.
struct Comparison
{
    DiffArguments arguments;
    QByteArray before;
    QByteArray after;
    QStringList changes;
};

std::optional<Comparison> compare(const CommandContext &context, const QStringList &arguments,
                                  int *code)
{
    const auto d = diffArguments(context, arguments, code);
    if (!d)
        return std::nullopt;
    Comparison c {*d, {}, {}, {}};
    bool beforeExport = false;
    bool afterExport = false;
    if ((*code = readSource(context, d->sources[0], &c.before, &beforeExport))
        || (*code = readSource(context, d->sources[1], &c.after, &afterExport)))
        return std::nullopt;
    // An export file carries no software version: it takes the other side's.
    const FieldInfo &version = fields::header::softwareVersion;
    if (beforeExport != afterExport) {
        QByteArray &known = beforeExport ? c.after : c.before;
        FieldTable::setBytes(beforeExport ? c.before : c.after, version,
                             FieldTable::bytes(known, version));
    }
    c.changes = d->ignores.kept(RecordDump::diff(c.before, c.after));
    return c;
}

} // namespace

int FieldCommands::checkDiff(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto d = diffArguments(context, arguments, &code);
    if (!d)
        return code;
    if (!d->sources.last().isEmpty())
        return context.usageError(u"diff with --hosts compares every recorder with one setup"_s);
    QByteArray record;
    bool exportFile = false;
    const QString &baseline = d->sources.first();
    return baseline.startsWith(u'@') ? Success
                                     : readRecordFile(context, baseline, &record, &exportFile);
}

int FieldCommands::drift(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto c = compare(context, arguments, &code);
    if (!c)
        return code;
    if (context.options().json) {
        context.printJson({{u"differs"_s, int(c->changes.size())}});
    } else {
        context.out() << "differs: " << c->changes.size() << '\n';
        context.out().flush();
    }
    return c->changes.isEmpty() ? Success : Differs;
}

int FieldCommands::diff(const CommandContext &context, const QStringList &arguments)
{
    int code = Success;
    const auto c = compare(context, arguments, &code);
    if (!c)
        return code;
    const SecretMask mask(context.options().showSecrets);
    const int exitCode = c->changes.isEmpty() ? Success : Differs;
    if (!context.options().json) {
        printLines(context, mask.changes(c->changes));
        return exitCode;
    }
    const QJsonArray changes = JsonSettings::changes(c->before, c->after, c->changes, mask);
    const auto shown = [&context](const QString &source) {
        return source.isEmpty() ? u'@' + context.options().host : source;
    };
    context.printJson({{u"before"_s, shown(c->arguments.sources[0])},
                       {u"after"_s, shown(c->arguments.sources[1])},
                       {u"changes"_s, changes}});
    return exitCode;
}

} // namespace cli
