// SPDX-License-Identifier: GPL-3.0-or-later

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

QString binary(const char *name)
{
    return QCoreApplication::applicationDirPath() + u"/../bin/"_s + QLatin1StringView(name);
}

// The largest resident set of the processes this program has waited for, in
// MiB: every one of them is a remote-setup-cli (the simulator is still running).
double peakChildMiB()
{
    rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

} // namespace

// `remote-setup-cli --hosts FILE --jobs N export DIR/` against one
// recorder-sim serving every recorder of the fleet, process start included.
// Goal: 100 recorders with --jobs 32 take at most twice the time of one
// recorder, and the command line stays under 50 MiB.
static void fleetExport(benchmark::State &state)
{
    const int recorders = int(state.range(0));
    const int jobs = int(state.range(1));
    QTemporaryDir dir;
    QProcess sim;
    sim.setStandardErrorFile(QProcess::nullDevice());
    sim.start(binary("recorder-sim"),
              {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, dir.filePath(u"record"_s),
               u"--count"_s, QString::number(recorders)});
    QByteArray hosts;
    while (hosts.count('\n') < recorders) {
        if (!sim.canReadLine() && !sim.waitForReadyRead(10000)) {
            state.SkipWithError("recorder-sim did not start");
            return;
        }
        const QByteArray line = sim.readLine().trimmed();
        hosts += line.mid(line.lastIndexOf(' ') + 1) + '\n';
    }
    QFile file(dir.filePath(u"hosts.txt"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(hosts) != hosts.size()) {
        state.SkipWithError("cannot write the hosts file");
        return;
    }
    file.close();
    const QStringList arguments {u"--hosts"_s,          file.fileName(), u"--jobs"_s,
                                 QString::number(jobs), u"export"_s,     dir.filePath(u"out/"_s)};
    for (auto _ : state) {
        QProcess cli;
        cli.setStandardOutputFile(QProcess::nullDevice());
        cli.start(binary("remote-setup-cli"), arguments);
        if (!cli.waitForFinished(120000) || cli.exitCode() != 0) {
            state.SkipWithError("the fleet export failed");
            break;
        }
    }
    state.counters["cli_peak_MiB"] = peakChildMiB();
    state.SetLabel("goal: 100/32 within 2x of 1/1; under 50 MiB");
    sim.kill();
    sim.waitForFinished();
}
BENCHMARK(fleetExport)
    ->ArgNames({"recorders", "jobs"})
    ->Args({1, 1})
    ->Args({100, 32})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
