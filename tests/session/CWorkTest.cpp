// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/CWork.h"
#include "session/SocketNotifyEvent.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::Section;
using setup::SetupRecordMap;
using testsupport::waitFor;

TEST(CWork, LogsInFetchesTheRecordAndStartsTheClock)
{
    ScriptedRecorder recorder;
    recorder.record = testsupport::patternedRecord(7, 0);
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
    EXPECT_EQ(work.setupAnswerValues(), (SetupAnswerValues {16, 4, 4, 1}));
    // The answer's time plus the tick delivered at once.
    EXPECT_EQ(work.clock().second, 16);
    EXPECT_EQ(work.clock().year, 2026);

    PACKET_STRING login;
    login.memberId = "Manager1";
    login.password = "pw";
    const std::tuple<qint32, PACKET_PARAM, QByteArray> expected[] = {
        {RemoteCommand::Open, PACKET_PARAM {{1, 0x500000}}, {}},
        {RemoteCommand::Login, {}, login.toBytes()},
        {RemoteCommand::SetupRequest, PACKET_PARAM {{15148}}, {}},
        {RemoteCommand::DateTime, PACKET_PARAM {{1}}, {}},
    };
    ASSERT_GE(recorder.received.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const Frame &f = recorder.received[i];
        EXPECT_EQ(std::tie(f.command, f.param, f.payload), expected[i]) << "frame " << i;
    }
    EXPECT_TRUE(harness.messages.isEmpty());
}

// A code the client does not know (9) is no answer: the session waits on.
TEST(CWork, RefusedLoginShowsItsMessageAndEndsTheSession)
{
    const std::pair<qint32, QString> codes[] = {
        {0, u"Login failed"_s},
        {2, u"Login failed by password error"_s},
        {4, u"Login failed by exceeding maximum user"_s},
        {5, u"Login failed by authority error"_s},
        {6, u"Login failed by former user"_s},
        {7, u"Login failed by menu operation"_s},
        {9, {}},
        {-1, {}},
    };
    for (const auto &[code, message] : codes) {
        SCOPED_TRACE(code);
        ScriptedRecorder recorder;
        recorder.loginCode = code;
        SessionHarness harness;
        harness.connect(recorder.port());
        const bool refused = !message.isEmpty();
        ASSERT_TRUE(waitFor([&] {
            return harness.worker->lastLoginCode() && harness.sessionMessages.empty() != refused;
        }));
        EXPECT_EQ(harness.worker->lastLoginCode(), code);
        EXPECT_EQ(harness.messages, refused ? QStringList {message} : QStringList {});
        EXPECT_EQ(harness.worker->state(), refused ? CWork::Idle : CWork::LoggingIn);
        if (refused) {
            EXPECT_EQ(harness.record.status.load(), CWork::Failed);
            EXPECT_EQ(harness.sessionMessages, std::vector<int> {SessionMessage::SessionEnded});
        }
        EXPECT_TRUE(recorder.receivedWith(RemoteCommand::SetupRequest).empty());
    }
}

// Connecting returns at once; a refused attempt then fails the session
// without a message. A hanging one the window's tests end by DISCONNECT.
TEST(CWork, ARefusedConnectionFailsTheSessionWithoutAMessage)
{
    quint16 closedPort;
    {
        ScriptedRecorder gone;
        closedPort = gone.port();
    }
    SessionHarness harness;
    CWork &work = harness.connect(closedPort);
    EXPECT_EQ(work.state(), CWork::Connecting);
    ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
    EXPECT_EQ(harness.record.status.load(), CWork::Failed);
    EXPECT_TRUE(work.connectFailed());
    EXPECT_EQ(work.state(), CWork::Idle);
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(CWork, ASecondConnectEndsTheFirstConnection)
{
    ScriptedRecorder first;
    ScriptedRecorder second;
    SessionHarness harness;
    CWork &work = harness.connect(first.port());
    ASSERT_TRUE(harness.waitForReady());
    harness.record.port = second.port();
    work.connectSession(&harness.record);
    ASSERT_TRUE(harness.waitForReady());
    EXPECT_TRUE(waitFor([&] { return !first.clientConnected(); }));
}

TEST(CWork, EventsOfAnEndedSessionAreDropped)
{
    ScriptedRecorder recorder;
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());

    // Holds the recorder's acknowledgement back, as if it were still queued
    // when the operator pressed DISCONNECT.
    struct Holder : QObject
    {
        std::unique_ptr<session::SocketNotifyEvent> held;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() != session::SocketNotifyEvent::NotifyType)
                return false;
            const auto *notify = static_cast<session::SocketNotifyEvent *>(event);
            held = std::make_unique<session::SocketNotifyEvent>(notify->record(), notify->packet(),
                                                                notify->channel());
            return true;
        }
    } holder;
    work.installEventFilter(&holder);
    ASSERT_NE(work.writeSection(Section::Camera, QByteArray(768, 'C')), 0);
    ASSERT_TRUE(waitFor([&] { return holder.held != nullptr; }));
    work.removeEventFilter(&holder);

    work.disconnectSession();
    QCoreApplication::sendEvent(&work, holder.held.get());
    QCoreApplication::processEvents();
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(CWork, ConnectionEventForAnotherHandleFailsTheSession)
{
    ScriptedRecorder recorder;
    recorder.onFrame = {};
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(waitFor([&] { return !recorder.received.empty(); }));
    const REMOTESOCKET_NOTIFY foreign {reinterpret_cast<KRSMGAPI_HANDLE>(&harness),
                                       REMOTESOCKET_NOTIFY::Connected};
    session::SocketNotifyEvent event(foreign, {});
    QCoreApplication::sendEvent(&work, &event);
    EXPECT_EQ(harness.record.status.load(), CWork::Failed);
    EXPECT_EQ(work.state(), CWork::Idle);
    ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
}

