// Region-of-interest operations: create (with the local ID/name clash check),
// delete, close, index, information, enumeration, configure, enable and
// disable. Selector family rules; no response carries a description and
// only Result 0 succeeds.
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "object_selectors.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "roi_internal.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SequenceOrder;
using smgr::SuccessTest;
using Handles = smgr::RoiHandles;

constexpr RequestTraits RoiTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                  size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr RequestTraits kCreateTraits = RoiTraits(
    "SessMgr_CreateROI", SMGRPROT_ROI_CREATE_REQ,
    "Failed to send create ROI request to sessmgrd, errno (%d):%s.\n", sizeof(SMGRPROT_MSG_ROI_CREATE_RSP));
constexpr RequestTraits kDeleteTraits =
    RoiTraits("SessMgr_DeleteROI", SMGRPROT_ROI_DELETE_REQ,
              "Failed to send delete ROI request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kCloseTraits = [] {
  RequestTraits traits = RoiTraits("SessMgr_CloseROI", SMGRPROT_ROI_CLOSE_REQ,
                                   "Failed to send close ROI request to sessmgrd, errno (%d):%s.\n");
  traits.sequenceOrder = SequenceOrder::BeforeLock;  // numbered and built before the mutex is taken
  return traits;
}();
constexpr RequestTraits kGetInfoTraits =
    RoiTraits("SessMgr_GetROIInfo", SMGRPROT_ROI_GETINFO_REQ,
              "Failed to send ROI getinfo request to sessmgrd, errno (%d):%s.\n",
              offsetof(SMGRPROT_MSG_ROI_GETINFO_RSP, Data.ROIInfo) + sizeof(UINT));
