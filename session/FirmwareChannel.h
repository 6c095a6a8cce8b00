// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/Event.h"
#include "session/KRemoteSocket.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <chrono>
#include <mutex>
#include <optional>

// The firmware upload's line to the recorder, used by the upload thread
// while the session's own thread goes on: it sends the upload's packets
// (command 4227) through the session's handle and keeps the recorder's last
// reply (4228), which the transport hands over the moment it arrives. The
// session attaches its handle and takes it away again before destroying it,
// so that no send ever runs on a destroyed handle.
class FirmwareChannel
{
public:
    static constexpr int BufferSize = 524288;

    struct Reply
    {
        std::array<quint32, 8> words {};
        QByteArray data; // at most BufferSize bytes
    };

    // The session's thread. A null handle wakes a waiting upload: no reply
    // can come any more.
    void attach(KRSMGAPI_HANDLE handle);

    // One packet of the upload, made before its pause ends: a chunk takes a
    // while to copy. Empty when `data` is too large.
    static QByteArray packet(const PACKET_PARAM &param, QByteArrayView data);
    // Any thread. Sends a packet(), written to the network by the calling
    // thread when nothing is ahead of it; false when it cannot go.
    bool send(QByteArray packet);
    // Any thread. When the last packet sent had left for the network;
    // nothing before the first or while it has not left.
    std::optional<std::chrono::steady_clock::time_point> lastWritten();

    // Any thread: the recorder's reply; wakes the upload.
    void receive(const PACKET_PARAM &param, QByteArrayView data);
    // Set by every reply, and when the handle goes.
    nelib::Event &replyEvent() { return m_replied; }
    Reply reply() const;
    // How many replies have arrived in the session's life.
    quint64 replies() const;
    // Forgets the last reply.
    void clear();

private:
    mutable std::mutex m_mutex;
    KRSMGAPI_HANDLE m_handle = nullptr;
    quint32 m_frames = 0; // frames queued up to the last packet sent
    Reply m_reply;
    quint64 m_replies = 0;
    nelib::Event m_replied;
};
