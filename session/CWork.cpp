// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/CWork.h"

#include "i18n/Translator.h"
#include "session/Frame.h"
#include "session/KRemoteSocket.h"
#include "session/MessageSink.h"
#include "session/PacketParam.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "session/SessionMessage.h"
#include "session/SocketChannel.h"
#include "session/SocketNotifyEvent.h"
#include "setup/LittleEndian.h"

#include <QCoreApplication>

#include <utility>

using nelib::LittleEndian;
using setup::SetupRecordMap;
using namespace std::chrono_literals;

namespace {

std::atomic<CWork *> s_instance {nullptr};
std::atomic<quint64> s_lastSerial {0};

using session::Frame;
constexpr qsizetype PacketHeadSize = Frame::HeadSize;
constexpr qsizetype PacketLengthOffset = Frame::TotalLengthOffset;
constexpr qsizetype PacketCommandOffset = Frame::CommandOffset;
constexpr qsizetype PacketParamOffset = Frame::ParamOffset;

constexpr quint32 SetupRequestLength = SetupRecordMap::RecordSize;

PACKET_PARAM packetParam(const QByteArray &packet)
{
    return PACKET_PARAM::fromBytes(QByteArrayView(packet).sliced(
        std::min(PacketParamOffset, packet.size()),
        std::clamp<qsizetype>(packet.size() - PacketParamOffset, 0, PACKET_PARAM::Size)));
}

// The payload as the packet's own length field describes it, cut to what
// actually arrived.
QByteArrayView packetPayload(const QByteArray &packet)
{
    if (packet.size() <= PacketHeadSize)
        return {};
    const qsizetype total = LittleEndian::u32(packet, PacketLengthOffset);
    const qsizetype end = std::clamp<qsizetype>(total, PacketHeadSize, packet.size());
    return QByteArrayView(packet).sliced(PacketHeadSize, end - PacketHeadSize);
}

} // namespace

CWork::CWork(QObject *parent)
    : QObject(parent)
    , m_serial(++s_lastSerial)
    , m_status(std::make_shared<SessionStatus>())
    , m_mirror(SetupRecordMap::RecordSize, '\0')
    , m_referenceCopy(SetupRecordMap::RecordSize, '\0')
{
    s_instance.store(this);
    m_keepAliveTimer.setInterval(KeepAliveIntervalMs);
    m_clockTimer.setInterval(ClockIntervalMs);
    connect(&m_keepAliveTimer, &QTimer::timeout, this, [this] { onTimer(KeepAliveTimer); });
    connect(&m_clockTimer, &QTimer::timeout, this, [this] { onTimer(ClockTimer); });
}

CWork::~CWork()
{
    stopUpload();
    releaseHandle();
    m_status->workerAlive.store(false);
    CWork *self = this;
    s_instance.compare_exchange_strong(self, nullptr);
}

CWork *CWork::instance()
{
    return s_instance.load();
}

void CWork::setMainWindow(QObject *mainWindow)
{
    m_mainWindow = mainWindow;
}

void CWork::setState(int state, bool updateStatus)
{
    m_status->state.store(state);
    if (updateStatus && m_record)
        m_record->status.store(quint8(state));
}

int CWork::connectSession(ConnectionRecord *record)
{
    releaseHandle();
    m_wholeRecord.end(TransferOutcome::None);
    m_record = record;
    m_record->clearedAtConnect = 0;
    m_address = record->address;
    m_port = record->port;
    m_connectFailed = false;
    m_wholeRecordReceived = false;
    m_setupRequested = false;
    m_status->setupReceived.store(0);

    m_handle = KRSMGAPI_Create(this, nullptr, nullptr, m_ioThread);
    if (m_handle) {
        // The upload thread waits for these; they need not pass this thread.
        m_handle->deliverDirectly(RemoteCommand::FirmwareReply, [this](const QByteArray &packet) {
            handleFirmwareReply(packet);
        });
        m_firmware.attach(m_handle);
        m_channel = m_handle->serial();
        if (!m_firstChannel)
            m_firstChannel = m_channel;
    }
    setState(Idle, false);

    REMOTESOCKET_CONNECT_INFO info;
    info.address = m_address;
    info.port = m_port;
    KRSMGAPI_Initialize();
    const int result = m_handle ? KRSMGAPI_Connect(m_handle, &info) : 0;
    setState(result ? Connecting : Failed, true);
    return result;
}

