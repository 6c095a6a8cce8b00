// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "sim/UserAccounts.h"
#include "tests/sim/SimFixture.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTcpSocket>
#include <QTest>
#include <QTimeZone>

using nelib::LittleEndian;
using session::Frame;

namespace {

constexpr quint32 Accepted = 1;
constexpr qsizetype RecordSize = 15148;
constexpr quint32 CameraCategory = 5;
constexpr quint32 WholeBlock = 8;

// Some bytes unlike anything in the factory defaults.
QByteArray pattern(qsizetype size, char seed)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(seed + 7 * i);
    return bytes;
}

PACKET_PARAM timeParam(quint32 mode, std::array<quint32, 6> fields = {})
{
    return PACKET_PARAM {{mode, fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]}};
}

QDateTime timeOf(const Frame &answer)
{
    const auto &w = answer.param.words;
    return QDateTime(QDate(int(w[1]), int(w[2]), int(w[3])), QTime(int(w[4]), int(w[5]), int(w[6])),
                     QTimeZone::utc());
}

} // namespace

using RecorderProtocol = SimFixture;

TEST_F(RecorderProtocol, LoginCodesFollowTheUsersSection)
{
    // Admin has a password and no rights word at all (it holds every right
    // anyway); User1 has a full 12-byte password; Manager2 lacks Network Access.
    QByteArray record = setup::FactoryDefaults::record();
    ASSERT_TRUE(sim::UserAccounts::setPassword(record, 0, "secret"));
    ASSERT_TRUE(sim::UserAccounts::setPassword(record, 4, "abcdefghijkl"));
    LittleEndian::setU32(record, 172, 0);
    const quint32 manager2Rights = LittleEndian::u32(record, 172 + 4 * 2);
    LittleEndian::setU32(record, 172 + 4 * 2, manager2Rights & ~sim::UserAccounts::NetworkAccess);
    testsupport::writeFile(recordPath(), record);
    options.channels = 8;
    options.videoStandard = 1;
    options.slowFailedLogins = false;
    ASSERT_TRUE(start());

    const struct
    {
        const char *member;
        const char *password;
        quint32 code;
    } cases[] = {
        {"Admin", "secret", 1},
        {"aDMIN", "secret", 1},
        {"Admin", "", 2},
        {"Admin", "secret2", 2},
        {"Admin", "Secret", 2},
        {"User1", "abcdefghijkl", 1},
        {"User1", "abcdefghijklm", 2},
        {"User1", "abcdefghijk", 2},
        {"user7", "", 1},
        {"Manager2", "", 5},
        {"Manager2", "wrong", 2},
        {"Nobody", "", 0},
        {"", "", 0},
        {"Admin2", "secret", 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.member) + " / " + c.password);
        const PACKET_PARAM answer = connect()->login(c.member, c.password);
        EXPECT_EQ(answer.words[0], c.code);
        // The channel count and the video standard, in bytes 4 and 6.
        EXPECT_EQ(answer.words[1], 0x00010008u);
    }
}

TEST_F(RecorderProtocol, LoginsBeyondMaxUsersAreRefusedUntilASessionEnds)
{
    options.maxUsers = 2;
    ASSERT_TRUE(start());
    auto first = admin();
    auto failed = connect();
    ASSERT_EQ(failed->login("Admin", "wrong").words[0], 2u);
    auto second = admin();
    // Logging in again does not count the session twice.
    EXPECT_EQ(second->login("Admin", "").words[0], Accepted);
    auto third = connect();
    EXPECT_EQ(third->login("Admin", "").words[0], 4u);

    first->close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server->sessionCount() == 3; }, FramePeer::WaitMs));
    EXPECT_EQ(third->login("Admin", "").words[0], Accepted);
}

// A forced refusal leaves the session as unserved as one that never logged in.
TEST_F(RecorderProtocol, RefuseLoginForcesItsCodeAndOnlyOpenAndLoginAreServedWithout)
{
    options.refuseLoginCode = 7;
    ASSERT_TRUE(start());
    const QByteArray before = storedRecord();
    auto client = connect();
    EXPECT_EQ(client->login("Admin", "").words[0], 7u);
    client->send(RemoteCommand::SetupRequest);
    client->send(RemoteCommand::DateTime, timeParam(1));
    client->send(RemoteCommand::SetupWrite, PACKET_PARAM {{CameraCategory, 4, 1300}}, "abcd");
    // Answers keep their order: were any of these answered, the
    // acknowledgement of an OPEN would not come next.
    EXPECT_EQ(client->replyWord(RemoteCommand::OpenAck, RemoteCommand::Open), 1);
    EXPECT_EQ(storedRecord(), before);
}

