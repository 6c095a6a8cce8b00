// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CRemoteKSetupDlg.h"
#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "bench/BenchSim.h"
#include "i18n/Translator.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/common/MotionMaskEditor.h"
#include "pages/display/CRemoteDisplayDateTimeDlg.h"
#include "session/CWork.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "session/RecorderClock.h"
#include "setup/FactoryDefaults.h"

#include <QAction>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
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

// The time between two pages an installer chooses, and the longest a
// visit of every page may take.
constexpr int ChoicePauseMs = 10;
constexpr int ChildTimeoutMs = 120000;

// A size of this process in KiB from /proc/self/status: "VmRSS:" the
// resident size, "RssFile:" its part in mapped files.
qint64 statusKiB(const QByteArray &key)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').first().toLongLong();
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

double maxMs(const std::vector<qint64> &nanoseconds)
{
    return nanoseconds.empty() ? 0
                               : *std::max_element(nanoseconds.begin(), nanoseconds.end()) / 1e6;
}

// The longest time the event loop could not have reacted to the operator:
// the longest gap between the ticks of a timer that asks for every
// millisecond, less that millisecond.
class StallMeter
{
public:
    StallMeter()
    {
        m_ticks.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_ticks, &QTimer::timeout, [this] {
            m_longest = std::max(m_longest, m_sinceTick.nsecsElapsed() - TickNs);
            m_sinceTick.start();
        });
        m_sinceTick.start();
        m_ticks.start(1);
    }
    qint64 longest() const { return m_longest; }

private:
    static constexpr qint64 TickNs = 1000000;
    QTimer m_ticks;
    QElapsedTimer m_sinceTick;
    qint64 m_longest = 0;
};

// A window connected to `sim` with its first page on display; false when
// the session failed.
bool connectWindow(CRemoteKSetupDlg &window, const BenchSim &sim, const bool &ended)
{
    ConnectionSettings settings;
    settings.address = u"127.0.0.1"_s;
    settings.port = QString::number(sim.port());
    settings.userId = u"Admin"_s;
    window.connectionPanel()->enter(settings);
    window.connectionPanel()->connectButton()->click();
    while (window.pageHost()->currentEntry() < 0 && !ended)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return !ended;
}

// One run in each shipped language: 0 English, 1 German, 2 Korean.
void everyLanguage(benchmark::internal::Benchmark *run)
{
    run->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
}

} // namespace

// From the click on CONNECT to the first page on display, in a new window
// each time, against a simulator on this machine: login, the setup record,
// building and filling the pages. Goal: median below 250 ms (the connecting
// wait polls every 100 ms, unless the record wakes it). Besides: from the
// setup record's arrival to the first page on display (record_to_page_ms,
// goal below 20 ms) and the longest stall of the event loop during a
// connect (max_stall_ms, goal below 100 ms).
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
    std::vector<qint64> firstPage;
    std::vector<qint64> stalls;
    for (auto _ : state) {
        for (int i = 0; i < state.range(0) && !ended; ++i) {
            CRemoteKSetupDlg window(languageConfig());
            window.show();
            window.connectionPanel()->enter(settings);
            QElapsedTimer clock;
            clock.start();
            const StallMeter stall;
            window.connectionPanel()->connectButton()->click();
            QElapsedTimer arrived;
            QObject::connect(window.worker(), &CWork::setupArrived,
                             [&arrived] { arrived.start(); });
            while (window.pageHost()->currentEntry() < 0 && !ended)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            times.push_back(clock.nsecsElapsed());
            if (arrived.isValid())
                firstPage.push_back(arrived.nsecsElapsed());
            stalls.push_back(stall.longest());
        }
    }
    ProgramExit::install(previous);
    state.counters["connects"] = double(times.size());
    state.counters["median_ms"] = medianMs(times);
    state.counters["record_to_page_ms"] = medianMs(firstPage);
    state.counters["max_record_to_page_ms"] = maxMs(firstPage);
    state.counters["max_stall_ms"] = maxMs(stalls);
    if (ended || sink.messages)
        state.SkipWithError("the session failed");
}
BENCHMARK(connectToFirstPage)
    ->Arg(25)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

