// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwarePackage.h"

#include <QObject>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

QT_BEGIN_NAMESPACE
class QFile;
QT_END_NAMESPACE

class CWork;
struct PACKET_PARAM;

namespace firmware {

struct UpdatePlan;

// Sends a firmware package to the recorder of a session, on a thread of its
// own: the header packet; the recorder's answer with its versions and the
// chunk size it takes; the plan of the components to send; their chunks,
// each acknowledged before the next; the end of the package. The recorder
// installs the package at its next start, and the session is of no further
// use, so the owner ends the program after the message of a completed
// transfer, and of every failure (endsProgram()). A busy recorder, a
// recorder that declines, and a cancel leave the program running.
//
// The object belongs to the worker's thread (the user-interface thread),
// whose event loop must keep running: the end of every upload runs there
// (main window message 3027 and finished(), which reports the outcome and
// shows nothing). The recorder's replies reach the transfer thread straight
// from the session's socket (CWork::firmware()). The session
// owns it (CWork::adoptUpload) and destroys it before its handle goes;
// destroying it mid-transfer stops the transfer and tells the recorder so.
class FirmwareUploader : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Completed, // the package is on the recorder; the program ends
        Busy, // the recorder is doing something important; the program stays
        Declined, // the recorder said no, or answered what makes no sense; quiet
        Canceled, // cancel() took effect; quiet
        NoResponse, // a reply did not come in time; the program ends
        SendFailed, // a packet could not be sent, or the connection was lost; the program ends
        Refused, // the recorder refused a packet; the program ends
        ReadFailed, // the package file could not be read; the program ends
        SizeIncorrect, // the package file ended early; the program ends
    };
    Q_ENUM(Outcome)

    // Every packet waits this long before it goes: recorders need the gap.
    static constexpr std::chrono::milliseconds PacketPause {20};
    static constexpr std::chrono::milliseconds ReplyTimeout {10000};

    FirmwareUploader(CWork &work, FirmwarePackage package, QObject *parent = nullptr);
    ~FirmwareUploader() override;

    // Tests shorten the waits; only before start().
    void setWaits(std::chrono::milliseconds packetPause, std::chrono::milliseconds replyTimeout);
    // The Update page takes every data reply but a refusal (word 0 = 2,
    // word 1 other than 1) as an acceptance. With this, only the acceptance
    // itself (word 0 = 2, word 1 = 1) is one; anything else refuses the
    // packet. Only before start().
    void requireExactAcceptance() { m_exactAcceptance = true; }

    // Starts the transfer and tells the main window (3027, wParam 0). An
    // uploader runs once: false when it has been started before.
    bool start();
    // The stop request: the transfer ends as Canceled after the chunk on its
    // way. Any thread.
    void cancel() { m_stopRequest.store(true); }

    bool isRunning() const { return m_running.load(); }
    // Sent bytes of the plan's total, 0 to 100. Any thread.
    int percentage() const { return m_percentage.load(); }
    std::optional<Outcome> outcome() const { return m_outcome; }
    const FirmwarePackage &package() const { return m_package; }

    // Whether `outcome` ends the program after its message.
    static bool endsProgram(Outcome outcome);
    // The message `outcome` shows, translated; empty for the quiet ones.
    static QString message(Outcome outcome);

Q_SIGNALS:
    // From the transfer thread, whenever the percentage changes.
    void percentageChanged(int percent);
    // On the worker's thread once the transfer thread has ended.
    void finished(firmware::FirmwareUploader::Outcome outcome);

private:
    Outcome transfer();
    std::optional<Outcome> sendComponents(QFile &file, quint32 chunkSize, const UpdatePlan &plan);
    // Sends one packet and waits for its reply: nothing when it came, else
    // how the transfer ended (the recorder has been told to stop).
    std::optional<Outcome> send(const PACKET_PARAM &param, QByteArrayView data);
    // The same for the packets after the header, whose replies may refuse them.
    std::optional<Outcome> sendData(const PACKET_PARAM &param, QByteArrayView data);
    // Tells the recorder to drop the transfer and forgets the last reply.
    Outcome stopAfterError(Outcome outcome);
    void setPercentage(quint64 sent, quint64 total);
    void finish(Outcome outcome);
    void tellMainWindow(int running);

    CWork &m_work;
    const FirmwarePackage m_package;
    std::chrono::milliseconds m_packetPause = PacketPause;
    std::chrono::milliseconds m_replyTimeout = ReplyTimeout;
    bool m_exactAcceptance = false;

    std::thread m_thread;
    std::atomic<bool> m_running {false};
    std::atomic<bool> m_stopRequest {false};
    std::atomic<bool> m_abort {false};
    std::atomic<int> m_percentage {0};
    quint32 m_packetNumber = 0; // transfer thread only
    std::optional<Outcome> m_outcome;
};

} // namespace firmware
