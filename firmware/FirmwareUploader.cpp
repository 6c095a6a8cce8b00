// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/FirmwareUploader.h"

#include "firmware/PacketWords.h"
#include "firmware/RecorderVersions.h"
#include "firmware/UpdatePlan.h"
#include "i18n/Translator.h"
#include "session/CWork.h"
#include "session/Frame.h"
#include "session/PacketParam.h"
#include "session/SessionMessage.h"

#include <QCoreApplication>
#include <QFile>

#include <sys/prctl.h>

namespace firmware {

namespace W = PacketWords;

FirmwareUploader::FirmwareUploader(CWork &work, FirmwarePackage package, QObject *parent)
    : QObject(parent)
    , m_work(work)
    , m_package(std::move(package))
{ }

FirmwareUploader::~FirmwareUploader()
{
    if (!m_thread.joinable())
        return;
    // Wakes a transfer waiting for a reply; it sees the abort before it
    // takes the wake-up for one.
    m_abort.store(true);
    m_work.firmware().replyEvent().set();
    m_thread.join();
}

void FirmwareUploader::setWaits(std::chrono::milliseconds packetPause,
                                std::chrono::milliseconds replyTimeout)
{
    m_packetPause = packetPause;
    m_replyTimeout = replyTimeout;
}

bool FirmwareUploader::start()
{
    if (m_thread.joinable() || m_outcome)
        return false;
    m_running.store(true);
    tellMainWindow(0);
    m_thread = std::thread([this] {
        // The pauses end when due, not up to the default 50 µs later: the
        // thread sleeps once per packet, so the precision costs nothing.
        prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        const Outcome outcome = transfer();
        if (!m_abort.load())
            QMetaObject::invokeMethod(
                this, [this, outcome] { finish(outcome); }, Qt::QueuedConnection);
    });
    return true;
}

bool FirmwareUploader::endsProgram(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Busy:
    case Outcome::Declined:
    case Outcome::Canceled:
        return false;
    default:
        return true;
    }
}

QString FirmwareUploader::message(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Completed:
        return nelib::tr("Updatefile transfer is completed. \n\r"
                         "Reboot the system to perform the update. \n\r"
                         "The Remote Setup is terminated.");
    case Outcome::Busy:
        return nelib::tr("Update Impossible.\nDVR is performing an important task.");
    case Outcome::NoResponse:
        return nelib::tr("No Response From The Set\nThe Remote Setup is terminated.\n"
                         "Please try to reconnect.");
    case Outcome::SendFailed:
    case Outcome::Refused:
        return nelib::tr("UPDATE ERROR!! Unable to send data.\nThe Remote Setup is terminated.\n"
                         "Please try to reconnect.");
    case Outcome::ReadFailed:
        return nelib::tr("UPDATE ERROR!! Unable to read file.\nThe Remote Setup is terminated.\n"
                         "Please try to reconnect.");
    case Outcome::SizeIncorrect:
        return nelib::tr("UPDATE ERROR!! File size is incorrect.\nThe Remote Setup is "
                         "terminated.\nPlease try to reconnect.");
    case Outcome::Declined:
    case Outcome::Canceled:
        break;
    }
    return {};
}

FirmwareUploader::Outcome FirmwareUploader::transfer()
{
    QFile file(m_package.path());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return stopAfterError(Outcome::ReadFailed);

    PACKET_PARAM header;
    header.words[0] = W::Header;
    header.words[1] = m_package.dataOffset();
    if (const auto failed = send(header, m_package.header()))
        return *failed;

    const FirmwareChannel::Reply answer = m_work.firmware().reply();
    const std::array<quint32, 8> &reply = answer.words;
    if (reply[0] != W::HeaderReply)
        return Outcome::Declined;
    if (reply[1] == W::Busy)
        return Outcome::Busy;
    if (reply[1] != W::GoOn || reply[2] != W::VersionDataFollows)
        return Outcome::Declined;
    const auto versions = RecorderVersions::fromBytes(answer.data);
    // Every chunk has to fit in one frame; a size of 0 would never finish.
    const quint32 chunkSize = reply[4];
    if (!versions || chunkSize == 0 || chunkSize > session::Frame::MaxPayloadSize)
        return Outcome::Declined;

    const UpdatePlan plan
        = UpdatePlan::make(m_package.version(), m_package.components(), *versions);
    if (const auto stopped = sendComponents(file, chunkSize, plan))
        return *stopped;
    return Outcome::Completed;
}

