#include <cstdio>
#include <string_view>

#include "app/Version.h"

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--version") {
        std::printf("%.*s\n", static_cast<int>(jk::kVersionText.size()), jk::kVersionText.data());
        return 0;
    }
    return 0;
}
