#include "session/CWork.h"
#include "session/RemoteCommand.h"
#include "session/SocketNotifyEvent.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::Section;
using setup::SetupRecordMap;
using testsupport::waitFor;

namespace {

QByteArray numberedRecord()
{
    QByteArray record(SetupRecordMap::RecordSize, '\0');
    for (qsizetype i = 0; i < record.size(); ++i)
        record[i] = char(i * 7);
    return record;
}

} // namespace

TEST(CWork, LogsInFetchesTheRecordAndStartsTheClock)
{
    ScriptedRecorder recorder;
    recorder.record = numberedRecord();
    recorder.channels = 4;
    recorder.video = 1;
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port(), "Manager1", "pw");
    ASSERT_TRUE(harness.waitForReady());

    EXPECT_EQ(work.state(), CWork::Ready);
    EXPECT_EQ(harness.record.status.load(), CWork::Ready);
    EXPECT_EQ(harness.record.channelCount, 4u);
    EXPECT_EQ(harness.record.videoStandard, 1u);
    EXPECT_EQ(work.videoStandard(), 1);
    EXPECT_EQ(work.mirror(), recorder.record);
    EXPECT_EQ(work.setupAnswerValues(), (std::array<quint32, 4> {16, 4, 4, 1}));
    // The answer's time plus the tick delivered at once.
    EXPECT_EQ(work.clock().second, 16);
    EXPECT_EQ(work.clock().year, 2026);

    const auto opens = recorder.receivedWith(RemoteCommand::Open);
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0].param.words[1], 0x500000u);
    const auto logins = recorder.receivedWith(RemoteCommand::Login);
    ASSERT_EQ(logins.size(), 1u);
    const PACKET_STRING login = PACKET_STRING::fromBytes(logins[0].payload);
    EXPECT_EQ(login.memberId, "Manager1");
    EXPECT_EQ(login.password, "pw");
    EXPECT_EQ(login.clientKind, 6u);
    const auto requests = recorder.receivedWith(RemoteCommand::SetupRequest);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].param.words[0], 15148u);
    const auto times = recorder.receivedWith(RemoteCommand::DateTime);
    ASSERT_EQ(times.size(), 1u);
    EXPECT_EQ(times[0].param, (PACKET_PARAM {{1, 0, 0, 0, 0, 0, 0, 0}}));
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(CWork, RefusedLoginShowsItsMessageAndEndsTheSession)
{
    const std::pair<qint32, QString> codes[] = {
        {0, u"Login failed"_s},
        {2, u"Login failed by password error"_s},
        {3, u"Login failed"_s},
        {4, u"Login failed by exceeding maximum user"_s},
        {5, u"Login failed by authority error"_s},
        {6, u"Login failed by former user"_s},
        {7, u"Login failed by menu operation"_s},
    };
    for (const auto &[code, message] : codes) {
        SCOPED_TRACE(code);
        ScriptedRecorder recorder;
        recorder.loginCode = code;
        SessionHarness harness;
        harness.connect(recorder.port());
        ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
        EXPECT_EQ(harness.messages, QStringList {message});
        EXPECT_EQ(harness.worker->state(), CWork::Idle);
        EXPECT_EQ(harness.record.status.load(), CWork::Failed);
        EXPECT_EQ(harness.sessionMessages, std::vector<int> {SessionMessage::SessionEnded});
        EXPECT_EQ(harness.worker->lastLoginCode(), code);
        EXPECT_TRUE(recorder.receivedWith(RemoteCommand::SetupRequest).empty());
    }
}

TEST(CWork, UnknownLoginCodeLeavesTheSessionWaiting)
{
    ScriptedRecorder recorder;
    recorder.loginCode = 9;
    SessionHarness harness;
    harness.connect(recorder.port());
    ASSERT_TRUE(waitFor([&] { return harness.worker->lastLoginCode().has_value(); }));
    EXPECT_EQ(harness.worker->state(), CWork::LoggingIn);
    EXPECT_TRUE(harness.messages.isEmpty());
    EXPECT_TRUE(harness.sessionMessages.empty());
}

