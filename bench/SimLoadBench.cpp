// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "setup/LittleEndian.h"

#include <QFile>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using session::Frame;
using Clock = std::chrono::steady_clock;

// The load runs on plain non-blocking sockets and epoll, on both ends of the
// floor. A generator of 1,000 QTcpSockets on one event loop, against a peer
// of 1,000 more, spent more time per round trip than the recorder it
// measured: its floor was the generator's. These cost about a send and a
// receive per frame, as clients on 1,000 machines and a peer that does
// nothing but answer would.

namespace {

// Where each session writes: a slot of its own, so that a lost write shows
// as a slot that does not hold the session's last value.
constexpr int ScratchOffset = 2708;
// Longer than any run takes; a recorder that stops answering fails the run
// rather than hanging it.
constexpr std::chrono::minutes RunLimit {5};

// A non-blocking socket on an epoll: frames in, bytes out. The epoll event
// carries `key`.
struct Connection
{
    int fd = -1;
    quint32 key = 0;
    bool watched = false;
    bool watchingRoom = false; // EPOLLOUT: for the connection, then for unsent bytes
    session::FrameReader reader;
    QByteArray unsent;

    void watch(int epoll, bool room)
    {
        epoll_event event {};
        event.events = EPOLLIN | (room ? quint32(EPOLLOUT) : 0u);
        event.data.u32 = key;
        ::epoll_ctl(epoll, watched ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, fd, &event);
        watched = true;
        watchingRoom = room;
    }

    // Takes what has arrived into the reader; false once the peer is gone.
    bool receive()
    {
        char buffer[4096];
        for (;;) {
            const ssize_t got = ::read(fd, buffer, sizeof buffer);
            if (got > 0)
                reader.feed(QByteArrayView(buffer, got));
            else if (got == 0 || (errno != EAGAIN && errno != EINTR))
                return false;
            else
                return true;
        }
    }

    // Writes what it can of `frame` and what waited before it, watching for
    // room only while something waits; false once the peer is gone.
    bool send(int epoll, const QByteArray &frame = {})
    {
        unsent += frame;
        while (!unsent.isEmpty()) {
            const ssize_t put = ::write(fd, unsent.constData(), std::size_t(unsent.size()));
            if (put < 0 && (errno == EAGAIN || errno == EINTR))
                break;
            if (put <= 0)
                return false;
            unsent.remove(0, qsizetype(put));
        }
        if (unsent.isEmpty() == watchingRoom)
            watch(epoll, !unsent.isEmpty());
        return true;
    }
};

// Every session on one thread: each opens, logs in as Admin, then makes
// `writes` setup writes, each sent when the previous one was acknowledged.
class LoadGenerator
{
public:
    struct Result
    {
        std::vector<qint64> roundTrips; // sorted, in nanoseconds
        int incomplete = 0; // sessions without every write acknowledged
    };

    static Result run(quint16 port, int sessions, int writes)
    {
        LoadGenerator generator(sessions, writes);
        generator.load(port);
        std::sort(generator.m_result.roundTrips.begin(), generator.m_result.roundTrips.end());
        return std::move(generator.m_result);
    }

private:
    struct Client : Connection
    {
        quint32 sequence = 0;
        int sent = 0;
        int applied = 0;
        bool connected = false;
        bool done = false;
        Clock::time_point started;
    };

    LoadGenerator(int sessions, int writes)
        : m_writes(writes)
        , m_clients(std::size_t(sessions))
        , m_epoll(::epoll_create1(EPOLL_CLOEXEC))
    {
        m_result.roundTrips.reserve(std::size_t(sessions) * std::size_t(writes));
    }
    ~LoadGenerator()
    {
        for (Client &client : m_clients)
            ::close(client.fd);
        ::close(m_epoll);
    }

