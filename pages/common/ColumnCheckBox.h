// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QObject>

QT_BEGIN_NAMESPACE
class QCheckBox;
QT_END_NAMESPACE

// The check box above a column of per-channel check boxes. A click on it
// sets every box of the column to its new state, hidden rows included; it
// shows checked exactly when every box of the column is checked, so on a
// recorder with fewer channels the hidden rows count too.
class ColumnCheckBox : public QObject
{
    Q_OBJECT

public:
    ColumnCheckBox(QCheckBox *header, const QList<QCheckBox *> &column, QObject *parent);

    // Re-evaluates the header after the column changed without a click (fill).
    void update();
    // After a page's Default: checked exactly when the first `rows` boxes
    // (the recorder's channels) are all checked, whatever the hidden rows hold.
    void updateFirstRows(int rows);

Q_SIGNALS:
    // The operator changed the column, through the header or one of its boxes.
    void columnClicked();

private:
    QCheckBox *m_header;
    QList<QCheckBox *> m_column;
};
