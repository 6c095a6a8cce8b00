// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/PackageBuilder.h"
#include "firmware/PacketWords.h"
#include "firmware/RecorderVersions.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using session::Frame;
namespace W = firmware::PacketWords;

namespace {

// A recorder for the commands of one test row: it answers like a healthy
// one, firmware packets included (chunks of `chunkSize`, each accepted with
// `dataReply`), unless `script` takes a frame first (it returns true then).
struct Recorder : ScriptedRecorder
{
    std::function<bool(const Frame &)> script;
    quint32 chunkSize = 100;
    std::array<quint32, 8> dataReply {W::DataReply, W::Accepted};

    Recorder()
    {
        record = setup::FactoryDefaults::record();
        onFrame = [this](const Frame &frame) {
            if (script && script(frame))
                return;
            if (frame.command != RemoteCommand::FirmwarePacket)
                return answerAsRecorder(frame);
            if (frame.param.words[0] == W::Header)
                return send(
                    RemoteCommand::FirmwareReply,
                    PACKET_PARAM {{W::HeaderReply, W::GoOn, W::VersionDataFollows, 0, chunkSize}},
                    firmware::RecorderVersions().toBytes());
            if (frame.param.words[0] == W::Data)
                send(RemoteCommand::FirmwareReply, PACKET_PARAM {dataReply});
        };
    }

    testsupport::CliRun run(const QString &command, int timeoutSeconds = 3)
    {
        return runInProcess(QStringList {u"--port"_s, QString::number(port()), u"--timeout"_s,
                                         QString::number(timeoutSeconds)}
                            + command.split(u' ', Qt::SkipEmptyParts));
    }
};

// The files the commands of the tables below take, in `dir`.
void writeInputs(const QTemporaryDir &dir)
{
    testsupport::writeFile(dir.filePath(u"setup.dat"_s),
                           setup::ExportFile::build(setup::FactoryDefaults::record()));
    firmware::PackageBuilder package(firmware::FirmwareVersion {{2, 0, 0, 0}});
    package.addGeneratedComponent(2, firmware::FirmwareVersion {{2, 0, 0, 0}}, 450);
    QString error;
    EXPECT_TRUE(package.write(dir.filePath(u"update.KRP"_s), &error)) << error.toStdString();
}

bool isCommand(const Frame &frame, qint32 command, std::optional<quint32> word0 = std::nullopt)
{
    return frame.command == command && (!word0 || frame.param.words[0] == *word0);
}

} // namespace

// An export file is the header with the recorder's model, then the record
// from its 32nd byte on.
TEST(SessionCommands, InfoAndExportTellWhatTheRecorderHoldsAndSetTimeSetsItsClock)
{
    SimProcess sim({u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s, u"--model"_s, u"77"_s,
                    u"--version"_s, u"2.3.4.5"_s});
    ASSERT_TRUE(sim.isRunning());
    const auto run = sim.cli({u"info"_s});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    static const QRegularExpression info(
        u"^channels: 4\nvideo: PAL\nmodel: 77\nsoftware version: 2.3.4.5\nalarm inputs: \\d+\n"
        "alarm outputs: \\d+\naudio inputs: \\d+\ndisks: \\d+\nrecorder time: [^\n]+\n$"_s);
    EXPECT_TRUE(info.match(run.out).hasMatch()) << run.out.toStdString();

    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    const auto exported = sim.cli({u"export"_s, path});
    ASSERT_EQ(exported.exitCode, 0) << exported.err.toStdString();
    EXPECT_EQ(exported.out, u"Export completed\n"_s);
    const QByteArray file = testsupport::readFile(path);
    EXPECT_EQ(file.first(20).toHex(), "110001004b4b4d2b554752414d0000003f000000");
    EXPECT_EQ(file.sliced(20), sim.storedRecord().sliced(32));

    const auto set = sim.cli({u"set-time"_s, u"2030-01-02T03:04:05"_s});
    ASSERT_EQ(set.exitCode, 0) << set.err.toStdString();
    // The time the recorder reports back once the clock is set.
    EXPECT_TRUE(set.out.startsWith(u"recorder time: 2030-01-02 03:04:0"_s))
        << set.out.toStdString();
}

