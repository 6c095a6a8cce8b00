// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMessageBox>

#include <functional>

// A Yes/No question before something that cannot be taken back: a real
// message box, modal to its window and acted on when answered, so that
// nothing waits inside a nested event loop. No is the default; No, Escape
// and closing the box do nothing.
class Question
{
public:
    // Opens the question and returns it; `onYes` runs once Yes is chosen.
    static QMessageBox *ask(QWidget *parent, const QString &text, std::function<void()> onYes);
};
