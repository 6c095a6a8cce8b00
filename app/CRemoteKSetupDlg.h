// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

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
    void onConnect();
    // DISCONNECT, and a wait that ran out: the same end as message 2026.
    void endSession();
    std::function<void()> forThisSession(void (CRemoteKSetupDlg::*reaction)());
    void lockPanel();
    void onSetupArrived();
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
    // The worker reports its progress only through the record's status byte.
    QTimer m_statusPoll;
};
