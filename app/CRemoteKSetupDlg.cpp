// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CRemoteKSetupDlg.h"

#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "app/RecorderTypeDialog.h"
#include "app/WindowIcon.h"
#include "i18n/StartupLanguage.h"
#include "i18n/Translator.h"
#include "pages/common/CSetupPage.h"
#include "pages/common/DataFileDialog.h"
#include "pages/common/FileDialogFilter.h"
#include "pages/common/Question.h"
#include "session/CWork.h"
#include "session/ConnectingWait.h"
#include "session/ConnectionRecord.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "session/SessionMessage.h"
#include "session/SessionNotice.h"
#include "setup/ExportFile.h"
#include "setup/RecordFile.h"
#include "setup/SetupRecordMap.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using setup::SetupRecordMap;

namespace {

constexpr int StatusPollMs = 100;
constexpr int FourChannels = 4;
// The title shows 14 characters of the address at most.
constexpr int TitleAddressLength = 14;
constexpr int PanelWidth = 280;
// Proposed as it is in every language: installers look for this name.
constexpr QStringView ExportFileName = u"Export_SetupData.dat";

// Why a file chosen with OPEN FILE is not opened.
QString refusalReason(const setup::RecordFile::Contents &file)
{
    using Problem = setup::RecordFile::Problem;
    switch (file.problem) {
    case Problem::Folder:
        return nelib::tr("it is a folder");
    case Problem::Unreadable:
        return nelib::tr("it cannot be read");
    case Problem::Size:
        return nelib::tr("it is %1 bytes, but an export file is %2 bytes and a default setup file "
                         "%3 bytes")
            .arg(file.fileSize)
            .arg(setup::ExportFile::Size)
            .arg(SetupRecordMap::RecordSize);
    case Problem::Version:
        return nelib::tr("it was written for another layout version");
    case Problem::Marks:
        return nelib::tr("its header is not that of a setup file");
    case Problem::None:
        break;
    }
    return {};
}

} // namespace

CRemoteKSetupDlg::CRemoteKSetupDlg(QWidget *parent)
    : CRemoteKSetupDlg(nelib::Translator::defaultPath(), parent)
{ }

CRemoteKSetupDlg::CRemoteKSetupDlg(const QString &languageConfig, QWidget *parent)
    : QMainWindow(parent)
    , m_translator(std::make_unique<nelib::Translator>(
          languageConfig, nelib::StartupLanguage::choose(languageConfig)))
{
    setWindowTitle(nelib::tr("Remote Setup"));
    setWindowIcon(WindowIcon::create());
    buildLayout();

    m_statusPoll.setInterval(StatusPollMs);
    connect(&m_statusPoll, &QTimer::timeout, this, &CRemoteKSetupDlg::updateStatus);
    connect(m_panel, &ConnectionPanel::connectRequested, this, &CRemoteKSetupDlg::onConnect);
    connect(m_panel, &ConnectionPanel::disconnectRequested, this,
            [this] { askBeforeDroppingEdits([this] { endSession(); }); });
    connect(m_panel, &ConnectionPanel::openFileRequested, this, &CRemoteKSetupDlg::chooseSetupFile);
    connect(m_panel, &ConnectionPanel::saveFileRequested, this, [this] { saveFile(); });
    connect(m_menus, &PageMenuBar::pageSelected, this, &CRemoteKSetupDlg::selectPage);
    // Told after the worker's own handling has returned, like its notices.
    connect(m_host, &PageHost::writeRefused, this, &CRemoteKSetupDlg::showRefusal,
            Qt::QueuedConnection);
    connect(m_save, &QPushButton::clicked, this, &CRemoteKSetupDlg::saveShownPage);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (CSetupPage *page = m_host->currentPage())
            page->cancel();
    });
    connect(m_default, &QPushButton::clicked, this, [this] {
        if (CSetupPage *page = m_host->currentPage())
            page->loadDefault();
    });
}

CRemoteKSetupDlg::~CRemoteKSetupDlg()
{
    releaseSession();
}

