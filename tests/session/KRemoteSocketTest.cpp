// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/KRemoteSocket.h"

#include "session/SocketChannel.h"
#include "session/SocketNotifyEvent.h"
#include "tests/session/ScriptedRecorder.h"

#include <QCoreApplication>
#include <QList>
#include <QTcpServer>
#include <QTest>

#include <thread>

using session::Frame;
using session::SocketNotifyEvent;

namespace {

// Generous: the machines running the tests are shared and slow under the
// sanitizers. Waits end as soon as their condition holds.
constexpr int WaitMs = 30000;

struct Notification
{
    KRSMGAPI_HANDLE handle;
    quint32 kind;
    QByteArray packet;
    friend bool operator==(const Notification &, const Notification &) = default;
};

// Stands in for the session: records every notification it is sent.
class Receiver : public QObject
{
public:
    QList<Notification> received;

protected:
    bool event(QEvent *e) override
    {
        if (e->type() != SocketNotifyEvent::NotifyType)
            return QObject::event(e);
        const auto *n = static_cast<SocketNotifyEvent *>(e);
        received.append({n->record().handle, n->record().kind, n->packet()});
        return true;
    }
};

QByteArray frame(qint32 command, PACKET_PARAM param = {}, const QByteArray &payload = {})
{
    return Frame::encode(0, command, param, payload);
}

int sendStream(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_PARAM &param,
               const QByteArray &bytes)
{
    return KRSMGAPI_SendPacketStream(handle, command, &param, bytes.data(), quint32(bytes.size()));
}

int sendKeepAlive(KRSMGAPI_HANDLE handle)
{
    const PACKET_PARAM zero;
    return KRSMGAPI_SendPacketCmd(handle, RemoteCommand::KeepAlive, &zero);
}

// The recorder's end is a ScriptedRecorder that only listens: the tests
// script every byte it sends.
class KRemoteSocketTest : public testing::Test
{
protected:
    KRemoteSocketTest() { peer.onFrame = {}; }

    void TearDown() override
    {
        for (KRSMGAPI_HANDLE handle : handles)
            KRSMGAPI_Destroy(handle);
    }

    KRSMGAPI_HANDLE create()
    {
        KRSMGAPI_HANDLE handle = KRSMGAPI_Create(&receiver, nullptr, nullptr);
        handles.append(handle);
        return handle;
    }

    // A handle connected to `recorder`, once the connection is reported:
    // sends are taken from then on.
    KRSMGAPI_HANDLE connectTo(ScriptedRecorder &recorder)
    {
        KRSMGAPI_HANDLE handle = create();
        const REMOTESOCKET_CONNECT_INFO target {"127.0.0.1", recorder.port()};
        EXPECT_NE(KRSMGAPI_Connect(handle, &target), 0);
        const Notification connected {handle, REMOTESOCKET_NOTIFY::Connected, {}};
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return recorder.hasClient() && receiver.received.contains(connected); }, WaitMs));
        return handle;
    }

    ScriptedRecorder peer;
    Receiver receiver;
    QList<KRSMGAPI_HANDLE> handles;
};

} // namespace

TEST_F(KRemoteSocketTest, ConnectRefusesBadEntriesAtOnceAndReportsTheAttemptsOutcomeLater)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost, 0));
    const quint16 closedPort = closed.serverPort();
    closed.close();

    constexpr quint32 RefusedAtOnce = ~0u; // nothing posted either
    const quint32 port = peer.port();
    const struct
    {
        const char *name;
        REMOTESOCKET_CONNECT_INFO target;
        quint32 notified;
    } cases[] = {
        {"address", {"127.0.0.1", port}, REMOTESOCKET_NOTIFY::Connected},
        {"name", {"localhost", port}, REMOTESOCKET_NOTIFY::Connected},
        // A zero byte ends the address, as in the fixed-width field it comes from.
        {"address ended by a zero",
         {QByteArray("127.0.0.1\0junk", 14), port},
         REMOTESOCKET_NOTIFY::Connected},
        {"refused", {"127.0.0.1", closedPort}, REMOTESOCKET_NOTIFY::ConnectFailed},
        {"unresolvable", {"no-such-recorder.invalid", port}, REMOTESOCKET_NOTIFY::ConnectFailed},
        {"empty address", {"", port}, RefusedAtOnce},
        {"address filling its field", {QByteArray(260, 'a'), port}, RefusedAtOnce},
        {"port 0", {"127.0.0.1", 0}, RefusedAtOnce},
        {"port beyond 16 bits", {"127.0.0.1", 65536u + port}, RefusedAtOnce},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        receiver.received.clear();
        KRSMGAPI_HANDLE handle = create();
        ASSERT_NE(handle, nullptr);
        const bool started = c.notified != RefusedAtOnce;
        EXPECT_EQ(KRSMGAPI_Connect(handle, &c.target) != 0, started);
        const QList<Notification> expected {{handle, c.notified, {}}};
        if (started) {
            ASSERT_TRUE(QTest::qWaitFor([&] { return !receiver.received.isEmpty(); }, WaitMs));
        }
        QCoreApplication::processEvents();
        EXPECT_TRUE(receiver.received == (started ? expected : QList<Notification> {}));
        // One connection per handle, and sends only on an established one.
        EXPECT_EQ(KRSMGAPI_Connect(handle, &c.target), 0);
        const bool connected = c.notified == REMOTESOCKET_NOTIFY::Connected;
        EXPECT_EQ(sendKeepAlive(handle) != 0, connected);
        EXPECT_EQ(KRSMGAPI_SendInitPacketData(handle) != 0, connected);
    }
    const REMOTESOCKET_CONNECT_INFO target {"127.0.0.1", port};
    EXPECT_EQ(KRSMGAPI_Connect(create(), nullptr), 0);
    EXPECT_EQ(KRSMGAPI_Connect(nullptr, &target), 0);
    EXPECT_EQ(KRSMGAPI_Create(nullptr, nullptr, nullptr), nullptr);
}

