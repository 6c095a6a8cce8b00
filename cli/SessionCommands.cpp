// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/SessionCommands.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "setup/ExportFile.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"

#include <QDateTime>
#include <QElapsedTimer>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::SetupRecordMap;

namespace cli {

namespace {

// The years a recorder's clock keeps.
constexpr int FirstYear = 1970;
constexpr int LastYear = 2099;

QString formatTime(const RecorderTime &t)
{
    return QString::asprintf("%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour,
                             t.minute, t.second);
}

// Clock times compared as they read, whatever the zone: no daylight-saving
// change moves either.
QDateTime clockTime(QDate date, QTime time)
{
    return QDateTime(date, time, Qt::UTC);
}

// The recorder's time, or nothing when no clock can show it (month 13,
// year 65535).
std::optional<QDateTime> possibleTime(const RecorderTime &t)
{
    const QDate date(t.year, t.month, t.day);
    const QTime time(t.hour, t.minute, t.second);
    if (!date.isValid() || !time.isValid() || t.year < FirstYear || t.year > LastYear)
        return std::nullopt;
    return clockTime(date, time);
}

// How `info` and `set-time` print the recorder's time; an impossible one
// says so.
QString describeTime(const RecorderTime &t)
{
    return possibleTime(t) ? formatTime(t) : formatTime(t) + u" (impossible)"_s;
}

// Waits for the answer to the clock request every session makes after the
// setup record, so that later answers belong to this command.
int waitForClock(CliSession &session)
{
    CWork &work = session.worker();
    return session.waitUntil([&work] { return work.clockValid(); }, u"time answer"_s);
}

} // namespace

int SessionCommands::info(const CommandContext &context, const QStringList &arguments)
{
    if (!arguments.isEmpty())
        return context.usageError(u"info takes no arguments"_s);
    CliSession session(context);
    if (const int code = session.open())
        return code;
    if (const int code = waitForClock(session))
        return code;

    const CWork &work = session.worker();
    const QByteArray &record = work.mirror();
    const auto &values = work.setupAnswerValues();
    const int v = SetupRecordMap::SoftwareVersionOffset;
    if (context.options().json) {
        const auto time = possibleTime(work.timeAnswer());
        context.printJson(
            {{u"channels"_s, qint64(session.record().channelCount)},
             {u"video"_s, work.videoStandard() ? u"PAL"_s : u"NTSC"_s},
             {u"model"_s, qint64(LittleEndian::u32(record, SetupRecordMap::ModelIdOffset))},
             {u"software_version"_s, u"%1.%2.%3.%4"_s.arg(LittleEndian::u8(record, v))
                                         .arg(LittleEndian::u8(record, v + 1))
                                         .arg(LittleEndian::u8(record, v + 2))
                                         .arg(LittleEndian::u8(record, v + 3))},
             {u"alarm_inputs"_s, int(values.alarmInputs)},
             {u"alarm_outputs"_s, int(values.alarmOutputs)},
             {u"audio_inputs"_s, int(values.audioInputs)},
             {u"disks"_s, int(values.disks)},
             // An impossible time (month 13) is null: no clock shows it.
             {u"recorder_time"_s, time ? QJsonValue(time->toString(Qt::ISODate).chopped(1))
                                       : QJsonValue(QJsonValue::Null)}});
        return Success;
    }
    QTextStream &out = context.out();
    out << "channels: " << session.record().channelCount << '\n'
        << "video: " << (work.videoStandard() ? "PAL" : "NTSC") << '\n'
        << "model: " << LittleEndian::u32(record, SetupRecordMap::ModelIdOffset) << '\n'
        << "software version: " << LittleEndian::u8(record, v) << '.'
        << LittleEndian::u8(record, v + 1) << '.' << LittleEndian::u8(record, v + 2) << '.'
        << LittleEndian::u8(record, v + 3) << '\n'
        << "alarm inputs: " << values.alarmInputs << '\n'
        << "alarm outputs: " << values.alarmOutputs << '\n'
        << "audio inputs: " << values.audioInputs << '\n'
        << "disks: " << values.disks << '\n'
        << "recorder time: " << describeTime(work.timeAnswer()) << '\n';
    out.flush();
    return Success;
}

int SessionCommands::exportSetup(const CommandContext &context, const QStringList &arguments)
{
    if (arguments.size() != 1)
        return context.usageError(u"export takes one FILE"_s);
    CliSession session(context);
    if (const int code = session.open())
        return code;

    QString error;
    if (!session.writeExport(arguments.first(), session.worker().mirror(), &error))
        return context.fail(UsageError, u"cannot write %1: %2"_s.arg(arguments.first(), error));
    context.out() << "Export completed\n";
    context.out().flush();
    return Success;
}

int SessionCommands::checkSetTime(const CommandContext &context, const QStringList &arguments,
                                  QDateTime *when)
{
    if (arguments.size() > 1)
        return context.usageError(u"set-time takes at most one time"_s);
    *when = QDateTime::currentDateTime();
    if (arguments.isEmpty())
        return Success;
    *when = QDateTime::fromString(arguments.first(), u"yyyy-MM-ddTHH:mm:ss"_s);
    if (!when->isValid())
        return context.usageError(
            u"set-time takes a time as YYYY-MM-DDThh:mm:ss, not '%1'"_s.arg(arguments.first()));
    if (when->date().year() < FirstYear || when->date().year() > LastYear)
        return context.usageError(
            u"set-time takes a time in the years %1 to %2, not '%3'"_s.arg(FirstYear)
                .arg(LastYear)
                .arg(arguments.first()));
    return Success;
}

int SessionCommands::setTime(const CommandContext &context, const QStringList &arguments)
{
    QDateTime when;
    if (const int code = checkSetTime(context, arguments, &when))
        return code;
    CliSession session(context);
    if (const int code = session.open())
        return code;
    if (const int code = waitForClock(session))
        return code;

    CWork &work = session.worker();
    int answers = 0;
    QElapsedTimer sinceSent;
    qint64 answeredAfterMs = 0;
    QObject::connect(&work, &CWork::timeAnswerReceived, &work, [&] {
        if (answers++ == 0)
            answeredAfterMs = sinceSent.elapsed();
    });
    RecorderTime time;
    time.year = quint16(when.date().year());
    time.month = quint16(when.date().month());
    time.day = quint16(when.date().day());
    time.hour = quint16(when.time().hour());
    time.minute = quint16(when.time().minute());
    time.second = quint16(when.time().second());
    sinceSent.start();
    if (!work.dateTimeCommand(2, time))
        return context.fail(NoSession, u"the session ended before the time was sent"_s);
    if (const int code = session.waitUntil([&answers] { return answers > 0; }, u"time answer"_s))
        return code;

    // The clock counts on while the answer travels: it may be ahead of the
    // time set by the seconds that passed, begun seconds included, no more.
    const RecorderTime &answer = work.timeAnswer();
    const std::optional<QDateTime> reported = possibleTime(answer);
    if (!reported)
        return context.fail(Refused, u"the recorder reports an impossible time, %1; its clock "
                                     u"may not be set"_s.arg(formatTime(answer)));
    const QTime setTime(time.hour, time.minute, time.second);
    const qint64 apart = std::abs(clockTime(when.date(), setTime).secsTo(*reported));
    if (apart > (answeredAfterMs + 999) / 1000)
        return context.fail(Refused, u"the recorder reports %1 after being set to %2: its clock "
                                     u"was not set"_s.arg(formatTime(answer), formatTime(time)));
    if (context.options().json) {
        context.printJson({{u"recorder_time"_s, reported->toString(Qt::ISODate).chopped(1)}});
        return Success;
    }
    context.out() << "recorder time: " << formatTime(answer) << '\n';
    context.out().flush();
    return Success;
}

} // namespace cli