    void load(quint16 port)
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        for (std::size_t i = 0; i < m_clients.size(); ++i) {
            Client &client = m_clients[i];
            client.key = quint32(i);
            client.fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
            const int one = 1;
            ::setsockopt(client.fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
            if (::connect(client.fd, reinterpret_cast<const sockaddr *>(&address), sizeof address)
                    != 0
                && errno != EINPROGRESS) {
                finish(client);
                continue;
            }
            client.watch(m_epoll, true);
        }
        const auto deadline = Clock::now() + RunLimit;
        std::array<epoll_event, 256> events;
        while (m_finished < int(m_clients.size()) && Clock::now() < deadline) {
            const int ready = ::epoll_wait(m_epoll, events.data(), int(events.size()), 1000);
            for (int e = 0; e < ready; ++e) {
                const epoll_event &event = events[std::size_t(e)];
                serve(m_clients[event.data.u32], event.events);
            }
        }
        for (const Client &client : m_clients)
            m_result.incomplete += client.applied != m_writes;
    }

    void serve(Client &client, quint32 events)
    {
        if (client.done)
            return;
        if (!client.connected) {
            int error = 0;
            socklen_t length = sizeof error;
            ::getsockopt(client.fd, SOL_SOCKET, SO_ERROR, &error, &length);
            if (error != 0) {
                finish(client);
                return;
            }
            client.connected = true;
            send(client, RemoteCommand::Open, {});
        } else if ((events & EPOLLOUT) && !client.send(m_epoll)) {
            finish(client);
            return;
        }
        if (!(events & (EPOLLIN | EPOLLHUP | EPOLLERR)))
            return;
        const bool open = client.receive();
        while (!client.done && client.reader.hasFrame()) {
            const auto frame = Frame::decode(client.reader.takeFrame());
            if (!frame)
                continue;
            if (frame->command == RemoteCommand::OpenAck) {
                PACKET_STRING login;
                login.memberId = "Admin";
                send(client, RemoteCommand::Login, {}, login.toBytes());
            } else if (frame->command == RemoteCommand::LoginAnswer) {
                if (frame->param.words[0] != 1)
                    finish(client);
                else
                    writeNext(client);
            } else if (frame->command == RemoteCommand::SetupWriteAck) {
                m_result.roundTrips.push_back((Clock::now() - client.started).count());
                client.applied += frame->param.words[0] == 1;
                writeNext(client);
            }
        }
        if (!open)
            finish(client);
    }

    void writeNext(Client &client)
    {
        if (client.sent == m_writes) {
            finish(client);
            return;
        }
        QByteArray value(4, '\0');
        nelib::LittleEndian::setU32(value, 0, quint32(client.sent));
        PACKET_PARAM param;
        param.words = {0, 4, quint32(ScratchOffset + 4 * int(client.key)), 0, 0, 0, 0, 0};
        client.started = Clock::now();
        ++client.sent;
        send(client, RemoteCommand::SetupWrite, param, value);
    }

    void send(Client &client, qint32 command, const PACKET_PARAM &param,
              QByteArrayView payload = {})
    {
        if (!client.send(m_epoll, Frame::encode(client.sequence++, command, param, payload)))
            finish(client);
    }

    void finish(Client &client)
    {
        if (client.done)
            return;
        client.done = true;
        ++m_finished;
    }

    const int m_writes;
    std::vector<Client> m_clients;
    const int m_epoll;
    int m_finished = 0;
    Result m_result;
};

// The floor of the load: a peer on a thread of its own that answers the
// opening, the login and every write at once, keeping nothing. What the
// clients and the loopback cost alone.
class AckPeer
{
public:
    AckPeer()
        : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
        , m_stop(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
        , m_epoll(::epoll_create1(EPOLL_CLOEXEC))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        ::bind(m_listener, reinterpret_cast<const sockaddr *>(&address), length);
        ::listen(m_listener, 1024);
        ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &length);
        m_port = ntohs(address.sin_port);
        for (const int fd : {m_listener, m_stop}) {
            epoll_event event {};
            event.events = EPOLLIN;
            event.data.u32 = fd == m_listener ? ListenerKey : StopKey;
            ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, fd, &event);
        }
        m_thread = std::thread([this] { serve(); });
    }
    ~AckPeer()
    {
        const quint64 one = 1;
        [[maybe_unused]] const auto written = ::write(m_stop, &one, sizeof one);
        m_thread.join();
        for (const Connection &connection : m_connections)
            ::close(connection.fd);
        for (const int fd : {m_listener, m_stop, m_epoll})
            ::close(fd);
    }

    quint16 serverPort() const { return m_port; }

