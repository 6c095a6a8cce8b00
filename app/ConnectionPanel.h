// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/ConnectionSettings.h"

#include <QByteArrayView>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QColor;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
QT_END_NAMESPACE

// Where the operator names the recorder and starts or ends the session, and
// where the session's progress shows. It only collects and shows; the main
// window decides.
class ConnectionPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionPanel(QWidget *parent = nullptr);

    ConnectionSettings settings() const;
    // Fills the fields as if typed; for tools that drive the window.
    void enter(const ConnectionSettings &settings);
    QString addressText() const;
    QPushButton *connectButton() const { return m_connect; }
    QPushButton *disconnectButton() const { return m_disconnect; }
    QPushButton *openFileButton() const { return m_openFile; }
    QPushButton *saveFileButton() const { return m_saveFile; }

    // A session is under way: inputs and CONNECT locked, DISCONNECT enabled.
    void lockForSession();
    // A setup file is open instead of a recorder: inputs, CONNECT and OPEN
    // FILE locked, SAVE FILE and DISCONNECT (which closes the file) enabled,
    // the file's name where the session's status shows.
    void showFile(const QString &name);
    // The look of a program without a session or file.
    void showDisconnectedLook();
    // `status` is the connection record's status byte, a copy of the
    // worker's state.
    void showStatus(int status);
    // The four version bytes a, b, c, d of the recorder's software.
    void showSoftwareVersion(QByteArrayView version);

Q_SIGNALS:
    void connectRequested();
    void disconnectRequested();
    void openFileRequested();
    void saveFileRequested();

private:
    void setInputsEnabled(bool enabled);
    void applyMode();
    void showState(const QString &text, const QColor &light);

    QRadioButton *m_manual;
    QRadioButton *m_ddns;
    QLineEdit *m_address;
    QLineEdit *m_port;
    QLineEdit *m_hostName;
    QLineEdit *m_userId;
    QLineEdit *m_password;
    QPushButton *m_connect;
    QPushButton *m_disconnect;
    QPushButton *m_openFile;
    QPushButton *m_saveFile;
    QLabel *m_light;
    QLabel *m_status;
    QLabel *m_version;
    QFormLayout *m_form;
    int m_fileChannels;
    int m_fileVideoStandard;
};