void CRemoteKSetupDlg::buildLayout()
{
    m_menus = new PageMenuBar(this);
    setMenuBar(m_menus);

    m_panel = new ConnectionPanel;
    m_host = new PageHost;
    m_save = new QPushButton;
    m_cancel = new QPushButton;
    m_default = new QPushButton;
    translateButtons();
    updatePageButtons();

    auto *pageButtons = new QHBoxLayout;
    pageButtons->addWidget(m_save);
    pageButtons->addWidget(m_cancel);
    pageButtons->addWidget(m_default);

    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    // Two framed columns of equal height: the pages keep their own inner
    // margins, so with the same margins here the window's buttons line up
    // with the buttons at the foot of every page.
    auto *side = new QFrame;
    side->setFrameShape(QFrame::StyledPanel);
    side->setFixedWidth(PanelWidth);
    auto *sideLayout = new QVBoxLayout(side);
    sideLayout->addWidget(m_panel);
    sideLayout->addStretch(1);
    sideLayout->addWidget(line);
    sideLayout->addLayout(pageButtons);

    auto *hostFrame = new QFrame;
    hostFrame->setFrameShape(QFrame::StyledPanel);
    auto *hostLayout = new QVBoxLayout(hostFrame);
    hostLayout->setContentsMargins(0, 0, 0, 0);
    hostLayout->addWidget(m_host);

    auto *central = new QWidget(this);
    auto *layout = new QHBoxLayout(central);
    layout->addWidget(side);
    layout->addWidget(hostFrame, 1);
    setCentralWidget(central);
}

void CRemoteKSetupDlg::translateButtons()
{
    m_save->setText(nelib::tr("Save"));
    m_cancel->setText(nelib::tr("Cancel"));
    m_default->setText(nelib::tr("Default"));
}

void CRemoteKSetupDlg::updatePageButtons()
{
    const CSetupPage *page = m_host->currentPage();
    const bool enabled = !m_pageButtonsDisabled && page && page->hasSaveAction() && sessionReady();
    for (QPushButton *button : {m_save, m_cancel, m_default})
        button->setEnabled(enabled);
}

void CRemoteKSetupDlg::updateStatus()
{
    if (m_record)
        m_panel->showStatus(m_record->status.load());
}

void CRemoteKSetupDlg::onConnect()
{
    if (m_worker || m_wait)
        return;
    auto record = std::make_unique<ConnectionRecord>();
    if (!m_panel->settings().fillRecord(*record)) {
        // A bad entry ends the program; installers know the tool this way.
        MessageSink::show(nelib::tr("Connect Fail"));
        ProgramExit::exitProgram(0);
        return;
    }
    m_record = std::move(record);
    ++m_session;
    m_worker = std::make_unique<CWork>();
    m_worker->setMainWindow(this);
    // A refused attempt leaves the worker failed, which the wait notices.
    m_worker->connectSession(m_record.get());

    m_wait = std::make_unique<ConnectingWait>(this, m_worker->status(),
                                              ConnectingWait::Hooks {
                                                  forThisSession(&CRemoteKSetupDlg::lockPanel),
                                                  forThisSession(&CRemoteKSetupDlg::onSetupArrived),
                                                  forThisSession(&CRemoteKSetupDlg::endProgram),
                                                  forThisSession(&CRemoteKSetupDlg::endSession),
                                              });
    connect(m_worker.get(), &CWork::writeAcknowledged, m_host, &PageHost::writeAcknowledged);
    // Hearing of the record at once saves up to one polling period.
    connect(m_worker.get(), &CWork::setupArrived, this, [this] {
        if (m_wait)
            m_wait->wake();
    });
    updateStatus();
    m_statusPoll.start();
}

std::function<void()> CRemoteKSetupDlg::forThisSession(void (CRemoteKSetupDlg::*reaction)())
{
    return [this, reaction, session = m_session] {
        if (session == m_session)
            (this->*reaction)();
    };
}

void CRemoteKSetupDlg::lockPanel()
{
    m_panel->lockForSession();
}

void CRemoteKSetupDlg::onSetupArrived()
{
    if (!m_worker)
        return;
    m_wait.reset();
    // A fast recorder answers before the wait's locking round; the panel
    // must not stay open during a session either way.
    m_panel->lockForSession();
    m_channelCount = int(m_record->channelCount);
    fillPages();
}

