// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"

QT_BEGIN_NAMESPACE
class QComboBox;
QT_END_NAMESPACE

// The PTZ protocol list over two words, "in use" and the protocol number:
// item 0 "None" stands for no PTZ camera (0, 0), item k for protocol k - 1
// (1, k - 1). A channel not in use shows "None" whatever its protocol word
// holds, and a save then clears it; a protocol past the list selects nothing
// and stays stored. The editor's field spans both words.
class PtzProtocolEditor : public FieldEditor
{
    Q_OBJECT

public:
    PtzProtocolEditor(const setup::FieldInfo &inUse, const setup::FieldInfo &protocol, int i,
                      QWidget *parent);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

private:
    setup::FieldInfo m_inUse;
    setup::FieldInfo m_protocol;
    QComboBox *m_list;
    // As filled: an item shown unchanged writes them back as they were.
    quint32 m_filledInUse = 0;
    quint32 m_filledProtocol = 0;
};
