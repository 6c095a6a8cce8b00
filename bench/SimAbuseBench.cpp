// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/CWork.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <utility>

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

} // namespace

// The time to `info` a simulated recorder while another process
// (sim-abuser) holds 500 connections that never send a frame and one client
// that never reads its answers, against the same `info` of another
// simulated recorder left idle. The two are asked in turn, so that what else
// the machine runs meanwhile falls on both alike. Goal: at most 1.5 times
// the idle time.
static void infoUnderAbuse(benchmark::State &state)
{
    const int rounds = int(state.range(0));
    // Room and time for every silent connection, so that all stay attached.
    const QStringList arguments {u"--max-connections"_s, u"1024"_s, u"--login-timeout"_s, u"600"_s};
    BenchSim idleSim(arguments);
    BenchSim abusedSim(arguments);
    QProcess abuser;
    abuser.start(QCoreApplication::applicationDirPath() + u"/sim-abuser"_s,
                 {QString::number(abusedSim.port()), QString::number(SilentConnections)});
    if (!abuser.waitForReadyRead(30000)) {
        state.SkipWithError("the abusing connections did not attach");
        return;
    }
    BenchSim::runUntil([] { return false; }, 200); // the non-reading client fills up
    qint64 idleNs = 0;
    qint64 abusedNs = 0;
    for (auto _ : state) {
        for (int i = 0; i < rounds; ++i) {
            for (auto [sim, total] : {std::pair {&idleSim, &idleNs}, {&abusedSim, &abusedNs}}) {
                QElapsedTimer clock;
                clock.start();
                if (!infoSession(sim->port())) {
                    state.SkipWithError("info failed");
                    return;
                }
                *total += clock.nsecsElapsed();
            }
        }
    }
    abuser.kill();
    abuser.waitForFinished();
    state.counters["idle_ms"] = double(idleNs) / 1e6 / rounds;
    state.counters["abused_ms"] = double(abusedNs) / 1e6 / rounds;
    state.counters["abused_vs_idle"] = double(abusedNs) / double(std::max<qint64>(idleNs, 1));
}
BENCHMARK(infoUnderAbuse)
    ->Arg(200)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
