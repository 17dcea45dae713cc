// Snapshot operations: take, delete, delete all, rename, defaults and storage
// settings. One request each; only Result 0 succeeds and a failing Result is
// the last error alone. File names travel as base names: snapshots always
// live in the daemon's snapshot folder.
#include <algorithm>
#include <cstring>

#include "lib_trace.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SuccessTest;

constexpr RequestTraits SnapshotTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                       size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// The set operations write their own exit trace (the failure form names the error).
constexpr RequestTraits QuietExit(RequestTraits traits) {
  traits.nExitTraceLevel = 100;
  return traits;
}

constexpr RequestTraits kTakeTraits =
    SnapshotTraits("SessMgr_TakeSnapshot", SMGRPROT_SNAPSHOT_TAKE_REQ,
                   "Failed to send take snapshot request to sessmgrd, errno (%d):%s.\n",
                   sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP));
constexpr RequestTraits kDeleteTraits =
    SnapshotTraits("SessMgr_DeleteSnapshot", SMGRPROT_SNAPSHOT_DELETE_REQ,
                   "Failed to send delete snapshot request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kDeleteAllTraits = [] {
  RequestTraits traits =
      SnapshotTraits("SessMgr_DeleteAllSnapshots", SMGRPROT_SNAPSHOT_DELETE_ALL_REQ,
                     "Failed to send delete all snapshots request to sessmgrd, errno (%d):%s.\n");
  traits.bCopyBackOnFailure = true;  // the count reaches the caller whatever the result
  return traits;
}();
constexpr RequestTraits kRenameTraits =
    SnapshotTraits("SessMgr_RenameSnapshot", SMGRPROT_SNAPSHOT_RENAME_REQ,
                   "Failed to send rename snapshot request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kGetDefaultsTraits =
    SnapshotTraits("SessMgr_GetSnapshotDefaults", SMGRPROT_SNAPSHOT_GETDEFAULTS_REQ,
                   "Failed to send get snapshot defaults request to sessmgrd, errno (%d):%s.\n",
                   offsetof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP, Data.SnapShotDefaults) + sizeof(UINT));
constexpr RequestTraits kSetDefaultsTraits =
    QuietExit(SnapshotTraits("SessMgr_SetSnapshotDefaults", SMGRPROT_SNAPSHOT_SETDEFAULTS_REQ,
                             "Failed to send set snapshot defaults request to sessmgrd, errno (%d):%s.\n"));
constexpr RequestTraits kSetAdminTraits =
    QuietExit(SnapshotTraits("SessMgr_SetSnapshotAdminCfg", SMGRPROT_SNAPSHOT_SETADMINCFG_REQ,
                             "Failed to send set snapshot admin request to sessmgrd, errno (%d):%s.\n"));
constexpr RequestTraits kGetAdminTraits =
    SnapshotTraits("SessMgr_GetSnapshotAdminInfo", SMGRPROT_SNAPSHOT_GETADMININFO_REQ,
                   "Failed to send get snapshot admin info request to sessmgrd, errno (%d):%s.\n",
                   offsetof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP, Data.SnapShotAdminInfo) + sizeof(UINT));

// Refuses a name of 288 characters or more; otherwise writes its base name
// back into the same buffer (bounded by nSize).
bool _FixUpSnapshotFileName(char* szCfgFName, size_t nSize) {
  if (StringLength(szCfgFName, SMGR_MAX_API_FNAME_SIZE) >= SMGR_MAX_API_FNAME_SIZE) return false;
  CopyString(szCfgFName, GetBaseName(szCfgFName), nSize);
  return true;
}

// A delete or rename name: under 256 characters, sent as its base name.
bool TakeWireName(const char* szName, char (&szWire)[SMGR_SNAPSHOT_WIRE_FNAME_SIZE]) {
  if (StringLength(szName, SMGR_SNAPSHOT_WIRE_FNAME_SIZE) >= SMGR_SNAPSHOT_WIRE_FNAME_SIZE) return false;
  CopyString(szWire, szName, sizeof(szWire));
  return _FixUpSnapshotFileName(szWire, sizeof(szWire));
}

