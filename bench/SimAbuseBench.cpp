// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/CWork.h"

#include <QCoreApplication>
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

} // namespace

// The time to `info` a simulated recorder, idle (0) or while another process
// (sim-abuser) holds 500 connections that never send a frame and one client
// that never reads its answers (1). Goal: at most twice the idle time.
static void infoUnderAbuse(benchmark::State &state)
{
    const bool abused = state.range(0) != 0;
    // Room and time for every silent connection, so that all stay attached.
    BenchSim sim({u"--max-connections"_s, u"1024"_s, u"--login-timeout"_s, u"600"_s});
    QProcess abuser;
    if (abused) {
        abuser.start(QCoreApplication::applicationDirPath() + u"/sim-abuser"_s,
                     {QString::number(sim.port()), QString::number(SilentConnections)});
        if (!abuser.waitForReadyRead(30000)) {
            state.SkipWithError("the abusing connections did not attach");
            return;
        }
        BenchSim::runUntil([] { return false; }, 200); // the non-reading client fills up
    }
    for (auto _ : state) {
        if (!infoSession(sim.port())) {
            state.SkipWithError("info failed");
            break;
        }
    }
    state.SetLabel(abused ? "500 silent + 1 non-reading client; goal: at most 2x idle" : "idle");
    abuser.kill();
    abuser.waitForFinished();
}
BENCHMARK(infoUnderAbuse)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
