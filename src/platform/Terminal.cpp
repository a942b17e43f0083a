#include "platform/Terminal.h"

#include <unistd.h>

namespace jk {

bool StderrIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

}  // namespace jk
