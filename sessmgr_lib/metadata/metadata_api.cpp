// Metadata-source operations: create, open, close, delete, enumerate,
// configure, information, statistics and control. Each is a RequestTraits
// declaration plus the build and copy-back steps the request engine runs
// under the API mutex; the configuration rules live in metadata_config.cpp.
#include <algorithm>
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "metadata_internal.h"
#include "object_selectors.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::FailureLastError;
using smgr::MetaDataHandles;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SequenceOrder;
using smgr::SuccessTest;

constexpr size_t kCreateDescriptionSize = 170;
constexpr size_t kConfigureDescriptionSize = 80;

// Responses of Result alone, bare result as last error; 0 or a warning succeeds.
constexpr RequestTraits BareTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                   size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// Responses with the daemon's description, kept with a failure.
constexpr RequestTraits DescribedTraits(const char* szOperation, WORD wRequest, const char* szSendFailure) {
  RequestTraits traits{szOperation, wRequest};
  traits.failureLastError = FailureLastError::ResultWithDescription;
  traits.szSendFailureTrace = szSendFailure;
  return traits;
}

constexpr RequestTraits kCreateTraits = [] {
  RequestTraits traits =
      DescribedTraits("SessMgr_CreateMetaDataSource", SMGRPROT_METADATA_CREATE_REQ,
                      "Failed to send create stream request to sessmgrd, errno (%d):%s.\n");
  traits.nDescriptionOffset = offsetof(SMGRPROT_MSG_METADATA_CREATE_RSP, Data.szErrorDescription);
  traits.nMinResponseSize = traits.nDescriptionOffset;  // the ID and the name
  return traits;
}();
constexpr RequestTraits kConfigureTraits =
    DescribedTraits("SessMgr_ConfigureMetaDataSource", SMGRPROT_METADATA_SETCFG_REQ,
                    "Failed to send metadata config request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStartTraits =
    DescribedTraits("SessMgr_StartMetaDataSource", SMGRPROT_METADATA_START_REQ,
                    "Failed to send start metadata source request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kOpenTraits = [] {
  RequestTraits traits =
      BareTraits("SessMgr_OpenMetaDataSource", SMGRPROT_METADATA_OPEN_REQ,
                 "Failed to send open metadata source request to sessmgrd, errno (%d):%s.\n",
                 offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo.in));
  traits.success = SuccessTest::ExactlyZero;
  return traits;
}();
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      BareTraits("SessMgr_EnumerateMetaDataSources", SMGRPROT_METADATA_ENUMERATE_REQ,
                 "Failed to send metadata source enumeration request to sessmgrd, errno (%d):%s.\n");
  traits.success = SuccessTest::ExactlyZero;
  return traits;
}();
constexpr RequestTraits kCloseTraits = [] {
  RequestTraits traits =
      BareTraits("SessMgr_CloseMetaDataSource", SMGRPROT_METADATA_CLOSE_REQ,
                 "Failed to send close metadata source request to sessmgrd, errno (%d):%s.\n");
  traits.sequenceOrder = SequenceOrder::BeforeLock;
  return traits;
}();
constexpr RequestTraits kDeleteTraits =
    BareTraits("SessMgr_DeleteMetaDataSource", SMGRPROT_METADATA_DELETE_REQ,
               "Failed to send delete metadata source request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStopTraits =
    BareTraits("SessMgr_StopMetaDataSource", SMGRPROT_METADATA_STOP_REQ,
               "Failed to send stop metadata source request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kResetStatsTraits =
    BareTraits("SessMgr_ResetMetaDataSourceStats", SMGRPROT_METADATA_RESETSTATS_REQ,
               "Failed to send metadata source resetstats request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kGetInfoTraits =
    BareTraits("SessMgr_GetMetaDataSourceInfo", SMGRPROT_METADATA_GETINFO_REQ,
               "Failed to send metadata source getinfo request to sessmgrd, errno (%d):%s.\n",
               offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo) + sizeof(uint32_t));
constexpr RequestTraits kGetStatsTraits =
    BareTraits("SessMgr_GetMetaDataSourceStats", SMGRPROT_METADATA_GETSTATS_REQ,
               "Failed to send metadata source getstats request to sessmgrd, errno (%d):%s.\n",
               offsetof(SMGRPROT_MSG_METADATA_GETSTATS_RSP, Data.MetaDataStats) + sizeof(uint32_t));

constexpr auto kResolveMetaDataHandle = [](HSMGR hHandle, int* pID) {
  return MetaDataHandles::ResolveId(hHandle, pID);
};

const char* SelectorText(const SMGR_OBJECT_SELECTOR* pSelector, char* szBuffer, size_t nSize) {
  if (pSelector == nullptr) return CopyString(szBuffer, "NULL", nSize);
  return GetObjectSelectorInfoText(pSelector, szBuffer, nSize);
}

BOOL NotInitialised(const char* szOperation) {
  SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
  SMGR_TRACE_AS(szOperation, 5, "Done (returning FALSE).\n");
  return FALSE;
}

void TraceCall(const char* szOperation, const SMGR_OBJECT_SELECTOR* pSelector) {
  if (!SMGR_TRACE_ENABLED(5)) return;
  char szSelector[80];
  SMGR_TRACE_AS(szOperation, 5, "Called (pSelector=%p [%s]).\n", static_cast<const void*>(pSelector),
                SelectorText(pSelector, szSelector, sizeof(szSelector)));
}

// The operations whose request carries one selector.
BOOL SelectorRequest(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                     smgr::SelectorKinds accepted, smgr::CopyBackStep copyBack = nullptr,
                     bool bOtherArgumentsValid = true) {
  TraceCall(traits.szOperation, pSelector);
  return smgr::SelectorTransact(traits, pSelector, accepted, kResolveMetaDataHandle, copyBack,
                                bOtherArgumentsValid);
}

// Copies a record with the nSize negotiation; returns the bytes copied.
bool CopyNegotiated(const ResponseView& response, size_t nOffset, void* pvRecord, SMGR_RESULT* pLastError,
                    uint32_t* pnCopied) {
  uint32_t nReturned = 0;
  if (!response.read(nOffset, &nReturned)) {
    *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
    return false;
  }
  uint32_t nRequested = 0;
  std::memcpy(&nRequested, pvRecord, sizeof(nRequested));
  const uint32_t nCopied =
      static_cast<uint32_t>(smgr::CopyRecordBack(response, nOffset, nReturned, pvRecord, nRequested));
  if (nRequested >= sizeof(nCopied)) std::memcpy(pvRecord, &nCopied, sizeof(nCopied));
  *pnCopied = nCopied;
  return true;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::MetaDataHandles, CleanupSessMgrMetaData)

extern "C" {

SMGR_API void CleanupSessMgrMetaData(void) { MetaDataHandles::Cleanup(); }

SMGR_API BOOL SessMgr_CreateMetaDataSource(const SMGR_METADATA_CFG* pCfg, HMETADATA* phDataSrc) {
  SMGR_TRACE(5, "Called (pCfg=%p, phDataSrc=%p).\n", static_cast<const void*>(pCfg),
             static_cast<void*>(phDataSrc));
  SMGR_ASSERT(pCfg != NULL);
  SMGR_METADATA_HANDLE* pHandle = nullptr;
  bool bLinked = false;
  SMGRPROT_MSG_METADATA_CREATE_REQ request{};
  const bool bValid = pCfg != nullptr && phDataSrc != nullptr && pCfg->nSize >= sizeof(SMGR_METADATA_CFG);
  const BOOL bResult = smgr::Transact(
      kCreateTraits, &request, sizeof(request), bValid,
      [&](void*) {
        SMGR_METADATA_CFG& cfg = request.Data.MetaDataCfg;
        std::memcpy(&cfg, pCfg, sizeof(cfg));  // the caller's record stays as it was
        if (MetaDataHandles::LocateByIdentity([&](SMGR_METADATA_HANDLE& handle) {
              return AreMetaDataSrcConfigsIdentical(&handle.Config, &cfg) != FALSE;
            }) != nullptr)
          return false;  // last error 7, nothing sent
        if (!MetaDataHandles::Alloc(&pHandle, cfg.nIndex, nullptr)) {
          SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
          return false;
        }
        pHandle->Config = cfg;
        if (!smgr::PrepareMetaDataConfig(kCreateTraits.szOperation, &cfg, smgr::kAllPrepareSteps,
                                         kCreateDescriptionSize))
          return false;
        _PrintMetaDataSourceCreationCfg(&cfg);
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGRPROT_MSG_METADATA_CREATE_RSP answer{};
        response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
        pHandle->Config.nIndex = answer.Data.iMetaDataID;
        CopyString(pHandle->Config.szName, answer.Data.szName, sizeof(pHandle->Config.szName));
        MetaDataHandles::Link(pHandle);
        bLinked = true;
        *phDataSrc = pHandle;
        return true;
      });
  if (!bLinked) MetaDataHandles::Free(pHandle, false);  // private to this call: never linked
  return bResult;
}

SMGR_API BOOL SessMgr_GetMetaDataSourceID(HMETADATA hDataSrc, int* pID) {
  SMGR_ASSERT(hDataSrc != NULL);
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  SMGR_METADATA_HANDLE* pHandle = nullptr;
  if (pID == nullptr || hDataSrc == nullptr || !MetaDataHandles::IsValid(hDataSrc, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  *pID = pHandle->Config.nIndex;
  return TRUE;
}

SMGR_API BOOL SessMgr_OpenMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector, HMETADATA* phDataSrc) {
  TraceCall(kOpenTraits.szOperation, pSelector);
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kOpenTraits.szOperation);
  smgr::ApiLock lock;  // held across the request, so that two threads opening one source share a handle
  if (pSelector == nullptr || phDataSrc == nullptr) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  if (SMGR_METADATA_HANDLE* pExisting = MetaDataHandles::LocateBySelector(pSelector)) {
    ++pExisting->nRefCount;
    *phDataSrc = pExisting;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    return TRUE;
  }
  if (pSelector->enType != SMGR_SELECTBY_OBJECT_ID &&
      (pSelector->enType != SMGR_SELECTBY_OBJECT_NAME || pSelector->Via.szName == nullptr)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  SMGR_METADATA_HANDLE* pHandle = nullptr;
  const bool bById = pSelector->enType == SMGR_SELECTBY_OBJECT_ID;
  if (!MetaDataHandles::Alloc(&pHandle, bById ? pSelector->Via.ID : 0,
                              bById ? nullptr : pSelector->Via.szName)) {
    SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
    return FALSE;
  }
  bool bLinked = false;
  SMGRPROT_MSG_METADATA_SELECT_REQ request{};
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true,
      [&](void*) {
        return smgr::TranslateSelector(kOpenTraits.szOperation, *pSelector, smgr::kIdOrName, nullptr,
                                       &request.Data.Select);
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGR_METADATA_INFO info{};
        response.copyOut(offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo), sizeof(info), &info,
                         sizeof(info));
        smgr::_CopyInfoToConfig(&info, &pHandle->Config);
        MetaDataHandles::Link(pHandle);
        bLinked = true;
        *phDataSrc = pHandle;
        SMGR_TRACE_AS(kOpenTraits.szOperation, 6, "Opened metadata source OK.\n");
        return true;
      });
  if (!bLinked) {
    if (SMGR_TRACE_ENABLED(6) && SessMgr_GetLastError() != SMGR_ERROR_SUCCESS)
      SMGR_TRACE(6, "Got error response (Result=%lu).\n", static_cast<unsigned long>(SessMgr_GetLastError()));
    MetaDataHandles::Free(pHandle, false);
  }
  return bResult;
}

SMGR_API BOOL SessMgr_CloseMetaDataSource(HMETADATA* phDataSrc) {
  SMGR_TRACE(5, "Called (phDataSrc=%p).\n", static_cast<void*>(phDataSrc));
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kCloseTraits.szOperation);
  SMGR_METADATA_HANDLE* pHandle = nullptr;
  if (phDataSrc == nullptr || *phDataSrc == nullptr || !MetaDataHandles::IsValid(*phDataSrc, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  *phDataSrc = nullptr;
  SMGRPROT_MSG_METADATA_CLOSE_REQ request{};
  request.Data.iMetaDataID =
      pHandle->Config.nIndex;  // built before locking; the engine takes the sequence too
  return smgr::Transact(kCloseTraits, &request, sizeof(request), true, [&](void*) {
    MetaDataHandles::Free(pHandle, true);  // the daemon sees one close per Close call
    return true;
  });
}

SMGR_API BOOL SessMgr_DeleteMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kDeleteTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_StartMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStartTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_StopMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStopTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ResetMetaDataSourceStats(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kResetStatsTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ConfigureMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector,
                                              const SMGR_METADATA_CFG* pCfg) {
  TraceCall(kConfigureTraits.szOperation, pSelector);
  SMGRPROT_MSG_METADATA_SETCFG_REQ request{};
  return smgr::Transact(
      kConfigureTraits, &request, sizeof(request), pSelector != nullptr && pCfg != nullptr, [&](void*) {
        if (!smgr::TranslateSelector(kConfigureTraits.szOperation, *pSelector, smgr::kIdOrName, nullptr,
                                     &request.Data.Select))
          return false;
        SMGR_METADATA_CFG& cfg = request.Data.Config;
        std::memcpy(&cfg, pCfg, std::min<size_t>(pCfg->nSize, sizeof(cfg)));  // zeros past an older record
        if (!smgr::PrepareMetaDataConfig(kConfigureTraits.szOperation, &cfg,
                                         smgr::ConfigurePrepareSteps(cfg.SetFieldsFlag),
                                         kConfigureDescriptionSize))
          return false;
        _PrintMetaDataSourceCfg(&cfg);
        return true;
      });
}

SMGR_API BOOL SessMgr_GetMetaDataSourceInfo(const SMGR_OBJECT_SELECTOR* pSelector,
                                            SMGR_METADATA_INFO* pInfo) {
  return SelectorRequest(
      kGetInfoTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        uint32_t nCopied = 0;
        if (!CopyNegotiated(response, offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo), pInfo,
                            pLastError, &nCopied))
          return false;
        if (nCopied >= sizeof(SMGR_METADATA_INFO)) _PrintMetaDataSourceInfo(pInfo);
        return true;
      },
      pInfo != nullptr);
}

SMGR_API BOOL SessMgr_GetMetaDataSourceStats(const SMGR_OBJECT_SELECTOR* pSelector,
                                             SMGR_METADATA_STATS* pStats) {
  uint32_t nCopied = 0;
  const bool bValid = pStats != nullptr && pStats->nSize >= sizeof(SMGR_METADATA_STATS);
  const BOOL bResult = SelectorRequest(
      kGetStatsTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiated(response, offsetof(SMGRPROT_MSG_METADATA_GETSTATS_RSP, Data.MetaDataStats),
                              pStats, pLastError, &nCopied);
      },
      bValid);
  // Sorted unlocked, on the caller's copy; only the entries the copy holds.
  if (bResult && nCopied >= offsetof(SMGR_METADATA_STATS, format.CoT.aszSensorUIDs) &&
      pStats->enInputFormat == SMGR_METADATA_IN_FORMAT_COT) {
    const size_t nHeld =
        (nCopied - offsetof(SMGR_METADATA_STATS, format.CoT.aszSensorUIDs)) / SMGR_METADATA_SENSOR_UID_SIZE;
    smgr::SortSensorUIDs(&pStats->format.CoT, static_cast<uint32_t>(std::min<size_t>(
                                                  pStats->format.CoT.nDiscoveredSensorsCount, nHeld)));
  }
  return bResult;
}

