// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ColumnCheckBox.h"

#include <QCheckBox>

ColumnCheckBox::ColumnCheckBox(QCheckBox *header, const QList<QCheckBox *> &column, QObject *parent)
    : QObject(parent)
    , m_header(header)
    , m_column(column)
{
    connect(m_header, &QCheckBox::clicked, this, [this](bool checked) {
        for (QCheckBox *box : m_column)
            box->setChecked(checked);
        Q_EMIT columnClicked();
    });
    for (QCheckBox *box : m_column) {
        connect(box, &QCheckBox::clicked, this, [this] {
            update();
            Q_EMIT columnClicked();
        });
    }
}

void ColumnCheckBox::update()
{
    const bool all = std::all_of(m_column.begin(), m_column.end(),
                                 [](const QCheckBox *box) { return box->isChecked(); });
    m_header->setChecked(all);
}

void ColumnCheckBox::updateFirstRows(int rows)
{
    const auto end = m_column.begin() + std::clamp<qsizetype>(rows, 0, m_column.size());
    m_header->setChecked(
        std::all_of(m_column.begin(), end, [](const QCheckBox *box) { return box->isChecked(); }));
}
