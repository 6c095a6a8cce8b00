#include "session/KRemoteSocket.h"

#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/RemoteCommand.h"
#include "session/SocketNotifyEvent.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <QCoreApplication>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>

using nelib::LittleEndian;
using session::Frame;
using session::FrameReader;
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

// The recorder's end of one connection, served from the test's thread.
struct PeerLink
{
    std::unique_ptr<QTcpSocket> socket;
    FrameReader reader;

    QList<QByteArray> read(int count)
    {
        QList<QByteArray> frames;
        const bool complete = QTest::qWaitFor(
            [&] {
                reader.feed(socket->readAll());
                while (reader.hasFrame())
                    frames.append(reader.takeFrame());
                return frames.size() >= count || reader.failed();
            },
            WaitMs);
        EXPECT_TRUE(complete) << "the peer read " << frames.size() << " of " << count << " frames";
        return frames;
    }

    void write(const QByteArray &bytes)
    {
        socket->write(bytes);
        socket->flush();
    }

    bool waitClosed()
    {
        return QTest::qWaitFor(
            [&] {
                socket->readAll();
                return socket->state() == QAbstractSocket::UnconnectedState;
            },
            WaitMs);
    }
};

QByteArray frame(qint32 command, PACKET_PARAM param = {}, const QByteArray &payload = {})
{
    return Frame::encode(0, command, param, payload);
}

PACKET_PARAM words(std::initializer_list<quint32> values)
{
    PACKET_PARAM param;
    std::copy(values.begin(), values.end(), param.words.begin());
    return param;
}

int sendKeepAlive(KRSMGAPI_HANDLE handle)
{
    const PACKET_PARAM zero;
    return KRSMGAPI_SendPacketCmd(handle, RemoteCommand::KeepAlive, &zero);
}

class KRemoteSocketTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0)); }

    void TearDown() override
    {
        for (KRSMGAPI_HANDLE handle : handles)
            KRSMGAPI_Destroy(handle);
    }

    REMOTESOCKET_CONNECT_INFO info(const QByteArray &address = "127.0.0.1") const
    {
        REMOTESOCKET_CONNECT_INFO info;
        info.address = address;
        info.port = server.serverPort();
        return info;
    }

    KRSMGAPI_HANDLE create()
    {
        KRSMGAPI_HANDLE handle = KRSMGAPI_Create(&receiver, nullptr, nullptr);
        handles.append(handle);
        return handle;
    }

    // A connected handle and the peer's end of its connection.
    KRSMGAPI_HANDLE connectPeer(PeerLink &peer)
    {
        KRSMGAPI_HANDLE handle = create();
        const REMOTESOCKET_CONNECT_INFO target = info();
        EXPECT_NE(KRSMGAPI_Connect(handle, &target), 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, WaitMs));
        peer.socket.reset(server.nextPendingConnection());
        EXPECT_TRUE(peer.socket);
        // Sends are taken once the connection is reported.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return std::any_of(
                    receiver.received.begin(), receiver.received.end(), [&](const Notification &n) {
                        return n.handle == handle && n.kind == REMOTESOCKET_NOTIFY::Connected;
                    });
            },
            WaitMs));
        return handle;
    }

    // Waits for the n-th notification (counting from 1).
    bool waitReceived(qsizetype n)
    {
        return QTest::qWaitFor([&] { return receiver.received.size() >= n; }, WaitMs);
    }

    QTcpServer server;
    Receiver receiver;
    QList<KRSMGAPI_HANDLE> handles;
};

} // namespace

