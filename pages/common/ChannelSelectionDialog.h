// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SetupRecordMap.h"

#include <QDialog>
#include <QList>

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QDialogButtonBox;
class QVBoxLayout;
QT_END_NAMESPACE

// The frame of the channel selection dialogs: check boxes "Ch 01" to "Ch 16"
// in groups, each group under its own "Select All" box, OK and Cancel. Boxes
// of channels at or beyond the channel count are hidden. The caller sets the
// channel count and the selection before opening the dialog and reads the
// selection after OK; a click on a box changes the selection at once.
class ChannelSelectionDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int Channels = setup::SetupRecordMap::MaxChannels;

    void setChannelCount(int count);
    int channelCount() const { return m_channelCount; }

    // Bit k stands for channel k + 1.
    void setSelection(quint16 selection);
    quint16 selection() const { return m_selection; }

    QCheckBox *channelBox(int channel) const { return m_boxes[channel]; }

    void setVisible(bool visible) override;

protected:
    explicit ChannelSelectionDialog(QWidget *parent);

    // Adds channels [first, end) under a "Select All" box that covers them;
    // with `onlyShown` it covers only those below the channel count.
    QCheckBox *addGroup(int first, int end, bool onlyShown);
    QPushButton *okButton() const;
    // Runs after every change of the selection and when the dialog opens.
    virtual void selectionChanged() { }

private:
    struct Group
    {
        QCheckBox *selectAll;
        int first;
        int end;
        bool onlyShown;
    };

    int coveredEnd(const Group &group) const;
    void selectAllClicked(const Group &group, bool checked);
    void refresh();

    int m_channelCount = Channels;
    quint16 m_selection = 0;
    std::array<QCheckBox *, Channels> m_boxes {};
    QList<Group> m_groups;
    QVBoxLayout *m_groupLayout;
    QDialogButtonBox *m_buttons;
};
