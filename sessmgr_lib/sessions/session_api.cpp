// Session operations: create, close, control, information, statistics and
// enumeration. Each is a RequestTraits declaration plus the build and
// copy-back steps the request engine runs under the API mutex. No session
// response carries a description: success is Result 0, a failure sets Result.
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "object_selectors.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "session_internal.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::FailureLastError;
using smgr::PidCheck;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SessionHandles;
using smgr::SuccessTest;

constexpr RequestTraits SessionTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                      size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// Create borrows the stream family's wording for its send failure, as does GetInfo.
constexpr RequestTraits kCreateTraits =
    SessionTraits("SessMgr_CreateSession", SMGRPROT_SESSION_CREATE_REQ,
                  "Failed to send create stream request to sessmgrd, errno (%d):%s.\n",
                  sizeof(SMGRPROT_MSG_SESSION_CREATE_RSP));
constexpr RequestTraits kCloseTraits =
    SessionTraits("SessMgr_CloseSession", SMGRPROT_SESSION_CLOSE_REQ,
                  "Failed to send close session request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStartTraits =
    SessionTraits("SessMgr_StartSession", SMGRPROT_SESSION_START_REQ,
                  "Failed to send start session request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kStopTraits =
    SessionTraits("SessMgr_StopSession", SMGRPROT_SESSION_STOP_REQ,
                  "Failed to send stop session request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kDeleteTraits =
    SessionTraits("SessMgr_DeleteSession", SMGRPROT_SESSION_DELETE_REQ,
                  "Failed to send delete session request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kGetInfoTraits =
    SessionTraits("SessMgr_GetSessionInfo", SMGRPROT_SESSION_GETINFO_REQ,
                  "Failed to send stream getinfo request to sessmgrd, errno (%d):%s.\n",
                  offsetof(SMGRPROT_MSG_SESSION_GETINFO_RSP, Data.SessionInfo) + sizeof(uint32_t));
constexpr RequestTraits kGetStatsTraits =
    SessionTraits("SessMgr_GetSessionStats", SMGRPROT_SESSION_GETSTATS_REQ,
                  "Failed to send session getstats request to sessmgrd, errno (%d):%s.\n",
                  offsetof(SMGRPROT_MSG_SESSION_GETSTATS_RSP, Data.SessionStats) + sizeof(uint32_t));
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      SessionTraits("SessMgr_EnumerateSessions", SMGRPROT_SESSION_ENUMERATE_REQ,
                    "Failed to send session enumeration request to sessmgrd, errno (%d):%s.\n");
  traits.pidCheck = PidCheck::BeforeLock;
  return traits;
}();

constexpr auto kResolveSessionHandle = [](HSMGR hHandle, int* pID) {
  return SessionHandles::ResolveId(hHandle, pID);
};

BOOL FailBeforeRequest(const char* szOperation, SMGR_RESULT result) {
  SessMgr_SetLastError(result);
  SMGR_TRACE_AS(szOperation, 5, "Done (returning FALSE).\n");
  return FALSE;
}

void TraceSelectorCall(const char* szOperation, const SMGR_OBJECT_SELECTOR* pSelector) {
  if (!SMGR_TRACE_ENABLED(5)) return;
  char szSelector[80] = "NULL";
  if (pSelector != nullptr) GetObjectSelectorInfoText(pSelector, szSelector, sizeof(szSelector));
  SMGR_TRACE_AS(szOperation, 5, "Called (pSelector=%p [%s]).\n", static_cast<const void*>(pSelector),
                szSelector);
}

BOOL SelectorRequest(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                     smgr::SelectorKinds accepted, smgr::CopyBackStep copyBack = nullptr,
                     bool bOtherArgumentsValid = true) {
  TraceSelectorCall(traits.szOperation, pSelector);
  return smgr::SelectorTransact(traits, pSelector, accepted, kResolveSessionHandle, copyBack,
                                bOtherArgumentsValid);
}

// The nSize negotiation of information and statistics records: the smaller of
// the caller's and the daemon's size is copied and written back.
bool CopyNegotiatedRecord(const ResponseView& response, size_t nOffset, void* pvRecord,
                          SMGR_RESULT* pLastError) {
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
  return true;
}

// The advertisement address must be multicast (or "any"), whatever bAdvertise
// says; false with the last error set.
bool CheckAdvertAddress(const SMGR_IP_ADDRESS& address) {
  static const BYTE _acUseDefaultAdvAddr[4] = {0, 0, 0, 0};
  const char* const szOperation = kCreateTraits.szOperation;
  SMGR_TRACE_AS(szOperation, 6, "Called with advert address type %d.\n", address.enType);
  switch (address.enType) {
    case SMGR_IPV6_ADDRESS:
      if (address.acAddress[0] == 0xFF) return true;
      SMGR_TRACE_AS(szOperation, 3, "Called with IPv6 non-multicast address.\n");
      SessMgr_SetLastError(SMGR_ERROR_NON_MULTICAST_ADVERTISEMENT_ADDRESS);
      return false;
    case SMGR_IPV4_ADDRESS:
      SMGR_ASSERT_TEXT(std::memcmp(address.acAddress, _acUseDefaultAdvAddr, 4) != 0,
                       "memcmp(pCfg->AdvertAddress.acAddress, _acUseDefaultAdvAddr, 4) != 0");
      if ((address.acAddress[0] & 0xF0) == 0xE0) return true;
      SMGR_TRACE_AS(szOperation, 3, "Called with IPv4 non-multicast address.\n");
      SessMgr_SetLastError(SMGR_ERROR_NON_MULTICAST_ADVERTISEMENT_ADDRESS);
      return false;
    case SMGR_ANY_ADDRESS:
      return true;
    default:
      SMGR_TRACE_AS(szOperation, 3, "Called with invalid advertisment address type (%d).\n", address.enType);
      SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
      return false;
  }
}

// Create's duplicate check: a handle of the requested ID (when nIndex > 0) or
// of the same name; unlike streams, an empty name is compared too.
bool IsDuplicate(const SMGR_SESSION_CFG& cfg) {
  for (FNODE_D* pNode = SessionHandles::List().pHead; pNode != nullptr; pNode = pNode->pNext) {
    const SMGR_SESSION_HANDLE& handle = *static_cast<const SMGR_SESSION_HANDLE*>(pNode->pvObject);
    if ((cfg.nIndex > 0 && cfg.nIndex == handle.iSessionID) ||
        std::strncmp(cfg.szName, handle.szName, SMGR_OBJECT_NAME_SIZE) == 0) {
      SMGR_TRACE_AS("_LocateSessionByConfig", 7, "Found handle with same ID or name.\n");
      SessMgr_SetLastError(SMGR_ERROR_ID_IN_USE);
      return true;
    }
  }
  return false;
}

// The wire entries of the member streams: the ID or the name text. Never past
// the three entries, whatever nNumOfStreams says. False (last error 2) for a
// by-name member without a name.
bool FillMemberEntries(const SMGR_SESSION_CFG& cfg, SMGRPROT_OBJECT_SELECTOR* pWire) {
  const uint32_t nCount =
      cfg.nNumOfStreams < SMGR_MAX_SESSION_STREAMS ? cfg.nNumOfStreams : SMGR_MAX_SESSION_STREAMS;
  for (uint32_t i = 0; i < nCount; ++i) {
    const SMGR_OBJECT_SELECTOR& member = cfg.Streams[i];
    switch (member.enType) {
      case SMGR_SELECTBY_OBJECT_ID:
        pWire[i].Via.ID = member.Via.ID;
        break;
      case SMGR_SELECTBY_OBJECT_NAME:
        if (member.Via.szName == nullptr) {
          SMGR_TRACE_AS(kCreateTraits.szOperation, 3, "NULL name for stream %u of %u.\n", i + 1,
                        cfg.nNumOfStreams);
          SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
          return false;
        }
        CopyString(pWire[i].Via.szName, member.Via.szName, sizeof(pWire[i].Via.szName));
        break;
      case SMGR_SELECTBY_OBJECT_HANDLE:
        _DoTextAssert(kCreateTraits.szOperation, __FILE__, __LINE__,
                      "Content source selection by handle not yet implemented.\n");
        break;
      default:
        break;
    }
  }
  return true;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::SessionHandles, CleanupSessMgrSessions)

extern "C" {

SMGR_API BOOL SessMgr_CreateSession(const SMGR_SESSION_CFG* pCfg, HSESSION* phSession) {
  const char* const szOperation = kCreateTraits.szOperation;
  SMGR_TRACE(5, "Called (pCfg=%p, phSession=%p).\n", static_cast<const void*>(pCfg),
             static_cast<void*>(phSession));
  if (!smgr::IsLibraryInitialised()) return FailBeforeRequest(szOperation, SMGR_ERROR_LIB_NOT_INITIALIZED);
  if (pCfg == nullptr || pCfg->nSize < sizeof(SMGR_SESSION_CFG))
    return FailBeforeRequest(szOperation, SMGR_ERROR_INVALID_PARAMETERS);
  if (!CheckAdvertAddress(pCfg->AdvertAddress)) {
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  SMGR_SESSION_HANDLE* pHandle = nullptr;
  bool bLinked = false;
  SMGRPROT_MSG_SESSION_CREATE_REQ request{};
  const BOOL bResult = smgr::Transact(
      kCreateTraits, &request, sizeof(request), phSession != nullptr,
      [&](void*) {
        if (IsDuplicate(*pCfg)) return false;  // last error 7, nothing sent
        if (!SessionHandles::Alloc(&pHandle, pCfg->nIndex, pCfg->szName)) {
          SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
          return false;
        }
        std::memcpy(&request.Data.SessionCfg, pCfg, sizeof(SMGR_SESSION_CFG));
        return FillMemberEntries(request.Data.SessionCfg, request.Data.Streams);
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        SMGRPROT_MSG_SESSION_CREATE_RSP answer{};
        response.copyOut(0, sizeof(answer), &answer, sizeof(answer));
        pHandle->iSessionID = answer.Data.iSessionID;
        CopyString(pHandle->szName, answer.Data.szName, sizeof(pHandle->szName));
        SessionHandles::Link(pHandle);
        bLinked = true;
        *phSession = pHandle;
        return true;
      });
  if (!bLinked) SessionHandles::Free(pHandle, false);  // private to this call: never linked
  return bResult;
}

SMGR_API BOOL SessMgr_CloseSession(HSESSION* phSession) {
  const char* const szOperation = kCloseTraits.szOperation;
  SMGR_TRACE(5, "Called (phSession=%p).\n", static_cast<void*>(phSession));
  SMGR_ASSERT(phSession != NULL);
  if (!smgr::IsLibraryInitialised()) return FailBeforeRequest(szOperation, SMGR_ERROR_LIB_NOT_INITIALIZED);
  SMGR_SESSION_HANDLE* pHandle = nullptr;
  smgr::ApiLock lock;  // the handle is checked and released under one hold of the mutex
  if (phSession == nullptr || *phSession == nullptr || !SessionHandles::IsValid(*phSession, &pHandle))
    return FailBeforeRequest(szOperation, SMGR_ERROR_INVALID_PARAMETERS);
  *phSession = nullptr;  // cleared before anything is sent, whatever the outcome
  SMGRPROT_MSG_SESSION_CLOSE_REQ request{};
  return smgr::Transact(kCloseTraits, &request, sizeof(request), true, [&](void*) {
    request.Data.iSessionID = pHandle->iSessionID;
    SessionHandles::Free(pHandle, true);  // the daemon sees one close per Close call
    return true;
  });
}

SMGR_API BOOL SessMgr_GetSessionID(HSESSION hSession, int* pID) {
  SMGR_ASSERT(hSession != NULL);
  if (!smgr::IsLibraryInitialised()) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    return FALSE;
  }
  SMGR_SESSION_HANDLE* pHandle = nullptr;
  if (pID == nullptr || hSession == nullptr || !SessionHandles::IsValid(hSession, &pHandle)) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return FALSE;
  }
  *pID = pHandle->iSessionID;
  return TRUE;
}

SMGR_API BOOL SessMgr_StartSession(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStartTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_StopSession(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kStopTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_DeleteSession(const SMGR_OBJECT_SELECTOR* pSelector) {
  return SelectorRequest(kDeleteTraits, pSelector, smgr::kIdOrName);
}

SMGR_API BOOL SessMgr_GetSessionInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_SESSION_INFO* pInfo) {
  return SelectorRequest(
      kGetInfoTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiatedRecord(response, offsetof(SMGRPROT_MSG_SESSION_GETINFO_RSP, Data.SessionInfo),
                                    pInfo, pLastError);
      },
      pInfo != nullptr);
}

SMGR_API BOOL SessMgr_GetSessionStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_SESSION_STATS* pStats) {
  return SelectorRequest(
      kGetStatsTraits, pSelector, smgr::kIdNameOrHandle,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return CopyNegotiatedRecord(response, offsetof(SMGRPROT_MSG_SESSION_GETSTATS_RSP, Data.SessionStats),
                                    pStats, pLastError);
      },
      pStats != nullptr);
}

SMGR_API BOOL SessMgr_EnumerateSessions(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                        UINT* pnTotalSessionCount, UINT* pnReturnedSessions,
                                        size_t* pnElementSize) {
  SMGR_TRACE(5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  SMGRPROT_MSG_SESSION_ENUMERATE_REQ request{};
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotalSessionCount, pnReturnedSessions,
                                   pnElementSize};
  return smgr::Transact(
      kEnumerateTraits, &request, sizeof(request), true,
      [&](void*) {
        request.Data.nNumOfSessions =
            static_cast<uint32_t>(smgr::PagedRequestCount(nBuffSize, sizeof(SMGR_SESSION_INFO)));
        request.Data.nStartOffset = nOffset;
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs, pLastError);
      });
}

SMGR_API void CleanupSessMgrSessions(void) { SessionHandles::Cleanup(); }

}  // extern "C"
