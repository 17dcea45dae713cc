// Stream operations: create, open, close, control, information, statistics,
// enumeration and still images. Each is a RequestTraits declaration plus the
// build and copy-back steps that the request engine runs under the API mutex.
#include <sys/socket.h>

#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "object_selectors.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "stream_internal.h"
#include "util_netaddr.h"
#include "util_string.h"

namespace {

using smgr::AdaptFailure;
using smgr::FailureLastError;
using smgr::PidCheck;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SuccessTest;

// Most stream responses carry Result alone; only Start sends a description.
constexpr RequestTraits StreamTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                     size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr RequestTraits kCreateTraits = [] {
  RequestTraits traits = StreamTraits("SessMgr_CreateStream", SMGRPROT_STREAM_CREATE_REQ,
                                      "Failed to send create stream request to sessmgrd, errno (%d):%s.\n",
                                      sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP));
  traits.success = SuccessTest::ZeroOrWarning;
  return traits;
}();
constexpr RequestTraits kOpenTraits =
    StreamTraits("SessMgr_OpenStream", SMGRPROT_STREAM_OPEN_REQ,
                 "Failed to send open stream request to sessmgrd, errno (%d):%s.\n",
                 offsetof(SMGRPROT_MSG_STREAM_OPEN_RSP, Data.szName));
