// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QStackedWidget;
QT_END_NAMESPACE

class ScheduleEntryEditor;

// Record / Schedule: the recorder's timed recording entries (up to 40), each
// a day, a start and an end time, a record mode and the channels, shown eight
// to a screen page. Entries are added at the end, and deleted by ticking
// them; Save checks the first entry's times before it sends the schedule.
class CRemoteRecordScheduleDlg : public CSetupPage
{
    Q_OBJECT

public:
    static constexpr int Capacity = 40;
    static constexpr int RowsPerScreen = 8;

    explicit CRemoteRecordScheduleDlg(QWidget *parent = nullptr);
    ~CRemoteRecordScheduleDlg() override;

    int entryCount() const { return m_count; }
    // The screen page on display, from 1.
    int screen() const { return m_screen; }

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void gatherControls(QByteArray &section) override;
    void afterFill() override;

private:
    void buildScreens(int screens);
    int builtSlots() const;
    void addEntry();
    void deleteCheckedEntries();
    void showScreen(int screen);
    void showScreenOf(int count);
    void selectAllClicked(bool checked);
    void entryBoxClicked();

    int m_count = 0;
    int m_screen = 1;
    std::array<ScheduleEntryEditor *, Capacity> m_entries {};
    std::array<QCheckBox *, Capacity> m_marks {};
    QStackedWidget *m_screens = nullptr;
    QCheckBox *m_selectAll = nullptr;
};
