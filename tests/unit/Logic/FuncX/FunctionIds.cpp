// Prints "image <id>" and "string <id>" for everything that the functions can request.
#include <cstdio>

#include "Logic/FuncX/AskedIds.h"

int main() {
    const functest::AskedIds ids = functest::askedIds();
    for (const UINT id : ids.images) {
        std::printf("image %u\n", id);
    }
    for (const UINT id : ids.strings) {
        std::printf("string %u\n", id);
    }
    return 0;
}
