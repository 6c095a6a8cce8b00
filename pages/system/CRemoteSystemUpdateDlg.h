// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwarePackage.h"
#include "firmware/FirmwareUploader.h"
#include "pages/common/CSetupPage.h"

#include <QPointer>

#include <functional>
#include <optional>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QProgressBar;
class QPushButton;
QT_END_NAMESPACE

// System / Update: sends a firmware package to the recorder. It shows the
// recorder's software version, takes a package only when its header holds
// together, and runs the upload with a progress bar. The upload belongs to
// the session (CWork::adoptUpload), which stops it when it ends. The page
// shows the outcome's message once the upload has finished and ends the
// program where the outcome calls for it; a busy recorder or a cancel leave
// the page ready for another try. The page edits no section: no Save, no
// Default.
class CRemoteSystemUpdateDlg : public CSetupPage
{
    Q_OBJECT

public:
    // Asks for a package file with the dialog filter `filter`; an empty path
    // when the operator chose none.
    using FileChooser = std::function<QString(QWidget *parent, const QString &filter)>;

    explicit CRemoteSystemUpdateDlg(QWidget *parent = nullptr);
    ~CRemoteSystemUpdateDlg() override;

    // Also shows the software version of the record's header.
    void load(const QByteArray &mirror, int channelCount) override;

    // Replaces the open-file dialog; tests must never block on one.
    void setFileChooser(FileChooser chooser) { m_chooseFile = std::move(chooser); }
    bool isUploading() const { return m_uploader != nullptr; }

protected:
    void buildControls() override;
    void fillControls(QByteArrayView, Source) override { }
    void gatherControls(QByteArray &) override { }

private:
    void openPackage();
    void choosePackage(const QString &path);
    void startUpload();
    void cancelUpload();
    void showProgress(int percent);
    void uploadEnded(int outcome);
    void updateButtons();

    FileChooser m_chooseFile;
    std::optional<firmware::FirmwarePackage> m_package;
    // Owned by the session, which may end it at any time.
    QPointer<firmware::FirmwareUploader> m_uploader;
    bool m_canceled = false;

    QLineEdit *m_softwareVersion = nullptr;
    QLineEdit *m_fileName = nullptr;
    QLineEdit *m_updateVersion = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_open = nullptr;
    QPushButton *m_start = nullptr;
    QPushButton *m_cancel = nullptr;
};
