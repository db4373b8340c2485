// A download manager for tests: takes transfers through COM, writes down what it received, and downloads it.
//
//     zab_manager --register | --unregister    once per machine (Wine prefix)
//     zab_manager -Embedding                   as COM starts it
#include <cstdio>
#include <cstring>

#include "server.h"

int main(int count, char** arguments) {
    using namespace zab::testbed;
    const struct {
        const char* argument;
        int (*run)();
    } kModes[] = {{"--register", registerServer}, {"--unregister", unregisterServer}, {"-Embedding", serve}};
    for (const auto& mode : kModes)
        if (count == 2 && std::strcmp(arguments[1], mode.argument) == 0) return mode.run();
    std::fprintf(stderr, "usage: zab_manager --register | --unregister | -Embedding\n");
    return 2;
}
