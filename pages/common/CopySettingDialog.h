// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SetupRecordMap.h"

#include <QDialog>

#include <array>
#include <span>
#include <vector>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QVBoxLayout;
QT_END_NAMESPACE

// The body of the pages' copy-settings dialogs: a "From" list of the source
// channel, a box per property the page offers (the copy properties of its
// bound columns) and a box per target channel with "Select All".
// A page keeps one dialog for its life, so that the operator finds the
// choices of the last OK when opening it again; what a cancelled run ticked
// is forgotten. After OK the dialog holds the boxes' states as they were.
class CopySettingDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int Channels = setup::SetupRecordMap::MaxChannels;

    void setChannelCount(int count);
    int channelCount() const { return m_channelCount; }

    // From the next opening on, the dialog shows the boxes of `properties`
    // (English texts) in that order, and no other.
    void offer(std::span<const char *const> properties);

    // The choices of the last OK.
    int sourceChannel() const { return m_source; }
    // Whether the box of `property` was ticked; a property never offered is not.
    bool copies(const char *property) const;
    bool targetTicked(int channel) const { return m_targets[channel]; }

    void setVisible(bool visible) override;
    void accept() override;

protected:
    explicit CopySettingDialog(QWidget *parent);

private:
    struct Property
    {
        QByteArray name;
        QCheckBox *box;
        bool ticked;
    };

    void sourceChanged(int index);

    int m_channelCount = Channels;
    int m_source = 0;
    std::vector<Property> m_properties;
    std::array<quint8, Channels> m_targets {};

    QComboBox *m_from = nullptr;
    QVBoxLayout *m_propertyLayout = nullptr;
    QCheckBox *m_selectAll = nullptr;
    std::array<QCheckBox *, Channels> m_channelBoxes {};
};