SMGR_API BOOL SessMgr_EnumerateMetaDataSources(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                               UINT* pnTotalItemCount, UINT* pnReturnedItems,
                                               size_t* pnItemSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  SMGRPROT_MSG_METADATA_ENUMERATE_REQ request{};
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotalItemCount, pnReturnedItems, pnItemSize};
  return smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        // One item per call however large the buffer.
        request.Data.nNumOfItems = static_cast<uint32_t>(
            std::min<int32_t>(smgr::PagedRequestCount(nBuffSize, sizeof(SMGR_METADATA_INFO)), 1));
        request.Data.nStartOffset = nOffset;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
}

SMGR_API BOOL SessMgr_GetMetaDataSourceNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize) {
  SMGR_TRACE(5, "Called (nOffset=%u, szBuffer=%p, nSize=%zu).\n", nOffset, static_cast<void*>(szBuffer),
             nSize);
  SMGR_METADATA_INFO info{};
  UINT nReturned = 0;
  if (!SessMgr_EnumerateMetaDataSources(&info, sizeof(info), nOffset, nullptr, &nReturned, nullptr)) {
    SMGR_TRACE(3, "Error getting metadata source name for ID %d.\n", static_cast<int>(nOffset));
    return FALSE;
  }
  if (nReturned != 1) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
    return FALSE;
  }
  if (szBuffer != nullptr) CopyString(szBuffer, info.szName, nSize);
  return TRUE;
}

}  // extern "C"
