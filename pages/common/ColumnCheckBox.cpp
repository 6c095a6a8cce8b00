// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ColumnCheckBox.h"

#include <QCheckBox>
#include <QSignalBlocker>

// The header follows a toggle as it follows a click: a screen reader's
// toggle action changes the state without clicking. Only the header's own
// state changes are the operator's; the re-evaluations below are silenced.
ColumnCheckBox::ColumnCheckBox(QCheckBox *header, const QList<QCheckBox *> &column, QObject *parent)
    : QObject(parent)
    , m_header(header)
    , m_column(column)
{
    connect(m_header, &QCheckBox::toggled, this, [this](bool checked) {
        for (QCheckBox *box : m_column)
            box->setChecked(checked);
        update();
        Q_EMIT columnClicked();
    });
    for (QCheckBox *box : m_column) {
        connect(box, &QCheckBox::toggled, this, &ColumnCheckBox::update);
        connect(box, &QCheckBox::clicked, this, &ColumnCheckBox::columnClicked);
    }
}

void ColumnCheckBox::update()
{
    updateFirstRows(int(m_column.size()));
}

void ColumnCheckBox::updateFirstRows(int rows)
{
    const auto end = m_column.begin() + std::clamp<qsizetype>(rows, 0, m_column.size());
    const QSignalBlocker silent(m_header);
    m_header->setChecked(
        std::all_of(m_column.begin(), end, [](const QCheckBox *box) { return box->isChecked(); }));
}
