// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"

#include <QCoreApplication>
#include <QProcess>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

// One whole `remote-setup-cli export` against a local simulator, process
// start included: what a script pays per recorder. Goal: under 50 ms.
static void cliExport(benchmark::State &state)
{
    BenchSim sim;
    const QString cli = QCoreApplication::applicationDirPath() + u"/../bin/remote-setup-cli"_s;
    const QStringList arguments {u"--port"_s, QString::number(sim.port()), u"export"_s,
                                 sim.dir() + u"/export.dat"_s};
    for (auto _ : state) {
        QProcess process;
        process.start(cli, arguments);
        if (!process.waitForFinished(30000) || process.exitCode() != 0) {
            state.SkipWithError("export failed");
            break;
        }
    }
    state.SetLabel("goal: under 50 ms per export");
}
BENCHMARK(cliExport)->Unit(benchmark::kMillisecond)->UseRealTime();
