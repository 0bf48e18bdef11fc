#pragma once

// The services below the value classes: timers, crypto provider, system random source, trace. The
// timers stop first, so that their kill callbacks can still trace.

/// Starts every service; 0, or -1 at the first one that fails. What had started by then keeps
/// running until stopPlatform().
int startPlatform();

/// Stops every service.
void stopPlatform();