TEST(CWork, ConnectFailureIsImmediateAndLeavesStateFailed)
{
    quint16 closedPort;
    {
        ScriptedRecorder gone;
        closedPort = gone.port();
    }
    SessionHarness harness;
    CWork &work = harness.connect(closedPort);
    EXPECT_EQ(work.state(), CWork::Failed);
    EXPECT_EQ(harness.record.status.load(), CWork::Failed);
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(CWork, ConnectionEventForAnotherHandleFailsTheSession)
{
    ScriptedRecorder recorder;
    recorder.onFrame = [](const Frame &) {
    };
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(waitFor([&] { return !recorder.received.empty(); }));
    REMOTESOCKET_NOTIFY foreign;
    foreign.handle = reinterpret_cast<KRSMGAPI_HANDLE>(&foreign);
    foreign.kind = REMOTESOCKET_NOTIFY::Connected;
    session::SocketNotifyEvent event(foreign, {});
    QCoreApplication::sendEvent(&work, &event);
    EXPECT_EQ(harness.record.status.load(), CWork::Failed);
    EXPECT_EQ(work.state(), CWork::Idle);
    ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
}

TEST(CWork, SetupAnswersOfTheWrongLengthAreNotStoredButStillAskTheTime)
{
    ScriptedRecorder recorder;
    recorder.record = numberedRecord().first(15147);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    EXPECT_EQ(work.mirror(), QByteArray(SetupRecordMap::RecordSize, '\0'));
    EXPECT_EQ(work.setupReceived(), 1);

    // A second current copy overwrites the mirror and asks for the time again;
    // a reference copy goes to its own buffer.
    PACKET_PARAM current;
    recorder.send(RemoteCommand::SetupAnswer, current, numberedRecord());
    PACKET_PARAM reference;
    reference.words[2] = 1;
    const QByteArray other(SetupRecordMap::RecordSize, '\x11');
    recorder.send(RemoteCommand::SetupAnswer, reference, other);
    ASSERT_TRUE(waitFor([&] { return work.referenceCopy() == other; }));
    EXPECT_EQ(work.mirror(), numberedRecord());
    EXPECT_TRUE(
        waitFor([&] { return recorder.receivedWith(RemoteCommand::DateTime).size() == 2; }));

    // An empty current answer has no setup data.
    recorder.send(RemoteCommand::SetupAnswer, current);
    ASSERT_TRUE(waitFor([&] { return !harness.messages.isEmpty(); }));
    EXPECT_EQ(harness.messages, QStringList {u"No Setup Data"_s});
    EXPECT_EQ(work.mirror(), numberedRecord());
}

TEST(CWork, SectionWritesCopyIntoTheMirrorThenSendTheSlice)
{
    ScriptedRecorder recorder;
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());

    const QByteArray camera(768, 'C');
    EXPECT_EQ(work.writeSection(Section::Camera, camera.first(767)), 0);
    ASSERT_NE(work.writeSection(Section::Camera, camera), 0);
    EXPECT_EQ(work.mirror().sliced(1300, 768), camera);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 1; }));
    EXPECT_EQ(harness.messages.first(), u"Complete Save   \t"_s);
    const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(writes[0].param, (PACKET_PARAM {{5, 768, 1300, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(writes[0].payload, camera);

    // A page that saves in two writes announces only the second.
    work.setSilentNextAcknowledgement();
    ASSERT_NE(work.writeSection(Section::DateTime, QByteArray(32, 'd')), 0);
    ASSERT_NE(work.writeSection(Section::DaylightSaving, QByteArray(20, 's')), 0);
    ASSERT_TRUE(
        waitFor([&] { return recorder.receivedWith(RemoteCommand::SetupWrite).size() == 3; }));
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 2; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(harness.messages.size(), 2);

    QByteArray audio;
    EXPECT_EQ(work.readSection(Section::Audio, &audio), 1);
    EXPECT_EQ(audio, work.mirror().sliced(564, 24));
    EXPECT_EQ(work.readSection(Section::Audio, nullptr), 0);
    EXPECT_EQ(work.readSection(Section::Camera, &audio), 0);
}

TEST(CWork, NothingIsSentOrMirroredBeforeTheSessionIsReady)
{
    CWork work;
    const QByteArray camera(768, 'C');
    EXPECT_EQ(work.writeSection(Section::Camera, camera), 0);
    EXPECT_EQ(work.writeWholeRecord(numberedRecord()), 0);
    QByteArray audio;
    EXPECT_EQ(work.readSection(Section::Audio, &audio), 0);
    EXPECT_EQ(work.mirror(), QByteArray(SetupRecordMap::RecordSize, '\0'));
}

TEST(CWork, WholeRecordWriteIsSixBlocksThenCommitThenOneSuccessMessage)
{
    for (const bool import : {true, false}) {
        SCOPED_TRACE(import ? "import" : "default");
        ScriptedRecorder recorder;
        SessionHarness harness;
        CWork &work = harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());

        import ? work.beginImport() : work.beginDefault();
        const QByteArray record = numberedRecord();
        ASSERT_NE(work.writeWholeRecord(record), 0);
        EXPECT_EQ(work.mirror(), record);
        ASSERT_TRUE(waitFor([&] { return !harness.messages.isEmpty(); }));

        const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
        ASSERT_EQ(writes.size(), 7u);
        for (std::size_t i = 0; i < 6; ++i) {
            const setup::BlockInfo &block = SetupRecordMap::Blocks[i];
            EXPECT_EQ(writes[i].param, (PACKET_PARAM {{8, quint32(block.length),
                                                       quint32(block.offset), 0, 0, 0, 0, 0}}));
            EXPECT_EQ(writes[i].payload, record.sliced(block.offset, block.length));
        }
        EXPECT_EQ(writes[6].param, (PACKET_PARAM {{9, 0, 0, 0, 0, 0, 0, 0}}));
        EXPECT_TRUE(writes[6].payload.isEmpty());
        EXPECT_EQ(harness.messages,
                  QStringList {import ? u"Import Success"_s : u"Default Setup Success"_s});
        EXPECT_EQ(harness.sessionMessages, std::vector<int> {SessionMessage::SetupRestored});
        EXPECT_FALSE(work.importPending() || work.defaultPending());
    }
}

TEST(CWork, AcknowledgementWithBothPendingFlagsChangesNothing)
{
    ScriptedRecorder recorder;
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    work.beginImport();
    work.beginDefault();
    ASSERT_NE(work.writeSection(Section::Camera, QByteArray(768, 'C')), 0);
    PACKET_PARAM ack;
    recorder.send(RemoteCommand::SetupWriteAck, ack);
    ASSERT_TRUE(
        waitFor([&] { return recorder.receivedWith(RemoteCommand::SetupWrite).size() == 1; }));
    // Give both acknowledgements time to arrive.
    waitFor([] { return false; }, 200);
    EXPECT_EQ(work.acknowledgementCount(), 0);
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(CWork, LostConnectionIsNoticedByTheKeepAliveWhichEndsTheProgram)
{
    ScriptedRecorder recorder;
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    recorder.closeClient();
    ASSERT_TRUE(
        waitFor([&] { return harness.exitCode.has_value(); }, 3 * CWork::KeepAliveIntervalMs));
    EXPECT_EQ(harness.exitCode, 0);
    EXPECT_EQ(harness.messages,
              QStringList {u"DVR has been disconnected.\nThe Remote Setup is terminated.\n"
                           "Please try to reconnect."_s});
    EXPECT_EQ(work.state(), CWork::Idle);
}
