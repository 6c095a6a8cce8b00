// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// translate [--config F] --language N [--escapes] TEXT...
// Prints each text's translation on a line of its own, through the same
// translator the window uses, so translators can check language.config
// without starting the client.
class TranslateCommand
{
public:
    static int run(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