std::optional<FirmwareUploader::Outcome>
FirmwareUploader::sendComponents(QFile &file, quint32 chunkSize, const UpdatePlan &plan)
{
    const quint32 total = quint32(plan.totalBytes);
    quint64 sent = 0;
    quint32 lastType = 0;
    QByteArray chunk(chunkSize, '\0');
    const auto &components = m_package.components();
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (!plan.send[i])
            continue;
        const FirmwarePackage::Component &component = components[i];
        lastType = component.type;
        if (!file.seek(component.offset))
            return stopAfterError(Outcome::ReadFailed);
        PACKET_PARAM param;
        param.words = {W::Data, component.type, 0, total, component.size, 0, W::FirstChunk, 0};
        for (quint32 left = component.size; left > 0;) {
            const quint32 length = std::min(left, chunkSize);
            const qint64 read = file.read(chunk.data(), length);
            if (read < 0)
                return stopAfterError(Outcome::ReadFailed);
            if (read < length)
                return stopAfterError(Outcome::SizeIncorrect);
            param.words[2] = m_packetNumber++;
            param.words[5] = length;
            sent += length;
            setPercentage(sent, plan.totalBytes);
            if (const auto stopped = sendData(param, QByteArrayView(chunk).first(length)))
                return stopped;
            if (m_stopRequest.exchange(false))
                return Outcome::Canceled;
            param.words[6] = W::LaterChunk;
            left -= length;
        }
        param.words[2] = m_packetNumber++;
        param.words[5] = 0;
        param.words[6] = W::EndOfComponent;
        if (const auto stopped = sendData(param, {}))
            return stopped;
    }

    PACKET_PARAM end;
    end.words = {W::Data, lastType, m_packetNumber++, total, 0, 0, W::EndOfPackage, 0};
    return sendData(end, {});
}

std::optional<FirmwareUploader::Outcome> FirmwareUploader::send(const PACKET_PARAM &param,
                                                                QByteArrayView data)
{
    nelib::Event &reply = m_work.firmware().replyEvent();
    reply.reset();
    if (m_abort.load())
        return stopAfterError(Outcome::Canceled);
    QByteArray packet = FirmwareChannel::packet(param, data);
    // Counted from when the previous packet left for the network, so that
    // the recorder's answer time is part of the pause rather than added to
    // it; the steady clock never wakes early, and a packet whose leaving is
    // unknown counts from now.
    const auto now = std::chrono::steady_clock::now();
    const auto previous = m_work.firmware().lastWritten();
    std::this_thread::sleep_until(previous.value_or(now) + m_packetPause);
    const quint64 replies = m_work.firmware().replies();
    if (!m_work.firmware().send(std::move(packet)))
        return stopAfterError(Outcome::SendFailed);
    const bool woken = reply.wait(m_replyTimeout);
    if (m_abort.load())
        return stopAfterError(Outcome::Canceled);
    if (!woken)
        return stopAfterError(Outcome::NoResponse);
    // Woken without an answer: the session ended, the connection is gone.
    if (m_work.firmware().replies() == replies)
        return stopAfterError(Outcome::SendFailed);
    return std::nullopt;
}

std::optional<FirmwareUploader::Outcome> FirmwareUploader::sendData(const PACKET_PARAM &param,
                                                                    QByteArrayView data)
{
    if (const auto failed = send(param, data))
        return failed;
    const std::array<quint32, 8> reply = m_work.firmware().reply().words;
    const bool accepted = reply[0] == W::DataReply && reply[1] == W::Accepted;
    if (m_exactAcceptance ? !accepted : reply[0] == W::DataReply && !accepted)
        return stopAfterError(Outcome::Refused);
    return std::nullopt;
}

FirmwareUploader::Outcome FirmwareUploader::stopAfterError(Outcome outcome)
{
    PACKET_PARAM stop;
    stop.words[0] = W::Stop;
    m_work.firmware().send(FirmwareChannel::packet(stop, {}));
    m_work.firmware().clear();
    return outcome;
}

void FirmwareUploader::setPercentage(quint64 sent, quint64 total)
{
    const int percent = int(sent * 100 / total);
    if (m_percentage.exchange(percent) != percent)
        Q_EMIT percentageChanged(percent);
}

void FirmwareUploader::finish(Outcome outcome)
{
    m_thread.join();
    m_outcome = outcome;
    m_running.store(false);
    tellMainWindow(1);
    Q_EMIT finished(outcome);
}

void FirmwareUploader::tellMainWindow(int running)
{
    if (QObject *window = m_work.mainWindow()) {
        SessionMessage message(SessionMessage::UploadRunning, running);
        QCoreApplication::sendEvent(window, &message);
    }
}

} // namespace firmware
