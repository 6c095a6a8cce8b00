// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderSession.h"

#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "session/SetupAnswerValues.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"
#include "sim/RecorderServer.h"
#include "sim/SectionRights.h"
#include "sim/UserAccounts.h"

#include <QTcpSocket>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using session::Frame;
using setup::SetupRecordMap;

namespace sim {

namespace {

// Date/time command modes.
constexpr quint32 ReadTime = 1;
constexpr quint32 SetTime = 2;

// Input is taken in pieces, so that a held connection leaves the rest in
// the socket, whose buffer holds at most one largest frame.
constexpr qint64 ReadPiece = 64 * 1024;
// Before login only OPEN and the login are served, both far smaller.
constexpr qsizetype MaxFrameBeforeLogin = 4096;

// Text from the network as it may appear in a log line.
QString printable(QByteArrayView bytes)
{
    QString text;
    for (const char c : bytes)
        text += c >= 0x20 && c < 0x7F ? QChar::fromLatin1(c) : u'?';
    return text;
}

} // namespace

RecorderSession::RecorderSession(QTcpSocket *socket, RecorderServer *server, int id,
                                 QDeadlineTimer loginBy)
    : m_socket(socket)
    , m_server(server)
    , m_id(id)
    , m_firmware(server, this, [this](const QString &text) { log(text); })
{
    socket->setParent(this);
    socket->setReadBufferSize(Frame::MaxSize);
    const SimOptions &options = server->options();
    for (QTimer *timer :
         {&m_answerTimer, &m_loginDeadline, &m_silenceTimer, &m_stallTimer, &m_throttleTimer})
        timer->setSingleShot(true);
    connect(&m_answerTimer, &QTimer::timeout, this, &RecorderSession::sendDueAnswers);
    connect(&m_throttleTimer, &QTimer::timeout, this, &RecorderSession::releaseLogin);
    connect(&m_loginDeadline, &QTimer::timeout, this, [this] {
        const QString reason = u"no login within %1 ms"_s.arg(m_server->loginTimeoutMs());
        // The slowdown of failed logins never outlasts the login timeout: a
        // login still held is checked now, and unless it succeeds the
        // connection closes after its answer.
        if (!m_loginHeld) {
            drop(reason);
            return;
        }
        checkHeldLogin();
        if (!m_loggedIn)
            closeAfterAnswers(reason + u"; closing the connection"_s);
    });
    // Not restarted for every frame: when it runs out, it looks back to the
    // last frame and waits on for what is left of the timeout.
    connect(&m_silenceTimer, &QTimer::timeout, this, [this] {
        const int timeoutMs = m_server->options().keepAliveTimeoutMs;
        if (const qint64 quietMs = m_lastFrame.elapsed(); quietMs < timeoutMs) {
            m_silenceTimer.start(int(timeoutMs - quietMs));
            return;
        }
        drop(u"no keep-alive within %1 ms; the user slot is free"_s.arg(timeoutMs));
    });
    connect(&m_stallTimer, &QTimer::timeout, this, [this] {
        drop(u"%1 bytes of answers unread for %2 ms"_s.arg(m_socket->bytesToWrite())
                 .arg(m_stallTimer.interval()));
    });
    m_silenceTimer.setInterval(options.keepAliveTimeoutMs);
    m_stallTimer.setInterval(options.stallTimeoutMs);
    m_loginDeadline.start(int(std::max<qint64>(loginBy.remainingTime(), 0)));
    connect(socket, &QTcpSocket::readyRead, this, &RecorderSession::readFrames);
    connect(socket, &QTcpSocket::bytesWritten, this, &RecorderSession::answersWritten);
    connect(socket, &QTcpSocket::stateChanged, this, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            end();
    });
    log(u"opened from %1:%2"_s.arg(socket->peerAddress().toString()).arg(socket->peerPort()));
}

QHostAddress RecorderSession::peerAddress() const
{
    return m_socket->peerAddress();
}

void RecorderSession::changesSettled()
{
    sendDueAnswers();
}

