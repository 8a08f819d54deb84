#pragma once

#include <cstdint>

namespace tallyvox {

/// Lets this process have `files` more files open at once, as far as the system allows. Throws an
/// `Error` of domain "File", with the system's own number as its code, where it does not.
void allowOpenFiles(std::int64_t files);

}
