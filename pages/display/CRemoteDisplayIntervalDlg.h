// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QRadioButton;
class QSpinBox;
QT_END_NAMESPACE

// Display / Interval: how long the monitor outputs dwell on each picture
// when they switch by themselves (full screen, picture-in-picture, spot),
// the event update time and the menu time-out.
//
// The "Switching Interval" and "Event Record" choices and the event record
// time have no place in the recorder's record: they belong to the page
// alone, are never sent, and only enable the fields they head.
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

private:
    // An "On"/"Off" pair named after `label`, "On" chosen.
    QRadioButton *addOnOff(QWidget *parent, const QString &label, QLayout *row);

    QRadioButton *m_switchingOn = nullptr;
    QRadioButton *m_eventRecordOn = nullptr;
    QSpinBox *m_eventRecordTime = nullptr;
};