// Copies the smaller of the caller's and the returned nSize and stores the count.
bool CopySizedRecord(const ResponseView& response, size_t nOffset, void* pvRecord) {
  UINT nReturned = 0;
  UINT nCaller = 0;
  response.read(nOffset, &nReturned);  // the minimum response size covers it
  std::memcpy(&nCaller, pvRecord, sizeof(nCaller));
  const UINT nCopied =
      static_cast<UINT>(smgr::CopyRecordBack(response, nOffset, nReturned, pvRecord, nCaller));
  std::memcpy(pvRecord, &nCopied, sizeof(nCopied));
  return true;
}

// A set operation: min(nSize, record) bytes of the caller's record into the zeroed request.
template <typename Request, typename Record>
BOOL SetRecord(const RequestTraits& traits, const Record* pRecord) {
  static_assert(sizeof(Request) == sizeof(SMGRPROT_HEADER) + sizeof(Record));
  Request request{};
  const BOOL bResult = smgr::Transact(traits, &request, sizeof(request), pRecord != nullptr, [&](void*) {
    std::memcpy(&request.Data, pRecord, std::min<size_t>(pRecord->nSize, sizeof(Record)));
    return true;
  });
  if (bResult) {
    SMGR_TRACE_AS(traits.szOperation, 5, "Done (returning TRUE).\n");
  } else if (SMGR_TRACE_ENABLED(5)) {
    char szError[200];
    const SMGR_RESULT error = SessMgr_GetLastError();
    SMGR_TRACE_AS(traits.szOperation, 5, "Done (returning FALSE, error=%d, \"%s\").\n",
                  static_cast<int>(error), SessMgr_GetErrorString(error, szError, sizeof(szError)));
  }
  return bResult;
}

}  // namespace

extern "C" {

SMGR_API BOOL SessMgr_TakeSnapshot(SMGR_SNAPSHOT_CFG* pCfg) {
  SMGR_TRACE(5, "Called (pCfg=%p).\n", static_cast<void*>(pCfg));
  SMGRPROT_MSG_SNAPSHOT_TAKE_REQ request{};
  return smgr::Transact(
      kTakeTraits, &request, sizeof(request), pCfg != nullptr,
      [&](void*) {
        request.Data.Config = *pCfg;  // all 328 bytes, whatever nSize says
        SMGR_SNAPSHOT_CFG& cfg = request.Data.Config;
        if (!_FixUpSnapshotFileName(cfg.szFileName, sizeof(cfg.szFileName))) {
          SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
          return false;
        }
        SMGR_TRACE_AS(kTakeTraits.szOperation, 6, "Encoder %u, file \"%s\".\n", cfg.nVidencID,
                      cfg.szFileName);
        return true;
      },
      [&](const ResponseView& response, SMGR_RESULT*) {
        char szWritten[SMGR_MAX_API_FNAME_SIZE] = "";
        response.copyOut(offsetof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP, Data.szFileName), sizeof(szWritten),
                         szWritten, sizeof(szWritten) - 1);
        CopyString(pCfg->szFileName, szWritten, sizeof(pCfg->szFileName));
        return true;
      });
}

SMGR_API BOOL SessMgr_DeleteSnapshot(const char* szFileName) {
  SMGR_TRACE(5, "Called (szFileName=\"%.300s\").\n", szFileName != nullptr ? szFileName : "(null)");
  SMGRPROT_MSG_SNAPSHOT_DELETE_REQ request{};
  return smgr::Transact(kDeleteTraits, &request, sizeof(request), szFileName != nullptr, [&](void*) {
    if (TakeWireName(szFileName, request.Data.szFileName)) return true;
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return false;
  });
}

