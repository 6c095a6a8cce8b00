// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>
#include <QImage>

// The program's icon, drawn at the sizes window managers ask for.
class WindowIcon
{
public:
    static QIcon create();
    // The icon at one size; packaging/remote-setup.svg is the same drawing.
    static QImage image(int size);
};
