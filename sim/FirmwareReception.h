// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwarePackage.h"
#include "session/Frame.h"
#include "session/PacketParam.h"
#include "sim/RecorderServer.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QSaveFile;

namespace sim {

class RecorderSession;

// The firmware side of one recorder session. The header packet is answered
// with the recorder's versions and the chunk size it takes. Every chunk and
// end packet is checked against the header's component table, the running
// packet number and the sizes, and the data go to a temporary file in
// --firmware-dir, so a package of any size costs no memory. At the end of the
// package the file takes its final name and the package's version becomes the
// recorder's software version. A packet at fault is refused and drops the
// transfer; a stop packet drops it without an answer.
class FirmwareReception
{
public:
    struct Reply
    {
        PACKET_PARAM param;
        QByteArray payload;
        // When set, the reply waits until this change of the record is
        // saved; word 1 then says whether it was.
        RecorderServer::ChangeTicket change;
    };

    // The changes of the record it makes are `session`'s.
    FirmwareReception(RecorderServer *server, RecorderSession *session,
                      std::function<void(const QString &)> log);
    ~FirmwareReception();

    // The reply to `frame` (a firmware packet), or nothing when it gets none.
    // Without `allowed` (the account's right to upgrade) a header is
    // declined and any other packet refused.
    std::optional<Reply> handle(const session::Frame &frame, bool allowed);
    // Drops a transfer in progress, saying `why` in the log.
    void discard(const QString &why);

    // What lands in --firmware-dir for a package of `version`.
    static QString fileName(firmware::FirmwareVersion version);

private:
    struct Transfer
    {
        firmware::FirmwarePackage package;
        std::unique_ptr<QSaveFile> file; // null without --firmware-dir
        quint32 nextNumber = 0;
        std::size_t nextEntry = 0; // where the table search for the next component starts
        std::optional<std::size_t> open; // the component being received
        quint64 componentReceived = 0;
        quint64 received = 0;
        std::optional<quint32> total;
    };

    Reply header(const session::Frame &frame, bool allowed);
    Reply data(const session::Frame &frame);
    QString chunk(const session::Frame &frame);
    QString endOfComponent(const session::Frame &frame);
    Reply endOfPackage(const session::Frame &frame);
    std::optional<std::size_t> findComponent(quint32 type, quint32 size) const;
    bool startFile(Transfer &transfer, QString *problem) const;
    QByteArray versionData() const;
    Reply refuse(const QString &problem);

    RecorderServer *m_server;
    RecorderSession *m_session;
    std::function<void(const QString &)> m_log;
    std::optional<Transfer> m_transfer;
};

} // namespace sim
