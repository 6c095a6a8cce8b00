// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/ConnectionRecord.h"
#include "session/Event.h"
#include "session/FirmwareChannel.h"
#include "session/RecorderClock.h"
#include "session/SessionNotice.h"
#include "session/SessionStatus.h"
#include "session/SetupAnswerValues.h"
#include "session/WholeRecordWrite.h"
#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

#include "session/KRemoteSocket.h"
#include "session/RemoteSocketNotify.h"

// The one object that owns a session with a recorder: the socket library
// handle, the session state, the mirror of the recorder's setup record and
// its running clock. The library posts its notifications to this object,
// so all of its code runs on the thread it lives on (the user-interface
// thread), which it never blocks: connecting and the whole-record write
// run on events and timers. It shows nothing itself: what the operator has
// to hear goes to the main window as a SessionNotice. There is one at a
// time; pages reach it through instance().
class CWork
    : public QObject
    , private WholeRecordWrite::Session
{
    Q_OBJECT

public:
    enum State : int {
        Idle = 0,
        Connecting = 1,
        Connected = 2,
        LoggingIn = 3,
        Ready = 4,
        Failed = 7,
    };

    // Login answer codes.
    enum LoginCode : int { LoginRefused = 0, LoginOk = 1 };

    // The worker's own timers, by the fixed numbers the session names them by.
    static constexpr quint32 UnusedTimer = 0xFC000003; // never started
    static constexpr quint32 KeepAliveTimer = 0xFC000004;
    static constexpr quint32 ClockTimer = 0xFC000005;
    static constexpr int KeepAliveIntervalMs = 5000;
    static constexpr int ClockIntervalMs = 1000;
    static constexpr int WholeRecordPauseMs = WholeRecordWrite::PauseMs;
    static constexpr std::chrono::milliseconds PauseMargin = WholeRecordWrite::PauseMargin;

    // The two whole-record writes and how the last one ended.
    using WholeRecord = WholeRecordWrite::Kind;
    using TransferOutcome = WholeRecordWrite::Outcome;

    explicit CWork(QObject *parent = nullptr);
    // Stops an adopted upload first, then ends the session.
    ~CWork() override;

    static CWork *instance();
    // A number no other worker of the process has had; the source of the
    // worker's session messages.
    quint64 serial() const { return m_serial; }

    // The object that receives the session messages (2026, 3029).
    void setMainWindow(QObject *mainWindow);
    QObject *mainWindow() const { return m_mainWindow; }

    // Where the session's socket does its work (before connectSession()):
    // an I/O thread of its own, as the window has it, or this object's
    // thread, as the command line has it.
    void setIoThread(session::IoThread where) { m_ioThread = where; }

    // Starts a session with the recorder named in `record`, which must
    // outlive it, ending any earlier one first. Returns nonzero when the
    // attempt was started; the outcome follows as state changes.
    int connectSession(ConnectionRecord *record);
    // Whether the last attempt failed before a connection was established.
    bool connectFailed() const { return m_connectFailed; }
    // A setup opened from a file instead of a recorder: the mirror holds
    // `record` (whole) of a recorder of `videoStandard`, without a session;
    // nothing is ever sent. Ignored while a session runs.
    void holdRecord(QByteArrayView record, int videoStandard);
    bool holdsRecordOnly() const { return m_recordOnly; }
    // Ends the session whatever its state and tells the main window (2026).
    void disconnectSession();
    // Sends command 4177: mode 1 reads the recorder's clock, 2 sets it.
    int dateTimeCommand(int mode, const RecorderTime &time);

    int state() const { return m_status->state.load(); }
    int setupReceived() const { return m_status->setupReceived.load(); }
    std::shared_ptr<const SessionStatus> status() const { return m_status; }
    const QByteArray &mirror() const { return m_mirror; }
    const QByteArray &referenceCopy() const { return m_referenceCopy; }
    int videoStandard() const { return m_videoStandard; }
    std::optional<int> lastLoginCode() const { return m_lastLoginCode; }
    const SetupAnswerValues &setupAnswerValues() const { return m_setupAnswerValues; }
    bool clockValid() const { return m_clockValid; }
    RecorderTime clock() const { return m_clock ? *m_clock : RecorderTime {}; }
    // The last time answer as the recorder gave it, before any tick.
    const RecorderTime &timeAnswer() const { return m_timeAnswer; }
    QByteArray address() const { return m_address; }
    quint32 port() const { return m_port; }

    // Setup section writes: copies `data` (exactly the section's length)
    // into the mirror, then sends it. Returns the library's result, or 0
    // when nothing was sent (not ready, wrong length).
    int writeSection(setup::Section section, QByteArrayView data);
    // The recorder refused a write: the mirror takes back `held`, what the
    // recorder still has from `offset` on, so that it never holds values
    // the recorder does not. Bytes outside the record are ignored.
    void restoreMirror(int offset, QByteArrayView held);
    // Copies one of the readable sections out of the mirror. Returns 1, or
    // 0 when the session is not ready or `destination` is null.
    int readSection(setup::Section section, QByteArray *destination) const;
    // Starts writing a whole record as the six blocks, 100 ms apart on a
    // timer. Refused (0, nothing sent) unless the session is ready, `record`
    // is whole, a whole record was received in this session, and no other
    // whole-record write runs. The recorder's acknowledgements finish it: the
    // sixth sends the commit, the seventh makes `record` the mirror and
    // reports success; a refused block or a failed send ends it at once,
    // with nothing further sent. Returns the first send's result.
    int writeWholeRecord(WholeRecord kind, QByteArrayView record);
    bool wholeRecordReceived() const { return m_wholeRecordReceived; }
    bool transferRunning() const { return m_wholeRecord.running(); }
    bool importPending() const { return m_wholeRecord.kind() == WholeRecord::Import; }
    bool defaultPending() const { return m_wholeRecord.kind() == WholeRecord::Default; }
    TransferOutcome lastTransferOutcome() const { return m_wholeRecord.lastOutcome(); }
    // Stores the staged block writes on the recorder.
    void commit();

    // Completion bookkeeping of the acknowledgements (command 4609).
    void setSilentNextAcknowledgement() { m_silentNextAck = 1; }
    // Setup writes and commits sent and not yet acknowledged. An
    // acknowledgement while none is awaited is ignored.
    int writesAwaited() const { return m_writesAwaited; }

    void setKeepAliveInterval(int ms) { m_keepAliveTimer.setInterval(ms); }

    // The firmware upload's packets and the recorder's replies.
    FirmwareChannel &firmware() { return m_firmware; }
    // The upload running in this session: the worker owns it from here and
    // stops it (destroys it) before the session's handle goes.
    void adoptUpload(QObject *upload);
    QObject *upload() const { return m_upload; }
    void stopUpload();

Q_SIGNALS:
    // For callers that wait on the recorder without a window: the command
    // line and the tests.
    void setupArrived();
    void timeAnswerReceived();
    // After the acknowledgement's own handling; `applied` when its word 0 is 1.
    void writeAcknowledged(bool applied);
    // After each notification of the transport has been handled, whatever
    // it was: a caller waiting for a condition looks again.
    void notified();

protected:
    bool event(QEvent *event) override;

private:
    void handleNotification(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet);
    void handlePacket(const QByteArray &packet);
    void handleLoginAnswer(const QByteArray &packet);
    void handleSetupAnswer(const QByteArray &packet);
    void handleTimeAnswer(const QByteArray &packet);
    void handleAcknowledgement(bool applied);
    void handleFirmwareReply(const QByteArray &packet);
    void loseConnection();
    bool isLive(const REMOTESOCKET_NOTIFY &record, quint64 channel) const;
    // Counts a setup write or commit that went out; returns `sent`.
    int countWrite(int sent);
    // What the whole-record write needs of the session.
    bool readyToWrite() const override;
    bool sendSetupWrite(const PACKET_PARAM &param, QByteArrayView data) override;
    void sendCommit() override;
    KRSMGAPI_HANDLE handle() const override { return m_handle; }
    void wholeRecordEnded(WholeRecord kind, TransferOutcome outcome,
                          const QByteArray &record) override;
    void report(SessionNotice::Kind kind, int loginCode = 0);
    void post(int kind, qintptr wParam = 0, qintptr lParam = 0);
    void setupArrival(QByteArrayView payload, bool present);
    void onTimer(quint32 timer);
    void keepAlive();
    void setState(int state, bool updateStatus);
    void requestSetup();
    // Disconnects and destroys the library handle; false when there was none.
    bool releaseHandle();
    void login();

    const quint64 m_serial;
    ConnectionRecord *m_record = nullptr;
    std::shared_ptr<SessionStatus> m_status;
    QByteArray m_mirror;
    QByteArray m_referenceCopy;
    int m_videoStandard = 0;
    std::optional<int> m_lastLoginCode;

    FirmwareChannel m_firmware;
    QPointer<QObject> m_upload;

    bool m_clockValid = false;
    bool m_connectFailed = false;
    bool m_wholeRecordReceived = false;
    bool m_recordOnly = false;
    bool m_setupRequested = false;
    int m_silentNextAck = 0;
    int m_writesAwaited = 0;
    WholeRecordWrite m_wholeRecord {*this};
    // This object's thread only; the upload thread sends through m_firmware.
    KRSMGAPI_HANDLE m_handle = nullptr;
    session::IoThread m_ioThread = session::IoThread::Own;
    // The serial numbers of this worker's handles: the first and the current
    // (or last) one. Events of the earlier ones are stale.
    quint64 m_firstChannel = 0;
    quint64 m_channel = 0;
    QObject *m_mainWindow = nullptr;
    QByteArray m_address;
    quint32 m_port = 0;
    std::array<quint32, 8> m_dateTimeParam {};
    std::unique_ptr<RecorderTime> m_clock;
    RecorderTime m_timeAnswer;
    SetupAnswerValues m_setupAnswerValues;

    QTimer m_keepAliveTimer;
    QTimer m_clockTimer;
};
