// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/HostsFile.h"

#include <QString>

#include <optional>
#include <vector>

namespace cli {

class CommandContext;

// What a fleet prints about its recorders. As text: each recorder's output
// lines prefixed with its address and label, then its result line, as soon
// as it finishes. With --json: one JSON object a line per recorder (host,
// label, exit code, outcome, the command's own JSON as its result, the last
// message when it failed), in hosts-file order, so a line waits for the
// recorders above it. Both end with a summary of the outcomes.
class FleetReport
{
public:
    // `drift`: the command is diff against one setup, whose exit code 1
    // means "differs", not "refused".
    FleetReport(const CommandContext &context, int recorders, bool drift);

    // Recorder `index` of the hosts file has finished.
    void finished(int index, const HostEntry &host, int code, const QString &out,
                  const QString &err);
    void printSummary();

private:
    struct Result
    {
        HostEntry host;
        int code = 0;
        QString out;
        QString err;
    };

    // Prints a result, then keeps only what the summary needs.
    void printed(Result &result);
    void printText(const Result &result);
    void printJson(const Result &result);

    const CommandContext &m_context;
    std::vector<std::optional<Result>> m_results;
    // JSON: the first recorder whose line is not printed yet.
    std::size_t m_printed = 0;
    bool m_drift;
};

} // namespace cli
