// Video input operations: open (by name, then by the daemon's ID), local
// close, configure, information, counter reset, paged enumeration and name at
// index. The family keeps the encoder conventions: numeric IDs on the wire,
// bare results, only 0 succeeds, local failures (even "not initialised") are 2.
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"
#include "video_input_internal.h"

namespace {

using smgr::FailureLastError;
using smgr::InitCheck;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SendFailure;
using smgr::SuccessTest;
using Handles = smgr::VideoInputHandles;

constexpr RequestTraits InputTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                    FailureLastError failure, SendFailure sendFailure, size_t nMinResponse) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.failureLastError = failure;
  traits.sendFailure = sendFailure;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// The send-failure texts are the encoder family's, as the daemon's clients know them.
constexpr RequestTraits kOpenTraits =
    InputTraits("SessMgr_OpenVideoInput", SMGRPROT_VIDIN_OPEN_REQ,
                "Failed to send encoder open request to sessmgrd, errno (%d):%s.\n", FailureLastError::Result,
                SendFailure::SetLastError, sizeof(SMGRPROT_MSG_VIDIN_OPEN_RSP));
constexpr RequestTraits kConfigureTraits =
    InputTraits("SessMgr_ConfigureVideoInput", SMGRPROT_VIDIN_SETCFG_REQ,
                "Failed to send encoder get config request to sessmgrd, errno (%d):%s.\n",
                FailureLastError::Result, SendFailure::TraceOnly, 0);
constexpr RequestTraits kGetInfoTraits =
    InputTraits("SessMgr_GetVideoInputInfo", SMGRPROT_VIDIN_GETINFO_REQ,
                "Failed to send encoder get config request to sessmgrd, errno (%d):%s.\n",
                FailureLastError::Untouched, SendFailure::TraceOnly, sizeof(SMGRPROT_MSG_VIDIN_GETINFO_RSP));
constexpr RequestTraits kResetStatsTraits =
    InputTraits("SessMgr_ResetVideoInputStats", SMGRPROT_VIDIN_RESETSTATS_REQ,
                "Failed to send encoder reset stats request to sessmgrd, errno (%d):%s.\n",
                FailureLastError::Untouched, SendFailure::TraceOnly, 0);
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      InputTraits("SessMgr_EnumerateVideoInputs", SMGRPROT_VIDIN_ENUMERATE_REQ,
                  "Failed to send video encoder enumeration request to sessmgrd, errno (%d):%s.\n",
                  FailureLastError::Result, SendFailure::TraceOnly, 0);
  traits.initCheck = InitCheck::None;
  traits.bCopyBackOnFailure = true;  // to learn the failing Result for errno
  return traits;
}();

// Valid: non-NULL and carrying the input signature (no list search).
bool ValidHandle(HVIDIN hInput, SMGR_VIDEO_INPUT_HANDLE** ppHandle) {
  return hInput != nullptr && Handles::IsValid(hInput, ppHandle);
}

SMGR_VIDEO_INPUT_HANDLE* LocateByName(const char* szName) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  selector.Via.szName = szName;
  return Handles::LocateBySelector(&selector);
}

// The handle of a freshly opened input: the one already held under another
// name for the same ID, or a new record. NULL (last error 5) when the heap is out.
SMGR_VIDEO_INPUT_HANDLE* OpenAllocVidIn(int iID, const char* szName) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = iID;
  if (SMGR_VIDEO_INPUT_HANDLE* pExisting = Handles::LocateBySelector(&selector)) {
    ++pExisting->nRefCount;
    return pExisting;
  }
  SMGR_VIDEO_INPUT_HANDLE* pHandle = nullptr;
  if (!Handles::Alloc(&pHandle, iID, szName)) {
    SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
    return nullptr;
  }
  Handles::Link(pHandle);
  return pHandle;
}

BOOL Failed(const char* szOperation) {
  SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
  SMGR_TRACE_AS(szOperation, 5, "Done (returning FALSE).\n");
  return FALSE;
}

