// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/ElidedLineEdit.h"
#include "pages/common/FieldEditor.h"

#include <QPointer>

#include <array>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

class ChannelSelectionDialog;

// A set of channels shown as text ("01,03,") with a button that opens a
// channel selection dialog. With CRemoteChannelSel and CRemoteChannelSelect
// the set is bits 0-15 of element [i][j] (bit k = channel k + 1) and the
// other bits of the word stay as they are; with CRemoteChannelSel_Spot it is
// one element [k][j] per channel k, zero or not, and a chosen channel keeps
// the value it had.
class ChannelSelectionEditor : public FieldEditor
{
    Q_OBJECT

public:
    enum class Dialog { Channels, Spot, AlarmOutputs };
    static constexpr int Channels = setup::SetupRecordMap::MaxChannels;

    ChannelSelectionEditor(Dialog dialog, const setup::FieldInfo &field, int i, int j,
                           QWidget *parent);
    ~ChannelSelectionEditor() override;

    QWidget *widget() const override { return m_box; }
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;
    void setAccessibleName(const QString &name) override;
    void setChannelCount(int count) override { m_channelCount = count; }

    // The most channels the spot dialog lets the operator choose.
    void setLimit(int limit) { m_limit = limit; }

    // Bit k stands for channel k + 1.
    quint16 selection() const;
    QLineEdit *text() const { return m_text; }
    QPushButton *button() const { return m_button; }
    // Opens the dialog; its OK takes the new selection.
    void choose();

    // "%02d," for every channel of `selection`, in rising order: "01,03,".
    static QString selectionText(quint16 selection);

private:
    void select(quint16 selection);
    void showSelection();
    ChannelSelectionDialog *dialog();

    Dialog m_kind;
    QWidget *m_box;
    ElidedLineEdit *m_text;
    QPushButton *m_button;
    QPointer<ChannelSelectionDialog> m_dialog;
    // What the element holds, or each channel's element (spot).
    quint32 m_word = 0;
    std::array<quint32, Channels> m_elements {};
    int m_channelCount = Channels;
    int m_limit = Channels;
};