// Every way a command can end, against a real recorder whose record only a
// successful import or factory default changes (what they write is the
// transfer's to check); the password comes from the file's first line, else
// the environment. `%D` is a folder of prepared files, `%P` the recorder's
// port; a recorder "dead" is stopped before the command runs.
TEST(SessionCommands, OutcomesMapToExitCodesAndOnlyAWholeTransferChangesTheRecord)
{
    QTemporaryDir dir;
    const QByteArray good = setup::ExportFile::build(testsupport::patternedRecord(2));
    const std::pair<const char *, QByteArray> files[] = {
        {"admin", "right\n"},
        {"wrong", "wrong\n"},
        {"two-lines", "right\r\nsecond line\n"},
        {"good.dat", good},
        {"half.dat", good.first(good.size() / 2)},
        {"long.dat", good + 'x'},
        {"other-model.dat", setup::ExportFile::build(setup::FactoryDefaults::record(77))},
        {"default.dat", testsupport::patternedRecord(3)},
        {"short-default.dat", testsupport::patternedRecord(3).first(1000)},
        {"ff.dat", QByteArray(setup::SetupRecordMap::RecordSize, '\xFF')},
        {"unmarked.dat", setup::FactoryDefaults::record().replace(8, 8, QByteArray(8, '\0'))},
        {"long-line", QByteArray(5000, 'x')},
    };
    for (const auto &[name, bytes] : files)
        testsupport::writeFile(dir.filePath(QLatin1StringView(name)), bytes);
    const auto words = [&](const QString &line) {
        return QString(line).replace(u"%D"_s, dir.path()).split(u' ', Qt::SkipEmptyParts);
    };
    struct Case
    {
        QString sim;
        QString command;
        int exitCode;
        QString says;
        QString never = u"Success"_s;
        // The password the environment offers.
        const char *environment = "";
    };
    const QString admin = u"--admin-password-file %D/admin"_s;
    const Case cases[] = {
        {admin, u"--password-file %D/wrong info"_s, 1, u"Login failed by password error"_s},
        {admin, u"info"_s, 0, {}, u"Success"_s, "right"},
        {admin, u"--user nobody info"_s, 1, u"Login failed\n"_s},
        {admin, u"--password-file %D/two-lines info"_s, 0, {}, u"Success"_s, "wrong"},
        {admin, u"--password-file %D/missing info"_s, 2, u"cannot read password file"_s},
        {admin, u"--password-file %D/long-line info"_s, 2, u"longer than 4096 bytes"_s},
        {admin, u"--host "_s + QString(64, u'h') + u" info"_s, 2,
         u"the host name is 64 bytes in code page WINDOWS-1252; at most 63 fit"_s},
        {u"dead"_s, u"info"_s, 3, u"cannot connect to 127.0.0.1:%P"_s},
        // Reported when it happens, not when --timeout runs out.
        {u"--drop-after 1"_s, u"--timeout 2 info"_s, 3, u"127.0.0.1"_s, u"within"_s},
        {u"--delay-ms 3000"_s, u"--timeout 2 info"_s, 3,
         u"no setup record from 127.0.0.1:%P within"_s},
        {{}, u"set-time 2030-13-02T03:04:05"_s, 2, {}},
        {{},
         u"export /nonexistent/dir/setup.dat"_s,
         2,
         u"cannot write /nonexistent/dir/setup.dat"_s},
        {{}, u"import %D/other-model.dat"_s, 1, u"This file can not be imported.\n"_s},
        {{}, u"import %D/half.dat"_s, 1, u"is 7568 bytes"_s},
        {{},
         u"import %D/long.dat"_s,
         1,
         u"is 15137 bytes, but an export file is 15136 bytes; nothing sent"_s},
        {{}, u"import %D/missing.dat"_s, 2, u"missing.dat: File does not exist"_s},
        {{}, u"import %D"_s, 2, u"is a folder, not a file"_s},
        {{}, u"import"_s, 2, u"import takes one FILE"_s},
        {{}, u"factory-default --default-file %D/missing.dat"_s, 2, u"cannot read default file"_s},
        {{}, u"factory-default now"_s, 2, u"factory-default takes no arguments"_s},
        {{}, u"import %D/good.dat"_s, 0, u"Import Success\n"_s, u"refused"_s},
        {{}, u"factory-default"_s, 0, u"Default Setup Success\n"_s, u"refused"_s},
        // A default file named on the command line must be one.
        {{},
         u"factory-default --default-file %D/short-default.dat"_s,
         1,
         u"short-default.dat is not a default setup file: it is 1000 bytes, not 15148; nothing "
         u"sent"_s},
        {{}, u"factory-default --default-file %D/good.dat"_s, 1, u"it is 15136 bytes"_s},
        {{},
         u"factory-default --default-file %D/ff.dat"_s,
         1,
         u"its layout version is 0xffffffff, not 0x00010011"_s},
        {{}, u"factory-default --default-file %D/unmarked.dat"_s, 1, u"its header lacks"_s},
        {{},
         u"factory-default --default-file %D/default.dat"_s,
         0,
         u"Default Setup Success\n"_s,
         u"refused"_s},
        {u"--refuse-write-at=6"_s, u"import %D/good.dat"_s, 1, u"refused block 6 of 6 (NETWORK)"_s},
        {u"--refuse-write-at=7"_s, u"import %D/good.dat"_s, 1, u"refused the commit"_s},
        {u"--refuse-write-at=4"_s, u"factory-default"_s, 1, u"refused block 4 of 6 (RECORD)"_s},
        {u"--drop-after=6"_s, u"import %D/good.dat"_s, 3, u"before"_s},
    };
    std::unique_ptr<SimProcess> sim;
    QString running;
    for (const Case &c : cases) {
        SCOPED_TRACE((c.sim + u" | "_s + c.command).toStdString());
        if (!sim || c.sim != running) {
            running = c.sim;
            // The password goes into a fresh record only.
            sim = std::make_unique<SimProcess>(
                words(c.sim == u"dead"_s ? QString() : c.sim),
                c.sim.contains(u"password"_s) ? QByteArray() : testsupport::patternedRecord(1));
            ASSERT_TRUE(sim->isRunning());
        }
        const QByteArray before = sim->storedRecord();
        if (c.sim == u"dead"_s)
            sim->kill();
        qputenv("REMOTE_SETUP_PASSWORD", c.environment);
        const auto run = sim->cli(words(c.command));
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(
            run.err.contains(QString(c.says).replace(u"%P"_s, QString::number(sim->port()))))
            << run.err.toStdString();
        EXPECT_FALSE(run.err.contains(c.never)) << run.err.toStdString();
        const bool reads = c.exitCode != 0 || c.command.endsWith(u"info"_s);
        EXPECT_EQ(sim->storedRecord() == before, reads);
    }
    qunsetenv("REMOTE_SETUP_PASSWORD");
}