SMGR_API BOOL SessMgr_DeleteAllSnapshots(ULONG* pnSnapshotsDeleted) {
  SMGR_TRACE(5, "Called (pnSnapshotsDeleted=%p).\n", static_cast<void*>(pnSnapshotsDeleted));
  SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ request{};
  return smgr::Transact(kDeleteAllTraits, &request, sizeof(request), true, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          UINT nDeleted = 0;
                          response.read(offsetof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP, Data.nCount), &nDeleted);
                          if (pnSnapshotsDeleted != nullptr) *pnSnapshotsDeleted = nDeleted;
                          return true;
                        });
}

SMGR_API BOOL SessMgr_RenameSnapshot(const char* szOldFileName, const char* szNewFileName) {
  SMGR_TRACE(5, "Called (szOldFileName=\"%.300s\", szNewFileName=\"%.300s\").\n",
             szOldFileName != nullptr ? szOldFileName : "(null)",
             szNewFileName != nullptr ? szNewFileName : "(null)");
  SMGRPROT_MSG_SNAPSHOT_RENAME_REQ request{};
  return smgr::Transact(kRenameTraits, &request, sizeof(request),
                        szOldFileName != nullptr && szNewFileName != nullptr, [&](void*) {
                          if (TakeWireName(szOldFileName, request.Data.szOldFileName) &&
                              TakeWireName(szNewFileName, request.Data.szNewFileName))
                            return true;
                          SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
                          return false;
                        });
}

SMGR_API BOOL SessMgr_GetSnapshotDefaults(SMGR_SNAPSHOT_DEFAULTS* pDefaults) {
  SMGR_TRACE(5, "Called (pDefaults=%p).\n", static_cast<void*>(pDefaults));
  if (pDefaults != nullptr)
    SMGR_ASSERT_TEXT(pDefaults->nSize >= sizeof(*pDefaults), "pDefaults->nSize >= sizeof(*pDefaults)");
  SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ request{};
  return smgr::Transact(
      kGetDefaultsTraits, &request, sizeof(request),
      pDefaults != nullptr && pDefaults->nSize >= sizeof(*pDefaults), nullptr,
      [&](const ResponseView& response, SMGR_RESULT*) {
        return CopySizedRecord(
            response, offsetof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP, Data.SnapShotDefaults), pDefaults);
      });
}

SMGR_API BOOL SessMgr_SetSnapshotDefaults(const SMGR_SNAPSHOT_DEFAULTS* pDefaults) {
  SMGR_TRACE(5, "Called (pDefaults=%p).\n", static_cast<const void*>(pDefaults));
  return SetRecord<SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ>(kSetDefaultsTraits, pDefaults);
}

SMGR_API BOOL SessMgr_SetSnapshotAdminCfg(const SMGR_SNAPSHOT_ADMIN_CFG* pSettings) {
  SMGR_TRACE(5, "Called (pSettings=%p).\n", static_cast<const void*>(pSettings));
  return SetRecord<SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ>(kSetAdminTraits, pSettings);
}

SMGR_API BOOL SessMgr_GetSnapshotAdminInfo(SMGR_SNAPSHOT_ADMIN_INFO* pInfo) {
  SMGR_TRACE(5, "Called (pInfo=%p).\n", static_cast<void*>(pInfo));
  if (pInfo != nullptr) SMGR_ASSERT_TEXT(pInfo->nSize >= sizeof(*pInfo), "pInfo->nSize >= sizeof(*pInfo)");
  SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ request{};
  return smgr::Transact(
      kGetAdminTraits, &request, sizeof(request), pInfo != nullptr && pInfo->nSize >= sizeof(*pInfo), nullptr,
      [&](const ResponseView& response, SMGR_RESULT*) {
        return CopySizedRecord(
            response, offsetof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP, Data.SnapShotAdminInfo), pInfo);
      });
}

}  // extern "C"
