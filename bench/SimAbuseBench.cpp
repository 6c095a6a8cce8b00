#include "bench/BenchSim.h"
#include "session/CWork.h"
#include "session/Frame.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "setup/SetupRecordMap.h"

#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using session::Frame;

namespace {

constexpr int SilentConnections = 500;
constexpr int RequestsPerBurst = 50;

// What `remote-setup-cli info` waits for: login, the setup record and the
// recorder's clock.
bool infoSession(quint16 port)
{
    ConnectionRecord record;
    record.address = "127.0.0.1";
    record.port = port;
    record.memberId = "Admin";
    CWork work;
    QEventLoop loop;
    QObject::connect(&work, &CWork::timeAnswerReceived, &loop, &QEventLoop::quit);
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    if (!work.connectSession(&record))
        return false;
    loop.exec();
    return work.clockValid();
}

// Logs in, then asks for the setup record again and again and never reads
// an answer.
class GreedyClient
{
public:
    explicit GreedyClient(quint16 port)
    {
        m_socket.setReadBufferSize(1);
        QObject::connect(&m_socket, &QTcpSocket::connected, &m_socket, [this] {
            PACKET_STRING login;
            login.memberId = "Admin";
            m_socket.write(Frame::encode(m_sequence++, RemoteCommand::Open, {}));
            m_socket.write(Frame::encode(m_sequence++, RemoteCommand::Login, {}, login.toBytes()));
            m_burst.start(1);
        });
        QObject::connect(&m_burst, &QTimer::timeout, &m_socket, [this] {
            PACKET_PARAM whole;
            whole.words[0] = setup::SetupRecordMap::RecordSize;
            for (int i = 0; i < RequestsPerBurst; ++i)
                m_socket.write(Frame::encode(m_sequence++, RemoteCommand::SetupRequest, whole));
        });
        m_socket.connectToHost(u"127.0.0.1"_s, port);
    }

private:
    QTcpSocket m_socket;
    QTimer m_burst;
    quint32 m_sequence = 0;
};

} // namespace

// The time to `info` a simulated recorder, idle (0) or while 500 connections
// that never send a frame and one client that never reads its answers are
// attached (1). Goal: attached, at most twice the idle time.
static void infoUnderAbuse(benchmark::State &state)
{
    const bool abused = state.range(0) != 0;
    // Room and time for every silent connection, so that all stay attached.
    BenchSim sim({u"--max-connections"_s, u"1024"_s, u"--login-timeout"_s, u"600"_s});
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    std::unique_ptr<GreedyClient> greedy;
    if (abused) {
        for (int i = 0; i < SilentConnections; ++i) {
            silent.push_back(std::make_unique<QTcpSocket>());
            silent.back()->connectToHost(u"127.0.0.1"_s, sim.port());
        }
        greedy = std::make_unique<GreedyClient>(sim.port());
        const bool attached = BenchSim::runUntil(
            [&] {
                return std::all_of(silent.begin(), silent.end(), [](const auto &socket) {
                    return socket->state() == QAbstractSocket::ConnectedState;
                });
            },
            30000);
        if (!attached) {
            state.SkipWithError("the silent connections did not attach");
            return;
        }
        BenchSim::runUntil([] { return false; }, 200); // the greedy client fills its buffers
    }
    for (auto _ : state) {
        if (!infoSession(sim.port())) {
            state.SkipWithError("info failed");
            break;
        }
    }
    state.SetLabel(abused ? "500 silent + 1 non-reading client; goal: at most 2x idle" : "idle");
}
BENCHMARK(infoUnderAbuse)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
