// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "setup/LittleEndian.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using session::Frame;

namespace {

// Where each session writes: a slot of its own, so that a lost write shows
// as a slot that does not hold the session's last value.
constexpr int ScratchOffset = 2708;

// One session: opening exchange, login, then `writes` setup writes, each
// sent when the previous one was acknowledged.
class LoadClient : public QObject
{
public:
    LoadClient(quint16 port, int slot, int writes, std::vector<qint64> &roundTrips, int &finished)
        : m_slot(slot)
        , m_writes(writes)
        , m_roundTrips(roundTrips)
        , m_finished(finished)
    {
        connect(&m_socket, &QTcpSocket::connected, this, [this] { send(RemoteCommand::Open, {}); });
        connect(&m_socket, &QTcpSocket::readyRead, this, [this] { read(); });
        connect(&m_socket, &QTcpSocket::disconnected, this, [this] { finish(); });
        m_socket.connectToHost(u"127.0.0.1"_s, port);
    }

    int applied = 0;

private:
    void send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload = {})
    {
        m_socket.write(Frame::encode(m_sequence++, command, param, payload));
    }

    void writeNext()
    {
        if (m_sent == m_writes) {
            finish();
            return;
        }
        QByteArray value(4, '\0');
        nelib::LittleEndian::setU32(value, 0, quint32(m_sent));
        PACKET_PARAM param;
        param.words = {0, 4, quint32(ScratchOffset + 4 * m_slot), 0, 0, 0, 0, 0};
        m_clock.start();
        send(RemoteCommand::SetupWrite, param, value);
        ++m_sent;
    }

    void read()
    {
        m_reader.feed(m_socket.readAll());
        while (m_reader.hasFrame()) {
            const auto frame = Frame::decode(m_reader.takeFrame());
            if (!frame)
                continue;
            if (frame->command == RemoteCommand::OpenAck) {
                PACKET_STRING login;
                login.memberId = "Admin";
                send(RemoteCommand::Login, {}, login.toBytes());
            } else if (frame->command == RemoteCommand::LoginAnswer) {
                if (frame->param.words[0] != 1)
                    finish();
                else
                    writeNext();
            } else if (frame->command == RemoteCommand::SetupWriteAck) {
                m_roundTrips.push_back(m_clock.nsecsElapsed());
                applied += frame->param.words[0] == 1;
                writeNext();
            }
        }
    }

    void finish()
    {
        if (m_done)
            return;
        m_done = true;
        ++m_finished;
    }

    QTcpSocket m_socket;
    session::FrameReader m_reader;
    quint32 m_sequence = 0;
    int m_slot;
    int m_writes;
    int m_sent = 0;
    bool m_done = false;
    QElapsedTimer m_clock;
    std::vector<qint64> &m_roundTrips;
    int &m_finished;
};

// The floor of the load: a peer on a thread of its own that answers the
// opening, the login and every write at once, keeping nothing. What the
// clients and the loopback cost alone.
class AckPeer : public QTcpServer
{
public:
    AckPeer()
    {
        listen(QHostAddress::LocalHost);
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~AckPeer() override
    {
        QMetaObject::invokeMethod(
            this, [this] { close(); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        auto reader = std::make_shared<session::FrameReader>();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, reader] {
            reader->feed(socket->readAll());
            while (reader->hasFrame()) {
                const auto frame = Frame::decode(reader->takeFrame());
                if (!frame)
                    continue;
                PACKET_PARAM yes;
                yes.words[0] = 1;
                const qint32 answer = frame->command == RemoteCommand::Open ? RemoteCommand::OpenAck
                                      : frame->command == RemoteCommand::Login
                                          ? RemoteCommand::LoginAnswer
                                          : RemoteCommand::SetupWriteAck;
                socket->write(Frame::encode(0, answer, yes));
            }
        });
    }

private:
    QThread m_thread;
};

// Runs `sessions` clients of `writes` writes each against `port`; the
// sorted round trips, and the clients that had every write acknowledged.
std::vector<qint64> runLoad(quint16 port, int sessions, int writes,
                            std::vector<std::unique_ptr<LoadClient>> &clients)
{
    std::vector<qint64> roundTrips;
    roundTrips.reserve(std::size_t(sessions) * std::size_t(writes));
    int finished = 0;
    clients.clear();
    for (int i = 0; i < sessions; ++i)
        clients.push_back(std::make_unique<LoadClient>(port, i, writes, roundTrips, finished));
    QEventLoop loop;
    while (finished < sessions)
        loop.processEvents(QEventLoop::WaitForMoreEvents, 100);
    std::sort(roundTrips.begin(), roundTrips.end());
    return roundTrips;
}

double percentileMs(const std::vector<qint64> &sorted, double p)
{
    return sorted.empty() ? 0.0 : sorted[std::size_t(double(sorted.size() - 1) * p)] / 1e6;
}

} // namespace

// Many installers' scripts at once against one simulated recorder: every
// session logs in and writes its sections one acknowledged write at a time.
// The same load against a peer that only acknowledges is the floor, in the
// same run. Goal: 1,000 sessions x 100 writes with no lost write and a
// round trip p99 of at most 20 ms.
static void simConcurrentWrites(benchmark::State &state)
{
    const int sessions = int(state.range(0));
    const int writes = int(state.range(1));
    std::vector<qint64> roundTrips;
    std::vector<qint64> floor;
    int lost = 0;
    for (auto _ : state) {
        {
            AckPeer peer;
            std::vector<std::unique_ptr<LoadClient>> clients;
            floor = runLoad(peer.serverPort(), sessions, writes, clients);
        }
        BenchSim sim({u"--max-users"_s, QString::number(sessions), u"--max-connections"_s,
                      QString::number(2 * sessions)});
        std::vector<std::unique_ptr<LoadClient>> clients;
        roundTrips = runLoad(sim.port(), sessions, writes, clients);

        QFile file(sim.recordPath());
        file.open(QIODevice::ReadOnly);
        const QByteArray stored = file.readAll();
        lost = 0;
        for (int i = 0; i < sessions; ++i) {
            lost += clients[i]->applied != writes;
            lost += nelib::LittleEndian::u32(stored, ScratchOffset + 4 * i) != quint32(writes - 1);
        }
    }
    state.counters["writes"] = double(roundTrips.size());
    state.counters["lost"] = lost;
    state.counters["p50_ms"] = percentileMs(roundTrips, 0.5);
    state.counters["p99_ms"] = percentileMs(roundTrips, 0.99);
    state.counters["floor_p99_ms"] = percentileMs(floor, 0.99);
    state.counters["p99_vs_floor"]
        = state.counters["p99_ms"] / std::max(state.counters["floor_p99_ms"].value, 1e-3);
    if (lost)
        state.SkipWithError("writes were lost");
}
BENCHMARK(simConcurrentWrites)
    ->Args({1000, 100})
    ->Args({200, 100})
    ->Args({10, 10})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
