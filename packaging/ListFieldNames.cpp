// Prints the name of every section and field of the setup record, one a line
// ("camera", "camera.title"), for the shell completion of the command line.
// The build runs it, so the completion follows the field table by itself.

#include "setup/FieldTable.h"

#include <cstdio>

int main()
{
    for (const setup::FieldGroup &group : setup::FieldTable::groups()) {
        std::printf("%s\n", group.key);
        for (const setup::FieldInfo &field : group.fields)
            std::printf("%s.%s\n", group.key, field.name);
    }
    return 0;
}
