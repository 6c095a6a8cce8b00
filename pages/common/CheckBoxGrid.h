// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

// Lays the check boxes of a bit-set control (FieldEditor::Kind::Bits) out in
// rows of `columns`, so that sixteen channels fit a page's width.
void arrangeCheckBoxGrid(QWidget *bits, int columns);
