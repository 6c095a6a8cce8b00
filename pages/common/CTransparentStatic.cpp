// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CTransparentStatic.h"

#include <QPainter>

namespace {

QFont labelFont(const QFont &base)
{
    QFont font = base;
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("DejaVu Sans")});
    font.setPointSize(10);
    return font;
}

} // namespace

CTransparentStatic::CTransparentStatic(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setFont(labelFont(font()));
}

void CTransparentStatic::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(Qt::black);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}