TEST_F(KRemoteSocketTest, ConnectRefusesBadEntriesAtOnceAndReportsFailedAttemptsLater)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost, 0));
    const quint16 closedPort = closed.serverPort();
    closed.close();

    struct Case
    {
        const char *name;
        QByteArray address;
        quint32 port;
        bool started; // else refused at once, with nothing posted
    };
    const Case cases[] = {
        {"refused", "127.0.0.1", closedPort, true},
        {"unresolvable", "no-such-recorder.invalid", server.serverPort(), true},
        {"empty address", "", server.serverPort(), false},
        {"address filling its field", QByteArray(260, 'a'), server.serverPort(), false},
        {"port 0", "127.0.0.1", 0, false},
        {"port beyond 16 bits", "127.0.0.1", 65536u + server.serverPort(), false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        receiver.received.clear();
        REMOTESOCKET_CONNECT_INFO target;
        target.address = c.address;
        target.port = c.port;
        KRSMGAPI_HANDLE handle = create();
        ASSERT_NE(handle, nullptr);
        EXPECT_EQ(KRSMGAPI_Connect(handle, &target) != 0, c.started);
        if (c.started) {
            ASSERT_TRUE(waitReceived(1));
            EXPECT_EQ(receiver.received[0].handle, handle);
            EXPECT_EQ(receiver.received[0].kind, REMOTESOCKET_NOTIFY::ConnectFailed);
        }
        QCoreApplication::processEvents();
        EXPECT_EQ(receiver.received.size(), c.started ? 1 : 0);
        EXPECT_EQ(sendKeepAlive(handle), 0);
        EXPECT_EQ(KRSMGAPI_SendInitPacketData(handle), 0);
    }
    const REMOTESOCKET_CONNECT_INFO target = info();
    EXPECT_EQ(KRSMGAPI_Connect(create(), nullptr), 0);
    EXPECT_EQ(KRSMGAPI_Connect(nullptr, &target), 0);
    EXPECT_EQ(KRSMGAPI_Create(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(KRSMGAPI_Initialize(), 1);
}

TEST_F(KRemoteSocketTest, AHangingAttemptEndsSilentlyWithDisconnect)
{
    testsupport::HangingListener listener;
    REMOTESOCKET_CONNECT_INFO target;
    target.address = "127.0.0.1";
    target.port = listener.port();
    KRSMGAPI_HANDLE handle = create();
    ASSERT_NE(KRSMGAPI_Connect(handle, &target), 0);
    QTest::qWait(200);
    EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
    QTest::qWait(50);
    EXPECT_TRUE(receiver.received.isEmpty());
}

TEST_F(KRemoteSocketTest, ConnectByAddressOrNameReportsTheConnectionFirst)
{
    // A zero byte ends the address, as in the fixed-width field it comes from.
    for (const QByteArray &address :
         {QByteArray("127.0.0.1"), QByteArray("localhost"), QByteArray("127.0.0.1\0junk", 14)}) {
        SCOPED_TRACE(address.constData());
        receiver.received.clear();
        KRSMGAPI_HANDLE handle = create();
        const REMOTESOCKET_CONNECT_INFO target = info(address);
        ASSERT_NE(KRSMGAPI_Connect(handle, &target), 0);
        ASSERT_TRUE(waitReceived(1));
        EXPECT_EQ(receiver.received[0].handle, handle);
        EXPECT_EQ(receiver.received[0].kind, REMOTESOCKET_NOTIFY::Connected);
        EXPECT_TRUE(receiver.received[0].packet.isEmpty());
        // One connection per handle.
        EXPECT_EQ(KRSMGAPI_Connect(handle, &target), 0);
        EXPECT_NE(sendKeepAlive(handle), 0);
    }
}

TEST_F(KRemoteSocketTest, OpeningFrameCarriesVersionAndConnectionFlags)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    ASSERT_NE(KRSMGAPI_SendInitPacketData(handle), 0);

    const QList<QByteArray> frames = peer.read(1);
    ASSERT_EQ(frames.size(), 1);
    EXPECT_EQ(frames[0],
              QByteArray("KRSP")
                  + QByteArray::fromHex("01000000" // version
                                        "00000000" // sequence
                                        "00000000"
                                        "3C000000" // total length 60
                                        "00000000"
                                        "000F0000" // OPEN
                                        "01000000" // protocol version
                                        "00005000" // connection flags 0x500000
                                        "000000000000000000000000000000000000000000000000"));
}

TEST_F(KRemoteSocketTest, PeerFramesBecomeNotificationsWhateverTheChunks)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    const QByteArray loginAnswer = frame(RemoteCommand::LoginAnswer, words({1, 0x00010010}));
    const QByteArray setupAnswer
        = frame(RemoteCommand::SetupAnswer, words({0, 0, 0, 0x00040008}), QByteArray(15148, 's'));
    const QByteArray stream
        = frame(RemoteCommand::OpenAck, words({1})) + loginAnswer + setupAnswer + loginAnswer;

    // Odd-sized pieces, each flushed on its own, so frames arrive split and
    // glued together.
    for (qsizetype at = 0; at < stream.size(); at += 997) {
        peer.write(stream.sliced(at, std::min<qsizetype>(997, stream.size() - at)));
        QCoreApplication::processEvents();
    }

    ASSERT_TRUE(waitReceived(5));
    const QList<Notification> &got = receiver.received;
    EXPECT_EQ(got[0].kind, REMOTESOCKET_NOTIFY::Connected);
    EXPECT_EQ(got[1].kind, REMOTESOCKET_NOTIFY::InitAcknowledged);
    EXPECT_TRUE(got[1].packet.isEmpty());
    for (int i : {2, 3, 4})
        EXPECT_EQ(got[i].kind, REMOTESOCKET_NOTIFY::PacketReceived) << i;
    EXPECT_EQ(got[2].packet, loginAnswer);
    EXPECT_TRUE(got[3].packet == setupAnswer);
    EXPECT_EQ(got[4].packet, loginAnswer);
    for (const Notification &n : got)
        EXPECT_EQ(n.handle, handle);
}

