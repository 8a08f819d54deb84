#include "base/standardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace tallyvox {

void occupyStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The wrong way round; what is opened gets the lowest number that is free.
        if (fcntl(descriptor, F_GETFD) == -1)
            static_cast<void>(open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
}

}