void RecorderSession::readFrames()
{
    if (m_closing || m_ended) {
        m_socket->readAll();
        return;
    }
    // Frames completed before a malformed head still count; nothing after it can.
    while (!m_closing && !inputHeld()) {
        if (!m_reader.hasFrame()) {
            const qint64 piece = m_reader.failed() ? 0 : nextPiece();
            if (piece < 0)
                return;
            const QByteArray bytes = piece > 0 ? m_socket->read(piece) : QByteArray();
            if (bytes.isEmpty())
                break;
            m_reader.feed(bytes);
            continue;
        }
        const std::optional<Frame> frame = Frame::decode(m_reader.takeFrame());
        if (!frame) {
            closeAfterAnswers(u"malformed frame; closing the connection"_s);
            return;
        }
        m_lastFrame.start();
        handle(*frame);
        const int dropAfter = m_server->options().dropAfter;
        if (dropAfter > 0 && ++m_framesReceived >= dropAfter)
            closeAfterAnswers(u"dropping the connection after %1 frames"_s.arg(m_framesReceived));
    }
    if (m_reader.failed() && !m_reader.hasFrame() && !m_closing)
        closeAfterAnswers(u"malformed frame; closing the connection"_s);
}

qint64 RecorderSession::nextPiece()
{
    if (m_wasLoggedIn)
        return ReadPiece;
    // Before the first login each frame's length is read from its head
    // before any of it is taken, so a frame over the limit is refused
    // however it arrives, and no more than one frame is taken at a time.
    if (m_reader.pendingBytes() > 0)
        return m_frameLength - m_reader.pendingBytes();
    if (m_socket->bytesAvailable() < Frame::HeadSize)
        return 0;
    const qsizetype length = Frame::checkHead(m_socket->peek(Frame::HeadSize));
    if (length > MaxFrameBeforeLogin) {
        drop(u"a frame of %1 bytes before login, more than %2"_s.arg(length).arg(
            MaxFrameBeforeLogin));
        return -1;
    }
    // A head that is no head: the reader refuses it and the connection closes.
    m_frameLength = length > 0 ? length : Frame::HeadSize;
    return m_frameLength;
}

void RecorderSession::handle(const Frame &frame)
{
    switch (frame.command) {
    case RemoteCommand::Open: {
        PACKET_PARAM ack;
        ack.words[0] = 1;
        answer(RemoteCommand::OpenAck, ack);
        return;
    }
    case RemoteCommand::Login:
        holdLogin(frame.payload);
        return;
    case RemoteCommand::KeepAlive:
        return;
    default:
        break;
    }

    if (!m_loggedIn) {
        log(u"command %1 before login ignored"_s.arg(frame.command));
        return;
    }
    switch (frame.command) {
    case RemoteCommand::SetupRequest:
        sendSetup();
        return;
    case RemoteCommand::DateTime:
        dateTime(frame.param);
        return;
    case RemoteCommand::SetupWrite:
        setupWrite(frame);
        return;
    case RemoteCommand::FirmwarePacket:
        firmwarePacket(frame);
        return;
    default:
        log(u"unknown command %1 ignored"_s.arg(frame.command));
        return;
    }
}

void RecorderSession::holdLogin(const QByteArray &payload)
{
    m_heldLogin = payload;
    m_loginHeld = true;
    releaseLogin();
}

void RecorderSession::releaseLogin()
{
    // Logins waiting together are let through one at a time: a failure of
    // the first makes the others wait again.
    const qint64 wait = m_server->loginWaitMs(peerAddress());
    if (wait > 0) {
        m_throttleTimer.start(int(wait));
        return;
    }
    checkHeldLogin();
}

void RecorderSession::checkHeldLogin()
{
    m_throttleTimer.stop();
    m_loginHeld = false;
    login(std::exchange(m_heldLogin, {}));
    QMetaObject::invokeMethod(this, &RecorderSession::readFrames, Qt::QueuedConnection);
}

void RecorderSession::login(const QByteArray &payload)
{
    const PACKET_STRING login = PACKET_STRING::fromBytes(payload);
    const quint32 code = m_server->loginCode(login, peerAddress(), this);
    m_loggedIn = code == 1;
    m_wasLoggedIn = m_wasLoggedIn || m_loggedIn;
    m_account = m_loggedIn ? UserAccounts::indexOf(login.memberId) : -1;
    if (m_loggedIn) {
        m_loginDeadline.stop();
        m_silenceTimer.start(m_server->options().keepAliveTimeoutMs);
    }
    log(u"login as '%1': code %2"_s.arg(printable(login.memberId)).arg(code));

    const SimOptions &options = m_server->options();
    QByteArray bytes = PACKET_PARAM().toBytes();
    LittleEndian::setU32(bytes, 0, code);
    LittleEndian::setU8(bytes, 4, quint8(options.channels));
    LittleEndian::setU8(bytes, 6, options.videoStandard);
    answer(RemoteCommand::LoginAnswer, PACKET_PARAM::fromBytes(bytes));
}

