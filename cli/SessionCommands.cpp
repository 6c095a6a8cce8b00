// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/SessionCommands.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "setup/ExportFile.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"

#include <QDateTime>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::SetupRecordMap;

namespace cli {

namespace {

QString formatTime(const RecorderTime &t)
{
    return QString::asprintf("%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour,
                             t.minute, t.second);
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
    QTextStream &out = context.out();
    out << "channels: " << session.record().channelCount << '\n'
        << "video: " << (work.videoStandard() ? "PAL" : "NTSC") << '\n'
        << "model: " << LittleEndian::u32(record, SetupRecordMap::ModelIdOffset) << '\n'
        << "software version: " << LittleEndian::u8(record, v) << '.'
        << LittleEndian::u8(record, v + 1) << '.' << LittleEndian::u8(record, v + 2) << '.'
        << LittleEndian::u8(record, v + 3) << '\n'
        << "alarm inputs: " << values[0] << '\n'
        << "alarm outputs: " << values[1] << '\n'
        << "audio inputs: " << values[2] << '\n'
        << "disks: " << values[3] << '\n'
        << "recorder time: " << formatTime(work.clock()) << '\n';
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
    if (!setup::ExportFile::write(arguments.first(), session.worker().mirror(), &error))
        return context.fail(UsageError, u"cannot write %1: %2"_s.arg(arguments.first(), error));
    context.out() << "Export completed\n";
    context.out().flush();
    return Success;
}

int SessionCommands::setTime(const CommandContext &context, const QStringList &arguments)
{
    if (arguments.size() > 1)
        return context.usageError(u"set-time takes at most one time"_s);
    QDateTime when = QDateTime::currentDateTime();
    if (!arguments.isEmpty()) {
        when = QDateTime::fromString(arguments.first(), u"yyyy-MM-ddTHH:mm:ss"_s);
        if (!when.isValid())
            return context.usageError(
                u"set-time takes a time as YYYY-MM-DDThh:mm:ss, not '%1'"_s.arg(arguments.first()));
    }
    CliSession session(context);
    if (const int code = session.open())
        return code;
    if (const int code = waitForClock(session))
        return code;

    CWork &work = session.worker();
    int answers = 0;
    QObject::connect(&work, &CWork::timeAnswerReceived, &work, [&answers] { ++answers; });
    RecorderTime time;
    time.year = quint16(when.date().year());
    time.month = quint16(when.date().month());
    time.day = quint16(when.date().day());
    time.hour = quint16(when.time().hour());
    time.minute = quint16(when.time().minute());
    time.second = quint16(when.time().second());
    if (!work.dateTimeCommand(2, time))
        return context.fail(NoSession, u"the session ended before the time was sent"_s);
    if (const int code = session.waitUntil([&answers] { return answers > 0; }, u"time answer"_s))
        return code;
    context.out() << "recorder time: " << formatTime(work.clock()) << '\n';
    context.out().flush();
    return Success;
}

} // namespace cli
