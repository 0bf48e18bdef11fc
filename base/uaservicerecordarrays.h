#pragma once

#include "base/uaservicerecordarray.h"
#include "stack/opcua_addnodesresult.h"
#include "stack/opcua_browsedescription.h"
#include "stack/opcua_browsepath.h"
#include "stack/opcua_browsepathresult.h"
#include "stack/opcua_browsepathtarget.h"
#include "stack/opcua_browseresult.h"
#include "stack/opcua_callmethodrequest.h"
#include "stack/opcua_callmethodresult.h"
#include "stack/opcua_eventfieldlist.h"
#include "stack/opcua_historyreadresult.h"
#include "stack/opcua_historyreadvalueid.h"
#include "stack/opcua_historyupdateresult.h"
#include "stack/opcua_modificationinfo.h"
#include "stack/opcua_monitoreditemcreaterequest.h"
#include "stack/opcua_monitoreditemcreateresult.h"
#include "stack/opcua_monitoreditemmodifyrequest.h"
#include "stack/opcua_monitoreditemmodifyresult.h"
#include "stack/opcua_monitoreditemnotification.h"
#include "stack/opcua_nodetypedescription.h"
#include "stack/opcua_parsingresult.h"
#include "stack/opcua_querydataset.h"
#include "stack/opcua_readvalueid.h"
#include "stack/opcua_referencedescription.h"
#include "stack/opcua_relativepathelement.h"
#include "stack/opcua_simpleattributeoperand.h"
#include "stack/opcua_writevalue.h"

// The arrays over the records of services. All of them are the one pattern of UaServiceRecordArray;
// they are classes of their own so that a header can declare one by its name alone.

/// Elements of type OpcUa_AddNodesResult.
class UaAddNodesResults final : public UaServiceRecordArray<OpcUa_AddNodesResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_BrowseDescription.
class UaBrowseDescriptions final : public UaServiceRecordArray<OpcUa_BrowseDescription>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_BrowsePathResult.
class UaBrowsePathResults final : public UaServiceRecordArray<OpcUa_BrowsePathResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_BrowsePathTarget.
class UaBrowsePathTargets final : public UaServiceRecordArray<OpcUa_BrowsePathTarget>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_BrowsePath.
class UaBrowsePaths final : public UaServiceRecordArray<OpcUa_BrowsePath>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_BrowseResult.
class UaBrowseResults final : public UaServiceRecordArray<OpcUa_BrowseResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_CallMethodRequest.
class UaCallMethodRequests final : public UaServiceRecordArray<OpcUa_CallMethodRequest>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_CallMethodResult.
class UaCallMethodResults final : public UaServiceRecordArray<OpcUa_CallMethodResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_EventFieldList.
class UaEventFieldLists final : public UaServiceRecordArray<OpcUa_EventFieldList>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_HistoryReadResult.
class UaHistoryReadResults final : public UaServiceRecordArray<OpcUa_HistoryReadResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_HistoryReadValueId.
class UaHistoryReadValueIds final : public UaServiceRecordArray<OpcUa_HistoryReadValueId>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_HistoryUpdateResult.
class UaHistoryUpdateResults final : public UaServiceRecordArray<OpcUa_HistoryUpdateResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_ModificationInfo.
class UaModificationInfos final : public UaServiceRecordArray<OpcUa_ModificationInfo>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_MonitoredItemCreateRequest.
class UaMonitoredItemCreateRequests final
    : public UaServiceRecordArray<OpcUa_MonitoredItemCreateRequest>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_MonitoredItemCreateResult.
class UaMonitoredItemCreateResults final
    : public UaServiceRecordArray<OpcUa_MonitoredItemCreateResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_MonitoredItemModifyRequest.
class UaMonitoredItemModifyRequests final
    : public UaServiceRecordArray<OpcUa_MonitoredItemModifyRequest>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_MonitoredItemModifyResult.
class UaMonitoredItemModifyResults final
    : public UaServiceRecordArray<OpcUa_MonitoredItemModifyResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_MonitoredItemNotification.
class UaMonitoredItemNotifications final
    : public UaServiceRecordArray<OpcUa_MonitoredItemNotification>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_NodeTypeDescription.
class UaNodeTypeDescriptions final : public UaServiceRecordArray<OpcUa_NodeTypeDescription>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_ParsingResult.
class UaParsingResults final : public UaServiceRecordArray<OpcUa_ParsingResult>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_QueryDataSet.
class UaQueryDataSets final : public UaServiceRecordArray<OpcUa_QueryDataSet>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_ReadValueId.
class UaReadValueIds final : public UaServiceRecordArray<OpcUa_ReadValueId>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_ReferenceDescription.
class UaReferenceDescriptions final : public UaServiceRecordArray<OpcUa_ReferenceDescription>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_RelativePathElement.
class UaRelativePathElements final : public UaServiceRecordArray<OpcUa_RelativePathElement>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_SimpleAttributeOperand.
class UaSimpleAttributeOperands final : public UaServiceRecordArray<OpcUa_SimpleAttributeOperand>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};

/// Elements of type OpcUa_WriteValue.
class UaWriteValues final : public UaServiceRecordArray<OpcUa_WriteValue>
{
public:
    using UaServiceRecordArray::UaServiceRecordArray;
};