private:
    static constexpr quint32 ListenerKey = 0xFFFFFFFF;
    static constexpr quint32 StopKey = 0xFFFFFFFE;

    void serve()
    {
        // Room for every connection from the start: a Connection never moves.
        m_connections.reserve(4096);
        std::array<epoll_event, 256> events;
        for (;;) {
            const int ready = ::epoll_wait(m_epoll, events.data(), int(events.size()), -1);
            for (int e = 0; e < ready; ++e) {
                const quint32 key = events[std::size_t(e)].data.u32;
                if (key == StopKey)
                    return;
                if (key == ListenerKey)
                    accept();
                else
                    answer(m_connections[key]);
            }
        }
    }

    void accept()
    {
        for (;;) {
            const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (fd < 0 || m_connections.size() == m_connections.capacity()) {
                if (fd >= 0)
                    ::close(fd);
                return;
            }
            const int one = 1;
            ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
            Connection &connection = m_connections.emplace_back();
            connection.fd = fd;
            connection.key = quint32(m_connections.size() - 1);
            connection.watch(m_epoll, false);
        }
    }

    void answer(Connection &connection)
    {
        if (connection.fd < 0)
            return;
        bool open = connection.receive();
        while (open && connection.reader.hasFrame()) {
            const auto frame = Frame::decode(connection.reader.takeFrame());
            if (!frame)
                continue;
            PACKET_PARAM yes;
            yes.words[0] = 1;
            const qint32 answer = frame->command == RemoteCommand::Open ? RemoteCommand::OpenAck
                                  : frame->command == RemoteCommand::Login
                                      ? RemoteCommand::LoginAnswer
                                      : RemoteCommand::SetupWriteAck;
            open = connection.send(m_epoll, Frame::encode(0, answer, yes));
        }
        if (!open) {
            ::close(connection.fd);
            connection.fd = -1;
        }
    }

    const int m_listener;
    const int m_stop;
    const int m_epoll;
    quint16 m_port = 0;
    std::vector<Connection> m_connections;
    std::thread m_thread;
};

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
    LoadGenerator::Result load;
    LoadGenerator::Result floor;
    int lost = 0;
    for (auto _ : state) {
        {
            AckPeer peer;
            floor = LoadGenerator::run(peer.serverPort(), sessions, writes);
        }
        BenchSim sim({u"--max-users"_s, QString::number(sessions), u"--max-connections"_s,
                      QString::number(2 * sessions)});
        load = LoadGenerator::run(sim.port(), sessions, writes);

        QFile file(sim.recordPath());
        file.open(QIODevice::ReadOnly);
        const QByteArray stored = file.readAll();
        lost = load.incomplete;
        for (int i = 0; i < sessions; ++i)
            lost += nelib::LittleEndian::u32(stored, ScratchOffset + 4 * i) != quint32(writes - 1);
    }
    state.counters["writes"] = double(load.roundTrips.size());
    state.counters["lost"] = lost;
    state.counters["floor_p50_ms"] = percentileMs(floor.roundTrips, 0.5);
    state.counters["p50_ms"] = percentileMs(load.roundTrips, 0.5);
    state.counters["p99_ms"] = percentileMs(load.roundTrips, 0.99);
    state.counters["floor_p99_ms"] = percentileMs(floor.roundTrips, 0.99);
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
