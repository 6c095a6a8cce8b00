// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/GroupCommit.h"

#include "cli/Fiber.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <cerrno>
#include <cstring>
#include <map>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace cli {

namespace {

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// The bytes in a new temporary file beside `path`, its name in `temporary`;
// the open descriptor, or -1 with `error` set.
int writeTemporary(const QString &path, const QByteArray &bytes, QByteArray *temporary,
                   QString *error)
{
    *temporary = QFile::encodeName(path) + ".XXXXXX";
    // mkstemp makes the file for its owner only, whatever the umask.
    const int fd = mkstemp(temporary->data());
    if (fd < 0) {
        *error = systemError();
        return -1;
    }
    if (::write(fd, bytes.constData(), size_t(bytes.size())) != bytes.size()) {
        *error = systemError();
        ::close(fd);
        ::unlink(temporary->constData());
        return -1;
    }
    return fd;
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
    if (m_thread.joinable())
        m_thread.join();
}

bool GroupCommit::write(const QString &path, const QByteArray &bytes, QString *error)
{
    const auto file = std::make_shared<File>();
    file->path = path;
    file->bytes = bytes;
    file->waiting = Fiber::current();
    {
        const std::lock_guard lock(m_mutex);
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
        m_pending.push_back(file);
    }
    m_wake.notify_all();
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
        m_wake.wait(lock, [this] { return m_stopping || !m_pending.empty(); });
        if (m_pending.empty())
            return;
        const std::deque<std::shared_ptr<File>> batch = std::exchange(m_pending, {});
        lock.unlock();
        commit(batch);
        lock.lock();
        for (const std::shared_ptr<File> &file : batch) {
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
}

void GroupCommit::commit(const std::deque<std::shared_ptr<File>> &batch)
{
    struct Written
    {
        File *file;
        int fd;
        QByteArray temporary;
    };
    std::vector<Written> written;
    for (const std::shared_ptr<File> &file : batch) {
        QByteArray temporary;
        const int fd = writeTemporary(file->path, file->bytes, &temporary, &file->error);
        if (fd >= 0)
            written.push_back({file.get(), fd, temporary});
    }
    // One sync of the file system brings every file of the batch to the
    // disk at the cost of one journal commit; a file synced on its own costs
    // one each.
    const bool synced = written.empty() || syncfs(written.front().fd) == 0;
    const QString syncError = synced ? QString() : systemError();
    std::map<QString, std::vector<File *>> folders;
    for (const Written &w : written) {
        ::close(w.fd);
        if (!synced || ::rename(w.temporary.constData(), QFile::encodeName(w.file->path)) != 0) {
            w.file->error = synced ? systemError() : syncError;
            ::unlink(w.temporary.constData());
            continue;
        }
        w.file->written = true;
        folders[QFileInfo(w.file->path).absolutePath()].push_back(w.file);
    }
    // The renames themselves reach the disk with their folders.
    for (const auto &[folder, files] : folders) {
        const QString error = syncFolder(folder);
        for (File *file : files) {
            file->written = error.isEmpty();
            file->error = error;
        }
    }
}

bool GroupCommit::writeAlone(const QString &path, const QByteArray &bytes, QString *error)
{
    QByteArray temporary;
    const int fd = writeTemporary(path, bytes, &temporary, error);
    if (fd < 0)
        return false;
    // The file's own sync: the file system's would also wait for everything
    // other programs wrote to it.
    const bool synced = fdatasync(fd) == 0;
    if (!synced)
        *error = systemError();
    ::close(fd);
    if (!synced || ::rename(temporary.constData(), QFile::encodeName(path).constData()) != 0) {
        if (synced)
            *error = systemError();
        ::unlink(temporary.constData());
        return false;
    }
    *error = syncFolder(QFileInfo(path).absolutePath());
    return error->isEmpty();
}

} // namespace cli