// The counts scale with the channels: one alarm input per camera, one
// alarm output per four, audio inputs up to four, a second disk above eight.
TEST_F(RecorderProtocol, SetupAnswerCarriesTheRecordAndTheHardwareCounts)
{
    const struct
    {
        quint8 channels;
        std::array<quint16, 4> counts;
    } cases[] = {
        {1, {1, 1, 1, 1}}, {4, {4, 1, 4, 1}}, {5, {5, 2, 4, 1}},
        {8, {8, 2, 4, 1}}, {9, {9, 3, 4, 2}}, {16, {16, 4, 4, 2}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(int(c.channels));
        options.channels = c.channels;
        ASSERT_TRUE(start());
        const auto answer
            = admin()->request(RemoteCommand::SetupRequest, PACKET_PARAM {{quint32(RecordSize)}});
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->payload, setup::FactoryDefaults::record());
        // A current copy (word 2 is 0), then the counts as 16-bit values.
        const auto &w = answer->param.words;
        EXPECT_EQ(w[2], 0u);
        EXPECT_EQ((std::array<quint32, 2> {w[3], w[4]}),
                  (std::array<quint32, 2> {c.counts[0] | quint32(c.counts[1]) << 16,
                                           c.counts[2] | quint32(c.counts[3]) << 16}));
    }
}

TEST_F(RecorderProtocol, WholeBlockWritesWaitForTheirSessionsCommit)
{
    ASSERT_TRUE(start());
    auto importer = admin();
    auto watcher = admin();
    const QByteArray before = storedRecord();
    const QByteArray system = pattern(572, 's');
    const QByteArray device = pattern(92, 'd');
    EXPECT_EQ(importer->write(WholeBlock, 32, system), 1);
    EXPECT_EQ(importer->write(WholeBlock, 13784, device), 1);

    EXPECT_EQ(storedRecord(), before);
    EXPECT_EQ(importer->setupRecord(), before);
    EXPECT_EQ(watcher->setupRecord(), before);
    // Another session's commit does not take them.
    EXPECT_EQ(watcher->commit(), 1);
    EXPECT_EQ(storedRecord(), before);

    EXPECT_EQ(importer->commit(), 1);
    QByteArray expected = before;
    expected.replace(32, 572, system);
    expected.replace(13784, 92, device);
    EXPECT_EQ(storedRecord(), expected);
    EXPECT_EQ(watcher->setupRecord(), expected);
    // The commit used them up.
    EXPECT_EQ(watcher->write(0, 32, before.sliced(32, 572)), 1);
    EXPECT_EQ(importer->commit(), 1);
    EXPECT_EQ(storedRecord().sliced(32, 572), before.sliced(32, 572));

    // A session that ends before its commit takes its staged writes along.
    importer->write(WholeBlock, 604, pattern(696, 'p'));
    importer->close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server->sessionCount() == 1; }, FramePeer::WaitMs));
    EXPECT_EQ(watcher->commit(), 1);
    EXPECT_EQ(storedRecord().sliced(604, 696), before.sliced(604, 696));
}

// A drop closes the connection once the n-th frame is answered. A delay
// the command line's tests show: an answer later than their timeout.
TEST_F(RecorderProtocol, DropAfterClosesOnceTheNthFrameIsAnswered)
{
    options.dropAfter = 3;
    ASSERT_TRUE(start());
    auto client = connect();
    PACKET_STRING login;
    login.memberId = "Admin";
    client->send(RemoteCommand::Open);
    client->send(RemoteCommand::Login, {}, login.toBytes());
    client->send(RemoteCommand::SetupRequest);
    client->send(RemoteCommand::DateTime, timeParam(1));
    const qint32 expected[]
        = {RemoteCommand::OpenAck, RemoteCommand::LoginAnswer, RemoteCommand::SetupAnswer};
    for (quint32 i = 0; i < 3; ++i) {
        const auto frame = client->next();
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->command, expected[i]);
        EXPECT_EQ(frame->sequence, i);
    }
    EXPECT_TRUE(client->waitClosed());
    EXPECT_FALSE(client->take());
    // Every connection gets its own count.
    EXPECT_TRUE(connect()->request(RemoteCommand::Open));
}

