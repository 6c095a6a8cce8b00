// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderStore.h"

#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"
#include "sim/UserAccounts.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::SetupRecordMap;

namespace sim {

bool RecorderStore::open(const QString &path, const NewRecord &fresh, QString *error)
{
    m_path = path;
    m_created = !QFileInfo::exists(path);
    if (m_created) {
        QByteArray record = setup::FactoryDefaults::record(
            fresh.modelId.value_or(setup::FactoryDefaults::ModelId),
            fresh.softwareVersion.value_or(setup::FactoryDefaults::SoftwareVersion));
        if (fresh.adminPassword
            && !UserAccounts::setPassword(record, UserAccounts::Admin, *fresh.adminPassword)) {
            *error
                = u"the Admin password is longer than %1 bytes"_s.arg(UserAccounts::PasswordWidth);
            return false;
        }
        if (!writeFile(record, error))
            return false;
        m_record = m_saved = record;
        return true;
    }

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"cannot read the record file %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    if (file.size() != SetupRecordMap::RecordSize) {
        *error = u"%1 is %2 bytes, but a setup record is %3 bytes; not starting"_s.arg(
            path, QString::number(file.size()), QString::number(SetupRecordMap::RecordSize));
        return false;
    }
    QByteArray record = file.readAll();
    if (record.size() != SetupRecordMap::RecordSize) {
        *error = u"cannot read the record file %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    m_record = m_saved = record;
    return true;
}

bool RecorderStore::write(qsizetype offset, QByteArrayView bytes)
{
    if (!LittleEndian::fits(m_record.size(), offset, bytes.size()))
        return false;
    m_record.replace(offset, bytes.size(), bytes);
    return true;
}

bool RecorderStore::save(QString *error)
{
    if (!hasUnsavedChanges())
        return true;
    if (!writeFile(m_record, error)) {
        m_record = m_saved;
        return false;
    }
    m_saved = m_record;
    return true;
}

bool RecorderStore::writeFile(const QByteArray &record, QString *error) const
{
    // QSaveFile writes a temporary file beside the target and renames it over
    // the target on commit: a crash leaves either the old or the new record.
    // The record holds the passwords: only its owner may read it.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        || file.write(record) != record.size() || !file.commit()) {
        *error = u"cannot write the record file %1: %2"_s.arg(m_path, file.errorString());
        return false;
    }
    return true;
}

} // namespace sim