constexpr RequestTraits kEnumerateTraits =
    RoiTraits("SessMgr_EnumerateROIs", SMGRPROT_ROI_ENUMERATE_REQ,
              "Failed to send ROI enumeration request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kConfigureTraits =
    RoiTraits("SessMgr_ConfigureROI", SMGRPROT_ROI_SETCFG_REQ,
              "Failed to send configure ROI request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kEnableTraits =
    RoiTraits("SessMgr_EnableROI", SMGRPROT_ROI_START_REQ,
              "Failed to send enable ROI request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kDisableTraits =
    RoiTraits("SessMgr_DisableROI", SMGRPROT_ROI_STOP_REQ,
              "Failed to send disable ROI request to sessmgrd, errno (%d):%s.\n");

constexpr auto kResolveRoiHandle = [](HSMGR hHandle, int* pID) { return Handles::ResolveId(hHandle, pID); };

// The operations that carry one selector (and, for information, copy a record back).
BOOL SelectorRequest(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                     smgr::SelectorKinds accepted, smgr::CopyBackStep copyBack = nullptr,
                     bool bOtherArgumentsValid = true) {
  return smgr::SelectorTransact(traits, pSelector, accepted, kResolveRoiHandle, copyBack,
                                bOtherArgumentsValid);
}

void TraceSelectorCall(const char* szOperation, const SMGR_OBJECT_SELECTOR* pSelector) {
  if (!SMGR_TRACE_ENABLED(5)) return;
  char szSelector[80] = "NULL";
  if (pSelector != nullptr) GetObjectSelectorInfoText(pSelector, szSelector, sizeof(szSelector));
  SMGR_TRACE_AS(szOperation, 5, "Called (pSelector=%p [%s]).\n", static_cast<const void*>(pSelector),
                szSelector);
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::RoiHandles, CleanupSessMgrROIs)

extern "C" {

SMGR_API void CleanupSessMgrROIs(void) { Handles::Cleanup(); }

SMGR_API BOOL SessMgr_CreateROI(const SMGR_ROI_CFG* pCfg, HROI* phRegion) {
  SMGR_TRACE(5, "Called (pCfg=%p, phRegion=%p).\n", static_cast<const void*>(pCfg),
             static_cast<void*>(phRegion));
  const bool bValid = pCfg != nullptr && pCfg->nSize == sizeof(SMGR_ROI_CFG) && phRegion != nullptr;
  if (smgr::IsLibraryInitialised() && !bValid) SMGR_TRACE(3, "Returning invalid parameters.\n");
  SMGR_ROI_HANDLE* pHandle = nullptr;
  bool bLinked = false;
  SMGRPROT_MSG_ROI_CREATE_REQ request{};
  const BOOL bResult = smgr::Transact(
      kCreateTraits, &request, sizeof(request), bValid,
      [&](void*) {
        request.Data.ROICfg = *pCfg;
        const SMGR_ROI_CFG& cfg = request.Data.ROICfg;
        if (Handles::LocateByConfig(cfg.nIndex, cfg.szName) != nullptr) return false;  // 7, nothing sent
        char szName[SMGR_OBJECT_NAME_SIZE];
        CopyString(szName, cfg.szName, sizeof(szName));  // the caller's name may lack its terminator
        if (!Handles::Alloc(&pHandle, cfg.nIndex, szName)) {
          SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
          return false;
        }
        _PrintROICfg(&cfg, true);
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGRPROT_MSG_ROI_CREATE_RSP answer{};
        response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
        pHandle->iRoiID = answer.Data.iID;
        CopyString(pHandle->szName, answer.Data.szName, sizeof(pHandle->szName));
        Handles::Link(pHandle);
        bLinked = true;
        *phRegion = pHandle;
        return true;
      });
  if (!bLinked) Handles::Free(pHandle, false);  // private to this call: never linked
  return bResult;
}

SMGR_API BOOL SessMgr_DeleteROI(const SMGR_OBJECT_SELECTOR* pSelector) {
  TraceSelectorCall(kDeleteTraits.szOperation, pSelector);
  return SelectorRequest(kDeleteTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_GetROIIndex(HROI hROI, UINT* pID) {
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  SMGR_ROI_HANDLE* pHandle = nullptr;
  if (pID == nullptr || hROI == nullptr || !Handles::IsValid(hROI, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  *pID = static_cast<UINT>(pHandle->iRoiID);  // read without the mutex
  return TRUE;
}

SMGR_API BOOL SessMgr_CloseROI(HROI* phRegion) {
  SMGR_TRACE(5, "Called (phRegion=%p).\n", static_cast<void*>(phRegion));
  SMGR_ROI_HANDLE* pHandle = nullptr;
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  if (phRegion == nullptr || *phRegion == nullptr || !Handles::IsValid(*phRegion, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  *phRegion = nullptr;
  SMGRPROT_MSG_ROI_CLOSE_REQ request{};
  request.Data.iID = pHandle->iRoiID;  // built before the mutex is taken
  return smgr::Transact(kCloseTraits, &request, sizeof(request), true, [&](void*) {
    Handles::Free(pHandle, true);  // the reference drops under the mutex
    return true;
  });
}

SMGR_API BOOL SessMgr_GetROIInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ROI_INFO* pInfo) {
  TraceSelectorCall(kGetInfoTraits.szOperation, pSelector);
  if (pInfo != nullptr) SMGR_ASSERT(pInfo->nSize >= sizeof(SMGR_ROI_INFO));
  return SelectorRequest(
      kGetInfoTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT*) {
        const size_t nOffset = offsetof(SMGRPROT_MSG_ROI_GETINFO_RSP, Data.ROIInfo);
        UINT nReturned = 0;
        response.read(nOffset, &nReturned);  // the minimum response size covers it
        const size_t nCopied = smgr::CopyRecordBack(response, nOffset, nReturned, pInfo, pInfo->nSize);
        if (pInfo->nSize >= sizeof(UINT)) pInfo->nSize = static_cast<UINT>(nCopied);
        return true;
      },
      pInfo != nullptr);
}

SMGR_API BOOL SessMgr_EnumerateROIs(void* pvBuffer, size_t nBuffSize, UINT nOffset, UINT* pnTotalRegionCount,
                                    UINT* pnReturnedRegions, size_t* pnElementSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  SMGRPROT_MSG_ROI_ENUMERATE_REQ request{};
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotalRegionCount, pnReturnedRegions, pnElementSize};
  return smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        request.Data.nNumOfRegions =
            static_cast<UINT>(smgr::PagedRequestCount(nBuffSize, sizeof(SMGR_ROI_INFO)));
        request.Data.nStartOffset = nOffset;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
}

SMGR_API BOOL SessMgr_ConfigureROI(const SMGR_OBJECT_SELECTOR* pSelector, const SMGR_ROI_CFG* pCfg) {
  TraceSelectorCall(kConfigureTraits.szOperation, pSelector);
  SMGRPROT_MSG_ROI_SETCFG_REQ request{};
  return smgr::Transact(
      kConfigureTraits, &request, sizeof(request), pSelector != nullptr && pCfg != nullptr, [&](void*) {
        if (!smgr::TranslateSelector(kConfigureTraits.szOperation, *pSelector, smgr::kIdOrName,
                                     kResolveRoiHandle, &request.Data.Select))
          return false;
        request.Data.Config = *pCfg;  // the whole record, as given
        _PrintROICfg(&request.Data.Config, false);
        return true;
      });
}

SMGR_API BOOL SessMgr_EnableROI(const SMGR_OBJECT_SELECTOR* pSelector) {
  TraceSelectorCall(kEnableTraits.szOperation, pSelector);
  return SelectorRequest(kEnableTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_DisableROI(const SMGR_OBJECT_SELECTOR* pSelector) {
  TraceSelectorCall(kDisableTraits.szOperation, pSelector);
  return SelectorRequest(kDisableTraits, pSelector, smgr::kIdNameOrHandle);
}

}  // extern "C"