constexpr RequestTraits kCloseTraits =
    StreamTraits("SessMgr_CloseStream", SMGRPROT_STREAM_CLOSE_REQ,
                 "Failed to send close stream request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kDeleteTraits =
    StreamTraits("SessMgr_DeleteStream", SMGRPROT_STREAM_DELETE_REQ,
                 "Failed to send delete stream request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStartTraits = [] {
  RequestTraits traits{"SessMgr_StartStream", SMGRPROT_STREAM_START_REQ};
  traits.success = SuccessTest::ZeroOrWarning;
  traits.failureLastError = FailureLastError::ResultWithDescription;
  traits.szSendFailureTrace = "Failed to send start stream request to sessmgrd, errno (%d):%s.\n";
  return traits;
}();
// Stop's send-failure trace reads like Start's on purpose.
constexpr RequestTraits kStopTraits =
    StreamTraits("SessMgr_StopStream", SMGRPROT_STREAM_STOP_REQ,
                 "Failed to send start stream request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kPauseTraits =
    StreamTraits("SessMgr_PauseStream", SMGRPROT_STREAM_PAUSE_REQ,
                 "Failed to send pause stream request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kResumeTraits =
    StreamTraits("SessMgr_ResumeStream", SMGRPROT_STREAM_RESUME_REQ,
                 "Failed to send resume stream request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kGetInfoTraits =
    StreamTraits("SessMgr_GetStreamInfo", SMGRPROT_STREAM_GETINFO_REQ,
                 "Failed to send stream getinfo request to sessmgrd, errno (%d):%s.\n",
                 offsetof(SMGRPROT_MSG_STREAM_GETINFO_RSP, Data.StreamInfo) + sizeof(uint32_t));
constexpr RequestTraits kGetStatsTraits =
    StreamTraits("SessMgr_GetStreamStats", SMGRPROT_STREAM_GETSTATS_REQ,
                 "Failed to send stream getstats request to sessmgrd, errno (%d):%s.\n",
                 offsetof(SMGRPROT_MSG_STREAM_GETSTATS_RSP, Data.StreamStats) + sizeof(uint32_t));
constexpr RequestTraits kResetStatsTraits =
    StreamTraits("SessMgr_ResetStreamStats", SMGRPROT_STREAM_RESETSTATS_REQ,
                 "Failed to send stream resetstats request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      StreamTraits("SessMgr_EnumerateStreams", SMGRPROT_STREAM_ENUMERATE_REQ,
                   "Failed to send create stream enumeration request to sessmgrd, errno (%d):%s.\n");
  traits.pidCheck = PidCheck::BeforeLock;
  return traits;
}();
constexpr RequestTraits kDeleteStillTraits =
    StreamTraits("SessMgr_DeleteStillImage", SMGRPROT_STILL_DELETE_REQ,
                 "Failed to send delete still image request to sessmgrd, errno (%d):%s.\n",
                 sizeof(SMGRPROT_MSG_STILL_DELETE_RSP));
constexpr RequestTraits kDeleteAllStillsTraits = [] {
  RequestTraits traits = kDeleteStillTraits;
  traits.szOperation = "SessMgr_DeleteAllStillImages";
  traits.bCopyBackOnFailure = true;  // the counts reach the caller whatever the result
  return traits;
}();

// The stream family's handle check for selector translation.
constexpr auto kResolveStreamHandle = [](HSMGR hHandle, int* pID) {
  return smgr::StreamHandles::ResolveId(hHandle, pID);
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

// The operations that carry one selector and copy nothing back but the result.
BOOL SelectorRequest(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                     smgr::SelectorKinds accepted, smgr::CopyBackStep copyBack = nullptr,
                     bool bOtherArgumentsValid = true) {
  SMGRPROT_MSG_STREAM_SELECT_REQ request{};
  const bool bValid = pSelector != nullptr && bOtherArgumentsValid;
  return smgr::Transact(
      traits, &request, sizeof(request), bValid,
      [&](void*) {
        if (!smgr::TranslateSelector(traits.szOperation, *pSelector, accepted, kResolveStreamHandle,
                                     &request.Data.Select))
          return false;
        if (traits.wRequestType == SMGRPROT_STREAM_DELETE_REQ && pSelector->enType == SMGR_SELECTBY_OBJECT_ID)
          SMGR_TRACE_AS(traits.szOperation, 6, "Stream ID to be deleted=%d.\n", pSelector->Via.ID);
        return true;
      },
      copyBack);
}

// ---- Create: preparing the request from the caller's configuration ------------

// Resolves a host-name destination. False (last error set) only for a bad
// name length; an unresolved name sets the pending warning and goes on.
bool PrepareHostName(SMGR_IP_ADDRESS* pAddress, bool* pbWarningPending) {
  if (pAddress->enType != SMGR_IPV4_HOSTNAME) return true;
  const size_t nLength = StringLength(pAddress->szHostName, sizeof(pAddress->szHostName));
  if (nLength == 0 || nLength >= sizeof(pAddress->szHostName)) {
    SMGR_TRACE_AS("SessMgr_CreateStream", 3, "Invalid hostname length.\n");
    SessMgr_SetLastError(SMGR_ERROR_INVALID_STREAM_ADDRESS);
    return false;
  }
  if (pAddress->acAddress[0] != 0) return true;  // an address given with the name is sent as it is
  int iFamily = 0;
  char szAddress[IP_ADDRESS_STRING_SIZE] = "";
  if (GetHostIPAddress(pAddress->szHostName, pAddress->acAddress, sizeof(pAddress->acAddress), &iFamily)) {
    if (iFamily == AF_INET) {
      pAddress->enType = SMGR_HOSTNAME_RESOLVED_AS_IPV4;
      SMGR_TRACE_AS("SessMgr_CreateStream", 6,
                    "Successfully resolved address for stream with hostname of \"%s\" to IPv4:%s.\n",
                    pAddress->szHostName,
                    GetIPv4AddressString(pAddress->acAddress, szAddress, sizeof(szAddress)));
    } else if (iFamily == AF_INET6) {
      pAddress->enType = SMGR_HOSTNAME_RESOLVED_AS_IPV6;
      SMGR_TRACE_AS("SessMgr_CreateStream", 6,
                    "Successfully resolved address for stream with hostname of \"%s\" to IPV6:%s.\n",
                    pAddress->szHostName,
                    GetIPv6AddressString(pAddress->acAddress, szAddress, sizeof(szAddress)));
    } else {
      _DoTextAssert("SessMgr_CreateStream", __FILE__, __LINE__, "Unknown iFamily=%d\n", iFamily);
    }
  }
  if (pAddress->acAddress[0] == 0) {
    SMGR_TRACE_AS("SessMgr_CreateStream", 4, "Unable to resolve hostname \"%s\" ip address.\n",
                  pAddress->szHostName);
    SessMgr_SetLastError(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME);
    *pbWarningPending = true;
  }
  return true;
}

// Fills the wire entries of the content sources and checks that they cover
// every content kind of enContents. Both read the caller's whole record, not
// the copy cut to its nSize. False with the last error set.
bool PrepareContentSources(const SMGR_STREAM_CFG& cfg, SMGRPROT_STREAM_CREATE_REQ_DATA* pData,
                           uint32_t* pnUncovered) {
  const int nCount = static_cast<int>(cfg.nNumOfSources);
  uint32_t nMask = cfg.enContents;
  for (int i = 0; i < nCount; ++i) {
    const SMGR_CONTENT_SRC& source = cfg.ContentSources[i];
    SMGRPROT_OBJECT_SELECTOR& wire = pData->ContentSources[i];
    switch (source.enType) {
      case SMGR_CONTENT_SRC_VIDEO:
        nMask &= ~SMGR_STREAM_CONTENTS_VIDEO;
        break;
      case SMGR_CONTENT_SRC_AUDIO:
        nMask &= ~SMGR_STREAM_CONTENTS_AUDIO;
        break;
      case SMGR_CONTENT_SRC_DATA:
        nMask &= ~SMGR_STREAM_CONTENTS_DATA;
        break;
      default:
        SMGR_TRACE_AS("SessMgr_CreateStream", 3,
                      "Unsupported content source type %d detected for source %d of %d.\n", source.enType,
                      i + 1, nCount);
        SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
        return false;
    }
    wire.enType = source.enType;  // the kind; the daemon reads the selection type from the configuration
    switch (source.Selector.enType) {
      case SMGR_SELECTBY_OBJECT_ID:
        wire.Via.ID = source.Selector.Via.ID;
        break;
      case SMGR_SELECTBY_OBJECT_NAME:
        if (source.Selector.Via.szName == nullptr) {
          SMGR_TRACE_AS("SessMgr_CreateStream", 3, "NULL name for source %d of %d.\n", i + 1, nCount);
          SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
          return false;
        }
        CopyString(wire.Via.szName, source.Selector.Via.szName, sizeof(wire.Via.szName));
        break;
      case SMGR_SELECTBY_OBJECT_HANDLE:
        _DoTextAssert("SessMgr_CreateStream", __FILE__, __LINE__,
                      "Content source selection by handle not yet implemented.\n");
        break;
      default:
        break;
    }
  }
  *pnUncovered = nMask;
  return true;
}

// The still image becomes a base name with ".mp4" in the still-image folder.
bool PrepareStillImage(SMGR_STREAM_CFG* pCfg) {
  char* szName = pCfg->szStillImageFName;
  int iErrCode = SMGR_ERROR_FILENAME_TOO_LONG;
  if (std::memchr(szName, '\0', sizeof(pCfg->szStillImageFName)) == nullptr ||
      !FixUpInputFileNameNoPath(szName, sizeof(pCfg->szStillImageFName), SMGR_STILL_IMAGE_FOLDER,
                                SMGR_STILL_IMAGE_EXTENSION, &iErrCode)) {
    SessMgr_SetLastError(static_cast<SMGR_RESULT>(iErrCode));
    return false;
  }
  return true;
}

// Takes at most 2912 bytes of the caller's record (an older, shorter record
// gets zeros in the newer fields).
void TakeCallerConfig(const SMGR_STREAM_CFG& callerCfg, SMGR_STREAM_CFG* pCfg) {
  const size_t nTaken = callerCfg.nSize < sizeof(SMGR_STREAM_CFG) ? callerCfg.nSize : sizeof(SMGR_STREAM_CFG);
  std::memcpy(pCfg, &callerCfg, nTaken);
}

// The completion keeps a caller's folder; only names in the still-image folder
// itself may be deleted.
bool IsInStillImageFolder(const char* szPath) {
  constexpr size_t nFolder = sizeof(SMGR_STILL_IMAGE_FOLDER) - 1;
  return std::strncmp(szPath, SMGR_STILL_IMAGE_FOLDER, nFolder) == 0 &&
         std::strchr(szPath + nFolder, '/') == nullptr;
}

// Rewrites and checks the taken configuration; the content sources come from
// the caller's record. False with the last error set.
bool PrepareCreateRequest(const SMGR_STREAM_CFG& callerCfg, SMGRPROT_MSG_STREAM_CREATE_REQ* pRequest,
                          bool* pbWarningPending) {
  SMGRPROT_STREAM_CREATE_REQ_DATA& data = pRequest->Data;
  if (callerCfg.nNumOfSources > SMGR_MAX_STREAM_CONTENT_SOURCES) {
    SMGR_TRACE_AS("SessMgr_CreateStream", 3, "Too many content sources (%u).\n", callerCfg.nNumOfSources);
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return false;
  }
  if (!PrepareHostName(&data.StreamCfg.Address, pbWarningPending)) return false;
  uint32_t nUncovered = 0;
  if (!PrepareContentSources(callerCfg, &data, &nUncovered)) return false;
  if (!PrepareStillImage(&data.StreamCfg)) return false;
  if (nUncovered != 0 || callerCfg.nNumOfSources == 0) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_STREAM_CONTENTS);
    return false;
  }
  _PrintStreamCfg(&data.StreamCfg);
  return true;
}

// Copies a daemon record over the caller's with the nSize negotiation; the
// record's own nSize sits in its first four bytes at nOffset.
bool CopyNegotiatedRecord(const ResponseView& response, size_t nOffset, void* pvRecord,
                          const char* szOperation, const char* szSizeTrace, SMGR_RESULT* pLastError) {
  uint32_t nReturned = 0;
  if (!response.read(nOffset, &nReturned)) {
    *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
    return false;
  }
  uint32_t nRequested = 0;
  std::memcpy(&nRequested, pvRecord, sizeof(nRequested));
  if (szSizeTrace != nullptr && nReturned != nRequested)
    SMGR_TRACE_AS(szOperation, 6, szSizeTrace, nReturned, nRequested);
  const size_t nCopied = smgr::CopyRecordBack(response, nOffset, nReturned, pvRecord, nRequested);
  const uint32_t nSize = static_cast<uint32_t>(nCopied);
  if (nRequested >= sizeof(nSize))
    std::memcpy(pvRecord, &nSize, sizeof(nSize));  // the caller's record holds it
  return true;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::StreamHandles, CleanupSessMgrStreams)

extern "C" {

SMGR_API BOOL SessMgr_CreateStream(const SMGR_STREAM_CFG* pCfg, HSTREAM* phStream) {
  SMGR_TRACE(5, "Called (pCfg=%p, phStream=%p).\n", static_cast<const void*>(pCfg),
             static_cast<void*>(phStream));
  SMGR_ASSERT(pCfg != NULL);
  SMGR_ASSERT_TEXT(smgr::IsLibraryInitialised(), "g_nLibInitCount > 0");
  SMGR_STREAM_HANDLE* pHandle = nullptr;
  bool bLinked = false;
  bool bWarningPending = false;
  SMGRPROT_MSG_STREAM_CREATE_REQ request{};
  const BOOL bResult = smgr::Transact(
      kCreateTraits, &request, sizeof(request), pCfg != nullptr && phStream != nullptr,
      [&](void*) {
        SMGR_STREAM_CFG& cfg = request.Data.StreamCfg;
        TakeCallerConfig(*pCfg, &cfg);
        if (_LocateStreamByConfig(&cfg) != nullptr) return false;  // last error 7, nothing sent
        if (!_AllocStreamHandle(&pHandle, cfg.nIndex, cfg.szName)) {
          SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
          return false;
        }
        return PrepareCreateRequest(*pCfg, &request, &bWarningPending);
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        SMGRPROT_MSG_STREAM_CREATE_RSP answer{};
        response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
        pHandle->iStreamID = answer.Data.iStreamID;
        CopyString(pHandle->szName, answer.Data.szName, sizeof(pHandle->szName));
        smgr::StreamHandles::Link(pHandle);
        bLinked = true;
        *phStream = pHandle;
        if (bWarningPending) *pLastError = SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME;
        return true;
      });
  if (!bLinked) _FreeStreamHandle(pHandle, FALSE);  // private to this call: never linked
  if (bLinked) SMGR_TRACE(5, "Done (returning TRUE), stream ID=%d.\n", (*phStream)->iStreamID);
  return bResult;
}

SMGR_API BOOL SessMgr_OpenStream(const SMGR_OBJECT_SELECTOR* pSelector, HSTREAM* phStream) {
  char szSelector[80];
  SMGR_TRACE(5, "Called (pSelector=%p [%s], phStream=0x%x).\n", static_cast<const void*>(pSelector),
             SelectorText(pSelector, szSelector, sizeof(szSelector)),
             static_cast<unsigned>(reinterpret_cast<uintptr_t>(phStream)));
  SMGR_ASSERT(pSelector != NULL);
  SMGR_ASSERT(phStream != NULL);
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kOpenTraits.szOperation);
  // Held across the request too, so that two threads opening one stream share a handle.
  smgr::ApiLock lock;
  // Again under the lock: a last shutdown may have drained the handle tables meanwhile.
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kOpenTraits.szOperation);
  if (pSelector == nullptr || phStream == nullptr) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  if (SMGR_STREAM_HANDLE* pExisting = _LocateStreamBySelector(pSelector)) {
    ++pExisting->nRefCount;
    SMGR_TRACE(6, "Handle 0x%x for stream %d reference count now at %d.\n",
               static_cast<unsigned>(reinterpret_cast<uintptr_t>(pExisting)), pExisting->iStreamID,
               pExisting->nRefCount);
    *phStream = pExisting;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    return TRUE;
  }
  if (pSelector->enType != SMGR_SELECTBY_OBJECT_ID &&
      (pSelector->enType != SMGR_SELECTBY_OBJECT_NAME || pSelector->Via.szName == nullptr)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  SMGR_STREAM_HANDLE* pHandle = nullptr;
  if (!_AllocStreamHandle(&pHandle, 0, nullptr)) {
    SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
    return FALSE;
  }
  bool bLinked = false;
  SMGRPROT_MSG_STREAM_OPEN_REQ request{};
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true,
      [&](void*) {
        smgr::TranslateSelector(kOpenTraits.szOperation, *pSelector, smgr::kIdOrName, nullptr,
                                &request.Data.Select);
        if (pSelector->enType == SMGR_SELECTBY_OBJECT_ID)
          pHandle->iStreamID = pSelector->Via.ID;
        else
          CopyString(pHandle->szName, pSelector->Via.szName, sizeof(pHandle->szName));
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        response.read(offsetof(SMGRPROT_MSG_STREAM_OPEN_RSP, Data.iStreamID), &pHandle->iStreamID);
        smgr::StreamHandles::Link(pHandle);  // the response's name is not taken (kept on purpose)
        bLinked = true;
        *phStream = pHandle;
        SMGR_TRACE_AS(kOpenTraits.szOperation, 6, "Opened stream id=%d.\n", pHandle->iStreamID);
        return true;
      });
  if (!bLinked) _FreeStreamHandle(pHandle, FALSE);
  return bResult;
}

SMGR_API BOOL SessMgr_CloseStream(HSTREAM* phStream) {
  SMGR_TRACE(5, "Called (phStream=%p).\n", static_cast<void*>(phStream));
  SMGR_ASSERT(phStream != NULL);
  if (phStream != nullptr) SMGR_ASSERT(*phStream != NULL);
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kCloseTraits.szOperation);
  SMGR_STREAM_HANDLE* pHandle = nullptr;
  smgr::ApiLock lock;  // the handle is checked and released under one hold of the mutex
  if (!smgr::IsLibraryInitialised()) return NotInitialised(kCloseTraits.szOperation);  // shut down meanwhile
  if (phStream == nullptr || *phStream == nullptr || !_IsValidStreamHandle(*phStream, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  *phStream = nullptr;  // cleared before anything is sent, whatever the outcome
  SMGRPROT_MSG_STREAM_CLOSE_REQ request{};
  return smgr::Transact(kCloseTraits, &request, sizeof(request), true, [&](void*) {
    request.Data.iStreamID = pHandle->iStreamID;
    SMGR_TRACE_AS(kCloseTraits.szOperation, 6, "Closing stream id=%d.\n", pHandle->iStreamID);
    _FreeStreamHandle(pHandle, TRUE);  // the daemon sees one close per Close call
    return true;
  });
}

SMGR_API BOOL SessMgr_GetStreamID(HSTREAM hStream, int* pID) {
  SMGR_ASSERT(hStream != NULL);
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  SMGR_STREAM_HANDLE* pHandle = nullptr;
  if (pID == nullptr || hStream == nullptr || !_IsValidStreamHandle(hStream, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  *pID = pHandle->iStreamID;
  return TRUE;
}

#define SMGR_TRACE_SELECTOR_CALL(pSelector)                                               \
  do {                                                                                    \
    if (SMGR_TRACE_ENABLED(5)) {                                                          \
      char szSelector[80];                                                                \
      SMGR_TRACE(5, "Called (pSelector=%p [%s]).\n", static_cast<const void*>(pSelector), \
                 SelectorText(pSelector, szSelector, sizeof(szSelector)));                \
    }                                                                                     \
  } while (0)

SMGR_API BOOL SessMgr_DeleteStream(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kDeleteTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_StartStream(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kStartTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_StopStream(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kStopTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_PauseStream(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kPauseTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ResumeStream(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kResumeTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_ResetStreamStats(const SMGR_OBJECT_SELECTOR* pSelector) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(kResetStatsTraits, pSelector, smgr::kIdNameOrHandle);
}

SMGR_API BOOL SessMgr_GetStreamInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_STREAM_INFO* pInfo) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  if (pInfo != nullptr) SMGR_ASSERT(pInfo->nSize >= sizeof(SMGR_STREAM_INFO));
  return SelectorRequest(
      kGetInfoTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        if (!CopyNegotiatedRecord(response, offsetof(SMGRPROT_MSG_STREAM_GETINFO_RSP, Data.StreamInfo), pInfo,
                                  kGetInfoTraits.szOperation,
                                  "Returned size of info struct is %u vs requested %u.\n", pLastError))
          return false;
        if (SMGR_TRACE_ENABLED(6) && pInfo->nSize >= sizeof(SMGR_STREAM_INFO)) _PrintStreamInfo(pInfo);
        return true;
      },
      pInfo != nullptr);
}

SMGR_API BOOL SessMgr_GetStreamStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_STREAM_STATS* pStats) {
  SMGR_TRACE_SELECTOR_CALL(pSelector);
  return SelectorRequest(
      kGetStatsTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiatedRecord(response, offsetof(SMGRPROT_MSG_STREAM_GETSTATS_RSP, Data.StreamStats),
                                    pStats, kGetStatsTraits.szOperation, nullptr, pLastError);
      },
      pStats != nullptr);
}

SMGR_API BOOL SessMgr_EnumerateStreams(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                       UINT* pnTotalStreamCount, UINT* pnReturnedStreams,
                                       size_t* pnElementSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  SMGR_ASSERT(nBuffSize >= sizeof(SMGR_STREAM_INFO));
  SMGRPROT_MSG_STREAM_ENUMERATE_REQ request{};
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotalStreamCount, pnReturnedStreams, pnElementSize};
  return smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        request.Data.nNumOfStreams = smgr::PagedRequestCount(nBuffSize, sizeof(SMGR_STREAM_INFO));
        request.Data.nStartOffset = static_cast<int32_t>(nOffset);
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
}

SMGR_API BOOL SessMgr_DeleteStillImage(const char* szFileName) {
  SMGR_TRACE(5, "Called (szFileName=\"%s\").\n", szFileName != nullptr ? szFileName : "(null)");
  SMGRPROT_MSG_STILL_DELETE_REQ request{};
  return smgr::Transact(kDeleteStillTraits, &request, sizeof(request), szFileName != nullptr, [&](void*) {
    char* szName = request.Data.szFileName;
    const size_t nSize = sizeof(request.Data.szFileName);
    if (StringLength(szFileName, nSize) >= nSize) {
      SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
      return false;
    }
    CopyString(szName, szFileName, nSize);
    if (!FixUpInputFileName(szName, static_cast<int>(nSize), SMGR_STILL_IMAGE_FOLDER,
                            SMGR_STILL_IMAGE_EXTENSION) ||
        !IsInStillImageFolder(szName)) {
      SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
      return false;
    }
    return true;
  });
}

SMGR_API BOOL SessMgr_DeleteAllStillImages(ULONG* pnStillsDeleted, ULONG* pnStillsSkipped) {
  SMGR_TRACE(5, "Called (pnStillsDeleted=%p, pnStillsSkipped=%p).\n", static_cast<void*>(pnStillsDeleted),
             static_cast<void*>(pnStillsSkipped));
  SMGRPROT_MSG_STILL_DELETE_REQ request{};
  CopyString(request.Data.szFileName, SMGRPROT_STILL_DELETE_ALL_KEYWORD, sizeof(request.Data.szFileName));
  return smgr::Transact(kDeleteAllStillsTraits, &request, sizeof(request), true, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          SMGRPROT_MSG_STILL_DELETE_RSP answer{};
                          response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
                          if (pnStillsDeleted != nullptr) *pnStillsDeleted = answer.Data.nDeletedCount;
                          if (pnStillsSkipped != nullptr) *pnStillsSkipped = answer.Data.nNotDeletedCount;
                          if (answer.Data.iErrno != 0)
                            SMGR_TRACE_AS(kDeleteAllStillsTraits.szOperation, 6,
                                          "Daemon reported errno %d.\n", answer.Data.iErrno);
                          return true;
                        });
}

}  // extern "C"
