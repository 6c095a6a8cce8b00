// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// upload PACKAGE: checks a firmware package, then sends it to the recorder
// with the same uploader the window's Update page uses.
class UploadCommand
{
public:
    static int run(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