void CWork::holdRecord(QByteArrayView record, int videoStandard)
{
    if (m_handle || record.size() != SetupRecordMap::RecordSize)
        return;
    m_mirror = record.toByteArray();
    m_videoStandard = videoStandard;
    // An import into the held record is checked against it.
    m_wholeRecordReceived = true;
    m_recordOnly = true;
    m_status->setupReceived.store(1);
}

void CWork::disconnectSession()
{
    m_keepAliveTimer.stop();
    m_wholeRecord.end(TransferOutcome::None);
    if (releaseHandle())
        setState(Idle, false);
    post(SessionMessage::SessionEnded);
}

void CWork::post(int kind, qintptr wParam, qintptr lParam)
{
    if (m_mainWindow)
        QCoreApplication::postEvent(
            m_mainWindow, new SessionMessage(SessionMessage::Kind(kind), wParam, lParam, m_serial));
}

void CWork::report(SessionNotice::Kind kind, int loginCode)
{
    if (m_mainWindow)
        post(SessionMessage::Notice, kind, loginCode);
    else
        MessageSink::show(SessionNotice {kind, loginCode}.text());
}

int CWork::dateTimeCommand(int mode, const RecorderTime &time)
{
    m_dateTimeParam
        = {quint32(mode), time.year, time.month, time.day, time.hour, time.minute, time.second, 0};
    PACKET_PARAM param;
    param.words = m_dateTimeParam;
    return KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::DateTime, &param);
}

bool CWork::event(QEvent *event)
{
    if (event->type() != session::SocketNotifyEvent::NotifyType)
        return QObject::event(event);
    const auto *notify = static_cast<session::SocketNotifyEvent *>(event);
    const quint64 channel = notify->channel();
    if (isLive(notify->record(), channel)) {
        handleNotification(notify->record(), notify->packet());
    } else if (notify->record().kind == REMOTESOCKET_NOTIFY::Connected
               && !(m_firstChannel && channel >= m_firstChannel && channel <= m_channel)) {
        // Not one of this worker's handles at all.
        setState(Failed, true);
    }
    // Anything else belongs to a handle this worker has already let go.
    if (state() == Failed)
        disconnectSession();
    Q_EMIT notified();
    return true;
}

bool CWork::isLive(const REMOTESOCKET_NOTIFY &record, quint64 channel) const
{
    return m_handle && record.handle == m_handle && channel == m_channel;
}

void CWork::handleNotification(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet)
{
    switch (record.kind) {
    case REMOTESOCKET_NOTIFY::ConnectFailed:
        m_connectFailed = true;
        setState(Failed, true);
        return;
    case REMOTESOCKET_NOTIFY::Connected:
        setState(Connected, true);
        if (state() != Connected) {
            setState(Failed, false);
            return;
        }
        if (!KRSMGAPI_SendInitPacketData(m_handle)) {
            report(SessionNotice::ConnectFail);
            setState(Failed, false);
            disconnectSession();
        }
        return;
    case REMOTESOCKET_NOTIFY::InitAcknowledged:
        setState(LoggingIn, true);
        login();
        return;
    case REMOTESOCKET_NOTIFY::PacketReceived:
        handlePacket(packet);
        return;
    case REMOTESOCKET_NOTIFY::ConnectionLost:
        loseConnection();
        return;
    default:
        return;
    }
}

void CWork::loseConnection()
{
    // Once logged in, the keep-alive is what notices a loss and says so; it
    // need not wait for its turn. Before, the session just fails.
    if (m_keepAliveTimer.isActive())
        keepAlive();
    else
        setState(Failed, false);
}

void CWork::login()
{
    if (state() != LoggingIn) {
        setState(Failed, false);
        return;
    }
    PACKET_STRING login;
    login.memberId = m_record->memberId;
    login.password = m_record->password;
    if (!KRSMGAPI_SendPacketString(m_handle, RemoteCommand::Login, &login)) {
        setState(Failed, false);
        disconnectSession();
    }
}

