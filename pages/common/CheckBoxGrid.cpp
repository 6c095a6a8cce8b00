// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CheckBoxGrid.h"

#include <QCheckBox>
#include <QGridLayout>

void arrangeCheckBoxGrid(QWidget *bits, int columns)
{
    const QList<QCheckBox *> boxes = bits->findChildren<QCheckBox *>(Qt::FindDirectChildrenOnly);
    delete bits->layout();
    auto *grid = new QGridLayout(bits);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    for (qsizetype k = 0; k < boxes.size(); ++k)
        grid->addWidget(boxes[k], int(k / columns), int(k % columns));
    grid->setColumnStretch(columns, 1);
}
