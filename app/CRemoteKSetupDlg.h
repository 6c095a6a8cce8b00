// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/RecordFile.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace nelib {
class Translator;
}
class CWork;
class ConnectingWait;
class ConnectionPanel;
class PageHost;
class PageMenuBar;
class RecorderTypeDialog;
struct ConnectionRecord;
class SessionMessage;

// The program's one window: the connection panel, the navigation menus, the
// page host and the Save, Cancel and Default buttons that act on the page on
// display. It owns the session worker for the length of a session and the
// pages for its own life, and it obeys the session messages (SessionMessage)
// that the worker, the connecting wait and the pages send it. Everything the
// worker reports arrives as a posted message, so the window shows messages
// and ends sessions from its own event handling, never inside the worker's
// call stack; messages of an ended session are dropped.
//
// Instead of a recorder the window may hold a setup file (OPEN FILE): a
// worker without a session keeps the file's record as its mirror, page
// saves change that record, and SAVE FILE writes it as an export file.
class CRemoteKSetupDlg : public QMainWindow
{
    Q_OBJECT

public:
    // The translations come from language.config beside the executable.
    explicit CRemoteKSetupDlg(QWidget *parent = nullptr);
    explicit CRemoteKSetupDlg(const QString &languageConfig, QWidget *parent = nullptr);
    ~CRemoteKSetupDlg() override;

    ConnectionPanel *connectionPanel() const { return m_panel; }
    PageMenuBar *pageMenus() const { return m_menus; }
    PageHost *pageHost() const { return m_host; }
    QPushButton *saveButton() const { return m_save; }
    QPushButton *cancelButton() const { return m_cancel; }
    QPushButton *defaultButton() const { return m_default; }

    CWork *worker() const { return m_worker.get(); }
    int channelCount() const { return m_channelCount; }
    // The identifier of the last page shown that has one; 0 before any.
    int currentPageId() const { return m_currentPageId; }
    // The question before DISCONNECT or closing drops edits; null when none is open.
    QMessageBox *openQuestion() const { return m_question; }

    // OPEN FILE once a file is chosen: a file that is no setup file is
    // refused with a message naming the problem; otherwise the dialog that
    // asks for the recorder's channel count and video standard is returned,
    // and the file opens when it is accepted.
    RecorderTypeDialog *openSetupFile(const QString &path);
    // SAVE FILE once a name is known: writes the open setup to `path` as an
    // export file; a failure is told and leaves any file there as it was.
    bool saveSetupFile(const QString &path);
    // The file dialog of OPEN FILE or SAVE FILE on screen; null when none is.
    QFileDialog *openFileDialog() const;
    bool fileOpen() const { return m_file.has_value(); }
    // Whether the open setup differs from what its file holds.
    bool fileUnsaved() const;

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildLayout();
    // The translated item texts of the pages whose edits are not saved.
    QStringList unsavedPages() const;
    // Runs `drop` at once when no page has unsaved edits, else once the
    // operator agrees to drop them.
    void askBeforeDroppingEdits(const std::function<void()> &drop);
    // Then the open file's changes that SAVE FILE has not written: `drop`
    // runs once they are saved or the operator chooses not to save them.
    void askBeforeDroppingFile(const std::function<void()> &drop);
    QFileDialog *fileDialog(QFileDialog::AcceptMode mode);
    void chooseSetupFile();
    // SAVE FILE, asking for a name the first time; `then` runs once written.
    void saveFile(const std::function<void()> &then = {});
    void holdFile(const QString &path, const setup::RecordFile::Contents &file, int channels,
                  int videoStandard);
    // What the title shows in place of "%s": the address or the file's name.
    QString titleName() const;
    void onConnect();
    // DISCONNECT, and a wait that ran out: the same end as message 2026.
    void endSession();
    std::function<void()> forThisSession(void (CRemoteKSetupDlg::*reaction)());
    void lockPanel();
    void onSetupArrived();
    // Builds the pages once, then fills them as message 2024 does.
    void fillPages();
    // The worker failed or went idle while connecting: the program ends,
    // once every message box on screen has been closed.
    void endProgram();
    void showNotice(const SessionMessage &message);
    // Shows `text` in a message box; a program end waits until it is closed.
    void tell(const QString &text, bool endsProgram = false);
    // The recorder refused a save of the page of catalog entry `index`.
    void showRefusal(int index);
    bool isStale(const SessionMessage &message) const;

    // Shows catalog entry `index`, when its page exists.
    void selectPage(int index);
    // Save: the page on display saves itself, except those the window writes.
    void saveShownPage();
    void setupReady();
    void sessionEnded();
    void setupRestored();
    // Stops the worker's upload, then ends and destroys the worker.
    void releaseSession();
    bool sessionReady() const;
    void setPagesEditable(bool editable);

    void translateButtons();
    void updatePageButtons();
    void updateStatus();

    // Created first and destroyed last: every text passes through it.
    std::unique_ptr<nelib::Translator> m_translator;

    ConnectionPanel *m_panel = nullptr;
    PageMenuBar *m_menus = nullptr;
    PageHost *m_host = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_default = nullptr;

    std::unique_ptr<ConnectionRecord> m_record;
    std::unique_ptr<CWork> m_worker;
    std::unique_ptr<ConnectingWait> m_wait;
    // Counts sessions, so that decisions of an ended session's wait that are
    // still queued are recognised and dropped.
    quint64 m_session = 0;
    int m_channelCount = 0;
    int m_currentPageId = 0;
    bool m_pageButtonsDisabled = false;
    int m_noticesOpen = 0;
    bool m_exitPending = false;
    bool m_closeAgreed = false;
    QPointer<QMessageBox> m_question;

    struct OpenFile
    {
        QString name; // shown in the title
        QString proposedPath; // offered by the first SAVE FILE
        QString savePath; // where SAVE FILE writes; empty until it asked
        QByteArray saved; // the record as its file holds it
    };
    std::optional<OpenFile> m_file;
    QFileDialog *m_openDialog = nullptr;
    QFileDialog *m_saveDialog = nullptr;
    std::function<void()> m_afterSave;
    // The worker reports its progress only through the record's status byte.
    QTimer m_statusPoll;
};
