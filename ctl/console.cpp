#include "ctl/console.h"

#include "base/Error.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tallyvox {
namespace {

int outputFailure = 0;

void write(std::FILE* file, std::string_view text) {
    // What fails here stays marked in the stream.
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), file));
    static_cast<void>(std::fflush(file));
}

}

void print(std::string_view line) {
    errno = 0;
    write(stdout, std::string(line) + '\n');
    if (std::ferror(stdout) != 0 && outputFailure == 0)
        outputFailure = errno;
}

void diagnose(std::string_view line) { write(stderr, std::string(line) + '\n'); }

void complain(std::string_view line) { diagnose("tallyvoxctl: " + std::string(line)); }

void checkOutput() {
    if (std::ferror(stdout) == 0)
        return;
    throw Error(
        "Output", outputFailure,
        "Cannot write to standard output: " + std::generic_category().message(outputFailure) + ".");
}

bool watched() {
    const char* kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && isatty(STDERR_FILENO) != 0 && kind != nullptr &&
           std::string_view(kind) != "dumb";
}

void LiveLine::show(std::string_view text) {
    if (!watched())
        return;
    write(stderr, std::string("\r").append(text).append("\033[K"));
    shown_ = true;
}

void LiveLine::clear() {
    if (shown_)
        write(stderr, "\r\033[K");
    shown_ = false;
}

}
