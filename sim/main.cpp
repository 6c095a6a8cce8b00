// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderServer.h"
#include "sim/SessionThreads.h"
#include "sim/SimOptions.h"
#include "sim/StopSignals.h"

#include "BuildInfo.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <sys/resource.h>

namespace {

// Exit codes: a command line that makes no sense, and a recorder that cannot
// start (its record file is refused or its port is taken).
constexpr int UsageError = 2;
constexpr int StartFailure = 1;

void printLine(FILE *stream, const QString &text)
{
    std::fputs(qPrintable(text + u'\n'), stream);
    std::fflush(stream);
}

// Every recorder and every connection takes a descriptor: a thousand
// recorders need more than the usual soft limit, so take what the system allows.
void raiseDescriptorLimit()
{
    rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

int main(int argc, char **argv)
{
    // --version with a value sets a new record's software version; alone it
    // asks for the program's.
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("recorder-sim " RS_VERSION);
        return 0;
    }
    // Qt's own event dispatcher takes a socket in and out of its watch in
    // constant time, where the GLib one walks a list of every socket; with
    // hundreds of connections per thread that walk dominates.
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    // Log lines are for people watching the simulator: plain, on stderr.
    qSetMessagePattern(QStringLiteral("%{message}"));

    QString error;
    bool help = false;
    const auto options = sim::SimOptions::parse(app.arguments().mid(1), &error, &help);
    if (!options) {
        printLine(stderr, QStringLiteral("recorder-sim: ") + error);
        printLine(stderr, QStringLiteral("Try 'recorder-sim --help'."));
        return UsageError;
    }
    if (help) {
        std::fputs(qPrintable(sim::SimOptions::usage()), stdout);
        return 0;
    }

    raiseDescriptorLimit();
    // Caught before the first announcement: whoever read it may stop us at once.
    const sim::StopSignals stop;
    // Made before the recorders and gone after them: their sessions run there.
    sim::SessionThreads threads(options->threads);

    // Every recorder starts before any is announced, so a failure leaves
    // standard output empty. It carries nothing but the announcements, so
    // that a script or test can read the ports from it.
    std::vector<std::unique_ptr<sim::RecorderServer>> recorders;
    for (int i = 0; i < options->count; ++i) {
        auto recorder
            = std::make_unique<sim::RecorderServer>(*options, options->recordFileFor(i), &threads);
        if (!recorder->start(options->address, options->portFor(i), &error)) {
            printLine(stderr, QStringLiteral("recorder-sim: ") + error);
            return StartFailure;
        }
        recorders.push_back(std::move(recorder));
    }
    for (const auto &recorder : recorders)
        printLine(stdout, QStringLiteral("listening on ") + recorder->name());
    return app.exec();
}
