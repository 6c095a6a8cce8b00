// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Display / Interval: how long the monitor outputs dwell on each picture
// when they switch by themselves (full screen, picture-in-picture, spot),
// the event update time and the menu time-out.
class CRemoteDisplayIntervalDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDisplayIntervalDlg(QWidget *parent = nullptr);
    ~CRemoteDisplayIntervalDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void afterFill() override;
};
