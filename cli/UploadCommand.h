// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// upload [--deadline S] PACKAGE: checks a firmware package, then sends it
// to the recorder with the same uploader the window's Update page uses. The
// transfer as a whole ends after the deadline, so that a recorder that asks
// for tiny chunks cannot hold a fleet for hours.
class UploadCommand
{
public:
    static constexpr int DefaultDeadlineSeconds = 3600;
    static constexpr int MaxDeadlineSeconds = 7 * 24 * 3600;

    // The arguments and the package, checked without a recorder: Success,
    // or the exit code with its message printed.
    static int check(const CommandContext &context, const QStringList &arguments);
    static int run(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
