#pragma once

#include <QDialog>

#include <array>
#include <functional>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
QT_END_NAMESPACE

// Copies settings of one channel to others on the camera pages. The page sets
// the copy mode (which properties it can copy) and the channel count, opens
// the dialog and, after OK, reads the source channel, the ticked properties
// and the ticked target channels. The page keeps one dialog for its life, so
// that the operator finds the previous choices when opening it again.
class CRemoteCameraCopySettingDlg : public QDialog
{
    Q_OBJECT

public:
    enum Property {
        Title,
        Covert,
        Audio,
        Type,
        Beep,
        AlarmOut,
        DwellTime,
        DayTime,
        MinBlocks,
        Sensitivity,
        MaskZone,
        Protocol,
        Baudrate,
        DataBits,
        StopBits,
        Parity,
        PtzSpeed,
        PropertyCount
    };
    static constexpr int Channels = 16;

    // One byte per property and per channel, 0 or 1, as the pages store them.
    using Properties = std::array<quint8, PropertyCount>;
    using Targets = std::array<quint8, Channels>;
    using CopyRow = std::function<void(int source, int target, const Properties &properties)>;

    explicit CRemoteCameraCopySettingDlg(QWidget *parent = nullptr);

    // Copy modes: 1 camera setup, 2 alarm-in, 3 alarm-out, 4 video loss,
    // 5, 6, 7 and 12 motion, 13 PTZ; any other mode offers no property.
    void setCopyMode(int mode);
    int copyMode() const { return m_copyMode; }
    void setChannelCount(int count);
    int channelCount() const { return m_channelCount; }

    // The choices of the last OK.
    int sourceChannel() const { return m_source; }
    const Properties &properties() const { return m_properties; }
    const Targets &targets() const { return m_targets; }

    // Calls `copyRow` for every target channel of the last OK, in channel order.
    void applyCopy(const CopyRow &copyRow) const;

    void setVisible(bool visible) override;
    void accept() override;

private:
    void prepare();
    void sourceChanged(int index);
    void selectAllClicked(bool checked);

    int m_copyMode = 0;
    int m_channelCount = Channels;
    int m_source = 0;
    Properties m_properties {};
    Targets m_targets {};

    QComboBox *m_from = nullptr;
    std::array<QCheckBox *, PropertyCount> m_propertyBoxes {};
    QCheckBox *m_selectAll = nullptr;
    std::array<QCheckBox *, Channels> m_channelBoxes {};
};