void RecorderSession::sendSetup()
{
    PACKET_PARAM param; // word 2 = 0: the current settings, not a reference copy
    SetupAnswerValues::forChannels(m_server->options().channels).writeTo(param);
    answer(RemoteCommand::SetupAnswer, param, m_server->record());
    log(u"setup record sent"_s);
}

void RecorderSession::dateTime(const PACKET_PARAM &param)
{
    const auto &w = param.words;
    if (w[0] == SetTime) {
        const auto time = OffsetClock::fromFields(w[1], w[2], w[3], w[4], w[5], w[6]);
        if (!mayUse(SectionRights::SystemTime)) {
            log(u"clock set refused: the account lacks %1"_s.arg(
                SectionRights::names(1u << SectionRights::SystemTime)));
        } else if (time) {
            m_server->setClock(*time);
            log(u"clock set to %1"_s.arg(time->toString(u"yyyy-MM-dd hh:mm:ss"_s)));
        } else {
            log(u"clock set refused: %1-%2-%3 %4:%5:%6 is no valid time"_s.arg(w[1])
                    .arg(w[2])
                    .arg(w[3])
                    .arg(w[4])
                    .arg(w[5])
                    .arg(w[6]));
        }
    } else if (w[0] != ReadTime) {
        log(u"date/time mode %1 treated as a read"_s.arg(w[0]));
    }

    const QDateTime now = m_server->now();
    PACKET_PARAM out;
    out.words = {w[0],
                 quint32(now.date().year()),
                 quint32(now.date().month()),
                 quint32(now.date().day()),
                 quint32(now.time().hour()),
                 quint32(now.time().minute()),
                 quint32(now.time().second()),
                 0};
    answer(RemoteCommand::DateTimeAnswer, out);
}

void RecorderSession::setupWrite(const Frame &frame)
{
    const quint32 category = frame.param.words[0];
    const quint32 length = frame.param.words[1];
    const quint32 offset = frame.param.words[2];
    if (category == SetupRecordMap::CommitCategory) {
        if (++m_writesSeen == m_server->options().refuseWriteAt) {
            log(u"commit refused (--refuse-write-at %1)"_s.arg(m_writesSeen));
            acknowledge(false);
            return;
        }
        commit();
        return;
    }

    const QString what
        = u"category %1, offset %2, length %3"_s.arg(category).arg(offset).arg(length);
    QString problem;
    if (++m_writesSeen == m_server->options().refuseWriteAt)
        problem = u"--refuse-write-at %1"_s.arg(m_writesSeen);
    else if (offset < quint32(SetupRecordMap::HeaderSize))
        problem = u"the header is not writable"_s;
    else if (quint64(offset) + length > quint64(SetupRecordMap::RecordSize))
        problem = u"runs past the end of the record"_s;
    else if (quint64(frame.payload.size()) != length)
        problem = u"%1 bytes of data"_s.arg(frame.payload.size());
    else if (const quint32 missing
             = SectionRights::needed(category, offset, length) & ~accountRights())
        problem = u"the account lacks %1"_s.arg(SectionRights::names(missing));
    if (!problem.isEmpty()) {
        log(u"write refused (%1): %2"_s.arg(what, problem));
        acknowledge(false);
        return;
    }

    // Whole-block writes of an import or factory default take effect
    // together with the commit, so an interrupted import changes nothing.
    if (category == SetupRecordMap::WholeBlockCategory) {
        m_staged.push_back({qsizetype(offset), frame.payload});
        log(u"write staged (%1)"_s.arg(what));
        acknowledge(true);
        return;
    }
    log(u"write applied (%1)"_s.arg(what));
    acknowledgeWhenSaved(m_server->write({{qsizetype(offset), frame.payload}}, this));
}

void RecorderSession::commit()
{
    if (m_staged.empty()) {
        log(u"commit with nothing staged"_s);
        acknowledge(true);
        return;
    }
    log(u"commit: %1 staged writes applied"_s.arg(m_staged.size()));
    acknowledgeWhenSaved(m_server->write(std::exchange(m_staged, {}), this));
}

