#include "base/fatal.h"
#include "model/Model.h"
