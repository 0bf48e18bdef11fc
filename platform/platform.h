#pragma once

// Gathers the platform layer for users of the library.

#include "platform/allocator.h"
#include "platform/clock.h"
#include "platform/datetime.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/threadid.h"
#include "platform/trace.h"
#include "platform/types.h"
