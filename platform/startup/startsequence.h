#pragma once

struct OpcUa_ProxyStubConfiguration;

// The services below the value classes: timers, crypto provider, system random source, and above them
// the stack with its trace, network module and tables.

/// Starts every service; 0, or -1 at the first one that fails. What had started by then keeps running
/// until stopPlatform(), but for the stack, which takes itself back, and the timers with it.
int startPlatform();

/// Stops every service. The trace ends after the timers, so that their kill callbacks can still trace.
void stopPlatform();

/// The record that the stack is started with: the one set last, or one that leaves every choice to the
/// stack.
[[nodiscard]] OpcUa_ProxyStubConfiguration stackConfiguration();

/// Hands a record to the stack and keeps it for the next start; 0, or -1 when the stack refuses it,
/// which leaves the record as it was.
int setStackConfiguration(const OpcUa_ProxyStubConfiguration& configuration);