TEST_F(KRemoteSocketTest, FramesAreNumberedInSendOrderAndCarryTheirPayload)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    PACKET_STRING login;
    login.memberId = "Admin";
    login.password = "secret";
    const PACKET_PARAM request = words({15148});
    const PACKET_PARAM write = words({5, 768, 1300});
    const QByteArray slice(768, 'c');
    const QByteArray chunk(Frame::MaxPayloadSize, 'f');

    ASSERT_NE(KRSMGAPI_SendInitPacketData(handle), 0);
    ASSERT_NE(KRSMGAPI_SendPacketString(handle, RemoteCommand::Login, &login), 0);
    ASSERT_NE(KRSMGAPI_SendPacketCmd(handle, RemoteCommand::SetupRequest, &request), 0);
    ASSERT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, &write, slice.data(),
                                        quint32(slice.size())),
              0);
    ASSERT_NE(sendKeepAlive(handle), 0);
    ASSERT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::FirmwarePacket, &write, chunk.data(),
                                        quint32(chunk.size())),
              0);
    ASSERT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, &write, nullptr, 0), 0);

    const QList<QByteArray> frames = peer.read(7);
    ASSERT_EQ(frames.size(), 7);
    struct Expected
    {
        qint32 command;
        PACKET_PARAM param;
        QByteArray payload;
    };
    const Expected expected[] = {
        {RemoteCommand::Open, words({1, 0x500000}), {}},
        {RemoteCommand::Login, {}, login.toBytes()},
        {RemoteCommand::SetupRequest, request, {}},
        {RemoteCommand::SetupWrite, write, slice},
        {RemoteCommand::KeepAlive, {}, {}},
        {RemoteCommand::FirmwarePacket, write, chunk},
        {RemoteCommand::SetupWrite, write, {}},
    };
    for (int i = 0; i < 7; ++i) {
        SCOPED_TRACE(i);
        const std::optional<Frame> f = Frame::decode(frames[i]);
        ASSERT_TRUE(f);
        EXPECT_EQ(f->sequence, quint32(i));
        EXPECT_EQ(f->command, expected[i].command);
        EXPECT_EQ(f->param, expected[i].param);
        EXPECT_TRUE(f->payload == expected[i].payload);
    }
    EXPECT_EQ(LittleEndian::u32(frames[4], Frame::CommandOffset), 0xFFFF0001u);
}

