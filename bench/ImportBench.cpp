// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "session/CWork.h"
#include "session/SetupTransfer.h"
#include "setup/ExportFile.h"

#include <QElapsedTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The five 100 ms pauses between the six blocks: the least an import takes.
constexpr double PausesMs = 5 * CWork::WholeRecordPauseMs;

} // namespace

// One import through the session, from the call to the seventh
// acknowledgement, against a local simulator: the recorder's own export
// sent back. Goal: at most 1.05 x the 500 ms of pauses.
static void importThroughSession(benchmark::State &state)
{
    BenchSim sim;
    ConnectionRecord record;
    CWork work;
    if (!sim.openSession(work, record)) {
        state.SkipWithError("no session with the simulator");
        return;
    }
    const QByteArray file = setup::ExportFile::build(work.mirror());

    double worstMs = 0;
    double totalMs = 0;
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        if (SetupTransfer::importData(work, file) != SetupTransfer::Result::Sent
            || !BenchSim::runUntil([&] { return !work.importPending(); }, 10000)) {
            state.SkipWithError("import not acknowledged");
            break;
        }
        const double ms = double(clock.nsecsElapsed()) / 1e6;
        worstMs = std::max(worstMs, ms);
        totalMs += ms;
    }
    if (state.iterations() > 0) {
        state.counters["ratio"] = totalMs / double(state.iterations()) / PausesMs;
        state.counters["worst_ratio"] = worstMs / PausesMs;
    }
    state.SetLabel("goal: ratio at most 1.05 (x 500 ms of pauses)");
    work.disconnectSession();
}
BENCHMARK(importThroughSession)->Unit(benchmark::kMillisecond)->UseRealTime();
