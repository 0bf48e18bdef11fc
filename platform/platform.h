#pragma once

// Gathers the platform layer for users of the library. The functions of the openssl_ headers are in
// Zandrel::crypto.

#include "platform/addressresolver.h"
#include "platform/allocator.h"
#include "platform/buildinformation.h"
#include "platform/clock.h"
#include "platform/cryptotypes.h"
#include "platform/datetime.h"
#include "platform/mutex.h"
#include "platform/network.h"
#include "platform/openssl_aes.h"
#include "platform/openssl_digest.h"
#include "platform/openssl_provider.h"
#include "platform/openssl_psha.h"
#include "platform/openssl_rsa.h"
#include "platform/semaphore.h"
#include "platform/socketaddress.h"
#include "platform/spinlock.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/thread.h"
#include "platform/threadid.h"
#include "platform/timer.h"
#include "platform/trace.h"
#include "platform/types.h"
#include "platform/url.h"
