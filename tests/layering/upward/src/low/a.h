// A header of the lower layer that reaches up.
#include "high/b.h"
