#pragma once

#include <QIcon>

// The program's icon, drawn at the sizes window managers ask for.
class WindowIcon
{
public:
    static QIcon create();
};
