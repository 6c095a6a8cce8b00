#pragma once

#include <QDialog>

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
QT_END_NAMESPACE

// Copies the recording profile columns of one channel to others on the
// Record Setup page. The page sets the channel count, opens the dialog and,
// after OK, reads the source channel, the ticked properties and the ticked
// target channels. The page keeps one dialog for its life, so that the
// operator finds the previous choices when opening it again.
class CRemoteRecordCopySettingDlg : public QDialog
{
    Q_OBJECT

public:
    enum Property { Resolution, Quality, Fps, Type, DwellTime, PropertyCount };
    static constexpr int Channels = 16;

    explicit CRemoteRecordCopySettingDlg(QWidget *parent = nullptr);

    void setChannelCount(int count);

    // The choices of the last OK.
    int sourceChannel() const { return m_source; }
    bool copies(Property property) const { return m_properties[property]; }
    bool isTarget(int channel) const { return m_targets[channel]; }

    void setVisible(bool visible) override;
    void accept() override;

private:
    void sourceChanged(int index);

    int m_channelCount = Channels;
    int m_source = 0;
    std::array<bool, PropertyCount> m_properties {};
    std::array<bool, Channels> m_targets {};

    QComboBox *m_from = nullptr;
    std::array<QCheckBox *, PropertyCount> m_propertyBoxes {};
    QCheckBox *m_selectAll = nullptr;
    std::array<QCheckBox *, Channels> m_channelBoxes {};
};
