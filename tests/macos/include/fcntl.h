#pragma once

// A double, see CoreFoundation/CoreFoundation.h. No system but a Mac's takes this command.

#include_next <fcntl.h>

#define F_NOCACHE 48