void CWork::handlePacket(const QByteArray &packet)
{
    if (packet.size() < PacketHeadSize)
        return;
    switch (LittleEndian::i32(packet, PacketCommandOffset)) {
    case RemoteCommand::LoginAnswer:
        // Only the answer to our login; a second one must not start over.
        if (state() == LoggingIn)
            handleLoginAnswer(packet);
        break;
    case RemoteCommand::DateTimeAnswer:
        handleTimeAnswer(packet);
        break;
    case RemoteCommand::SetupAnswer:
        // Before the request it answers nothing: it must not fill the mirror.
        if (m_setupRequested)
            handleSetupAnswer(packet);
        break;
    case RemoteCommand::FirmwareReply:
        handleFirmwareReply(packet);
        break;
    case RemoteCommand::SetupWriteAck: {
        // An acknowledgement of no write would announce a save that never was.
        if (m_writesAwaited == 0)
            break;
        --m_writesAwaited;
        const bool applied = packetParam(packet).words[0] == 1;
        handleAcknowledgement(applied);
        Q_EMIT writeAcknowledged(applied);
        break;
    }
    default:
        break;
    }
}

void CWork::handleLoginAnswer(const QByteArray &packet)
{
    const QByteArrayView param
        = QByteArrayView(packet).sliced(PacketParamOffset, PACKET_PARAM::Size);
    const qint32 code = LittleEndian::i32(param, 0);
    m_lastLoginCode = code;
    if (code == LoginOk) {
        setState(Ready, true);
        m_videoStandard = LittleEndian::u8(param, 6);
        if (m_record) {
            m_record->channelCount = LittleEndian::u8(param, 4);
            m_record->clearedAtLogin = 0;
            m_record->videoStandard = quint8(m_videoStandard);
        }
        requestSetup();
    } else if (code >= 0 && code <= 7) {
        report(SessionNotice::LoginRefused, code);
        setState(Failed, true);
    }
    m_keepAliveTimer.start();
}

void CWork::requestSetup()
{
    if (state() != Ready) {
        setState(Failed, false);
        return;
    }
    PACKET_PARAM param;
    param.words[0] = SetupRequestLength;
    if (!KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::SetupRequest, &param)) {
        setState(Failed, false);
        disconnectSession();
        return;
    }
    m_setupRequested = true;
}

void CWork::handleTimeAnswer(const QByteArray &packet)
{
    const PACKET_PARAM param = packetParam(packet);
    if (!m_clock)
        m_clock = std::make_unique<RecorderTime>();
    m_clock->year = quint16(param.words[1]);
    m_clock->month = quint16(param.words[2]);
    m_clock->day = quint16(param.words[3]);
    m_clock->hour = quint16(param.words[4]);
    m_clock->minute = quint16(param.words[5]);
    m_clock->second = quint16(param.words[6]);
    m_timeAnswer = *m_clock;
    m_clockTimer.start();
    onTimer(ClockTimer);
    m_clockValid = true;
    Q_EMIT timeAnswerReceived();
}

void CWork::handleSetupAnswer(const QByteArray &packet)
{
    const QByteArrayView param
        = QByteArrayView(packet).sliced(PacketParamOffset, PACKET_PARAM::Size);
    m_setupAnswerValues = SetupAnswerValues::fromParam(packetParam(packet));
    const QByteArrayView payload = packetPayload(packet);
    if (LittleEndian::u32(param, 8) == 0) {
        if (payload.size() == SetupRecordMap::RecordSize)
            m_wholeRecordReceived = true;
        setupArrival(payload, !payload.isEmpty());
        m_status->setupReceived.store(1);
        Q_EMIT setupArrived();
    } else if (payload.size() == SetupRecordMap::RecordSize) {
        m_referenceCopy = payload.toByteArray();
    }
}

void CWork::setupArrival(QByteArrayView payload, bool present)
{
    // An answer without a record says so, and the clock is asked for all the same.
    if (!present)
        report(SessionNotice::NoSetupData);
    else if (payload.size() == SetupRecordMap::RecordSize)
        m_mirror = payload.toByteArray();
    dateTimeCommand(1, RecorderTime {});
}

void CWork::handleAcknowledgement(bool applied)
{
    if (m_wholeRecord.running()) {
        m_wholeRecord.acknowledge(applied);
        return;
    }
    if (m_silentNextAck)
        m_silentNextAck = 0;
    else if (applied)
        report(SessionNotice::Saved);
}

