// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QButtonGroup;
class QStackedWidget;
QT_END_NAMESPACE

// Camera / Motion: per channel, when the day and the night setting start
// ("Time Setting"), each setting's sensitivity, minimum blocks and mask zone
// ("Day Setting", "Night Setting"), and what motion sets off ("Action"). One
// view at a time; Copy Settings copies within the view shown. A save from the
// time view first checks that each day setting starts before its night
// setting.
class CRemoteCameraMotionDlg : public CSetupPage
{
    Q_OBJECT

public:
    enum View { TimeView, DayView, NightView, ActionView };

    explicit CRemoteCameraMotionDlg(QWidget *parent = nullptr);
    ~CRemoteCameraMotionDlg() override;

    void showView(View view);

protected:
    void buildControls() override;
    bool checksSaveRules() const override;

private:
    QButtonGroup *m_views = nullptr;
    QStackedWidget *m_stack = nullptr;
};
