// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMessageBox>

#include <functional>

// A question before something that cannot be taken back: a real message
// box, modal to its window and acted on when answered, so that nothing waits
// inside a nested event loop. Escape and closing the box do nothing.
class Question
{
public:
    // Yes/No, No the default; `onYes` runs once Yes is chosen.
    static QMessageBox *ask(QWidget *parent, const QString &text, std::function<void()> onYes);
    // Save / Don't Save / Cancel before unsaved work is closed, Save the
    // default; Cancel does nothing.
    static QMessageBox *askToSave(QWidget *parent, const QString &text,
                                  std::function<void()> onSave, std::function<void()> onDiscard);
};
