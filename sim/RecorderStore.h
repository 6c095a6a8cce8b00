// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <optional>

namespace sim {

// A recorder's setup record and the file that keeps it between runs. Changes
// are made in memory and reach the file with save(), which replaces the file
// as a whole, so the file always holds one complete record: the old one or
// the new one.
class RecorderStore
{
public:
    // What a record made from the factory defaults gets instead of them.
    struct NewRecord
    {
        std::optional<quint32> modelId;
        std::optional<std::array<quint8, 4>> softwareVersion;
        std::optional<QByteArray> adminPassword; // at most 12 bytes
    };

    // Loads the record from `path`, or creates the file from the factory
    // defaults with `fresh` applied when there is none. A file of any other
    // size than a record is refused rather than repaired: it is not ours.
    bool open(const QString &path, const NewRecord &fresh, QString *error);

    QString path() const { return m_path; }
    bool created() const { return m_created; }
    const QByteArray &record() const { return m_record; }

    // Changes the record in memory; false, and nothing changed, when the
    // bytes would not lie wholly inside the record.
    bool write(qsizetype offset, QByteArrayView bytes);
    bool hasUnsavedChanges() const { return m_record != m_saved; }

    // Writes the record to the file atomically. On failure the changes made
    // since the last save are undone, so memory never claims what the file
    // does not hold.
    bool save(QString *error);

    // The parts of save(), for an owner that writes the file outside its
    // lock: writeFile() replaces the file with `record` atomically, then
    // markSaved() or undo() settles the changes it covered.
    bool writeFile(const QByteArray &record, QString *error) const;
    void markSaved(const QByteArray &record) { m_saved = record; }
    void undo() { m_record = m_saved; }

private:
    QString m_path;
    QByteArray m_record;
    QByteArray m_saved;
    bool m_created = false;
};

} // namespace sim