void CWork::wholeRecordEnded(WholeRecord kind, TransferOutcome outcome, const QByteArray &record)
{
    const bool import = kind == WholeRecord::Import;
    switch (outcome) {
    case TransferOutcome::Succeeded:
        m_mirror = record;
        report(import ? SessionNotice::ImportSucceeded : SessionNotice::DefaultSucceeded);
        post(SessionMessage::SetupRestored);
        break;
    case TransferOutcome::Refused:
    case TransferOutcome::SendFailed:
        report(import ? SessionNotice::ImportFailed : SessionNotice::DefaultFailed);
        break;
    case TransferOutcome::None:
        break;
    }
}

void CWork::handleFirmwareReply(const QByteArray &packet)
{
    m_firmware.receive(packetParam(packet), packetPayload(packet));
}

bool CWork::releaseHandle()
{
    if (!m_handle)
        return false;
    // Waits for a firmware send under way, and tells a waiting upload that
    // no reply can come any more.
    m_firmware.attach(nullptr);
    KRSMGAPI_HANDLE handle = std::exchange(m_handle, nullptr);
    KRSMGAPI_Disconnect(handle);
    KRSMGAPI_Destroy(handle);
    m_writesAwaited = 0;
    return true;
}

void CWork::adoptUpload(QObject *upload)
{
    stopUpload();
    upload->setParent(nullptr);
    m_upload = upload;
}

void CWork::stopUpload()
{
    delete m_upload.data();
}

void CWork::onTimer(quint32 timer)
{
    switch (timer) {
    case KeepAliveTimer:
        keepAlive();
        break;
    case ClockTimer:
        if (m_clock)
            RecorderClock::tick(*m_clock);
        break;
    case UnusedTimer:
        disconnectSession();
        break;
    default:
        break;
    }
}

void CWork::keepAlive()
{
    const PACKET_PARAM probe;
    if (KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::KeepAlive, &probe))
        return;
    // A whole-record write under way failed with the connection.
    m_wholeRecord.end(TransferOutcome::SendFailed);
    setState(Failed, false);
    report(SessionNotice::ConnectionLost);
    disconnectSession();
}

int CWork::writeSection(setup::Section section, QByteArrayView data)
{
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    if (state() != Ready || data.size() != info.length)
        return 0;
    std::copy_n(data.data(), info.length, m_mirror.data() + info.offset);
    PACKET_PARAM param;
    param.words[0] = info.category;
    param.words[1] = quint32(info.length);
    param.words[2] = quint32(info.offset);
    return countWrite(KRSMGAPI_SendPacketStream(m_handle, RemoteCommand::SetupWrite, &param,
                                                m_mirror.constData() + info.offset,
                                                quint32(info.length)));
}

void CWork::restoreMirror(int offset, QByteArrayView held)
{
    if (offset < 0 || offset > m_mirror.size() || held.size() > m_mirror.size() - offset)
        return;
    std::copy_n(held.data(), held.size(), m_mirror.data() + offset);
}

int CWork::readSection(setup::Section section, QByteArray *destination) const
{
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    if (state() != Ready || !destination || !info.readable)
        return 0;
    *destination = m_mirror.sliced(info.offset, info.length);
    return 1;
}

int CWork::writeWholeRecord(WholeRecord kind, QByteArrayView record)
{
    if (state() != Ready || record.size() != SetupRecordMap::RecordSize || !m_wholeRecordReceived
        || m_wholeRecord.running())
        return 0;
    return m_wholeRecord.start(kind, record) ? 1 : 0;
}

bool CWork::readyToWrite() const
{
    return state() == Ready;
}

bool CWork::sendSetupWrite(const PACKET_PARAM &param, QByteArrayView data)
{
    return countWrite(KRSMGAPI_SendPacketStream(m_handle, RemoteCommand::SetupWrite, &param,
                                                data.data(), quint32(data.size())))
           != 0;
}

void CWork::sendCommit()
{
    commit();
}

void CWork::commit()
{
    if (state() != Ready)
        return;
    PACKET_PARAM param;
    param.words[0] = SetupRecordMap::CommitCategory;
    countWrite(KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::SetupWrite, &param));
}

int CWork::countWrite(int sent)
{
    if (sent)
        ++m_writesAwaited;
    return sent;
}