void CRemoteKSetupDlg::fillPages()
{
    if (!m_host->pagesBuilt()) {
        m_host->buildPages();
        for (int i = 0; i < PageCatalog::count(); ++i)
            m_menus->setPageAvailable(i, m_host->page(i) != nullptr);
    }
    SessionMessage ready(SessionMessage::SetupReady);
    QCoreApplication::sendEvent(this, &ready);
}

void CRemoteKSetupDlg::endProgram()
{
    if (m_noticesOpen > 0)
        m_exitPending = true;
    else
        ProgramExit::exitProgram(0);
}

void CRemoteKSetupDlg::endSession()
{
    SessionMessage ended(SessionMessage::SessionEnded);
    QCoreApplication::sendEvent(this, &ended);
}

bool CRemoteKSetupDlg::event(QEvent *event)
{
    if (!SessionMessage::isSessionMessage(event))
        return QMainWindow::event(event);
    const auto *message = static_cast<const SessionMessage *>(event);
    if (isStale(*message))
        return true;
    switch (message->kind()) {
    case SessionMessage::SetupReady:
        setupReady();
        break;
    case SessionMessage::SessionEnded:
        // The worker itself ending a session that is still connecting is a
        // failed connect, which ends the program like the wait's verdict.
        if (message->source() && m_wait)
            endProgram();
        sessionEnded();
        break;
    case SessionMessage::Notice:
        showNotice(*message);
        break;
    case SessionMessage::SetupRestored:
        setupRestored();
        break;
    case SessionMessage::DefaultButton:
        m_default->setVisible(message->wParam() != 1);
        break;
    case SessionMessage::UploadRunning:
        m_menus->setUploadRunning(message->wParam() == 0);
        break;
    case SessionMessage::SaveButtons:
        if (message->lParam() == 1) {
            m_pageButtonsDisabled = message->wParam() != 0;
            updatePageButtons();
        }
        break;
    }
    return true;
}

void CRemoteKSetupDlg::setupReady()
{
    if (!m_worker || m_worker->setupReceived() != 1)
        return;
    const QByteArray &mirror = m_worker->mirror();
    m_host->loadPages(mirror, m_channelCount);
    for (int i = 0; i < PageCatalog::count(); ++i) {
        if (PageCatalog::entry(i).can(PageCatalog::NotOnFourChannels))
            m_menus->setItemPresent(i, m_channelCount != FourChannels);
    }
    m_panel->showSoftwareVersion(
        QByteArrayView(mirror).sliced(SetupRecordMap::SoftwareVersionOffset, 4));
    updateStatus();
    translateButtons();
    setPagesEditable(true);
    // A session opens on the accounts: replacing the factory password comes first.
    const int first = PageCatalog::indexOf(PageCatalog::OpensSession);
    selectPage(m_host->page(first) ? first : m_host->firstPage());
}

bool CRemoteKSetupDlg::isStale(const SessionMessage &message) const
{
    return message.source() && (!m_worker || message.source() != m_worker->serial());
}

void CRemoteKSetupDlg::showNotice(const SessionMessage &message)
{
    const SessionNotice notice = SessionNotice::fromMessage(message);
    if (notice.kind == SessionNotice::Saved && m_host->takeQuietSave())
        return;
    tell(notice.text(), notice.endsProgram());
}

void CRemoteKSetupDlg::tell(const QString &text, bool endsProgram)
{
    // The box is modal; the session may end while it is open, which is why
    // nothing here touches the worker after it.
    ++m_noticesOpen;
    MessageSink::show(text);
    --m_noticesOpen;
    if (endsProgram || (m_exitPending && m_noticesOpen == 0)) {
        m_exitPending = false;
        ProgramExit::exitProgram(0);
    }
}

void CRemoteKSetupDlg::sessionEnded()
{
    if (!m_worker)
        return;
    releaseSession();
    m_file.reset();
    m_panel->showDisconnectedLook();
    setPagesEditable(false);
    updatePageButtons();
}

void CRemoteKSetupDlg::releaseSession()
{
    ++m_session;
    m_statusPoll.stop();
    m_wait.reset();
    if (!m_worker)
        return;
    if (m_worker->upload()) {
        m_worker->stopUpload();
        m_menus->setUploadRunning(false);
    }
    // Whatever the worker still posts belongs to an ended session.
    m_worker->setMainWindow(nullptr);
    m_worker->disconnectSession();
    m_worker.reset();
}