// One page of the enumeration into the caller's outputs; *pResult is the
// daemon's Result when a response came.
BOOL EnumeratePage(const smgr::PagedOutputs& outputs, UINT nOffset) {
  SMGRPROT_MSG_VIDIN_ENUMERATE_REQ request{};
  SMGR_RESULT failure = SMGR_ERROR_SUCCESS;
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  const BOOL bResult = smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        if (outputs.nBuffSize == sizeof(SMGR_VIDEO_INPUT_INFO))
          SMGR_TRACE_AS(kEnumerateTraits.szOperation, 7, "Detected current client.\n");
        request.Data.nNumOfInputs =
            static_cast<UINT>(smgr::PagedRequestCount(outputs.nBuffSize, sizeof(SMGR_VIDEO_INPUT_INFO)));
        request.Data.nStartOffset = nOffset;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        if (response.result() != SMGR_ERROR_SUCCESS) {
          failure = response.result();
          return true;
        }
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
  if (failure != SMGR_ERROR_SUCCESS) errno = static_cast<int>(failure);
  return bResult;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::VideoInputHandles, CleanupSessMgrVideoInputs)

extern "C" {

SMGR_API void CleanupSessMgrVideoInputs(void) { Handles::Cleanup(); }

SMGR_API BOOL SessMgr_OpenVideoInput(const char* szInputName, HVIDIN* phInput) {
  SMGR_TRACE(5, "Called (szInputName=\"%s\", phInput=%p).\n", szInputName != nullptr ? szInputName : "(null)",
             static_cast<void*>(phInput));
  SMGR_ASSERT(szInputName != NULL);
  if (szInputName != nullptr) {
    SMGR_ASSERT(szInputName[0] != '\0');
    SMGR_ASSERT(strlen(szInputName) <= SMGR_MAX_OBJECT_NAME_LENGTH);
  }
  SMGR_ASSERT(phInput != NULL);
  if (szInputName == nullptr || szInputName[0] == '\0' ||
      StringLength(szInputName, SMGR_OBJECT_NAME_SIZE) > SMGR_MAX_OBJECT_NAME_LENGTH || phInput == nullptr ||
      !smgr::IsLibraryInitialised())
    return Failed(kOpenTraits.szOperation);

  smgr::ApiLock lock;  // one hold across lookup and request: two openers share a handle
  if (SMGR_VIDEO_INPUT_HANDLE* pExisting = LocateByName(szInputName)) {
    ++pExisting->nRefCount;
    *phInput = pExisting;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    SMGR_TRACE(5, "Done (returning TRUE).\n");
    return TRUE;
  }
  SMGRPROT_MSG_VIDIN_OPEN_REQ request{};
  CopyString(request.Data.szName, szInputName, sizeof(request.Data.szName));
  SMGR_VIDEO_INPUT_HANDLE* pOpened = nullptr;
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true, nullptr,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        int iID = 0;
        response.read(offsetof(SMGRPROT_MSG_VIDIN_OPEN_RSP, Data.iInputID), &iID);
        SMGR_TRACE_AS(kOpenTraits.szOperation, 7, "Input \"%s\" opened successfully.\n", szInputName);
        pOpened = OpenAllocVidIn(iID, szInputName);
        if (pOpened == nullptr) *pLastError = SMGR_ERROR_OUT_OF_MEMORY;
        return pOpened != nullptr;
      });
  *phInput = pOpened;
  if (pOpened != nullptr)
    SMGR_TRACE(6, "Input handle=0x%x.\n", static_cast<unsigned>(reinterpret_cast<uintptr_t>(pOpened)));
  return bResult;
}

SMGR_API BOOL SessMgr_CloseVideoInput(HVIDIN* phInput) {
  SMGR_TRACE(5, "Called (phInput=%p).\n", static_cast<void*>(phInput));
  SMGR_ASSERT(phInput != NULL);
  if (phInput != nullptr) SMGR_ASSERT(*phInput != NULL);
  SMGR_VIDEO_INPUT_HANDLE* pHandle = nullptr;
  if (phInput == nullptr || !ValidHandle(*phInput, &pHandle)) return Failed("SessMgr_CloseVideoInput");
  Handles::Free(pHandle, true);  // no message: the daemon keeps no open count of inputs
  SMGR_TRACE(5, "Done (returning TRUE).\n");
  return TRUE;
}

