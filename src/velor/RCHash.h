// The hash that picks the ids of description resources from the names of types and instances.
#pragma once

// A 64-bit result, usually in 1 .. 2^31 - 1 but negative for some long texts; callers cut it to a
// 16-bit resource id. A length of 0 or below hashes nothing and gives 2147483647.
long RCHash(void const* data, int length);