void RecorderSession::acknowledge(bool applied)
{
    PACKET_PARAM param;
    param.words[0] = applied ? 1 : 0;
    answer(RemoteCommand::SetupWriteAck, param);
}

void RecorderSession::acknowledgeWhenSaved(RecorderServer::ChangeTicket change)
{
    answer(RemoteCommand::SetupWriteAck, PACKET_PARAM(), {}, std::move(change));
}

void RecorderSession::firmwarePacket(const Frame &frame)
{
    const auto reply = m_firmware.handle(frame, mayUse(SectionRights::UpgradeSoftware));
    if (!reply)
        return;
    // Word 1 of the reply to the end of a package says whether the new
    // software version is on disk.
    answer(RemoteCommand::FirmwareReply, reply->param, reply->payload, reply->change, 1);
}

void RecorderSession::answer(qint32 command, const PACKET_PARAM &param, const QByteArray &payload,
                             RecorderServer::ChangeTicket change, int savedWord)
{
    m_answers.push_back({command, param, payload, QDeadlineTimer(m_server->options().delayMs),
                         std::move(change), savedWord});
    sendDueAnswers();
}

quint32 RecorderSession::accountRights() const
{
    return m_account < 0 ? 0 : m_server->rights(m_account);
}

bool RecorderSession::mayUse(int right) const
{
    return accountRights() & (1u << right);
}

void RecorderSession::answersWritten()
{
    if (!m_outputFull || m_socket->bytesToWrite() > m_server->options().maxUnsentBytes / 2)
        return;
    m_outputFull = false;
    m_stallTimer.stop();
    log(u"the client reads its answers again"_s);
    // Not from within the flush of sendDueAnswers(), which emits bytesWritten.
    QMetaObject::invokeMethod(this, &RecorderSession::readFrames, Qt::QueuedConnection);
}

void RecorderSession::drop(const QString &reason)
{
    if (m_ended)
        return;
    log(reason + u"; dropping the connection"_s);
    m_closing = true;
    m_socket->abort();
}

void RecorderSession::sendDueAnswers()
{
    bool wrote = false;
    while (!m_answers.empty() && !m_ended) {
        Answer &next = m_answers.front();
        if (next.change) {
            const int state = next.change->state.load(std::memory_order_acquire);
            if (state == RecorderServer::Change::Pending)
                break;
            next.param.words[next.savedWord] = state == RecorderServer::Change::Saved ? 1 : 0;
            if (state == RecorderServer::Change::Undone)
                log(u"the record could not be saved; changes refused"_s);
            next.change.reset();
        }
        if (!next.due.hasExpired()) {
            m_answerTimer.start(int(std::max<qint64>(next.due.remainingTime(), 0)));
            break;
        }
        m_socket->write(Frame::encode(m_sequence++, next.command, next.param, next.payload));
        m_answers.pop_front();
        wrote = true;
    }
    // Out now rather than at the loop's next turn, which would cost a
    // second wake-up and a watch on the socket per answer.
    if (wrote)
        m_socket->flush();
    // A client that does not read its answers is read from no more, so it
    // costs neither memory nor the time of the others.
    if (!m_outputFull && m_socket->bytesToWrite() > m_server->options().maxUnsentBytes) {
        m_outputFull = true;
        m_stallTimer.start();
        log(u"%1 bytes of answers unread; reading stops"_s.arg(m_socket->bytesToWrite()));
    }
    if (m_closing && m_answers.empty() && m_socket->state() == QAbstractSocket::ConnectedState)
        m_socket->disconnectFromHost();
}

void RecorderSession::closeAfterAnswers(const QString &reason)
{
    log(reason);
    m_closing = true;
    sendDueAnswers();
}

void RecorderSession::end()
{
    if (m_ended)
        return;
    m_ended = true;
    for (QTimer *timer :
         {&m_answerTimer, &m_loginDeadline, &m_silenceTimer, &m_stallTimer, &m_throttleTimer})
        timer->stop();
    if (!m_staged.empty())
        log(u"%1 staged writes discarded without a commit"_s.arg(m_staged.size()));
    m_firmware.discard(u"the connection ended"_s);
    log(u"closed"_s);
    m_server->sessionEnded(this);
    deleteLater();
}

void RecorderSession::log(const QString &text) const
{
    qCInfo(lcRecorder).noquote() << m_server->name() << u"session %1:"_s.arg(m_id) << text;
}

} // namespace sim
