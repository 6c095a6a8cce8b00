// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/session/SessionHarness.h"

#include <QByteArray>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QTest>

namespace pagetest {

// The control that screen readers and UI automation know as `name`.
template<class T>
T *named(const QObject *root, const QString &name)
{
    for (T *widget : root->findChildren<T *>()) {
        if (widget->accessibleName() == name)
            return widget;
    }
    return nullptr;
}

// Picks `item` in the list named `name` as an operator would.
inline void select(const QObject *root, const QString &name, const QString &item)
{
    auto *list = named<QComboBox>(root, name);
    if (!list)
        return;
    list->setCurrentIndex(list->findText(item));
    Q_EMIT list->activated(list->currentIndex());
}

inline QPushButton *button(const QObject *root, const QString &text)
{
    for (QPushButton *b : root->findChildren<QPushButton *>()) {
        if (b->text() == text)
            return b;
    }
    return nullptr;
}

// Replaces the text of `edit` key by key.
inline void typeInto(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

// Changes what the control shows; false when it has no other value. As the
// operator's change, what depends on the control follows; otherwise only
// the control itself changes.
inline bool changeControl(QWidget *w, bool asOperator = true)
{
    if (auto *box = qobject_cast<QCheckBox *>(w)) {
        box->setChecked(!box->isChecked());
        if (asOperator)
            Q_EMIT box->clicked(box->isChecked());
    } else if (auto *list = qobject_cast<QComboBox *>(w)) {
        if (list->count() < 2)
            return false;
        list->setCurrentIndex((list->currentIndex() + 1) % list->count());
        if (asOperator)
            Q_EMIT list->activated(list->currentIndex());
    } else if (auto *spin = qobject_cast<QSpinBox *>(w)) {
        spin->setValue(spin->value() == spin->maximum() ? spin->minimum() : spin->value() + 1);
    } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
        edit->setText(edit->text().endsWith(u'1') ? edit->text().chopped(1) + u'2'
                                                  : edit->text().chopped(1) + u'1');
    } else if (auto *bit = w->findChild<QCheckBox *>()) {
        return changeControl(bit, asOperator);
    } else {
        return false;
    }
    return true;
}

// Bytes that no field value has, so that a byte written where it should not
// be shows up: 0xA0, 0xA1, ...
inline QByteArray pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(0xA0 + i % 64);
    return bytes;
}

inline QByteArray slice(const QByteArray &record, setup::Section section)
{
    const setup::SectionInfo &info = setup::SetupRecordMap::section(section);
    return record.mid(info.offset, info.length);
}

inline QByteArray withSection(QByteArray record, setup::Section section, const QByteArray &bytes)
{
    return record.replace(setup::SetupRecordMap::section(section).offset, bytes.size(), bytes);
}

// The factory defaults with the pattern over the whole of `section`.
inline QByteArray patterned(setup::Section section)
{
    return withSection(setup::FactoryDefaults::record(), section,
                       pattern(setup::SetupRecordMap::section(section).length));
}

// A number of the page's section, read at its record offsets.
inline quint32 number(const CSetupPage &page, const setup::FieldInfo &field, int i = 0, int j = 0)
{
    const QByteArray record = QByteArray(page.recordOffset(), '\0') + page.sectionBuffer();
    return setup::FieldTable::number(record, field, i, j);
}

// Connects `window` to `sim`, sends the page's saves there and fills the
// page from the record received; null when no session came up.
inline CWork *attach(SessionHarness &window, const SimProcess &sim, CSetupPage &page)
{
    window.worker.reset();
    CWork *work = &window.connect(sim.port());
    if (!window.waitForReady())
        return nullptr;
    page.setSectionWriter([work](setup::Section section, const QByteArray &bytes) {
        return work->writeSection(section, bytes);
    });
    page.load(work->mirror(), int(window.record.channelCount));
    return work;
}

} // namespace pagetest
