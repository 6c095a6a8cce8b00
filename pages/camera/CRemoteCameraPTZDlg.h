// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QComboBox;
class QStackedWidget;
QT_END_NAMESPACE

// Camera / PTZ: the pan/tilt/zoom camera of one channel at a time, chosen in
// the channel list: its control protocol, serial line, control id and
// speeds. Copy Settings copies them to other channels.
class CRemoteCameraPTZDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteCameraPTZDlg(QWidget *parent = nullptr);
    ~CRemoteCameraPTZDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void afterFill() override;

private:
    QComboBox *m_channel = nullptr;
    QStackedWidget *m_channels = nullptr;
};