TEST_F(KRemoteSocketTest, InvalidSendsReturnZeroAndSendNothing)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    const PACKET_PARAM param;
    const QByteArray tooBig(Frame::MaxPayloadSize + 1, 'x');

    EXPECT_EQ(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, &param, nullptr, 4), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketStream(handle, RemoteCommand::FirmwarePacket, &param,
                                        tooBig.data(), quint32(tooBig.size())),
              0);
    EXPECT_EQ(KRSMGAPI_SendPacketStream(handle, RemoteCommand::SetupWrite, nullptr, "ab", 2), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketCmd(handle, RemoteCommand::SetupRequest, nullptr), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketString(handle, RemoteCommand::Login, nullptr), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketCmd(nullptr, RemoteCommand::SetupRequest, &param), 0);
    EXPECT_EQ(KRSMGAPI_SendPacketStream(nullptr, RemoteCommand::SetupWrite, &param, "ab", 2), 0);
    EXPECT_EQ(KRSMGAPI_SendInitPacketData(nullptr), 0);
    EXPECT_EQ(KRSMGAPI_Disconnect(nullptr), 1);

    // The next good frame is the first the peer sees, numbered 0.
    ASSERT_NE(sendKeepAlive(handle), 0);
    const QList<QByteArray> frames = peer.read(1);
    ASSERT_EQ(frames.size(), 1);
    EXPECT_EQ(LittleEndian::u32(frames[0], Frame::SequenceOffset), 0u);
    EXPECT_EQ(LittleEndian::i32(frames[0], Frame::CommandOffset), RemoteCommand::KeepAlive);
}

TEST_F(KRemoteSocketTest, ConcurrentSendsArriveWholeAndNumbered)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    constexpr int PerThread = 300;
    auto payloadOf = [](quint32 sender, quint32 index) {
        return QByteArray(qsizetype(index * 37 % 5000), char('a' + sender));
    };
    auto sendAll = [&](quint32 sender) {
        for (quint32 i = 0; i < PerThread; ++i) {
            const PACKET_PARAM param = words({sender, i});
            const QByteArray payload = payloadOf(sender, i);
            EXPECT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::FirmwarePacket, &param,
                                                payload.data(), quint32(payload.size())),
                      0);
        }
    };
    std::thread upload(sendAll, 0);
    std::thread keepAlive(sendAll, 1);
    upload.join();
    keepAlive.join();

    const QList<QByteArray> frames = peer.read(2 * PerThread);
    ASSERT_EQ(frames.size(), 2 * PerThread);
    quint32 next[2] = {0, 0};
    for (int seq = 0; seq < frames.size(); ++seq) {
        const std::optional<Frame> f = Frame::decode(frames[seq]);
        ASSERT_TRUE(f) << seq;
        ASSERT_EQ(f->sequence, quint32(seq));
        const quint32 sender = f->param.words[0];
        ASSERT_LT(sender, 2u);
        ASSERT_EQ(f->param.words[1], next[sender]) << "sender " << sender;
        ASSERT_EQ(f->payload, payloadOf(sender, next[sender]));
        ++next[sender];
    }
}