TEST_F(KRemoteSocketTest, AHangingAttemptEndsSilentlyWithDisconnect)
{
    testsupport::HangingListener listener;
    const REMOTESOCKET_CONNECT_INFO target {"127.0.0.1", listener.port()};
    KRSMGAPI_HANDLE handle = create();
    ASSERT_NE(KRSMGAPI_Connect(handle, &target), 0);
    QTest::qWait(200);
    EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
    QTest::qWait(50);
    EXPECT_TRUE(receiver.received.isEmpty());
}

// Each handle's peer gets whole frames whatever the chunks they came in, and
// every event names the handle it concerns.
TEST_F(KRemoteSocketTest, PeerFramesBecomeNotificationsOfTheirHandleWhateverTheChunks)
{
    ScriptedRecorder peerB;
    peerB.onFrame = {};
    KRSMGAPI_HANDLE a = connectTo(peer);
    KRSMGAPI_HANDLE b = connectTo(peerB);
    ASSERT_NE(a, b);
    const QByteArray loginAnswer
        = frame(RemoteCommand::LoginAnswer, PACKET_PARAM {{1, 0x00010010}});
    const QByteArray setupAnswer = frame(
        RemoteCommand::SetupAnswer, PACKET_PARAM {{0, 0, 0, 0x00040008}}, QByteArray(15148, 's'));
    const QByteArray stream
        = frame(RemoteCommand::OpenAck, PACKET_PARAM {{1}}) + loginAnswer + setupAnswer;
    const QByteArray toB = frame(RemoteCommand::DateTimeAnswer, PACKET_PARAM {{1, 2024, 2, 29}});
    peerB.sendRaw(toB);

    // Frames glued together; the frame reader's tests split them anywhere.
    peer.sendRaw(stream);

    ASSERT_TRUE(QTest::qWaitFor([&] { return receiver.received.size() >= 6; }, WaitMs));
    QList<Notification> ofA;
    QList<Notification> ofB;
    for (const Notification &n : receiver.received)
        (n.handle == a ? ofA : ofB).append(n);
    constexpr quint32 Packet = REMOTESOCKET_NOTIFY::PacketReceived;
    EXPECT_TRUE(ofA
                == (QList<Notification> {{a, REMOTESOCKET_NOTIFY::Connected, {}},
                                         {a, REMOTESOCKET_NOTIFY::InitAcknowledged, {}},
                                         {a, Packet, loginAnswer},
                                         {a, Packet, setupAnswer}}));
    EXPECT_TRUE(
        ofB == (QList<Notification> {{b, REMOTESOCKET_NOTIFY::Connected, {}}, {b, Packet, toB}}));
}

// Sends refused for their arguments send nothing and use up no number: the
// opening frame that follows is the first the peer sees, numbered 0. What
// each send puts on the wire the session's tests read at the recorder's end.
TEST_F(KRemoteSocketTest, InvalidSendsSendNothingAndTheLargestChunkGoesWhole)
{
    KRSMGAPI_HANDLE handle = connectTo(peer);
    const PACKET_PARAM write = PACKET_PARAM {{5, 768, 1300}};
    const QByteArray chunk(Frame::MaxPayloadSize, 'f');

    EXPECT_EQ(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, &write, nullptr, 4), 0);
    EXPECT_EQ(sendStream(handle, RemoteCommand::FirmwarePacket, write, chunk + 'x'), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, nullptr, "ab", 2), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketCmd(handle, RemoteCommand::SetupRequest, nullptr), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketString(handle, RemoteCommand::Login, nullptr), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketCmd(nullptr, RemoteCommand::SetupRequest, &write), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketStream(nullptr, RemoteCommand::SetupWrite, &write, "ab", 2), 0);
    EXPECT_EQ(KRSMGAPI_SendInitPacketData(nullptr), 0);
    EXPECT_EQ(KRSMGAPI_Disconnect(nullptr), 1);

    ASSERT_NE(KRSMGAPI_SendInitPacketData(handle), 0);
    ASSERT_NE(sendStream(handle, RemoteCommand::FirmwarePacket, write, chunk), 0);
    ASSERT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, &write, nullptr, 0), 0);
    ASSERT_TRUE(peer.waitReceived(3));
    const auto &f = peer.received;
    EXPECT_EQ(std::tie(f[0].sequence, f[0].command), std::tuple(0u, RemoteCommand::Open));
    EXPECT_EQ(std::tie(f[1].sequence, f[1].param, f[1].payload), std::tuple(1u, write, chunk));
    EXPECT_EQ(std::tie(f[2].sequence, f[2].payload), std::tuple(2u, QByteArray()));
}