SMGR_API BOOL SessMgr_ConfigureVideoInput(HVIDIN hInput, const SMGR_VIDEO_INPUT_CFG* pCfg) {
  SMGR_TRACE(5, "Called (hInput=%p, pCfg=%p).\n", static_cast<void*>(hInput), static_cast<const void*>(pCfg));
  SMGR_ASSERT(pCfg != NULL);
  if (pCfg != nullptr) SMGR_ASSERT_TEXT(pCfg->nSize >= sizeof(*pCfg), "pCfg->nSize >= sizeof(*pCfg)");
  SMGR_VIDEO_INPUT_HANDLE* pHandle = nullptr;
  const bool bValid = pCfg != nullptr && pCfg->nSize >= sizeof(*pCfg) && ValidHandle(hInput, &pHandle);
  SMGRPROT_MSG_VIDIN_SETCFG_REQ request{};
  return smgr::Transact(kConfigureTraits, &request, sizeof(request), bValid, [&](void*) {
    request.Data.iInputID = pHandle->iID;
    std::memcpy(&request.Data.Config, pCfg, sizeof(request.Data.Config));  // nSize >= 24 checked
    SMGR_TRACE_AS(kConfigureTraits.szOperation, 6, "SetFieldsFlag = 0x%016llX.\n",
                  static_cast<unsigned long long>(pCfg->SetFieldsFlag));
    return true;
  });
}

SMGR_API BOOL SessMgr_GetVideoInputInfo(HVIDIN hInput, SMGR_VIDEO_INPUT_INFO* pInfo) {
  SMGR_TRACE(5, "Called (hInput=%p, pInfo=%p).\n", static_cast<void*>(hInput), static_cast<void*>(pInfo));
  SMGR_ASSERT(pInfo != NULL);
  if (pInfo != nullptr) SMGR_ASSERT_TEXT(pInfo->nSize >= sizeof(*pInfo), "pInfo->nSize >= sizeof(*pInfo)");
  SMGR_VIDEO_INPUT_HANDLE* pHandle = nullptr;
  const bool bValid = pInfo != nullptr && pInfo->nSize >= sizeof(*pInfo) && ValidHandle(hInput, &pHandle);
  SMGRPROT_MSG_VIDIN_ID_REQ request{};
  return smgr::Transact(
      kGetInfoTraits, &request, sizeof(request), bValid,
      [&](void*) {
        request.Data.iInputID = pHandle->iID;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        // nSize >= 144 was checked, so exactly one record is copied.
        response.copyOut(offsetof(SMGRPROT_MSG_VIDIN_GETINFO_RSP, Data.Info), sizeof(*pInfo), pInfo,
                         sizeof(*pInfo));
        pInfo->nSize = sizeof(*pInfo);
        if (SMGR_TRACE_ENABLED(6)) _PrintVideoInputInfo(pInfo);
        return true;
      });
}

SMGR_API BOOL SessMgr_ResetVideoInputStats(HVIDIN hInput) {
  SMGR_TRACE(5, "Called (hInput=%p).\n", static_cast<void*>(hInput));
  SMGR_VIDEO_INPUT_HANDLE* pHandle = nullptr;
  const bool bValid = ValidHandle(hInput, &pHandle);
  SMGRPROT_MSG_VIDIN_ID_REQ request{};
  return smgr::Transact(kResetStatsTraits, &request, sizeof(request), bValid, [&](void*) {
    request.Data.iInputID = pHandle->iID;
    return true;
  });
}

SMGR_API BOOL SessMgr_EnumerateVideoInputs(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                           UINT* pnTotalInputCount, UINT* pnReturnedInputs,
                                           size_t* pnElementSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  return EnumeratePage({pvBuffer, nBuffSize, pnTotalInputCount, pnReturnedInputs, pnElementSize}, nOffset);
}

SMGR_API BOOL SessMgr_GetVideoInputNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize) {
  if (g_bDoStringAPITrace) SMGR_TRACE(5, "Called (nOffset=%u, nSize=%zu).\n", nOffset, nSize);
  SMGR_VIDEO_INPUT_INFO record{};
  UINT nReturned = 0;
  size_t nElementSize = 0;
  if (!EnumeratePage({&record, sizeof(record), nullptr, &nReturned, &nElementSize}, nOffset)) {
    SMGR_TRACE(3, "Error getting input name for ID %u.\n", nOffset);
    return FALSE;
  }
  // The record reached the buffer only when the daemon's layout fits one input record.
  if (nReturned != 1 || nElementSize > sizeof(record)) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_INPUT_FOUND);
    if (g_bDoStringAPITrace) SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  if (szBuffer != nullptr && nSize > 0)
    CopyString(szBuffer, record.szName, std::min(nSize, sizeof(record.szName)));
  return TRUE;
}

}  // extern "C"
