#pragma once

/// Whether sixteen bytes are looked at in one step. Each place that does so has a twin byte by byte beside it, which
/// alone is built for other processors, and with LUMIVARA_PLAIN_SCAN for this one.
#if defined(__SSE2__) && !defined(LUMIVARA_PLAIN_SCAN)
#define LUMIVARA_SSE2
#include <emmintrin.h>
#endif
