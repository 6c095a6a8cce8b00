// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/WholeRecordWrite.h"

#include "session/SocketChannel.h"
#include "setup/SetupRecordMap.h"

#include <utility>

using setup::SetupRecordMap;
using namespace std::chrono_literals;

WholeRecordWrite::Session::~Session() = default;

WholeRecordWrite::WholeRecordWrite(Session &session)
    : m_session(session)
{
    // A coarse timer may fire up to 5 % early; the pause is a minimum.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &WholeRecordWrite::sendNextBlock);
}

std::optional<WholeRecordWrite::Kind> WholeRecordWrite::kind() const
{
    return m_write ? std::optional(m_write->kind) : std::nullopt;
}

bool WholeRecordWrite::start(Kind kind, QByteArrayView record)
{
    m_write = Write {kind, record.toByteArray()};
    if (!sendBlock()) {
        // The caller reports a write that never started.
        m_write.reset();
        return false;
    }
    m_timer.start(PauseMs);
    return true;
}

bool WholeRecordWrite::sendBlock()
{
    const setup::BlockInfo &block = SetupRecordMap::Blocks[m_write->nextBlock];
    PACKET_PARAM param;
    param.words[0] = SetupRecordMap::WholeBlockCategory;
    param.words[1] = quint32(block.length);
    param.words[2] = quint32(block.offset);
    if (!m_session.readyToWrite()
        || !m_session.sendSetupWrite(
            param, QByteArrayView(m_write->record).sliced(block.offset, block.length)))
        return false;
    // Frames of other threads queued meanwhile only lengthen the pause.
    m_frames = m_session.handle()->framesQueued();
    ++m_write->nextBlock;
    return true;
}

std::chrono::milliseconds WholeRecordWrite::pauseLeft() const
{
    using namespace std::chrono;
    const KRSMGAPI_HANDLE handle = m_session.handle();
    if (!handle)
        return 0ms;
    // Counted from when the previous block left for the network, not from
    // when it was queued: one written late would otherwise reach the
    // recorder too close to the next.
    const std::optional<steady_clock::time_point> written = handle->writtenAt(m_frames);
    if (!written)
        return 1ms;
    const steady_clock::time_point due = *written + milliseconds(PauseMs) + PauseMargin;
    return std::max(ceil<milliseconds>(due - steady_clock::now()), 0ms);
}

void WholeRecordWrite::sendNextBlock()
{
    if (!m_write || m_write->nextBlock >= int(SetupRecordMap::Blocks.size()))
        return;
    if (const std::chrono::milliseconds left = pauseLeft(); left > 0ms) {
        m_timer.start(left);
        return;
    }
    if (!sendBlock()) {
        end(Outcome::SendFailed);
        return;
    }
    if (m_write->nextBlock < int(SetupRecordMap::Blocks.size()))
        m_timer.start(PauseMs);
}

void WholeRecordWrite::acknowledge(bool applied)
{
    if (!m_write)
        return;
    if (!applied) {
        end(Outcome::Refused);
        return;
    }
    const int blocks = int(SetupRecordMap::Blocks.size());
    // More acknowledgements than writes sent cannot belong to this write.
    const int sent = m_write->nextBlock + (m_write->acknowledgements >= blocks ? 1 : 0);
    if (++m_write->acknowledgements > sent) {
        end(Outcome::Refused);
        return;
    }
    if (m_write->acknowledgements == blocks)
        m_session.sendCommit();
    else if (m_write->acknowledgements == blocks + 1)
        end(Outcome::Succeeded);
}

void WholeRecordWrite::end(Outcome outcome)
{
    m_timer.stop();
    if (!m_write)
        return;
    const Write write = *std::exchange(m_write, std::nullopt);
    m_lastOutcome = outcome;
    m_session.wholeRecordEnded(write.kind, outcome, write.record);
}