TEST(CWork, SetupAnswersOfTheWrongLengthOrEmptyAreNotStoredButStillAskTheTime)
{
    const QByteArray numbered = testsupport::patternedRecord(7, 0);
    ScriptedRecorder recorder;
    recorder.record = numbered.first(15147);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    EXPECT_EQ(work.mirror(), QByteArray(SetupRecordMap::RecordSize, '\0'));

    // A second current copy overwrites the mirror and asks for the time again;
    // a reference copy goes to its own buffer, if whole.
    recorder.send(RemoteCommand::SetupAnswer, PACKET_PARAM {{0, 0, 1}}, numbered.first(15147));
    recorder.send(RemoteCommand::SetupAnswer, {}, numbered);
    ASSERT_TRUE(waitFor([&] { return work.mirror() == numbered; }));
    EXPECT_EQ(work.referenceCopy(), QByteArray(SetupRecordMap::RecordSize, '\0'));
    const QByteArray other(SetupRecordMap::RecordSize, '\x11');
    recorder.send(RemoteCommand::SetupAnswer, PACKET_PARAM {{0, 0, 1}}, other);
    ASSERT_TRUE(waitFor([&] { return work.referenceCopy() == other; }));
    EXPECT_EQ(work.mirror(), numbered);
    EXPECT_TRUE(
        waitFor([&] { return recorder.receivedWith(RemoteCommand::DateTime).size() == 2; }));

    // An empty current answer has no setup data, and the time is still asked.
    recorder.send(RemoteCommand::SetupAnswer);
    ASSERT_TRUE(waitFor([&] { return !harness.messages.isEmpty(); }));
    EXPECT_EQ(harness.messages, QStringList {u"No Setup Data"_s});
    EXPECT_EQ(work.mirror(), numbered);
    EXPECT_TRUE(
        waitFor([&] { return recorder.receivedWith(RemoteCommand::DateTime).size() == 3; }));
}

// A write counts as applied, and is announced, only when acknowledged with 1.
TEST(CWork, SectionWritesWhenReadyCopyIntoTheMirrorThenSendTheSlice)
{
    for (const quint32 code : {0u, 2u, 1u}) {
        SCOPED_TRACE(code);
        ScriptedRecorder recorder;
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite)
                return recorder.answerAsRecorder(frame);
            recorder.send(RemoteCommand::SetupWriteAck, PACKET_PARAM {{code}});
        };
        SessionHarness harness;
        CWork &work = harness.connect(recorder.port());
        // Nothing is sent or mirrored before the session is ready.
        const QByteArray camera(768, 'C');
        QByteArray audio;
        EXPECT_EQ(work.writeSection(Section::Camera, camera), 0);
        EXPECT_EQ(work.writeWholeRecord(CWork::WholeRecord::Import, recorder.record), 0);
        EXPECT_EQ(work.readSection(Section::Audio, &audio), 0);
        EXPECT_EQ(work.mirror(), QByteArray(SetupRecordMap::RecordSize, '\0'));
        ASSERT_TRUE(harness.waitForReady());
        std::optional<bool> applied;
        QObject::connect(&work, &CWork::writeAcknowledged, &harness, [&](bool a) { applied = a; });

        EXPECT_EQ(work.writeSection(Section::Camera, camera.first(767)), 0);
        ASSERT_NE(work.writeSection(Section::Camera, camera), 0);
        EXPECT_EQ(work.mirror().sliced(1300, 768), camera);
        ASSERT_TRUE(waitFor([&] { return applied.has_value(); }));
        QCoreApplication::processEvents();
        EXPECT_EQ(*applied, code == 1);
        EXPECT_EQ(harness.messages,
                  code == 1 ? QStringList {u"Complete Save   \t"_s} : QStringList {});
        const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
        ASSERT_EQ(writes.size(), 1u);
        EXPECT_EQ(writes[0].param, (PACKET_PARAM {{5, 768, 1300, 0, 0, 0, 0, 0}}));
        EXPECT_EQ(writes[0].payload, camera);
        if (code != 1)
            continue;

        // A page that saves in two writes announces only the second.
        work.setSilentNextAcknowledgement();
        ASSERT_NE(work.writeSection(Section::DateTime, QByteArray(32, 'd')), 0);
        ASSERT_NE(work.writeSection(Section::DaylightSaving, QByteArray(20, 's')), 0);
        ASSERT_TRUE(
            waitFor([&] { return recorder.receivedWith(RemoteCommand::SetupWrite).size() == 3; }));
        ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 2; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(harness.messages.size(), 2);

        EXPECT_EQ(work.readSection(Section::Audio, &audio), 1);
        EXPECT_EQ(audio, work.mirror().sliced(564, 24));
        EXPECT_EQ(work.readSection(Section::Audio, nullptr), 0);
        EXPECT_EQ(work.readSection(Section::Camera, &audio), 0);
    }
}

// The keep-alive says so as soon as the transport reports the loss, not at
// its next turn, which here would come after the test's wait.
TEST(CWork, LostConnectionIsNoticedAtOnceByTheKeepAlive)
{
    ScriptedRecorder recorder;
    SessionHarness harness;
    harness.keepAliveMs = 3600 * 1000;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    recorder.closeClient();
    ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
    EXPECT_EQ(harness.messages,
              QStringList {u"DVR has been disconnected.\nThe Remote Setup is terminated.\n"
                           "Please try to reconnect."_s});
    EXPECT_EQ(harness.sessionMessages, std::vector<int> {SessionMessage::SessionEnded});
    EXPECT_EQ(work.state(), CWork::Idle);
}
