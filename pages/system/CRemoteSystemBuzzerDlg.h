// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// System / Buzzer: when the recorder beeps (key clicks, events, a full or
// failing disk) and how long an event beeps.
class CRemoteSystemBuzzerDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteSystemBuzzerDlg(QWidget *parent = nullptr);
    ~CRemoteSystemBuzzerDlg() override;

protected:
    void buildControls() override;
};
