// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace cli {

// What scripts can rely on: 0 success, 1 refused by the recorder or by a
// check of an input file, 2 a usage error or an unreadable input file,
// 3 no session (connection failed, timed out or was lost).
enum ExitCode : int {
    Success = 0,
    Refused = 1,
    Differs = 1, // diff: the setups differ
    UsageError = 2,
    NoSession = 3,
};

} // namespace cli
