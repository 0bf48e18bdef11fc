#pragma once

#include "platform/types.h"

// The system's sockets as a whole. Called by the start and the end of the network module alone.

/// Makes the system's sockets usable. A bad status when it can't; nothing is to be stopped then.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_SocketLibrary_Start();

/// Takes a start back.
void OpcUa_P_SocketLibrary_Stop();