bool CRemoteKSetupDlg::sessionReady() const
{
    return m_worker && (m_worker->state() == CWork::Ready || m_worker->holdsRecordOnly());
}

void CRemoteKSetupDlg::setPagesEditable(bool editable)
{
    if (!m_host->pagesBuilt())
        return;
    for (int i = 0; i < PageCatalog::count(); ++i) {
        if (CSetupPage *page = m_host->page(i))
            page->setEnabled(editable
                             && !(m_file && PageCatalog::entry(i).can(PageCatalog::NeedsRecorder)));
    }
}

void CRemoteKSetupDlg::setupRestored()
{
    if (m_worker)
        m_host->loadPages(m_worker->mirror(), m_channelCount);
}

void CRemoteKSetupDlg::selectPage(int index)
{
    if (!m_host->page(index))
        return;
    const PageCatalog::Entry &entry = PageCatalog::entry(index);
    if (entry.pageId)
        m_currentPageId = entry.pageId;
    m_host->showPage(index);
    setWindowTitle(nelib::tr(entry.titleFormat).replace(u"%s"_s, titleName()));
    updatePageButtons();
}

void CRemoteKSetupDlg::saveShownPage()
{
    CSetupPage *page = m_host->currentPage();
    if (!page)
        return;
    if (!PageCatalog::entry(m_host->currentEntry()).can(PageCatalog::WindowSaves)) {
        page->save();
        return;
    }
    // The page's values, gathered into its section, go straight to the
    // worker; the page's own Save stays as it was.
    page->gather();
    if (page->section())
        m_host->writeSection(page, *page->section(), page->sectionBuffer());
}

void CRemoteKSetupDlg::showRefusal(int index)
{
    if (index >= 0 && index < PageCatalog::count())
        tell(nelib::tr("The recorder refused to save %1; the page keeps your changes.")
                 .arg(nelib::tr(PageCatalog::entry(index).label)));
}

void CRemoteKSetupDlg::closeEvent(QCloseEvent *event)
{
    if (!std::exchange(m_closeAgreed, false) && (!unsavedPages().isEmpty() || fileUnsaved())) {
        event->ignore();
        askBeforeDroppingEdits([this] {
            m_closeAgreed = true;
            close();
        });
        return;
    }
    releaseSession();
    QMainWindow::closeEvent(event);
}

QStringList CRemoteKSetupDlg::unsavedPages() const
{
    QStringList labels;
    for (int i = 0; i < PageCatalog::count(); ++i) {
        CSetupPage *page = m_host->page(i);
        if (page && page->needsSave())
            labels.append(nelib::tr(PageCatalog::entry(i).label));
    }
    return labels;
}

void CRemoteKSetupDlg::askBeforeDroppingEdits(const std::function<void()> &drop)
{
    const QStringList unsaved = unsavedPages();
    const auto dropFile = [this, drop] {
        askBeforeDroppingFile(drop);
    };
    if (unsaved.isEmpty()) {
        dropFile();
        return;
    }
    m_question = Question::ask(
        this,
        nelib::tr("These pages have changes that are not saved: %1. Drop the changes?")
            .arg(unsaved.join(u", "_s)),
        dropFile);
}

void CRemoteKSetupDlg::askBeforeDroppingFile(const std::function<void()> &drop)
{
    if (!fileUnsaved()) {
        drop();
        return;
    }
    m_question = Question::askToSave(
        this, nelib::tr("The changes to %1 are not saved in a file. Save them?").arg(m_file->name),
        [this, drop] { saveFile(drop); }, drop);
}

bool CRemoteKSetupDlg::fileUnsaved() const
{
    return m_file && m_worker && m_worker->mirror() != m_file->saved;
}

QString CRemoteKSetupDlg::titleName() const
{
    return m_file ? m_file->name : m_panel->addressText().left(TitleAddressLength);
}

