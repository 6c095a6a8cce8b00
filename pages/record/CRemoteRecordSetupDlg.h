// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QGridLayout;
class QStackedWidget;
QT_END_NAMESPACE

class CRemoteRecordCopySettingDlg;

// Record / Setup: for each channel the recording profile of each record mode
// (resolution, quality, frame rate), and in the Pre-Event mode whether the
// channel records before an event, on which event and how long. One grid per
// mode, shown by the Record Mode list; a list above each column sets the
// whole column. The page writes the whole RECORD block, resending the
// schedule and holidays as the session holds them.
class CRemoteRecordSetupDlg : public CSetupPage
{
    Q_OBJECT

public:
    enum Mode { Normal, Event, PreEvent, Panic, ModeCount };

    explicit CRemoteRecordSetupDlg(QWidget *parent = nullptr);
    ~CRemoteRecordSetupDlg() override;

    // Takes the recorder's video standard from the session (NTSC without
    // one), then loads.
    void load(const QByteArray &mirror, int channelCount) override;

    int recordMode() const;

protected:
    void buildControls() override;
    void afterFill() override;
    // Writes every shown profile whole: both copies, the codes in their own form.
    void prepareSave(QByteArray &section) override;

private:
    // 0 shows the NTSC resolutions and frame rates, any other value PAL's.
    void setVideoStandard(int standard);
    static QList<setup::FieldInfo> columnsOf(int mode);
    QGridLayout *modeGrid(QWidget *parent, int mode);
    void showMode();
    void applyHeader(int mode, const setup::FieldInfo &field, int item);
    void updatePreEventRow(int row);
    void applyVideoStandard();
    void copySettings();

    QComboBox *m_mode = nullptr;
    QStackedWidget *m_grids = nullptr;
    std::array<QList<QComboBox *>, ModeCount> m_headers;
    std::array<QCheckBox *, MaxChannels> m_preEventBoxes {};
    // The lists of a Pre-Event row, enabled while its box is checked.
    std::array<QList<QWidget *>, MaxChannels> m_preEventLists;
    CRemoteRecordCopySettingDlg *m_copyDialog = nullptr;
    bool m_pal = false;
};
