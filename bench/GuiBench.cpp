// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CRemoteKSetupDlg.h"
#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "bench/BenchSim.h"
#include "i18n/Translator.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/common/MotionMaskEditor.h"
#include "pages/display/CRemoteDisplayDateTimeDlg.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "session/RecorderClock.h"
#include "setup/FactoryDefaults.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPushButton>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// The window must never stop on a message box or end the process here;
// either would mean the session failed.
class CountingSink : public MessageSink
{
public:
    CountingSink() { MessageSink::install(this); }
    ~CountingSink() override { MessageSink::install(nullptr); }
    void showMessage(const QString &) override { ++messages; }
    int messages = 0;
};

QString languageConfig()
{
    return QCoreApplication::applicationDirPath() + u"/../bin/language.config"_s;
}

// The resident size of this process in KiB, from /proc/self/status.
qint64 residentKiB()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

double medianMs(std::vector<qint64> nanoseconds)
{
    if (nanoseconds.empty())
        return 0;
    std::sort(nanoseconds.begin(), nanoseconds.end());
    return nanoseconds[nanoseconds.size() / 2] / 1e6;
}

} // namespace

// From the click on CONNECT to the first page on display, in a new window
// each time, against a simulator on this machine: login, the setup record,
// building and filling the pages. Goal: median below 250 ms (the connecting
// wait polls every 100 ms, unless the record wakes it).
static void connectToFirstPage(benchmark::State &state)
{
    CountingSink sink;
    bool ended = false;
    const ProgramExit::Hook previous = ProgramExit::install([&](int) { ended = true; });
    BenchSim sim({u"--max-users"_s, u"1000"_s});
    ConnectionSettings settings;
    settings.address = u"127.0.0.1"_s;
    settings.port = QString::number(sim.port());
    settings.userId = u"Admin"_s;

    std::vector<qint64> times;
    for (auto _ : state) {
        for (int i = 0; i < state.range(0) && !ended; ++i) {
            CRemoteKSetupDlg window(languageConfig());
            window.show();
            window.connectionPanel()->enter(settings);
            QElapsedTimer clock;
            clock.start();
            window.connectionPanel()->connectButton()->click();
            while (window.pageHost()->currentEntry() < 0 && !ended)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            times.push_back(clock.nsecsElapsed());
        }
    }
    ProgramExit::install(previous);
    state.counters["connects"] = double(times.size());
    state.counters["median_ms"] = medianMs(times);
    if (ended || sink.messages)
        state.SkipWithError("the session failed");
}
BENCHMARK(connectToFirstPage)
    ->Arg(25)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

// Creating every page that exists and filling it from a whole setup record
// of a 16-channel recorder, with the German texts. Goal: below 100 ms.
static void buildAndFillPages(benchmark::State &state)
{
    const nelib::Translator translator(languageConfig(), 1);
    const QByteArray record = setup::FactoryDefaults::record();
    for (auto _ : state) {
        PageHost host;
        host.buildPages();
        host.loadPages(record, 16);
    }
}
BENCHMARK(buildAndFillPages)->Unit(benchmark::kMillisecond);

// Filling the built pages again, as a new setup record or Cancel does: the
// cost of the bindings themselves. Goal: below 1 ms a 16-channel page.
static void refillPages(benchmark::State &state)
{
    const QByteArray record = setup::FactoryDefaults::record();
    PageHost host;
    host.buildPages();
    host.loadPages(record, 16);
    for (auto _ : state)
        host.loadPages(record, 16);
}
BENCHMARK(refillPages)->Unit(benchmark::kMicrosecond);

// Every page shown and drawn once, as an installer going through all the
// menus sees them, in the German texts. Goal: the process stays below 80 MB
// resident (counter rss_MB).
static void visitEveryPage(benchmark::State &state)
{
    const nelib::Translator translator(languageConfig(), 1);
    const QByteArray record = setup::FactoryDefaults::record();
    for (auto _ : state) {
        PageHost host;
        host.resize(800, 700);
        host.show();
        host.buildPages();
        host.loadPages(record, 16);
        for (int i = 0; i < PageCatalog::count(); ++i) {
            host.showPage(i);
            benchmark::DoNotOptimize(host.grab());
        }
        state.counters["rss_MB"] = double(residentKiB()) / 1024;
    }
}
BENCHMARK(visitEveryPage)->Unit(benchmark::kMillisecond)->Iterations(1);

// The Date/Time page on display with its running clock, against a recorder
// clock that the session advances once a second: the process's CPU time
// over real time. Goal: below 1 % of one core.
static void runningClock(benchmark::State &state)
{
    RecorderTime now {2026, 1, 0, 27, 23, 59, 0, 0};
    QTimer session;
    QObject::connect(&session, &QTimer::timeout, [&now] { RecorderClock::tick(now); });
    session.start(1000);
    CRemoteDisplayDateTimeDlg page;
    page.setClock([&now] { return std::optional(now); }, [](const RecorderTime &) { return 0; });
    page.load(setup::FactoryDefaults::record(), 16);
    page.show();
    double share = 0;
    for (auto _ : state) {
        const std::clock_t cpu = std::clock();
        QElapsedTimer wall;
        wall.start();
        QEventLoop loop;
        QTimer::singleShot(int(state.range(0)), &loop, &QEventLoop::quit);
        loop.exec();
        share = double(std::clock() - cpu) / CLOCKS_PER_SEC * 1000.0 / double(wall.elapsed());
    }
    state.counters["cpu_percent"] = share * 100.0;
}
BENCHMARK(runningClock)->Arg(5000)->Arg(200)->Unit(benchmark::kMillisecond)->Iterations(1);

// Opening the motion mask editor on each of the 32 masks of a 16-channel
// recorder (day and night), up to its first full paint. Goal: each opening
// below 20 ms (median_ms, and max_ms for the slowest).
static void openMaskEditor(benchmark::State &state)
{
    const QByteArray record = setup::FactoryDefaults::record();
    CRemoteCameraMotionDlg page;
    page.load(record, 16);
    std::vector<MotionMaskEditor *> masks;
    for (const SectionBinder::Binding &b : std::as_const(page).binder().bindings()) {
        if (auto *mask = qobject_cast<MotionMaskEditor *>(b.editor))
            masks.push_back(mask);
    }
    std::vector<qint64> times;
    for (auto _ : state) {
        for (MotionMaskEditor *mask : masks) {
            QElapsedTimer clock;
            clock.start();
            mask->edit();
            const QPixmap shown = mask->dialog()->grab();
            times.push_back(clock.nsecsElapsed());
            benchmark::DoNotOptimize(shown);
            mask->dialog()->reject();
        }
    }
    state.counters["masks"] = double(masks.size());
    state.counters["median_ms"] = medianMs(times);
    state.counters["max_ms"]
        = times.empty() ? 0 : *std::max_element(times.begin(), times.end()) / 1e6;
}
BENCHMARK(openMaskEditor)->Unit(benchmark::kMillisecond)->Iterations(3);
