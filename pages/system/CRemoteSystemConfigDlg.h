// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QFormLayout;
class QLabel;
class QLineEdit;
QT_END_NAMESPACE

class CWork;

// System / Configuration: moves whole setups between the recorder and data
// files (Import, Export) or back to the factory defaults, and shows who the
// connected recorder is. It edits no section, so it has no Save or Default.
// With a setup file open instead of a recorder, they act on the file's record.
//
// The file dialogs are opened window-modal and act when they are accepted,
// so nothing waits inside a nested event loop; leaving a dialog any other
// way does nothing.
class CRemoteSystemConfigDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteSystemConfigDlg(QWidget *parent = nullptr);
    ~CRemoteSystemConfigDlg() override;

    // Besides filling, refreshes the recorder's identity: a restored setup
    // arrives through here as well.
    void load(const QByteArray &mirror, int channelCount) override;

    // The dialog of an Import or Export under way; null when none is open.
    QFileDialog *openFileDialog() const;
    // The question before an import or a factory default is sent; null
    // when none is open.
    QMessageBox *openQuestion() const { return m_question; }

protected:
    void buildControls() override;
    void fillControls(QByteArrayView, Source) override { }
    void gatherControls(QByteArray &) override { }

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QFileDialog *fileDialog(QFileDialog::AcceptMode mode);
    void chooseImportFile();
    void chooseExportFile();
    void importFrom(const QString &path);
    static QString recorderName(const CWork &work);
    void exportTo(const QString &path);
    void restoreFactoryDefault();
    // Without a recorder, Import and Factory Default replace the held record.
    void replaceHeldRecord(const QByteArray &record, const QString &done);
    void showIdentity(const QByteArray &mirror);
    void showRecorderTime();
    QLabel *addValue(QFormLayout *form, const QString &label);

    QLineEdit *m_fileName = nullptr;
    QFileDialog *m_importDialog = nullptr;
    QFileDialog *m_exportDialog = nullptr;
    QPointer<QMessageBox> m_question;

    QLabel *m_model = nullptr;
    QLabel *m_version = nullptr;
    QLabel *m_channels = nullptr;
    QLabel *m_videoStandard = nullptr;
    QLabel *m_alarmInputs = nullptr;
    QLabel *m_alarmOutputs = nullptr;
    QLabel *m_audioInputs = nullptr;
    QLabel *m_disks = nullptr;
    QLabel *m_recorderTime = nullptr;

    // Follows the worker's running clock while the page is on display.
    QTimer m_clockTimer;
};