// The upload writes its frames itself, beside frames queued for the I/O
// thread; the peer reads nothing until all are sent, so that the network
// soon takes only parts of frames and the rest waits its turn.
TEST_F(KRemoteSocketTest, ConcurrentSendsArriveWholeAndNumbered)
{
    KRSMGAPI_HANDLE handle = connectTo(peer);
    constexpr int PerThread = 300;
    auto payloadOf = [](quint32 sender, quint32 index) {
        return QByteArray(qsizetype(index * 3701 % 50000), char('a' + sender));
    };
    auto sendAll = [&](quint32 sender) {
        for (quint32 i = 0; i < PerThread; ++i) {
            const PACKET_PARAM param = PACKET_PARAM {{sender, i}};
            const QByteArray payload = payloadOf(sender, i);
            EXPECT_TRUE(sender == 0
                            ? handle->sendNow(frame(RemoteCommand::FirmwarePacket, param, payload))
                            : sendStream(handle, RemoteCommand::FirmwarePacket, param, payload));
        }
    };
    std::thread upload(sendAll, 0);
    std::thread keepAlive(sendAll, 1);
    upload.join();
    keepAlive.join();

    ASSERT_TRUE(peer.waitReceived(2 * PerThread));
    quint32 next[2] = {0, 0};
    for (std::size_t seq = 0; seq < peer.received.size(); ++seq) {
        const Frame &f = peer.received[seq];
        ASSERT_EQ(f.sequence, quint32(seq));
        const quint32 sender = f.param.words[0];
        ASSERT_LT(sender, 2u);
        ASSERT_EQ(f.param.words[1], next[sender]) << "sender " << sender;
        ASSERT_EQ(f.payload, payloadOf(sender, next[sender]));
        ++next[sender];
    }
}

// However a connection ends, later sends fail and the peer sees it closed.
// A disconnect still delivers the frames already queued; of a malformed
// frame (its many shapes are the frame reader's to tell) or a refused
// opening exchange, only the frames before it are delivered. Every end but
// our own is posted as a loss, and sends fail by the time it arrives.
TEST_F(KRemoteSocketTest, EveryEndOfAConnectionMakesLaterSendsFail)
{
    const QByteArray good = frame(RemoteCommand::SetupWriteAck, PACKET_PARAM {{1}});
    QByteArray wrongMagic = good;
    wrongMagic.replace(0, 4, "HTTP");
    enum End { PeerCloses, Disconnect, Destroy, WrongMagic, OpeningRefused };
    for (const End end : {PeerCloses, Disconnect, Destroy, WrongMagic, OpeningRefused}) {
        SCOPED_TRACE(end);
        receiver.received.clear();
        ScriptedRecorder peer;
        peer.onFrame = {};
        KRSMGAPI_HANDLE handle = connectTo(peer);
        const QByteArray chunk(Frame::MaxPayloadSize, 'z');
        const PACKET_PARAM stop {{4}};
        ASSERT_NE(sendStream(handle, RemoteCommand::FirmwarePacket, stop, chunk), 0);
        ASSERT_NE(KRSMGAPI_SendPacketCmd(handle, RemoteCommand::FirmwarePacket, &stop), 0);
        if (end == PeerCloses) {
            peer.closeClient();
        } else if (end == Disconnect) {
            EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
            EXPECT_EQ(sendKeepAlive(handle), 0);
            ASSERT_TRUE(peer.waitReceived(2));
            EXPECT_EQ(peer.received[0].payload.size(), Frame::MaxPayloadSize);
            EXPECT_TRUE(peer.received[1].payload.isEmpty());
        } else if (end == Destroy) {
            KRSMGAPI_Destroy(handle);
            handles.removeOne(handle);
        } else {
            const QByteArray refused = frame(RemoteCommand::OpenAck, PACKET_PARAM {{0}});
            peer.sendRaw(good + (end == WrongMagic ? wrongMagic : refused) + good);
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return !peer.clientConnected(); }, WaitMs));
        const bool lost = end != Disconnect && end != Destroy;
        if (lost) {
            ASSERT_TRUE(QTest::qWaitFor(
                [&] {
                    return receiver.received.last().kind == REMOTESOCKET_NOTIFY::ConnectionLost;
                },
                WaitMs));
        }
        if (end != Destroy) {
            EXPECT_EQ(sendKeepAlive(handle), 0);
            EXPECT_EQ(KRSMGAPI_SendInitPacketData(handle), 0);
            EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
        }
        QCoreApplication::processEvents();
        const bool badFrame = end == WrongMagic || end == OpeningRefused;
        ASSERT_EQ(receiver.received.size(), 1 + int(badFrame) + int(lost));
        if (badFrame) {
            EXPECT_EQ(receiver.received[1].packet, good);
        }
    }
}
