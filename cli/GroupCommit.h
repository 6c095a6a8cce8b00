// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace cli {

class Fiber;

// Files that a fleet writes (its exports), made durable together. Each goes
// to a temporary file beside its place; one helper thread takes every file
// waiting at that moment, brings all of their bytes to the disk, renames
// them into place and syncs their folders. The disk is waited for once per
// batch rather than once per file, and a file is never renamed before its
// bytes are on the disk, so a crash leaves the old file or the new one.
class GroupCommit
{
public:
    static GroupCommit &instance();
    ~GroupCommit();

    // From a fleet's fiber: yields until the file is in place and durable.
    // Readable by its owner only. False with `error` set when it could not.
    bool write(const QString &path, const QByteArray &bytes, QString *error);
    // One file outside a fleet, on the calling thread: the same steps, with
    // the file's own sync for the file system's.
    static bool writeAlone(const QString &path, const QByteArray &bytes, QString *error);

private:
    struct File
    {
        QString path;
        QByteArray bytes;
        Fiber *waiting = nullptr;
        bool done = false; // under m_mutex
        bool written = false;
        QString error;
    };

    GroupCommit() = default;
    void run();
    static void commit(const std::deque<std::shared_ptr<File>> &batch);

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::shared_ptr<File>> m_pending;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace cli
