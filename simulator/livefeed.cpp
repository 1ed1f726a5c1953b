#include "simulator/livefeed.h"
