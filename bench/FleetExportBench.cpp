// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchFleet.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

extern char **environ;

using namespace Qt::StringLiterals;

// What the command line costs per recorder, each figure against its floor
// measured in the same run: the programs of this build, or those in the
// folder named by RS_BENCH_BIN (another build, to compare two in one
// sitting).

namespace {

struct Run
{
    bool ok = false;
    double ms = 0;
    double peakMiB = 0; // the process's largest resident set
};

// Runs `program` to its end, its output discarded, and takes its own peak
// memory from wait4() rather than the largest of all children so far.
Run run(const QString &program, const QStringList &arguments)
{
    std::vector<QByteArray> words {program.toLocal8Bit()};
    for (const QString &argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    QElapsedTimer clock;
    clock.start();
    pid_t pid = 0;
    Run result;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        rusage usage {};
        if (wait4(pid, &status, 0, &usage) == pid) {
            result.ms = double(clock.nsecsElapsed()) / 1e6;
            result.peakMiB = double(usage.ru_maxrss) / 1024.0;
            // diff's 1 says the setups differ, which is what it is run for.
            result.ok = WIFEXITED(status) && WEXITSTATUS(status) <= 1;
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    return result;
}

enum Command { Export, Dump, Diff };

// One recorder's command: the floor of the fleet's.
QStringList single(const BenchFleet &fleet, Command command)
{
    switch (command) {
    case Export:
        return fleet.first() + QStringList {u"export"_s, fleet.path(u"one.dat"_s)};
    case Dump:
        return fleet.first() + QStringList {u"dump"_s};
    case Diff:
        return fleet.first() + QStringList {u"diff"_s, fleet.path(u"baseline.dat"_s)};
    }
    return {};
}

QStringList many(const BenchFleet &fleet, Command command, int jobs)
{
    QStringList arguments {u"--hosts"_s, fleet.hostsFile(), u"--jobs"_s, QString::number(jobs)};
    switch (command) {
    case Export:
        return arguments + QStringList {u"export"_s, fleet.path(u"out/"_s)};
    case Dump:
        return arguments + QStringList {u"dump"_s};
    case Diff:
        return arguments + QStringList {u"diff"_s, fleet.path(u"baseline.dat"_s)};
    }
    return {};
}

} // namespace

// `export FILE` of one recorder, process start included, against the
// floor of any run of the program: `remote-setup-cli --version`.
// Goal: at most 1.25 times the floor.
static void exportVsProcessStart(benchmark::State &state)
{
    BenchFleet fleet(1);
    if (!fleet.ready()) {
        state.SkipWithError("recorder-sim did not start");
        return;
    }
    double exportMs = 0;
    double floorMs = 0;
    for (auto _ : state) {
        const Run floor = run(BenchFleet::binary("remote-setup-cli"), {u"--version"_s});
        const Run one = run(BenchFleet::binary("remote-setup-cli"), single(fleet, Export));
        if (!floor.ok || !one.ok) {
            state.SkipWithError("a run failed");
            return;
        }
        floorMs += floor.ms;
        exportMs += one.ms;
    }
    state.counters["export_ms"] = exportMs / double(state.iterations());
    state.counters["floor_ms"] = floorMs / double(state.iterations());
    state.counters["ratio"] = exportMs / floorMs;
}
BENCHMARK(exportVsProcessStart)->Unit(benchmark::kMillisecond)->Iterations(20);

// A fleet's export, dump or diff of range(1) recorders with --jobs
// range(2), against the same command for one recorder in the same run.
// Goals: 100 exports with --jobs 32 within twice one export; time growing
// at most linearly with the recorders; peak memory flat (under 50 MiB).
static void fleetCommand(benchmark::State &state)
{
    const auto command = Command(state.range(0));
    const int recorders = int(state.range(1));
    const int jobs = int(state.range(2));
    BenchFleet fleet(recorders);
    if (!fleet.ready()) {
        state.SkipWithError("recorder-sim did not start");
        return;
    }
    const QString cli = BenchFleet::binary("remote-setup-cli");
    if (command == Diff
        && !(run(cli, single(fleet, Export)).ok
             && QFile::copy(fleet.path(u"one.dat"_s), fleet.path(u"baseline.dat"_s)))) {
        state.SkipWithError("no baseline");
        return;
    }
    double fleetMs = 0;
    double floorMs = 0;
    double peakMiB = 0;
    for (auto _ : state) {
        const Run floor = run(cli, single(fleet, command));
        const Run all = run(cli, many(fleet, command, jobs));
        if (!floor.ok || !all.ok) {
            state.SkipWithError("a run failed");
            return;
        }
        floorMs += floor.ms;
        fleetMs += all.ms;
        peakMiB = std::max(peakMiB, all.peakMiB);
    }
    const auto n = double(state.iterations());
    state.counters["fleet_ms"] = fleetMs / n;
    state.counters["one_ms"] = floorMs / n;
    state.counters["ratio"] = fleetMs / floorMs;
    state.counters["ms_per_recorder"] = fleetMs / n / recorders;
    state.counters["peak_MiB"] = peakMiB;
}
BENCHMARK(fleetCommand)
    ->ArgNames({"command", "recorders", "jobs"})
    ->Args({Export, 1, 1})
    ->Args({Export, 100, 32})
    ->ArgsProduct({{Export, Dump, Diff}, {10, 100, 500, 1000}, {64}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
