// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <vector>

QT_BEGIN_NAMESPACE
class QSpinBox;
QT_END_NAMESPACE

// Camera / Alarm-Out: each output's contact type and how long it stays driven
// ("Setting"), and a weekly schedule of up to 21 lines saying on which days,
// between which times and on which events the outputs are driven
// ("Schedule"). Save refuses a line that does not start before it ends.
class CRemoteCameraAlarmOutDlg : public CSetupPage
{
    Q_OBJECT

public:
    static constexpr int Lines = 21;

    explicit CRemoteCameraAlarmOutDlg(QWidget *parent = nullptr);
    ~CRemoteCameraAlarmOutDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void afterFill() override;

private:
    void buildSchedule(QWidget *tab);
    void enableLinesInUse();

    QSpinBox *m_lineCount = nullptr;
    std::vector<QList<QWidget *>> m_lineWidgets;
};
