#pragma once

// A double, see CoreFoundation/CoreFoundation.h.

extern "C" {
int* _NSGetArgc(void);
char*** _NSGetArgv(void);
}
