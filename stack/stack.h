#pragma once

// Gathers the stack layer for users of the library.

#include "stack/opcua_builtintype.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_namespacetable.h"
#include "stack/opcua_nesting.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_proxystubconfiguration.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_scalars.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"
