// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/FleetReport.h"
#include "cli/HostsFile.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace cli {

class CommandContext;
class Fiber;

// One command run on every recorder of a hosts file. Each recorder gets its
// own session, at most --jobs open at once, all on this thread and its one
// event loop: each recorder's command runs in a fiber of its own that yields
// whenever it waits, so a recorder that hangs or refuses holds up only its
// own slot until --timeout. A recorder's output is kept only until its
// result is printed. Export files are made durable in batches on one
// helper thread (GroupCommit), so that no session waits for the disk. Results
// are printed as the recorders finish: the command's output lines prefixed
// with the recorder's name, then one result line; a summary follows at the
// end, and on a terminal a progress bar runs on standard error. The exit
// code is the worst of the recorders'. diff prints one line per recorder:
// how many settings differ from the one setup given.
class Fleet : public QObject
{
public:
    using Command = int (*)(const CommandContext &, const QStringList &);

    // Reads --hosts, checks the command's own input once (values, files,
    // packages) before any recorder is contacted, then runs it everywhere.
    static int run(const CommandContext &context, const QString &name, const QStringList &arguments,
                   Command command);

private:
    struct Job
    {
        HostEntry host;
        QStringList arguments;
        int code = 0;
        QString out;
        QString err;
    };

    Fleet(const CommandContext &context, Command command, std::vector<Job> jobs, bool drift);
    ~Fleet() override;
    int exec();
    void startNext();
    void finish(Job &job);
    void report(const Job &job);
    void drawProgress();
    void clearProgress();
    void printSummary();

    const CommandContext &m_context;
    Command m_command;
    std::vector<Job> m_jobs;
    std::size_t m_next = 0;
    int m_running = 0;
    int m_done = 0;
    FleetReport m_report;
    bool m_terminal = false;
    bool m_barShown = false;
    std::function<void()> m_quit;
    std::map<const Job *, std::unique_ptr<Fiber>> m_fibers; // the running jobs'
};

} // namespace cli
