// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchFleet.h"

#include <QFile>
#include <QProcess>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

// `remote-setup-cli --hosts FILE --jobs 32 apply --check WANTED` against a
// fleet `dump` of the same recorders (one recorder-sim serving them all,
// process start included). WANTED is the heaviest plan there is: every
// setting of a recorder, as dump prints it, against recorders holding other
// camera titles. Goal: the plan costs at most 1.2 times the dump.
static void applyCheckVersusDump(benchmark::State &state)
{
    const int recorders = int(state.range(0));
    const bool apply = state.range(1) != 0;
    BenchFleet fleet(recorders);
    if (!fleet.ready()) {
        state.SkipWithError("recorder-sim did not start");
        return;
    }
    const QString hostsFile = fleet.hostsFile();
    const QString wantedFile = fleet.path(u"wanted.txt"_s);
    QProcess model;
    model.start(BenchFleet::binary("remote-setup-cli"), fleet.first() + QStringList {u"dump"_s});
    if (!model.waitForFinished(30000) || model.exitCode() != 0) {
        state.SkipWithError("cannot dump the model recorder");
        return;
    }
    QByteArray wanted;
    for (const QByteArray &line : model.readAllStandardOutput().split('\n')) {
        if (!line.startsWith("header."))
            wanted += (line.startsWith("camera.title[")
                           ? line.left(line.indexOf('=') + 1) + " \"Shop\""
                           : line)
                      + '\n';
    }
    if (!writeFile(wantedFile, wanted)) {
        state.SkipWithError("cannot write the wanted file");
        return;
    }
    QStringList arguments {u"--hosts"_s, hostsFile, u"--jobs"_s, u"32"_s};
    arguments
        += apply ? QStringList {u"apply"_s, u"--check"_s, wantedFile} : QStringList {u"dump"_s};
    for (auto _ : state) {
        QProcess cli;
        cli.setStandardOutputFile(QProcess::nullDevice());
        cli.start(BenchFleet::binary("remote-setup-cli"), arguments);
        if (!cli.waitForFinished(120000) || cli.exitCode() != 0) {
            state.SkipWithError("the fleet command failed");
            break;
        }
    }
    state.SetLabel(apply ? "apply --check; goal: at most 1.2x the dump" : "dump");
}
BENCHMARK(applyCheckVersusDump)
    ->ArgNames({"recorders", "apply"})
    ->Args({100, 0})
    ->Args({100, 1})
    ->Args({2, 1})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
