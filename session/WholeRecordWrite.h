// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/KRemoteSocket.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

// One whole record written to the recorder: the six blocks, 100 ms apart on
// a timer, then the commit once all six are acknowledged; the seventh
// acknowledgement makes it a success. A refused block or a failed send ends
// it at once, with nothing further sent. The session worker owns it, feeds
// it the acknowledgements and hears how it ended.
class WholeRecordWrite : public QObject
{
public:
    enum class Kind { Import, Default };
    enum class Outcome { None, Succeeded, Refused, SendFailed };

    static constexpr int PauseMs = 100;
    // Added to the pause: a block that reaches the recorder later after its
    // write than the next one does (scheduling, a busy link) would otherwise
    // arrive less than the pause before it. 5 % of the pause, within what
    // a recorder waits anyway.
    static constexpr std::chrono::milliseconds PauseMargin {5};

    // What the write needs of its session.
    class Session
    {
    public:
        virtual ~Session();
        virtual bool readyToWrite() const = 0;
        // Sends one setup write and counts it as awaiting its acknowledgement.
        virtual bool sendSetupWrite(const PACKET_PARAM &param, QByteArrayView data) = 0;
        virtual void sendCommit() = 0;
        virtual KRSMGAPI_HANDLE handle() const = 0;
        // After the write has ended with `outcome`; `record` is what was sent.
        virtual void wholeRecordEnded(Kind kind, Outcome outcome, const QByteArray &record) = 0;
    };

    explicit WholeRecordWrite(Session &session);

    // Sends the first block and starts the timer; false, nothing kept, when
    // the send failed. Only while none runs.
    bool start(Kind kind, QByteArrayView record);
    bool running() const { return m_write.has_value(); }
    std::optional<Kind> kind() const;
    Outcome lastOutcome() const { return m_lastOutcome; }
    // The acknowledgement of a write sent while this one runs.
    void acknowledge(bool applied);
    // Stops the write, if one runs, and reports `outcome`.
    void end(Outcome outcome);

private:
    bool sendBlock();
    void sendNextBlock();
    std::chrono::milliseconds pauseLeft() const;

    struct Write
    {
        Kind kind;
        QByteArray record;
        int nextBlock = 0;
        int acknowledgements = 0;
    };

    Session &m_session;
    std::optional<Write> m_write;
    Outcome m_lastOutcome = Outcome::None;
    QTimer m_timer;
    quint32 m_frames = 0; // frames queued up to the last block sent
};