// A refused opening exchange leaves nothing to do on the connection either.
TEST_F(KRemoteSocketTest, MalformedFrameOrRefusedOpeningClosesTheConnection)
{
    const QByteArray good = frame(RemoteCommand::SetupWriteAck, words({1}));
    auto withTotal = [&](quint32 total) {
        QByteArray bad = good;
        LittleEndian::setU32(bad, Frame::TotalLengthOffset, total);
        return bad;
    };
    QByteArray wrongMagic = good;
    wrongMagic.replace(0, 4, "HTTP");

    for (const auto &[name, bad] :
         {std::pair {"wrong magic", wrongMagic}, std::pair {"total 59", withTotal(59)},
          std::pair {"total past the cap", withTotal(Frame::MaxSize + 1)},
          std::pair {"OPEN_ACK refused", frame(RemoteCommand::OpenAck, words({0}))}}) {
        SCOPED_TRACE(name);
        receiver.received.clear();
        PeerLink peer;
        KRSMGAPI_HANDLE handle = connectPeer(peer);
        peer.write(good + bad + good);

        EXPECT_TRUE(peer.waitClosed());
        EXPECT_TRUE(QTest::qWaitFor([&] { return sendKeepAlive(handle) == 0; }, WaitMs));
        EXPECT_EQ(KRSMGAPI_SendInitPacketData(handle), 0);
        // Only the frame before the bad one was delivered.
        QCoreApplication::processEvents();
        ASSERT_EQ(receiver.received.size(), 2);
        EXPECT_EQ(receiver.received[1].kind, REMOTESOCKET_NOTIFY::PacketReceived);
        EXPECT_EQ(receiver.received[1].packet, good);
    }
}

TEST_F(KRemoteSocketTest, PeerClosingMakesLaterSendsFail)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    ASSERT_NE(sendKeepAlive(handle), 0);
    peer.socket->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return sendKeepAlive(handle) == 0; }, WaitMs));
    EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
}

TEST_F(KRemoteSocketTest, DisconnectDeliversQueuedFramesThenCloses)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    const QByteArray chunk(Frame::MaxPayloadSize, 'z');
    const PACKET_PARAM stop = words({4});
    ASSERT_NE(KRSMGAPI_SendPacketStream(handle, RemoteCommand::FirmwarePacket, &stop, chunk.data(),
                                        quint32(chunk.size())),
              0);
    ASSERT_NE(KRSMGAPI_SendPacketCmd(handle, RemoteCommand::FirmwarePacket, &stop), 0);

    EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);
    EXPECT_EQ(sendKeepAlive(handle), 0);
    EXPECT_EQ(KRSMGAPI_Disconnect(handle), 1);

    const QList<QByteArray> frames = peer.read(2);
    ASSERT_EQ(frames.size(), 2);
    EXPECT_EQ(frames[0].size(), Frame::MaxSize);
    EXPECT_EQ(frames[1].size(), Frame::HeadSize);
    EXPECT_TRUE(peer.waitClosed());
}

TEST_F(KRemoteSocketTest, DestroyOfAConnectedHandleClosesTheConnection)
{
    PeerLink peer;
    KRSMGAPI_HANDLE handle = connectPeer(peer);
    ASSERT_NE(sendKeepAlive(handle), 0);
    KRSMGAPI_Destroy(handle);
    handles.removeOne(handle);
    EXPECT_TRUE(peer.waitClosed());
}

TEST_F(KRemoteSocketTest, EventsNameTheHandleTheyConcern)
{
    PeerLink peerA;
    PeerLink peerB;
    KRSMGAPI_HANDLE a = connectPeer(peerA);
    KRSMGAPI_HANDLE b = connectPeer(peerB);
    ASSERT_NE(a, b);
    const QByteArray toA = frame(RemoteCommand::SetupWriteAck, words({1}));
    const QByteArray toB = frame(RemoteCommand::DateTimeAnswer, words({1, 2024, 2, 29}));
    peerB.write(toB);
    peerA.write(toA);

    // Two Connected events, then the two packets.
    ASSERT_TRUE(waitReceived(4));
    QList<Notification> connected;
    for (const Notification &n : receiver.received) {
        if (n.kind == REMOTESOCKET_NOTIFY::PacketReceived)
            EXPECT_EQ(n.packet, n.handle == a ? toA : n.handle == b ? toB : QByteArray());
        else
            connected.append(n);
    }
    ASSERT_EQ(connected.size(), 2);
    EXPECT_EQ(connected[0].handle, a);
    EXPECT_EQ(connected[1].handle, b);
}
