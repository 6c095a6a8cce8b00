// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/CWork.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int SilentConnections = 500;

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

// The mean time of `rounds` info sessions.
double meanInfoMs(quint16 port, int rounds)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < rounds; ++i) {
        if (!infoSession(port))
            return -1;
    }
    return double(clock.nsecsElapsed()) / 1e6 / rounds;
}

} // namespace

// The time to `info` a simulated recorder while another process
// (sim-abuser) holds 500 connections that never send a frame and one client
// that never reads its answers, against the same recorder idle just before,
// in the same run. Goal: at most 1.5 times the idle time.
static void infoUnderAbuse(benchmark::State &state)
{
    const int rounds = int(state.range(0));
    // Room and time for every silent connection, so that all stay attached.
    BenchSim sim({u"--max-connections"_s, u"1024"_s, u"--login-timeout"_s, u"600"_s});
    double idle = 0;
    double abused = 0;
    for (auto _ : state) {
        idle = meanInfoMs(sim.port(), rounds);
        QProcess abuser;
        abuser.start(QCoreApplication::applicationDirPath() + u"/sim-abuser"_s,
                     {QString::number(sim.port()), QString::number(SilentConnections)});
        if (!abuser.waitForReadyRead(30000)) {
            state.SkipWithError("the abusing connections did not attach");
            return;
        }
        BenchSim::runUntil([] { return false; }, 200); // the non-reading client fills up
        abused = meanInfoMs(sim.port(), rounds);
        abuser.kill();
        abuser.waitForFinished();
        if (idle < 0 || abused < 0) {
            state.SkipWithError("info failed");
            return;
        }
    }
    state.counters["idle_ms"] = idle;
    state.counters["abused_ms"] = abused;
    state.counters["abused_vs_idle"] = abused / idle;
}
BENCHMARK(infoUnderAbuse)
    ->Arg(50)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