// Nothing the recorder says that is not what the protocol answers counts for
// success: not a chunk acceptance in other words, not a clock that was not
// set or cannot be, not an answer nobody asked for. `%D` is a folder of
// prepared files.
TEST(SessionCommands, NoReplyButTheRightOneCountsForSuccess)
{
    QTemporaryDir dir;
    writeInputs(dir);
    struct Case
    {
        const char *what;
        QString command;
        std::function<void(Recorder &)> prepare;
        int exitCode;
        QString says;
        QString never;
    };
    const auto dataReply = [](quint32 word0, quint32 word1) {
        return [=](Recorder &r) {
            r.dataReply = {word0, word1};
        };
    };
    const auto timeAnswer = [](std::array<quint32, 6> time) {
        return [=](Recorder &r) {
            r.script = [&r, time](const Frame &f) {
                if (!isCommand(f, RemoteCommand::DateTime, 2))
                    return false;
                r.send(RemoteCommand::DateTimeAnswer,
                       PACKET_PARAM {{2, time[0], time[1], time[2], time[3], time[4], time[5]}});
                return true;
            };
        };
    };
    // `before` goes out ahead of the usual answer to `command`.
    const auto ahead = [](qint32 command, qint32 before, PACKET_PARAM param) {
        return [=](Recorder &r) {
            r.script = [&r, command, before, param](const Frame &f) {
                if (f.command == command)
                    r.send(before, param);
                return false;
            };
        };
    };
    const QString completed = u"Updatefile transfer is completed"_s;
    const Case cases[] = {
        {"chunk answered 0, 1", u"upload %D/update.KRP"_s, dataReply(0, 1), 1,
         u"Unable to send data"_s, completed},
        {"chunk answered 1, 1", u"upload %D/update.KRP"_s, dataReply(1, 1), 1,
         u"Unable to send data"_s, completed},
        {"chunk answered 3, 1", u"upload %D/update.KRP"_s, dataReply(3, 1), 1,
         u"Unable to send data"_s, completed},
        {"clock an hour off", u"set-time 2030-01-02T03:04:05"_s, timeAnswer({2030, 1, 2, 4, 4, 5}),
         1, u"reports 2030-01-02 04:04:05 after being set to 2030-01-02 03:04:05"_s,
         u"recorder time"_s},
        {"clock in month 13", u"set-time 2030-01-02T03:04:05"_s, timeAnswer({2030, 13, 2, 3, 4, 5}),
         1, u"impossible time, 2030-13-02 03:04:05"_s, u"recorder time"_s},
        {"clock in year 65535", u"set-time 2030-01-02T03:04:05"_s,
         timeAnswer({65535, 1, 2, 3, 4, 5}), 1, u"impossible time, 65535-01-02"_s,
         u"recorder time"_s},
        {"info of an impossible clock", u"info"_s,
         [](Recorder &r) {
             r.time = {2026, 13, 1};
         },
         0, u"recorder time: 2026-13-01 00:00:00 (impossible)\n"_s, u"error"_s},
        // Only the answer to the request counts, and none comes.
        {"setup answer before the setup request", u"get camera.title[0]"_s,
         [](Recorder &r) {
             r.script = [&r](const Frame &f) {
                 if (f.command == RemoteCommand::Login)
                     r.send(RemoteCommand::SetupAnswer, {}, QByteArray(15148, 'X'));
                 return f.command == RemoteCommand::SetupRequest;
             };
         },
         3, u"no setup record from"_s, u"XXX"_s},
        {"acknowledgement of no write", u"info"_s,
         ahead(RemoteCommand::DateTime, RemoteCommand::SetupWriteAck, PACKET_PARAM {{1}}), 0,
         u"disks: "_s, u"Complete Save"_s},
        {"second login answer", u"info"_s,
         ahead(RemoteCommand::SetupRequest, RemoteCommand::LoginAnswer, PACKET_PARAM {{2}}), 0,
         u"disks: "_s, u"Login failed"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Recorder recorder;
        c.prepare(recorder);
        const auto run = recorder.run(QString(c.command).replace(u"%D"_s, dir.path()));
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        const QString all = run.out + run.err;
        EXPECT_TRUE(all.contains(c.says)) << all.toStdString();
        EXPECT_FALSE(all.contains(c.never)) << all.toStdString();
    }
}

// A connection the recorder closes ends every command at once with exit 3:
// by the transport's report, not by the time-out (2 s, shorter than the
// keep-alive's 5 s) nor a missing reply. A transfer that outlasts
// --deadline ends as well, in a fleet too, and the recorder is told to stop.
TEST(SessionCommands, ALostConnectionOrAPassedDeadlineEndsEveryCommand)
{
    QTemporaryDir dir;
    writeInputs(dir);
    struct Case
    {
        QString command;
        qint32 closeOn; // 0: never
        std::optional<quint32> word0;
        QString says;
    };
    const QString closed = u"127.0.0.1:%P closed the connection"_s;
    const Case cases[] = {
        {u"info"_s, RemoteCommand::Login, {}, closed},
        {u"info"_s, RemoteCommand::DateTime, {}, closed},
        {u"set-time 2030-01-02T03:04:05"_s, RemoteCommand::DateTime, 2u,
         closed + u" before time answer"_s},
        {u"set camera.title[0]=Door"_s,
         RemoteCommand::SetupWrite,
         {},
         u"the session ended before camera was acknowledged"_s},
        {u"import %D/setup.dat"_s,
         RemoteCommand::SetupWrite,
         {},
         u"the session ended before the whole setup was sent"_s},
        {u"upload %D/update.KRP"_s, RemoteCommand::FirmwarePacket, W::Data,
         closed + u" during the upload"_s},
        {u"--hosts %D/hosts upload --deadline 1 %D/update.KRP"_s,
         0,
         {},
         u"did not finish within 1 s (--deadline); the recorder was told to stop"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.toStdString());
        Recorder recorder;
        // One byte a chunk: 450 packets, each after its pause.
        recorder.chunkSize = c.closeOn ? 100 : 1;
        recorder.script = [&](const Frame &f) {
            if (!c.closeOn || !isCommand(f, c.closeOn, c.word0))
                return false;
            recorder.closeClient();
            return true;
        };
        testsupport::writeFile(dir.filePath(u"hosts"_s),
                               u"127.0.0.1:%1\n"_s.arg(recorder.port()).toLatin1());
        const auto run = recorder.run(QString(c.command).replace(u"%D"_s, dir.path()), 2);
        const QString all = run.out + run.err;
        EXPECT_EQ(run.exitCode, 3) << all.toStdString();
        EXPECT_TRUE(
            all.contains(QString(c.says).replace(u"%P"_s, QString::number(recorder.port()))))
            << all.toStdString();
        EXPECT_FALSE(all.contains(u"within 2 s"_s)) << all.toStdString();
        EXPECT_FALSE(all.contains(u"No Response"_s)) << all.toStdString();
        if (!c.closeOn) {
            EXPECT_TRUE(testsupport::waitFor([&] {
                const auto packets = recorder.receivedWith(RemoteCommand::FirmwarePacket);
                return !packets.empty() && packets.back().param.words[0] == W::Stop;
            }));
        }
    }
}
