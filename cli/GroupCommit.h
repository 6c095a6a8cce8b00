// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace cli {

class Fiber;

// Files that a fleet writes (its exports), made durable off the event loop.
// Each goes to a temporary file beside its place, which is synced, renamed
// into place, and its folder synced: a crash leaves the old file or the new
// one, never a file renamed before its bytes are on the disk. A few helper
// threads sync several files at once, so that the disk's waits overlap
// rather than add up, and a file waits for its own bytes only, not for what
// other programs wrote to the same file system.
class GroupCommit
{
public:
    static GroupCommit &instance();
    ~GroupCommit();

    // From a fleet's fiber: yields until the file is in place and durable.
    // Readable by its owner only. False with `error` set when it could not.
    bool write(const QString &path, const QByteArray &bytes, QString *error);
    // The same steps for one file, on the calling thread.
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

    // Renames into one folder reach the disk together: the helpers share
    // the folder's syncs. Under m_mutex.
    struct Folder
    {
        quint64 renamed = 0; // renames so far
        quint64 synced = 0; // the renames on the disk
        bool syncing = false;
    };

    GroupCommit() = default;
    void run();
    // Once `folder` holds a new rename: returns when the rename is on the
    // disk, false with `error` set when it could not be brought there.
    bool syncFolderAfterRename(const QString &folder, QString *error);

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::shared_ptr<File>> m_pending;
    std::condition_variable m_folderSynced;
    std::map<QString, Folder> m_folders;
    int m_idle = 0; // helpers waiting for a file
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};

} // namespace cli
