#include <legacy/oru/types.h>

#include "typetext.h"
