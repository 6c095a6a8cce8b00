// SPDX-License-Identifier: GPL-3.0-or-later

// Prints the name of every section and field of the setup record, one a line
// ("camera", "camera.title"), for the shell completion of the command line.
// With --values it prints instead each field that has named values, then
// those names, separated by tabs ("camera.covert\tOff\tOn"); a bit mask's
// names are its bits'. The build runs it, so the completion follows the
// field table by itself.

#include "setup/FieldTable.h"

#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    const bool values = argc == 2 && std::strcmp(argv[1], "--values") == 0;
    for (const setup::FieldGroup &group : setup::FieldTable::groups()) {
        if (!values)
            std::printf("%s\n", group.key);
        for (const setup::FieldInfo &field : group.fields) {
            if (!values) {
                std::printf("%s.%s\n", group.key, field.name);
                continue;
            }
            const auto names = field.valueNames.empty() ? field.bitNames : field.valueNames;
            if (names.empty())
                continue;
            std::printf("%s.%s", group.key, field.name);
            for (const setup::ValueName &name : names)
                std::printf("\t%s", name.name);
            std::printf("\n");
        }
    }
    return 0;
}