// Creating every page that exists, filling it from a whole setup record of
// a 16-channel recorder and showing it once, with the German texts: all the
// building a session can ask for. Goal: below 100 ms.
static void buildAndFillPages(benchmark::State &state)
{
    const nelib::Translator translator(languageConfig(), 1);
    const QByteArray record = setup::FactoryDefaults::record();
    for (auto _ : state) {
        PageHost host;
        host.buildPages();
        host.loadPages(record, 16);
        for (int i = 0; i < PageCatalog::count(); ++i)
            host.showPage(i);
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
    for (int i = 0; i < PageCatalog::count(); ++i)
        host.showPage(i);
    host.loadPages(record, 16);
    for (auto _ : state)
        host.loadPages(record, 16);
}
BENCHMARK(refillPages)->Unit(benchmark::kMicrosecond);

// A window connected to a simulated 16-channel recorder, every page chosen
// from the menus and drawn once, as an installer going through all of them
// sees them, in language 0 (English), 1 (German) or 2 (Korean). The choices
// come from the running event loop, a few milliseconds apart, as in the
// program: the pages it lets go on the way are deleted and their memory
// given back before the next choice. Goal: the process stays below 60 MB
// resident (counter rss_MB, of which file_MB are mapped files: libraries,
// fonts). Memory once taken stays with the process: visitEveryPageAlone
// gives each language's figure from a process of its own.
static void visitEveryPage(benchmark::State &state)
{
    CountingSink sink;
    bool ended = false;
    const ProgramExit::Hook previous = ProgramExit::install([&](int) { ended = true; });
    qputenv("REMOTE_SETUP_LANGUAGE", QByteArray::number(state.range(0)));
    BenchSim sim;
    for (auto _ : state) {
        CRemoteKSetupDlg window(languageConfig());
        window.resize(900, 700);
        window.show();
        if (!connectWindow(window, sim, ended))
            break;
        QEventLoop loop;
        QTimer chooser;
        int next = 0;
        QObject::connect(&chooser, &QTimer::timeout, [&] {
            if (next == PageCatalog::count() || ended)
                return loop.quit();
            if (QAction *item = window.pageMenus()->item(next++); item->isEnabled())
                item->trigger();
            benchmark::DoNotOptimize(window.grab());
        });
        chooser.start(ChoicePauseMs);
        loop.exec();
        state.counters["rss_MB"] = double(statusKiB("VmRSS:")) / 1024;
        state.counters["file_MB"] = double(statusKiB("RssFile:")) / 1024;
    }
    qunsetenv("REMOTE_SETUP_LANGUAGE");
    ProgramExit::install(previous);
    if (ended || sink.messages)
        state.SkipWithError("the session failed");
}
BENCHMARK(visitEveryPage)->Apply(everyLanguage);

// visitEveryPage in a new process of this program for each language, so
// that one run gives every language's own figures side by side.
static void visitEveryPageAlone(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
                    {u"--benchmark_filter=^visitEveryPage/%1/"_s.arg(state.range(0)),
                     u"--benchmark_format=json"_s});
        const bool finished = child.waitForFinished(ChildTimeoutMs);
        const QJsonArray runs
            = QJsonDocument::fromJson(child.readAllStandardOutput())[u"benchmarks"_s].toArray();
        const QJsonObject run = runs.isEmpty() ? QJsonObject() : runs.first().toObject();
        if (!finished || !run.contains(u"rss_MB"_s) || run.contains(u"error_message"_s)) {
            state.SkipWithError("the visit failed");
            break;
        }
        state.counters["rss_MB"] = run[u"rss_MB"_s].toDouble();
        state.counters["file_MB"] = run[u"file_MB"_s].toDouble();
    }
}
BENCHMARK(visitEveryPageAlone)->Apply(everyLanguage);

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
