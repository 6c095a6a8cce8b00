// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLineEdit>

// A read-only line that shows a list too long for it cut at a visible
// ellipsis, always from its start, with the whole list in its tooltip and
// its accessible description.
class ElidedLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit ElidedLineEdit(QWidget *parent = nullptr);

    void setFullText(const QString &text);
    QString fullText() const { return m_fullText; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_fullText;
};