TEST_F(RecorderProtocol, MalformedFramesCloseOnlyTheirConnection)
{
    ASSERT_TRUE(start());
    auto bystander = admin();

    // The shapes of a malformed head are the frame reader's to tell.
    QByteArray badMagic = Frame::encode(0, RemoteCommand::Open, {});
    badMagic[0] = 'X';
    const QByteArray garbage = pattern(200, 'g');
    // Only a whole frame in front of the bad bytes is served.
    const QByteArray valid = Frame::encode(2, RemoteCommand::SetupWrite,
                                           PACKET_PARAM {{CameraCategory, 4, 1300}}, "kept");
    const std::pair<QByteArray, std::size_t> inputs[]
        = {{badMagic, 0}, {valid + garbage + valid, 1}};
    for (const auto &[input, served] : inputs) {
        SCOPED_TRACE(input.left(32).toHex().toStdString());
        auto client = admin();
        client->sendRaw(input);
        EXPECT_TRUE(client->waitClosed());
        std::size_t answers = 0;
        while (client->take())
            ++answers;
        EXPECT_EQ(answers, served);
    }
    EXPECT_EQ(storedRecord().sliced(1300, 4), QByteArray("kept"));
    EXPECT_EQ(bystander->setupRecord(), storedRecord());
}

TEST_F(RecorderProtocol, ClockCanBeSetAndReadAndIgnoresInvalidTimes)
{
    // User1 may log in over the network, but not set the time.
    QByteArray record = setup::FactoryDefaults::record();
    LittleEndian::setU32(record, 172 + 4 * 4, sim::UserAccounts::NetworkAccess);
    testsupport::writeFile(recordPath(), record);
    ASSERT_TRUE(start());
    auto client = admin();
    auto other = admin();
    auto user = connect();
    ASSERT_EQ(user->login("User1", "").words[0], Accepted);
    const QDateTime set(QDate(2031, 2, 3), QTime(4, 5, 6), QTimeZone::utc());
    // Generous bounds: the clock runs on while the test does.
    const auto expectNearSetTime = [&](const std::optional<Frame> &answer, quint32 mode) {
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->command, RemoteCommand::DateTimeAnswer);
        EXPECT_EQ(answer->param.words[0], mode);
        const QDateTime time = timeOf(*answer);
        EXPECT_GE(time, set);
        EXPECT_LE(time, set.addSecs(3600)) << time.toString().toStdString();
    };

    expectNearSetTime(client->request(RemoteCommand::DateTime, timeParam(2, {2031, 2, 3, 4, 5, 6})),
                      2);
    expectNearSetTime(other->request(RemoteCommand::DateTime, timeParam(1)), 1);

    const std::array<quint32, 6> invalid[] = {
        {2031, 2, 29, 0, 0, 0},      {2030, 13, 1, 0, 0, 0},  {2030, 0, 1, 0, 0, 0},
        {2030, 1, 0, 0, 0, 0},       {2030, 1, 1, 24, 0, 0},  {2030, 1, 1, 0, 60, 0},
        {2030, 1, 1, 0, 0, 60},      {1969, 12, 31, 0, 0, 0}, {2100, 1, 1, 0, 0, 0},
        {0xFFFFFFFF, 1, 1, 0, 0, 0},
    };
    for (const auto &fields : invalid) {
        SCOPED_TRACE(&fields - invalid);
        expectNearSetTime(client->request(RemoteCommand::DateTime, timeParam(2, fields)), 2);
    }
    expectNearSetTime(user->request(RemoteCommand::DateTime, timeParam(2, {2040, 1, 1, 0, 0, 0})),
                      2);
    // A leap day is a real day.
    const auto leap
        = client->request(RemoteCommand::DateTime, timeParam(2, {2032, 2, 29, 23, 59, 0}));
    ASSERT_TRUE(leap);
    EXPECT_GE(timeOf(*leap), QDateTime(QDate(2032, 2, 29), QTime(23, 59), QTimeZone::utc()));
}

TEST_F(RecorderProtocol, AChangeThatCannotBeSavedIsRefusedAndUndone)
{
    ASSERT_TRUE(start());
    auto client = admin();
    const QByteArray before = client->setupRecord();
    ASSERT_TRUE(QFile::remove(recordPath()));
    ASSERT_TRUE(QDir().mkdir(recordPath()));

    EXPECT_EQ(client->write(CameraCategory, 1300, "lost"), 0);
    EXPECT_EQ(client->write(WholeBlock, 1300, "lost"), 1);
    EXPECT_EQ(client->commit(), 0);
    EXPECT_EQ(client->setupRecord(), before);
}

