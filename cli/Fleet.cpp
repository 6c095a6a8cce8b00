// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/Fleet.h"

#include "cli/ApplyCommand.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/Fiber.h"
#include "cli/FieldCommands.h"
#include "cli/LoginFields.h"
#include "cli/SessionCommands.h"
#include "cli/UploadCommand.h"

#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

constexpr int BarWidth = 30;

// A file name for a recorder's export: its host, with the port when two
// recorders of the fleet share the host.
QString exportName(const HostEntry &host, bool sharedHost)
{
    QString name = sharedHost ? host.host + u'_' + QString::number(host.port) : host.host;
    name.replace(u':', u'-');
    return name + u".dat"_s;
}

// The command's input, checked once for the whole fleet.
int checkOnce(const CommandContext &context, const QString &name, const QStringList &arguments)
{
    if (name == u"set"_s)
        return FieldCommands::checkSet(context, arguments);
    if (name == u"apply"_s)
        return ApplyCommand::check(context, arguments);
    if (name == u"diff"_s)
        return FieldCommands::checkDiff(context, arguments);
    if (name == u"get"_s)
        return FieldCommands::checkGet(context, arguments);
    if (name == u"info"_s && !arguments.isEmpty())
        return context.usageError(u"info takes no arguments"_s);
    if (name == u"set-time"_s) {
        QDateTime when;
        return SessionCommands::checkSetTime(context, arguments, &when);
    }
    if (name == u"dump"_s && !arguments.isEmpty())
        return context.usageError(u"dump with --hosts dumps the recorders and takes no FILE"_s);
    if (name == u"export"_s) {
        if (arguments.size() != 1)
            return context.usageError(u"export with --hosts takes one DIR/"_s);
        const QString dir = arguments.first();
        if (!QFileInfo(dir).isDir() && !(dir.endsWith(u'/') && QDir().mkpath(dir)))
            return context.usageError(
                u"export with --hosts writes one file per recorder into a folder: '%1' is none "
                u"(end a new folder's name with /)"_s.arg(dir));
    }
    if (name == u"import"_s) {
        if (arguments.size() != 1)
            return context.usageError(u"import takes one FILE"_s);
        QFile file(arguments.first());
        if (!file.open(QIODevice::ReadOnly))
            return context.fail(UsageError,
                                u"cannot read %1: %2"_s.arg(arguments.first(), file.errorString()));
    }
    if (name == u"upload"_s)
        return UploadCommand::check(context, arguments);
    return Success;
}

} // namespace

int Fleet::run(const CommandContext &context, const QString &name, const QStringList &arguments,
               Command command)
{
    static const QStringList fleetCommands
        = {u"info"_s,   u"export"_s, u"import"_s, u"set"_s,   u"set-time"_s,
           u"upload"_s, u"get"_s,    u"dump"_s,   u"apply"_s, u"diff"_s};
    if (!fleetCommands.contains(name))
        return context.usageError(u"%1 does not run on a fleet (--hosts)"_s.arg(name));
    const GlobalOptions &options = context.options();
    QStringList errors;
    const auto hosts = HostsFile::read(options, &errors);
    if (!hosts) {
        for (const QString &error : errors)
            context.err() << "remote-setup-cli: " << error << '\n';
        context.err() << "nothing was sent to any recorder\n";
        context.err().flush();
        return UsageError;
    }
    if (const int code = checkOnce(context, name, arguments))
        return code;
    // The password and the default user, which every session sends.
    QString error;
    if (!LoginFields::from(options, &error))
        return context.fail(UsageError, error);

    QHash<QString, int> perHost;
    for (const HostEntry &host : *hosts)
        ++perHost[host.host.toLower()];
    std::vector<Job> jobs;
    for (const HostEntry &host : *hosts) {
        Job job;
        job.host = host;
        job.arguments = arguments;
        if (name == u"export"_s)
            job.arguments = {QDir(arguments.first())
                                 .filePath(exportName(host, perHost[host.host.toLower()] > 1))};
        jobs.push_back(job);
    }
    // Each recorder is compared with the one setup given: one line each.
    if (name == u"diff"_s)
        command = &FieldCommands::drift;
    Fleet fleet(context, command, std::move(jobs), name == u"diff"_s);
    return fleet.exec();
}

Fleet::Fleet(const CommandContext &context, Command command, std::vector<Job> jobs, bool drift)
    : m_context(context)
    , m_command(command)
    , m_jobs(std::move(jobs))
    , m_report(context, int(m_jobs.size()), drift)
    , m_terminal(isatty(fileno(stderr)) != 0)
{ }

Fleet::~Fleet() = default;

int Fleet::exec()
{
    QEventLoop loop;
    const int slots = std::max(1, m_context.options().jobs);
    for (int k = 0; k < slots; ++k)
        startNext();
    drawProgress();
    // Each finished job starts the next; the loop ends with the last.
    m_quit = [&loop] {
        loop.quit();
    };
    if (m_done < int(m_jobs.size()))
        loop.exec();
    clearProgress();
    printSummary();
    int worst = Success;
    for (const Job &job : m_jobs)
        worst = std::max(worst, job.code);
    return worst;
}

void Fleet::startNext()
{
    if (m_next >= m_jobs.size())
        return;
    Job *job = &m_jobs[m_next++];
    const GlobalOptions options = job->host.options(m_context.options());
    const Command command = m_command;
    auto body = [job, options, command] {
        QTextStream out(&job->out);
        QTextStream err(&job->err);
        const CommandContext context(options, out, err);
        job->code = command(context, job->arguments);
        out.flush();
        err.flush();
    };
    auto fiber = std::make_unique<Fiber>(body, [this, job] { finish(*job); });
    Fiber *started = fiber.get();
    m_fibers.emplace(job, std::move(fiber));
    ++m_running;
    started->wake();
}

void Fleet::finish(Job &job)
{
    --m_running;
    ++m_done;
    report(job);
    // Printed: the recorder's output is of no further use.
    job.out = QString();
    job.err = QString();
    // The fiber is still on the way out of its last turn: it goes at the next.
    QMetaObject::invokeMethod(
        this, [this, key = &job] { m_fibers.erase(key); }, Qt::QueuedConnection);
    startNext();
    drawProgress();
    if (m_done == int(m_jobs.size()) && m_quit)
        m_quit();
}

void Fleet::report(const Job &job)
{
    clearProgress();
    m_report.finished(int(&job - m_jobs.data()), job.host, job.code, job.out, job.err);
}

void Fleet::drawProgress()
{
    if (!m_terminal)
        return;
    const int total = int(m_jobs.size());
    const int filled = total ? m_done * BarWidth / total : BarWidth;
    m_context.err() << "\r[" << QString(filled, u'#') << QString(BarWidth - filled, u' ') << "] "
                    << m_done << '/' << total << " done, " << m_running << " running";
    m_context.err().flush();
    m_barShown = true;
}

void Fleet::clearProgress()
{
    if (!m_barShown)
        return;
    m_context.err() << "\r\x1b[K";
    m_context.err().flush();
    m_barShown = false;
}

void Fleet::printSummary()
{
    m_report.printSummary();
}

} // namespace cli
