// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/FirmwareChannel.h"

#include "session/Frame.h"
#include "session/RemoteCommand.h"
#include "session/SocketChannel.h"

void FirmwareChannel::attach(KRSMGAPI_HANDLE handle)
{
    {
        // Waits for a send under way: the handle may be destroyed next.
        const std::lock_guard lock(m_mutex);
        m_handle = handle;
        m_frames = 0;
    }
    if (!handle)
        m_replied.set();
}

QByteArray FirmwareChannel::packet(const PACKET_PARAM &param, QByteArrayView data)
{
    return session::Frame::encode(0, RemoteCommand::FirmwarePacket, param, data);
}

bool FirmwareChannel::send(QByteArray packet)
{
    const std::lock_guard lock(m_mutex);
    if (!m_handle || !m_handle->sendNow(std::move(packet)))
        return false;
    m_frames = m_handle->framesQueued();
    return true;
}

std::optional<std::chrono::steady_clock::time_point> FirmwareChannel::lastWritten()
{
    const std::lock_guard lock(m_mutex);
    if (!m_handle || m_frames == 0)
        return std::nullopt;
    return m_handle->writtenAt(m_frames);
}

void FirmwareChannel::receive(const PACKET_PARAM &param, QByteArrayView data)
{
    {
        const std::lock_guard lock(m_mutex);
        m_reply.words = param.words;
        m_reply.data = data.first(std::min<qsizetype>(data.size(), BufferSize)).toByteArray();
        ++m_replies;
    }
    m_replied.set();
}

FirmwareChannel::Reply FirmwareChannel::reply() const
{
    const std::lock_guard lock(m_mutex);
    return m_reply;
}

quint64 FirmwareChannel::replies() const
{
    const std::lock_guard lock(m_mutex);
    return m_replies;
}

void FirmwareChannel::clear()
{
    const std::lock_guard lock(m_mutex);
    m_reply = {};
}
