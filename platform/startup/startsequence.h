#pragma once

// The services below the value classes in the order in which they start. They stop in the reverse
// order.

/// Starts every service; 0, or -1 at the first one that fails. What had started by then keeps
/// running until stopPlatform().
int startPlatform();

/// Stops every service.
void stopPlatform();