QFileDialog *CRemoteKSetupDlg::openFileDialog() const
{
    for (QFileDialog *dialog : {m_openDialog, m_saveDialog}) {
        if (dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

QFileDialog *CRemoteKSetupDlg::fileDialog(QFileDialog::AcceptMode mode)
{
    auto *dialog = DataFileDialog::create(this, mode,
                                          mode == QFileDialog::AcceptOpen ? nelib::tr("OPEN FILE")
                                                                          : nelib::tr("SAVE FILE"));
    dialog->setNameFilter(FileDialogFilter::toQt(nelib::tr("Data Files(*.dat)|*.dat||")));
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    return dialog;
}

void CRemoteKSetupDlg::chooseSetupFile()
{
    if (m_worker || m_wait)
        return;
    if (!m_openDialog) {
        m_openDialog = fileDialog(QFileDialog::AcceptOpen);
        connect(m_openDialog, &QDialog::accepted, this,
                [this] { openSetupFile(m_openDialog->selectedFiles().value(0)); });
    }
    m_openDialog->open();
}

RecorderTypeDialog *CRemoteKSetupDlg::openSetupFile(const QString &path)
{
    if (path.isEmpty() || m_worker || m_wait)
        return nullptr;
    const setup::RecordFile::Contents file = setup::RecordFile::read(path);
    if (file.problem != setup::RecordFile::Problem::None) {
        tell(nelib::tr("%1 cannot be opened: %2.")
                 .arg(QDir::toNativeSeparators(path), refusalReason(file)));
        return nullptr;
    }
    const ConnectionSettings last = m_panel->settings();
    auto *dialog = new RecorderTypeDialog(last.fileChannels, last.fileVideoStandard, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, path, file] {
        ConnectionSettings chosen = m_panel->settings();
        chosen.fileChannels = dialog->channels();
        chosen.fileVideoStandard = dialog->videoStandard();
        m_panel->enter(chosen);
        holdFile(path, file, chosen.fileChannels, chosen.fileVideoStandard);
    });
    dialog->open();
    return dialog;
}

void CRemoteKSetupDlg::holdFile(const QString &path, const setup::RecordFile::Contents &file,
                                int channels, int videoStandard)
{
    if (m_worker || m_wait)
        return;
    ++m_session;
    m_worker = std::make_unique<CWork>();
    m_worker->setMainWindow(this);
    m_worker->holdRecord(file.record, videoStandard);
    // An export file is offered again for SAVE FILE; a default setup file
    // is never overwritten with another kind of file.
    const QFileInfo info(path);
    m_file = OpenFile {info.fileName(),
                       file.kind == setup::RecordFile::Kind::Export
                           ? path
                           : info.dir().filePath(ExportFileName.toString()),
                       {},
                       file.record};
    m_channelCount = channels;
    m_panel->showFile(m_file->name);
    fillPages();
}

void CRemoteKSetupDlg::saveFile(const std::function<void()> &then)
{
    if (!m_file)
        return;
    if (!m_file->savePath.isEmpty()) {
        if (saveSetupFile(m_file->savePath) && then)
            then();
        return;
    }
    if (!m_saveDialog) {
        m_saveDialog = fileDialog(QFileDialog::AcceptSave);
        connect(m_saveDialog, &QDialog::finished, this, [this](int result) {
            // Whatever was to follow the save waits for the file to be written.
            const std::function<void()> next = std::exchange(m_afterSave, {});
            if (result == QDialog::Accepted && saveSetupFile(m_saveDialog->selectedFiles().value(0))
                && next)
                next();
        });
    }
    m_afterSave = then;
    m_saveDialog->selectFile(m_file->proposedPath);
    m_saveDialog->open();
}

bool CRemoteKSetupDlg::saveSetupFile(const QString &path)
{
    if (!m_file || !m_worker || path.isEmpty())
        return false;
    const QByteArray record = m_worker->mirror();
    QString error;
    if (QFileInfo(path).isDir())
        error = nelib::tr("it is a folder");
    else if (setup::ExportFile::write(path, record, &error)) {
        m_file->saved = record;
        m_file->savePath = path;
        m_file->name = QFileInfo(path).fileName();
        m_panel->showFile(m_file->name);
        selectPage(m_host->currentEntry());
        return true;
    }
    tell(nelib::tr("The setup cannot be saved to %1: %2.")
             .arg(QDir::toNativeSeparators(path), error));
    return false;
}
