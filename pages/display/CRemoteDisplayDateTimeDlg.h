// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <optional>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QLabel;
QT_END_NAMESPACE

// Display / Date/Time: the recorder's clock (shown running, set with
// "Apply"), its time zone and daylight-saving rule, how it shows date and
// time, and the time server it synchronises with. The page edits two
// sections, the settings and the daylight-saving rule; Save sends both.
class CRemoteDisplayDateTimeDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDisplayDateTimeDlg(QWidget *parent = nullptr);
    ~CRemoteDisplayDateTimeDlg() override;

    // What the running clock shows: the recorder's date and time in the
    // chosen formats, or nothing while the recorder's time is unknown.
    QString clockText() const;
    // Sets the recorder's clock to the time in the selectors, then sends
    // the settings section. Returns non-zero when both were sent.
    int apply();

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void gatherControls(QByteArray &section) override;
    void afterFill() override;
    void showEvent(QShowEvent *event) override;

private:
    QComboBox *list(const setup::FieldInfo &field) const;
    void buildClock(QWidget *parent);
    QWidget *buildRule(QWidget *parent);
    void zonePicked();
    void checkRule();
    void updateControls();
    void fillHours();
    void fillDays();
    void showComputerTime();
    void tick();

    QComboBox *m_year = nullptr;
    QComboBox *m_month = nullptr;
    QComboBox *m_day = nullptr;
    QComboBox *m_hour = nullptr;
    QComboBox *m_minute = nullptr;
    QComboBox *m_second = nullptr;
    QLabel *m_clock = nullptr;
    QCheckBox *m_dst = nullptr;
    QWidget *m_rule = nullptr;

    // The selectors follow this computer's clock until the operator picks a value.
    bool m_timeEdited = false;
    // After the operator picked a zone, the offset and rule follow the zone's
    // table entry; a rule item without a selection then stands for 0.
    bool m_zonePicked = false;
    // Apply stores the selected zone's offset with the settings.
    bool m_offsetFromZone = false;

    // The running clock counts from the recorder's last answer.
    QTimer m_tick;
    std::optional<RecorderTime> m_lastReading;
    std::optional<QDateTime> m_answer;
    QElapsedTimer m_sinceAnswer;
};
