// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// System / Audio: for each of the four audio inputs whether it is on and its
// gain, which input is heard live and at what volume, and whether audio is
// recorded and sent to network clients. Which camera an input belongs to is
// chosen on the camera page.
class CRemoteSystemAudioDlg : public CSetupPage
{
    Q_OBJECT

public:
    static constexpr int Inputs = 4;

    explicit CRemoteSystemAudioDlg(QWidget *parent = nullptr);
    ~CRemoteSystemAudioDlg() override;

protected:
    void buildControls() override;
};
