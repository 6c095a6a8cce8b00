// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"
#include "firmware/FirmwarePackage.h"
#include "firmware/FirmwareUploader.h"
#include "firmware/PackageBuilder.h"
#include "session/CWork.h"
#include "session/ProgramExit.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareUploader;
using firmware::FirmwareVersion;

namespace {

constexpr int ChunkSize = 64 * 1024;
constexpr int ComponentCount = 4;

// A field of /proc/self/status in KiB (VmRSS now, VmHWM the peak).
qint64 statusKiB(QByteArrayView field)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field) && line.size() > field.size() && line[field.size()] == ':')
            return line.mid(field.size() + 1).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

// Makes VmHWM start again from the current resident size.
void resetPeak()
{
    QFile clear(u"/proc/self/clear_refs"_s);
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

} // namespace

// A whole firmware upload of a package of range(0) MiB in 64 KiB chunks,
// through the session and the uploader, against a local simulator that
// keeps the package. Each packet waits 20 ms before it goes, so chunk size /
// 20 ms is the most the protocol allows. Goal: at least 90 % of it, with
// memory flat (the package streams from disk; a chunk or two in flight).
// The header and the end packets wait their 20 ms too, so 16 MiB (256
// chunks, 262 packets) can reach at most 97.7 %; the 1 MiB smoke size, made
// of 16 chunks and 6 other packets, far less.
static void firmwareUpload(benchmark::State &state)
{
    const qint64 packageBytes = state.range(0) * 1024 * 1024;
    const QTemporaryDir received;
    BenchSim sim(
        {u"--chunk-size"_s, QString::number(ChunkSize), u"--firmware-dir"_s, received.path()});
    const QString path = sim.dir() + u"/update.KRP"_s;
    firmware::PackageBuilder builder(FirmwareVersion {{9, 0, 0, 0}});
    for (const quint32 type : {2u, 8u, 16u, 0x1234u})
        builder.addGeneratedComponent(type, FirmwareVersion {{9, 0, 0, 0}},
                                      quint32(packageBytes / ComponentCount));
    QString error;
    FirmwarePackage::Fault fault;
    std::optional<FirmwarePackage> package;
    if (!builder.write(path, &error) || !(package = FirmwarePackage::open(path, &fault))) {
        state.SkipWithError("cannot write the package");
        return;
    }
    // Every upload ends the program; here it just ends.
    const ProgramExit::Hook previousExit = ProgramExit::install([](int) {});

    double seconds = 0;
    qint64 growthKiB = 0;
    for (auto _ : state) {
        ConnectionRecord record;
        CWork work;
        if (!sim.openSession(work, record)) {
            state.SkipWithError("no session with the simulator");
            break;
        }
        FirmwareUploader uploader(work, *package);
        resetPeak();
        const qint64 before = statusKiB("VmRSS");
        // Timed to the moment the outcome arrives, not to the next look at
        // it: a polling loop would add up to its period to every upload.
        QEventLoop loop;
        QElapsedTimer clock;
        QObject::connect(&uploader, &FirmwareUploader::finished, &loop, [&] {
            seconds = double(clock.nsecsElapsed()) / 1e9;
            loop.quit();
        });
        QTimer::singleShot(600000, &loop, &QEventLoop::quit);
        clock.start();
        uploader.start();
        loop.exec();
        state.SetIterationTime(seconds);
        growthKiB = std::max<qint64>(statusKiB("VmHWM") - before, 0);
        if (uploader.outcome() != FirmwareUploader::Outcome::Completed)
            state.SkipWithError("the upload did not complete");
        work.disconnectSession();
    }
    ProgramExit::install(previousExit);

    const double ideal = double(ChunkSize) / (double(FirmwareUploader::PacketPause.count()) / 1000);
    const double achieved = seconds > 0 ? double(packageBytes) / seconds : 0;
    state.counters["MiB_per_s"] = achieved / (1024 * 1024);
    state.counters["ideal_MiB_per_s"] = ideal / (1024 * 1024);
    state.counters["of_ideal_pct"] = 100 * achieved / ideal;
    state.counters["rss_growth_KiB"] = double(growthKiB);
    // The protocol's own floor: every packet waits its pause, the header and
    // the end packets too. Goal: the transfer takes no more than that.
    const qint64 chunksPerComponent = (packageBytes / ComponentCount + ChunkSize - 1) / ChunkSize;
    const qint64 chunks = ComponentCount * chunksPerComponent;
    const qint64 packets = 1 + chunks + ComponentCount + 1;
    const double pause = double(FirmwareUploader::PacketPause.count()) / 1000;
    state.counters["floor_vs_time"] = seconds > 0 ? double(packets) * pause / seconds : 0;
    state.counters["chunks_floor_vs_time"] = seconds > 0 ? double(chunks) * pause / seconds : 0;
}
BENCHMARK(firmwareUpload)
    ->Arg(16)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);
