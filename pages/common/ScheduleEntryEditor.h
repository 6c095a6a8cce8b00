// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/ElidedLineEdit.h"
#include "pages/common/FieldEditor.h"

#include <QPointer>

#include <array>

QT_BEGIN_NAMESPACE
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QToolButton;
QT_END_NAMESPACE

class CRemoteChannelSel;

// One entry of the record schedule: day, start and end time, record mode and
// channels, as controls that the page lays out as a row. A stored value that
// a control cannot show (an unknown day or mode code, a time out of range)
// is kept until the operator changes that control, and travels with the
// entry when the page moves entries between slots. Only an entry in use is
// filled and gathered; the others keep the values they have.
class ScheduleEntryEditor : public FieldEditor
{
    Q_OBJECT

public:
    struct Entry
    {
        quint32 day = 1; // SUN
        quint32 startHour = 0;
        quint32 startMinute = 0;
        quint32 endHour = 23;
        quint32 endMinute = 59;
        quint32 mode = 16; // Alarm
        quint32 channels = 0;

        friend bool operator==(const Entry &, const Entry &) = default;
    };

    // Entry `index` of the schedule, its controls children of `parent`;
    // it starts with the values of an emptied slot.
    ScheduleEntryEditor(int index, QWidget *parent);
    ~ScheduleEntryEditor() override;

    Entry entry() const;
    void setEntry(const Entry &entry);

    void setInUse(bool inUse) { m_inUse = inUse; }
    bool inUse() const { return m_inUse; }
    // The channel dialog hides the channels at and above the count; their
    // bits are kept.
    void setChannelCount(int count) override { m_channelCount = count; }

    QLabel *numberLabel() const { return m_number; }
    QComboBox *dayList() const { return m_day; }
    // The row from the line number on, one widget a column, in tab order.
    QList<QWidget *> rowWidgets() const;

    // The day list: the editor's main control.
    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

private:
    // Opens the channel dialog; its OK takes the chosen channels.
    void chooseChannels();
    void showChannels();

    Entry m_stored; // what the controls cannot show
    bool m_inUse = false;
    QLabel *m_number;
    QComboBox *m_day;
    std::array<QSpinBox *, 4> m_times {};
    std::array<QLabel *, 2> m_colons {};
    QComboBox *m_mode = nullptr;
    ElidedLineEdit *m_channelText = nullptr;
    QToolButton *m_channelButton = nullptr;
    quint32 m_channels = 0;
    int m_channelCount = setup::SetupRecordMap::MaxChannels;
    QPointer<CRemoteChannelSel> m_channelDialog;
};