// A write applies at once and reaches the file when it fits the record
// outside the header, carries exactly its length and falls in a section its
// account may change; else it is refused and changes nothing.
TEST_F(RecorderProtocol, WritesApplyAtOnceUnlessAnyCheckFails)
{
    // User1 may use the cameras (bit 2) and log in over the network (bit 8).
    QByteArray record = setup::FactoryDefaults::record();
    LittleEndian::setU32(record, 172 + 4 * 4, (1u << 2) | sim::UserAccounts::NetworkAccess);
    testsupport::writeFile(recordPath(), record);
    ASSERT_TRUE(start());
    auto user = connect();
    ASSERT_EQ(user->login("User1", "").words[0], Accepted);
    auto admin = this->admin();
    auto watcher = this->admin();
    // Were these answered, the acknowledgement would not come next.
    admin->send(RemoteCommand::KeepAlive);
    admin->send(0x7777, {}, "unknown");

    const struct
    {
        const char *what;
        FramePeer &client;
        quint32 category;
        quint32 length;
        quint32 offset;
        qsizetype payload;
        quint32 ack;
    } cases[] = {
        {"camera setup, by Admin", *admin, CameraCategory, 768, 1300, 768, 1},
        {"the last byte", *admin, 1, 1, 15147, 1, 1},
        {"header", *admin, 0, 4, 28, 4, 0},
        {"one past the end", *admin, 1, 2, 15147, 2, 0},
        {"offset past the end", *admin, 1, 1, 15148, 1, 0},
        {"wrapping sum", *admin, 1, 0x20, 0xFFFFFFF0, 0x20, 0},
        {"huge length", *admin, 1, 0xFFFFFFFF, 32, 16, 0},
        {"short payload", *admin, 5, 768, 1300, 767, 0},
        {"long payload", *admin, 5, 768, 1300, 769, 0},
        {"missing payload", *admin, 3, 24, 564, 0, 0},
        {"staged into the header", *admin, WholeBlock, 32, 0, 32, 0},
        {"staged past the end", *admin, WholeBlock, 1272, 13877, 1272, 0},
        {"camera setup", *user, CameraCategory, 768, 1300, 768, 1},
        {"Admin's password", *user, 10, 12, 32, 12, 0},
        {"its own rights", *user, 10, 4, 188, 4, 0},
        {"PTZ", *user, CameraCategory, 640, 2068, 640, 0},
        {"camera setup running into PTZ", *user, CameraCategory, 16, 2060, 16, 0},
        {"stream", *user, 1, 1272, 13876, 1272, 0},
        {"a whole block", *user, WholeBlock, 7172, 1300, 7172, 0},
        {"the whole users section, by Admin", *admin, 10, 532, 32, 532, 1},
    };
    QByteArray expected = storedRecord();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const QByteArray bytes = pattern(c.payload, char('a' + (&c - cases)));
        EXPECT_EQ(c.client.replyWord(RemoteCommand::SetupWriteAck, RemoteCommand::SetupWrite,
                                     PACKET_PARAM {{c.category, c.length, c.offset}}, bytes),
                  c.ack);
        if (c.ack)
            expected.replace(c.offset, c.length, bytes);
        EXPECT_EQ(storedRecord(), expected);
    }
    // Two writes that arrive together are both acknowledged, nothing sent after them.
    admin->sendRaw(Frame::encode(90, RemoteCommand::SetupWrite,
                                 PACKET_PARAM {{CameraCategory, 4, 1300}}, "ab12")
                   + Frame::encode(91, RemoteCommand::SetupWrite,
                                   PACKET_PARAM {{CameraCategory, 4, 1304}}, "cd34"));
    for (int i = 0; i < 2; ++i) {
        const auto ack = admin->next();
        EXPECT_TRUE(ack && ack->command == RemoteCommand::SetupWriteAck && ack->param.words[0] == 1)
            << "acknowledgement " << i + 1 << " missing";
    }
    expected.replace(1300, 8, "ab12cd34");
    EXPECT_EQ(admin->commit(), 1);
    EXPECT_EQ(user->commit(), 1);
    EXPECT_EQ(storedRecord(), expected);
    EXPECT_EQ(watcher->setupRecord(), expected);
}

