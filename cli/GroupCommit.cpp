// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/GroupCommit.h"

#include "cli/Fiber.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace cli {

namespace {

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Puts `bytes` in place of `path` through a temporary file beside it,
// synced before the rename. False with `error` set when it could not.
bool replace(const QString &path, const QByteArray &bytes, QString *error)
{
    QByteArray temporary = QFile::encodeName(path) + ".XXXXXX";
    // mkstemp makes the file for its owner only, whatever the umask.
    const int fd = mkstemp(temporary.data());
    if (fd < 0) {
        *error = systemError();
        return false;
    }
    const bool synced = ::write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size()
                        && fdatasync(fd) == 0;
    if (!synced)
        *error = systemError();
    ::close(fd);
    if (!synced || ::rename(temporary.constData(), QFile::encodeName(path).constData()) != 0) {
        if (synced)
            *error = systemError();
        ::unlink(temporary.constData());
        return false;
    }
    return true;
}

// Brings a folder's renames to the disk; the error, or empty.
QString syncFolder(const QString &folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    const bool synced = fd >= 0 && fsync(fd) == 0;
    const QString error = synced ? QString() : systemError();
    if (fd >= 0)
        ::close(fd);
    return error;
}

} // namespace

GroupCommit &GroupCommit::instance()
{
    static GroupCommit commit;
    return commit;
}

GroupCommit::~GroupCommit()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

bool GroupCommit::write(const QString &path, const QByteArray &bytes, QString *error)
{
    const auto file = std::make_shared<File>();
    file->path = path;
    file->bytes = bytes;
    file->waiting = Fiber::current();
    {
        const std::lock_guard lock(m_mutex);
        m_pending.push_back(file);
        // The disk overlaps this many syncs; more helpers would only take
        // turns on the processor.
        constexpr std::size_t Helpers = 8;
        if (m_idle == 0 && m_threads.size() < Helpers)
            m_threads.emplace_back([this] { run(); });
    }
    m_wake.notify_one();
    while (true) {
        {
            const std::lock_guard lock(m_mutex);
            if (file->done)
                break;
        }
        Fiber::yield();
    }
    file->waiting = nullptr; // a late wake-up finds no fiber to resume
    *error = file->error;
    return file->written;
}

void GroupCommit::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        ++m_idle;
        m_wake.wait(lock, [this] { return m_stopping || !m_pending.empty(); });
        --m_idle;
        if (m_pending.empty())
            return;
        const std::shared_ptr<File> file = m_pending.front();
        m_pending.pop_front();
        lock.unlock();
        file->written
            = replace(file->path, file->bytes, &file->error)
              && syncFolderAfterRename(QFileInfo(file->path).absolutePath(), &file->error);
        lock.lock();
        file->done = true;
        // The fiber's thread resumes it; the file outlives the call.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [file] {
                if (file->waiting)
                    file->waiting->wake();
            },
            Qt::QueuedConnection);
    }
}

bool GroupCommit::writeAlone(const QString &path, const QByteArray &bytes, QString *error)
{
    if (!replace(path, bytes, error))
        return false;
    *error = syncFolder(QFileInfo(path).absolutePath());
    return error->isEmpty();
}

bool GroupCommit::syncFolderAfterRename(const QString &folder, QString *error)
{
    std::unique_lock lock(m_mutex);
    Folder &state = m_folders[folder];
    const quint64 renamed = ++state.renamed;
    // A sync that began after this rename carries it to the disk; one
    // already running may not, so this file waits for the next.
    while (state.synced < renamed) {
        if (state.syncing) {
            m_folderSynced.wait(lock);
            continue;
        }
        state.syncing = true;
        const quint64 covers = state.renamed;
        lock.unlock();
        *error = syncFolder(folder);
        lock.lock();
        state.syncing = false;
        if (error->isEmpty())
            state.synced = std::max(state.synced, covers);
        m_folderSynced.notify_all();
        if (!error->isEmpty())
            return false;
    }
    return true;
}

} // namespace cli
