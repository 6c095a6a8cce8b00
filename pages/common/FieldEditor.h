// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SectionEdit.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QObject>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

// One control bound to one element [i][j] of a field of the setup record.
// It reads the element from a section's bytes, writes it back and leaves
// every other byte alone; a page never converts values by hand. The standard
// kinds come from create(); pages with controls of their own (the motion mask
// painter, a schedule row) subclass FieldEditor and hand the object to the
// page's SectionBinder like any other.
//
// Change notifications: typing in an edit or a number box counts as an edit however the text
// changed, a check box or list only when the operator clicks or picks, so copying a check state or
// a list choice between rows leaves a page's Save as it was.
class FieldEditor : public QObject
{
    Q_OBJECT

public:
    enum class Kind {
        Check, // 0 or 1
        List, // the field's value names
        Number, // a spin box over the field's range
        Text, // code-page text, limited to the field's width
        Address, // four bytes as a dotted address
        Bits, // one check box per bit name; other bits kept
        Channels, // a channel mask, chosen in CRemoteChannelSel
        AlarmOutputs, // an alarm-out word, chosen in CRemoteChannelSelect
    };

    FieldEditor(const setup::FieldInfo &field, int i, int j, QObject *parent = nullptr);
    ~FieldEditor() override;

    // A standard editor whose control is a child of `parent`.
    static FieldEditor *create(Kind kind, const setup::FieldInfo &field, int i, int j,
                               QWidget *parent);

    const setup::FieldInfo &field() const { return m_field; }
    int index() const { return m_i; }
    int index2() const { return m_j; }

    virtual QWidget *widget() const = 0;
    // Shows the element held by `section`.
    virtual void fill(const setup::SectionView &section) = 0;
    // Writes the control's value into the element of `section`.
    virtual void gather(setup::SectionEdit &section) const = 0;
    // Takes the value of `other`, an editor of the same kind and field.
    virtual void copyFrom(const FieldEditor &other) = 0;
    // Names the control for assistive technology; editors made of several
    // controls name each of them.
    virtual void setAccessibleName(const QString &name);
    // Names `control` so that a screen reader tells it from its neighbours,
    // a list by a label relation too.
    static void nameControl(QWidget *control, const QString &name);
    // The recorder's channel count, for editors whose choices depend on it.
    virtual void setChannelCount(int count) { Q_UNUSED(count); }

Q_SIGNALS:
    void edited();

protected:
    // The element's number or bytes inside a section slice; nothing outside it.
    quint32 number(const setup::SectionView &section) const;
    void setNumber(setup::SectionEdit &section, quint32 value) const;
    QByteArrayView bytes(const setup::SectionView &section) const;
    void setBytes(setup::SectionEdit &section, QByteArrayView value) const;

private:
    setup::FieldInfo m_field;
    int m_i;
    int m_j;
};