TEST_F(RecorderProtocol, ConnectionsWithoutLoginOrKeepAliveAreClosedAndFreeTheirSlot)
{
    options.loginTimeoutMs = 500;
    options.keepAliveTimeoutMs = 2000;
    options.maxUsers = 1;
    ASSERT_TRUE(start());
    auto silent = connect();
    // Before login a frame may be 4096 bytes, however it arrives.
    const auto loginOf = [](qsizetype frameSize) {
        return Frame::encode(0, RemoteCommand::Login, {}, QByteArray(frameSize - 60, '\0'));
    };
    auto largest = connect();
    largest->sendRaw(loginOf(4096));
    EXPECT_EQ(largest->next()->command, RemoteCommand::LoginAnswer);
    std::unique_ptr<FramePeer> oversized[] = {connect(), connect()};
    oversized[0]->sendRaw(loginOf(4097));
    oversized[1]->sendRaw(loginOf(65596));
    auto first = admin();
    EXPECT_TRUE(silent->waitClosed());
    for (const auto &client : oversized) {
        EXPECT_TRUE(client->waitClosed());
        EXPECT_FALSE(client->take());
    }

    // Keep-alives hold the slot past the timeout; then the first session
    // stays silent and its slot goes to the next one.
    for (int i = 0; i < 3; ++i) {
        testsupport::waitFor([] { return false; }, options.keepAliveTimeoutMs / 2);
        first->send(RemoteCommand::KeepAlive);
    }
    EXPECT_FALSE(first->isClosed());
    EXPECT_EQ(connect()->login("Admin", "").words[0], 4u);
    auto second = connect();
    EXPECT_EQ(second->login("Admin", "").words[0], 4u);
    EXPECT_TRUE(first->waitClosed());
    auto third = connect();
    EXPECT_EQ(third->login("Admin", "").words[0], Accepted);
}

// After three failures each login from the address waits longer, but never
// past the login timeout: then it is checked at once.
TEST_F(RecorderProtocol, FailedLoginsAreSlowedButNotPastTheLoginTimeout)
{
    options.loginTimeoutMs = 300;
    ASSERT_TRUE(start());
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(connect()->login("Admin", "wrong").words[0], 2u) << i;
    EXPECT_EQ(connect()->login("Admin", "").words[0], Accepted);
}

TEST_F(RecorderProtocol, AtTheConnectionCapIdleConnectionsMakeWay)
{
    options.maxConnections = 2;
    ASSERT_TRUE(start());
    auto idle1 = connect();
    auto idle2 = connect();
    auto user1 = admin();
    EXPECT_TRUE(idle1->waitClosed());
    auto user2 = admin();
    EXPECT_TRUE(idle2->waitClosed());
    FramePeer refused(server->port());
    EXPECT_TRUE(refused.waitClosed());
    EXPECT_TRUE(user1->setupRecord().size() == RecordSize && !user2->isClosed());
}

TEST_F(RecorderProtocol, AClientThatDoesNotReadIsDroppedWhileOthersAreServed)
{
    options.maxUnsentBytes = 64 * 1024;
    options.stallTimeoutMs = 200;
    QLoggingCategory::setFilterRules(QStringLiteral("recorder.sim.info=false"));
    ASSERT_TRUE(start());
    QTcpSocket greedy;
    greedy.setReadBufferSize(1);
    greedy.connectToHost(QHostAddress(QHostAddress::LocalHost), server->port());
    ASSERT_TRUE(greedy.waitForConnected(FramePeer::WaitMs));
    PACKET_STRING login;
    login.memberId = "Admin";
    QByteArray requests = Frame::encode(0, RemoteCommand::Open, {})
                          + Frame::encode(1, RemoteCommand::Login, {}, login.toBytes());
    for (quint32 i = 2; i < 2000; ++i)
        requests
            += Frame::encode(i, RemoteCommand::SetupRequest, PACKET_PARAM {{quint32(RecordSize)}});
    greedy.write(requests);

    auto other = admin();
    EXPECT_EQ(other->setupRecord().size(), RecordSize);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->sessionCount() == 1; }, FramePeer::WaitMs));
    EXPECT_EQ(other->setupRecord().size(), RecordSize);
    QLoggingCategory::setFilterRules({});
}
