// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ElidedLineEdit.h"

#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>

namespace {

// The margin QLineEdit keeps on each side of its text.
constexpr int TextMargin = 2;

} // namespace

ElidedLineEdit::ElidedLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
}

void ElidedLineEdit::setFullText(const QString &text)
{
    m_fullText = text;
    setToolTip(text);
    setAccessibleDescription(text);
    elide();
}

void ElidedLineEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    elide();
}

void ElidedLineEdit::elide()
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    const QMargins margins = textMargins();
    const int width = contents.width() - margins.left() - margins.right() - 2 * TextMargin
                      - style()->pixelMetric(QStyle::PM_TextCursorWidth, &option, this);
    setText(fontMetrics().elidedText(m_fullText, Qt::ElideRight, std::max(width, 0)));
    setCursorPosition(0);
}
