// Essence operations: create, open, close, configure, control, information,
// statistics, enumeration and name at index. Each is a RequestTraits
// declaration plus the build and copy-back steps the request engine runs
// under the API mutex.
#include <cstring>

#include "essence_internal.h"
#include "lib_state.h"
#include "lib_trace.h"
#include "object_selectors.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::FailureLastError;
using smgr::PidCheck;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SequenceOrder;
using smgr::SuccessTest;

constexpr size_t kInfoOffset = offsetof(SMGRPROT_MSG_ESSENCE_INFO_RSP, Data.EssenceInfo);
constexpr size_t kStatsOffset = offsetof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP, Data.EssenceStats);

// Warnings succeed; the description is read only where the response has one.
constexpr RequestTraits EssenceTraits(const char* szOperation, WORD wRequest, bool bDescribed,
                                      const char* szSendFailure, size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ZeroOrWarning;
  traits.bResponseHasDescription = bDescribed;
  traits.failureLastError = bDescribed ? FailureLastError::ResultWithDescription : FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr RequestTraits kCreateTraits = [] {
  RequestTraits traits = EssenceTraits("SessMgr_CreateEssence", SMGRPROT_ESSENCE_CREATE_REQ, true,
                                       "Failed to send create essence request to sessmgrd, errno (%d):%s.\n",
                                       sizeof(SMGRPROT_MSG_ESSENCE_CREATE_RSP));
  traits.nDescriptionOffset = offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.szErrorDescription);
  return traits;
}();
constexpr RequestTraits kOpenTraits = [] {
  RequestTraits traits = EssenceTraits("SessMgr_OpenEssence", SMGRPROT_ESSENCE_OPEN_REQ, false,
                                       "Failed to send open essence request to sessmgrd, errno (%d):%s.\n",
                                       sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP));
  traits.success = SuccessTest::ExactlyZero;
  return traits;
}();
constexpr RequestTraits kCloseTraits = [] {
  RequestTraits traits = EssenceTraits("SessMgr_CloseEssence", SMGRPROT_ESSENCE_CLOSE_REQ, false,
                                       "Failed to send close essence request to sessmgrd, errno (%d):%s.\n");
  traits.sequenceOrder = SequenceOrder::BeforeLock;
  return traits;
}();
constexpr RequestTraits kDeleteTraits =
    EssenceTraits("SessMgr_DeleteEssence", SMGRPROT_ESSENCE_DELETE_REQ, false,
                  "Failed to send delete essence request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kConfigureTraits =
    EssenceTraits("SessMgr_ConfigureEssence", SMGRPROT_ESSENCE_SETCFG_REQ, true,
                  "Failed to send configure essence request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStartTraits =
    EssenceTraits("SessMgr_StartEssence", SMGRPROT_ESSENCE_START_REQ, true,
                  "Failed to send start essence request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStopTraits =
    EssenceTraits("SessMgr_StopEssence", SMGRPROT_ESSENCE_STOP_REQ, false,
                  "Failed to send stop essence request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kResetStatsTraits =
    EssenceTraits("SessMgr_ResetEssenceStats", SMGRPROT_ESSENCE_RESETSTATS_REQ, false,
                  "Failed to send essence resetstats request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kGetInfoTraits = EssenceTraits(
    "SessMgr_GetEssenceInfo", SMGRPROT_ESSENCE_GETINFO_REQ, false,
    "Failed to send essence getinfo request to sessmgrd, errno (%d):%s.\n", kInfoOffset + sizeof(uint32_t));
constexpr RequestTraits kGetStatsTraits = EssenceTraits(
    "SessMgr_GetEssenceStats", SMGRPROT_ESSENCE_GETSTATS_REQ, false,
    "Failed to send essence getstats request to sessmgrd, errno (%d):%s.\n", kStatsOffset + sizeof(uint32_t));
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      EssenceTraits("SessMgr_EnumerateEssences", SMGRPROT_ESSENCE_ENUMERATE_REQ, false,
                    "Failed to send essence enumeration request to sessmgrd, errno (%d):%s.\n");
  traits.success = SuccessTest::ExactlyZero;
  traits.pidCheck = PidCheck::BeforeLock;
  return traits;
}();

constexpr auto kResolveEssenceHandle = [](HSMGR hHandle, int* pID) {
  return smgr::EssenceHandles::ResolveId(hHandle, pID);
};

void TraceSelectorCall(const char* szOperation, const SMGR_OBJECT_SELECTOR* pSelector) {
  if (!SMGR_TRACE_ENABLED(5)) return;
  char szSelector[80] = "NULL";
  if (pSelector != nullptr) GetObjectSelectorInfoText(pSelector, szSelector, sizeof(szSelector));
  SMGR_TRACE_AS(szOperation, 5, "Called (pSelector=%p [%s]).\n", static_cast<const void*>(pSelector),
                szSelector);
}

// The operations that carry one selector; copyBack reads what the response adds.
BOOL SelectorRequest(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                     smgr::SelectorKinds accepted, smgr::CopyBackStep copyBack = nullptr,
                     bool bOtherArgumentsValid = true) {
  TraceSelectorCall(traits.szOperation, pSelector);
  return smgr::SelectorTransact(traits, pSelector, accepted, kResolveEssenceHandle, copyBack,
                                bOtherArgumentsValid);
}

// Copies a daemon record over the caller's: min(caller's nSize, returned
// nSize) bytes, the count written back into nSize.
bool CopyNegotiated(const ResponseView& response, size_t nOffset, void* pvRecord, SMGR_RESULT* pLastError) {
  uint32_t nReturned = 0;
  if (!response.read(nOffset, &nReturned)) {
    *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
    return false;
  }
  uint32_t nRequested = 0;
  std::memcpy(&nRequested, pvRecord, sizeof(nRequested));
  const auto nCopied =
      static_cast<uint32_t>(smgr::CopyRecordBack(response, nOffset, nReturned, pvRecord, nRequested));
  if (nRequested >= sizeof(nCopied)) std::memcpy(pvRecord, &nCopied, sizeof(nCopied));
  return true;
}

// An opened handle's configuration from the daemon's information: media by
// type; nInputChannel, nRTPPayload and SourceAddress stay 0.
void _CopyInfoToConfig(const SMGR_ESSENCE_INFO& info, SMGR_ESSENCE_CFG* pCfg) {
  pCfg->SetFieldsFlag = 0;
  pCfg->nSize = sizeof(SMGR_ESSENCE_CFG);
  pCfg->nIndex = info.nIndex;
  CopyString(pCfg->szName, info.szName, sizeof(pCfg->szName));
  pCfg->bAutoStart = info.bAutoStart;
  pCfg->enMediaType = info.enMediaType;
  if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    pCfg->Media.Video.enInputFormat = info.Media.Video.enInputFormat;
  } else if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO) {
    pCfg->Media.Audio.nNumOfChannels = info.Media.Audio.nNumOfChannels;
    pCfg->Media.Audio.enPacketTime = info.Media.Audio.enPacketTime;
  }
  pCfg->Address = info.Address;
  pCfg->usPort = info.usPort;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::EssenceHandles, CleanupSessMgrEssences)

extern "C" {

SMGR_API void CleanupSessMgrEssences(void) { smgr::EssenceHandles::Cleanup(); }

SMGR_API BOOL SessMgr_CreateEssence(const SMGR_ESSENCE_CFG* pCfg, HESSENCE* phEssence) {
  SMGR_TRACE(5, "Called (pCfg=%p, phEssence=%p).\n", static_cast<const void*>(pCfg),
             static_cast<void*>(phEssence));
  SMGR_ASSERT(pCfg != NULL);
  SMGR_ESSENCE_HANDLE* pHandle = nullptr;
  bool bLinked = false;
  SMGRPROT_MSG_ESSENCE_CREATE_REQ request{};
  const bool bValid = pCfg != nullptr && phEssence != nullptr && pCfg->nSize >= sizeof(SMGR_ESSENCE_CFG);
  const BOOL bResult = smgr::Transact(
      kCreateTraits, &request, sizeof(request), bValid,
      [&](void*) {
        SMGR_ESSENCE_CFG& cfg = request.Data.EssenceCfg;
        std::memcpy(&cfg, pCfg, sizeof(cfg));                       // sent as given
        if (_LocateEssenceByConfig(&cfg) != nullptr) return false;  // last error 7, nothing sent
        if (!smgr::EssenceHandles::Alloc(&pHandle, cfg.nIndex, nullptr)) {
          SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
          return false;
        }
        pHandle->Config = cfg;
        _PrintEssenceCfg(&cfg);
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGRPROT_MSG_ESSENCE_CREATE_RSP answer{};
        response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
        pHandle->Config.nIndex = answer.Data.iEssenceID;
        CopyString(pHandle->Config.szName, answer.Data.szName, sizeof(pHandle->Config.szName));
        smgr::EssenceHandles::Link(pHandle);
        bLinked = true;
        *phEssence = pHandle;
        return true;  // the Result, a warning included, becomes the last error
      });
  if (!bLinked) smgr::EssenceHandles::Free(pHandle, false);  // private to this call: never linked
  if (bLinked) SMGR_TRACE(5, "Done (returning TRUE), essence ID=%d.\n", (*phEssence)->Config.nIndex);
  return bResult;
}

SMGR_API BOOL SessMgr_GetEssenceID(HESSENCE hEssence, int* pID) {
  SMGR_ASSERT(hEssence != NULL);
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  SMGR_ESSENCE_HANDLE* pHandle = nullptr;
  if (pID == nullptr || hEssence == nullptr || !smgr::EssenceHandles::IsValid(hEssence, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  *pID = pHandle->Config.nIndex;
  return TRUE;
}

SMGR_API BOOL SessMgr_OpenEssence(const SMGR_OBJECT_SELECTOR* pSelector, HESSENCE* phEssence) {
  TraceSelectorCall(kOpenTraits.szOperation, pSelector);
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  // Held across the request too, so that two threads opening one essence share a handle.
  smgr::ApiLock lock;
  if (pSelector == nullptr || phEssence == nullptr) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  if (SMGR_ESSENCE_HANDLE* pExisting = smgr::EssenceHandles::LocateBySelector(pSelector)) {
    ++pExisting->nRefCount;
    SMGR_TRACE(6, "Handle 0x%x for essence %d reference count now at %d.\n",
               static_cast<unsigned>(reinterpret_cast<uintptr_t>(pExisting)), pExisting->Config.nIndex,
               pExisting->nRefCount);
    *phEssence = pExisting;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    return TRUE;
  }
  if (pSelector->enType != SMGR_SELECTBY_OBJECT_ID &&
      (pSelector->enType != SMGR_SELECTBY_OBJECT_NAME || pSelector->Via.szName == nullptr)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  SMGR_ESSENCE_HANDLE* pHandle = nullptr;
  if (!smgr::EssenceHandles::Alloc(&pHandle, 0, nullptr)) {
    SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
    return FALSE;
  }
  bool bLinked = false;
  SMGRPROT_MSG_ESSENCE_SELECT_REQ request{};
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true,
      [&](void*) {
        return smgr::TranslateSelector(kOpenTraits.szOperation, *pSelector, smgr::kIdOrName, nullptr,
                                       &request.Data.Select);
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGR_ESSENCE_INFO info{};
        response.copyOut(kInfoOffset, sizeof(info), &info, sizeof(info));
        _CopyInfoToConfig(info, &pHandle->Config);
        smgr::EssenceHandles::Link(pHandle);
        bLinked = true;
        *phEssence = pHandle;
        SMGR_TRACE_AS(kOpenTraits.szOperation, 6, "Opened essence id=%d.\n", pHandle->Config.nIndex);
        return true;
      });
  if (!bLinked) smgr::EssenceHandles::Free(pHandle, false);
  return bResult;
}

SMGR_API BOOL SessMgr_CloseEssence(HESSENCE* phEssence) {
  SMGR_TRACE(5, "Called (phEssence=%p).\n", static_cast<void*>(phEssence));
  SMGR_ASSERT(phEssence != NULL);
  if (phEssence != nullptr) SMGR_ASSERT(*phEssence != NULL);
  // The sequence number is taken before the lock; the handle is checked and
  // released under it.
  SMGRPROT_MSG_ESSENCE_CLOSE_REQ request{};
  return smgr::Transact(
      kCloseTraits, &request, sizeof(request), phEssence != nullptr && *phEssence != nullptr, [&](void*) {
        SMGR_ESSENCE_HANDLE* pHandle = nullptr;
        if (!smgr::EssenceHandles::IsValid(*phEssence, &pHandle)) {
          SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
          return false;
        }
        *phEssence = nullptr;  // cleared before anything is sent, whatever the outcome
        request.Data.iEssenceID = pHandle->Config.nIndex;
        SMGR_TRACE_AS(kCloseTraits.szOperation, 6, "Closing essence id=%d.\n", pHandle->Config.nIndex);
        smgr::EssenceHandles::Free(pHandle, true);  // the daemon sees one close per Close call
        return true;
      });
}

SMGR_API BOOL SessMgr_DeleteEssence(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kDeleteTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_StartEssence(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStartTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_StopEssence(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStopTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ResetEssenceStats(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kResetStatsTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ConfigureEssence(const SMGR_OBJECT_SELECTOR* pSelector, const SMGR_ESSENCE_CFG* pCfg) {
  TraceSelectorCall(kConfigureTraits.szOperation, pSelector);
  SMGRPROT_MSG_ESSENCE_SETCFG_REQ request{};
  return smgr::Transact(
      kConfigureTraits, &request, sizeof(request), pSelector != nullptr && pCfg != nullptr, [&](void*) {
        if (!smgr::TranslateSelector(kConfigureTraits.szOperation, *pSelector, smgr::kIdOrName,
                                     kResolveEssenceHandle, &request.Data.Select))
          return false;
        // An older, shorter caller record gets zeros in the newer fields.
        const size_t nTaken = pCfg->nSize < sizeof(SMGR_ESSENCE_CFG) ? pCfg->nSize : sizeof(SMGR_ESSENCE_CFG);
        std::memcpy(&request.Data.Config, pCfg, nTaken);
        _PrintEssenceSetFields(&request.Data.Config);
        return true;
      });
}

SMGR_API BOOL SessMgr_GetEssenceInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ESSENCE_INFO* pInfo) {
  return SelectorRequest(
      kGetInfoTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiated(response, kInfoOffset, pInfo, pLastError);
      },
      pInfo != nullptr);
}

SMGR_API BOOL SessMgr_GetEssenceStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ESSENCE_STATS* pStats) {
  return SelectorRequest(
      kGetStatsTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiated(response, kStatsOffset, pStats, pLastError);
      },
      pStats != nullptr && pStats->nSize >= sizeof(SMGR_ESSENCE_STATS));
}

SMGR_API BOOL SessMgr_EnumerateEssences(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                        UINT* pnTotalItemCount, UINT* pnReturnedItems, size_t* pnItemSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ request{};
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotalItemCount, pnReturnedItems, pnItemSize};
  return smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        // One record per message at most: the declared response holds one.
        request.Data.nNumOfItems = nBuffSize >= sizeof(SMGR_ESSENCE_INFO) ? 1 : 0;
        request.Data.nStartOffset = nOffset;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
}

SMGR_API BOOL SessMgr_GetEssenceNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize) {
  SMGR_TRACE(5, "Called (nOffset=%u, szBuffer=%p, nSize=%zu).\n", nOffset, static_cast<void*>(szBuffer),
             nSize);
  if (szBuffer == nullptr || nSize == 0) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  SMGR_ESSENCE_INFO info{};
  UINT nReturned = 0;
  if (!SessMgr_EnumerateEssences(&info, sizeof(info), nOffset, nullptr, &nReturned, nullptr)) {
    SMGR_TRACE(3, "Error getting essence name for ID %d.\n", static_cast<int>(nOffset));
    return FALSE;
  }
  if (nReturned != 1) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND);
    return FALSE;
  }
  char szName[SMGR_OBJECT_NAME_SIZE + 1] = {};  // the daemon's name may lack its terminator
  std::memcpy(szName, info.szName, sizeof(info.szName));
  CopyString(szBuffer, szName, nSize);
  return TRUE;
}

}  // extern "C"
