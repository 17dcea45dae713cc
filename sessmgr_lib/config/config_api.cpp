// Configuration store operations: save, load, delete, delete all, the saved
// state and auto-save. They depart from the standard request sequence as one
// group (no initialisation check, level 6 traces, the PID check and the
// sequence number before the lock, a wait on the sequence as read after the
// send, success leaving the last error untouched); the traits say so.
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
using smgr::SuccessLastError;
using smgr::SuccessTest;

constexpr RequestTraits ConfigTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                     size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.successLastError = SuccessLastError::Untouched;
  traits.failureLastError = FailureLastError::Result;
  traits.initCheck = smgr::InitCheck::None;
  traits.pidCheck = smgr::PidCheck::BeforeLock;
  traits.adaptFailure = smgr::AdaptFailure::Assert;
  // Taken before the lock, awaited as read after the send: another thread's
  // request in between makes this wait miss (kept as the daemon's clients know it).
  traits.sequenceOrder = smgr::SequenceOrder::BeforeLockWaitCurrent;
  traits.szSendFailureTrace = szSendFailure;
  traits.nExitTraceLevel = 6;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr const char kDeleteSendFailure[] =
    "Failed to send delete config request to sessmgrd, errno (%d):%s.\n";
constexpr const char kAutoSaveSendFailure[] =
    "Failed to send config set auto-save status request to sessmgrd, errno (%d):%s.\n";

constexpr RequestTraits kSaveTraits = [] {
  RequestTraits traits = ConfigTraits("SessMgr_SaveConfig", SMGRPROT_CONFIG_WRITE_REQ,
                                      "Failed to send config write request to sessmgrd, errno (%d):%s.\n");
  traits.nResponseTimeoutMs = 5000;
  return traits;
}();
constexpr RequestTraits kLoadTraits = [] {
  RequestTraits traits = ConfigTraits("SessMgr_LoadConfig", SMGRPROT_CONFIG_READ_REQ,
                                      "Failed to send config read request to sessmgrd, errno (%d):%s.\n");
  traits.nResponseTimeoutMs = 15000;
  traits.success = SuccessTest::ZeroOrWarning;
  traits.successLastError = SuccessLastError::WarningOnly;
  return traits;
}();
constexpr RequestTraits kDeleteTraits = [] {
  RequestTraits traits = ConfigTraits("SessMgr_DeleteConfig", SMGRPROT_CONFIG_DELETE_REQ, kDeleteSendFailure);
  traits.failureLastError = FailureLastError::ResultWithErrno;
  traits.nFailureErrnoOffset = offsetof(SMGRPROT_MSG_CONFIG_VALUE_RSP, iValue);
  return traits;
}();
constexpr RequestTraits kDeleteAllTraits = [] {
  RequestTraits traits = ConfigTraits("SessMgr_DeleteAllConfigs", SMGRPROT_CONFIG_DELETE_ALL_REQ,
                                      kDeleteSendFailure, sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP));
  traits.failureLastError = FailureLastError::ResultWithErrno;
  traits.nFailureErrnoOffset = offsetof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP, iErrno);
  traits.bCopyBackOnFailure = true;  // the count reaches the caller before the result is judged
  return traits;
}();
constexpr RequestTraits kIsSavedTraits =
    ConfigTraits("SessMgr_IsCurrentConfigSaved", SMGRPROT_IS_CONFIG_SAVED_REQ,
                 "Failed to send config is saved request to sessmgrd, errno (%d):%s.\n",
                 sizeof(SMGRPROT_MSG_CONFIG_VALUE_RSP));
constexpr RequestTraits kSetAutoSaveTraits =
    ConfigTraits("SessMgr_SetConfigAutoSaveState", SMGRPROT_CONFIG_SET_AUTOSAVE_REQ, kAutoSaveSendFailure);
constexpr RequestTraits kGetAutoSaveTraits =
    ConfigTraits("SessMgr_GetConfigAutoSaveState", SMGRPROT_CONFIG_GET_AUTOSAVE_REQ, kAutoSaveSendFailure,
                 sizeof(SMGRPROT_MSG_CONFIG_VALUE_RSP));

// Line feed, carriage return, "!" and "*"; anything else is the daemon's business.
bool _AreInvalidCharactersInCfgName(const char* szName) { return std::strpbrk(szName, "\n\r!*") != nullptr; }

bool RefuseName(SMGR_RESULT result) {
  SessMgr_SetLastError(result);
  return false;
}

// Puts the caller's name, completed in the configuration folder with ".cfg",
// into the request field of nFieldSize bytes. NULL leaves the field empty.
// False (last error set) when the name is refused.
bool PrepareName(const char* szFileName, bool bCheckCharacters, char* szField, size_t nFieldSize,
                 SMGR_RESULT tooLong) {
  if (szFileName == nullptr) return true;
  if (bCheckCharacters && _AreInvalidCharactersInCfgName(szFileName))
    return RefuseName(SMGR_ERROR_INVALID_CHARS_IN_FILENAME);
  if (StringLength(szFileName, nFieldSize) >= nFieldSize) return RefuseName(tooLong);
  CopyString(szField, szFileName, nFieldSize);
  if (!FixUpInputFileName(szField, static_cast<int>(nFieldSize), SMGR_CONFIG_FOLDER, SMGR_CONFIG_EXTENSION))
    return RefuseName(tooLong);
  return true;
}

// Sends a request of nRequestSize bytes (a reserved 0 at most) and reads the
// 32-bit BOOL answer into the caller's variable.
BOOL ReadFlag(const RequestTraits& traits, size_t nRequestSize, BOOL* pbFlag) {
  SMGRPROT_MSG_CONFIG_VALUE_REQ request{};
  return smgr::Transact(traits, &request, nRequestSize, pbFlag != nullptr, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          response.read(offsetof(SMGRPROT_MSG_CONFIG_VALUE_RSP, iValue), pbFlag);
                          return true;
                        });
}

}  // namespace

extern "C" {

SMGR_API BOOL SessMgr_SaveConfig(const char* szFileName, int enStartupMode) {
  SMGR_TRACE(6, "Called (szFileName=\"%s\", enStartupMode=%d).\n",
             szFileName != nullptr ? szFileName : "(null)", enStartupMode);
  SMGRPROT_MSG_CONFIG_WRITE_REQ request{};
  return smgr::Transact(kSaveTraits, &request, sizeof(request), true, nullptr, nullptr, [&](void*) {
    request.enStartup = enStartupMode;
    if (szFileName == nullptr) {
      PrintToString(request.szFileName, sizeof(request.szFileName), "%s%s", SMGR_CONFIG_FOLDER,
                    SMGR_STARTUP_CONFIG_NAME);
      return true;
    }
    if (!PrepareName(szFileName, true, request.szFileName, sizeof(request.szFileName),
                     SMGR_ERROR_FILENAME_TOO_LONG))
      return false;
    SMGR_TRACE_AS(kSaveTraits.szOperation, 6, "Fixed up cfg file name =\"%s\".\n", request.szFileName);
    return true;
  });
}

SMGR_API BOOL SessMgr_LoadConfig(const char* szFileName) {
  SMGR_TRACE(6, "Called (szFileName=\"%s\").\n", szFileName != nullptr ? szFileName : "(null)");
  SMGRPROT_MSG_CONFIG_READ_REQ request{};
  return smgr::Transact(kLoadTraits, &request, sizeof(request), true, nullptr, nullptr, [&](void*) {
    return PrepareName(szFileName, true, request.szFileName, sizeof(request.szFileName),
                       SMGR_ERROR_INVALID_PARAMETERS);
  });
}

SMGR_API BOOL SessMgr_DeleteConfig(const char* szFileName) {
  SMGR_TRACE(6, "Called (szFileName=\"%s\").\n", szFileName != nullptr ? szFileName : "(null)");
  SMGRPROT_MSG_CONFIG_DELETE_REQ request{};
  return smgr::Transact(kDeleteTraits, &request, sizeof(request), true, nullptr, nullptr, [&](void*) {
    return PrepareName(szFileName, false, request.szFileName, sizeof(request.szFileName),
                       SMGR_ERROR_INVALID_PARAMETERS);
  });
}

SMGR_API BOOL SessMgr_DeleteAllConfigs(ULONG* pnConfigsDeleted) {
  SMGR_TRACE(6, "Called (pnConfigsDeleted=%p).\n", static_cast<void*>(pnConfigsDeleted));
  SMGRPROT_MSG_CONFIG_PLAIN_REQ request{};
  uint32_t nDeleted = 0;
  const BOOL bResult =
      smgr::Transact(kDeleteAllTraits, &request, sizeof(request), true, nullptr,
                     [&](const ResponseView& response, SMGR_RESULT*) {
                       response.read(offsetof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP, nDeletedCount), &nDeleted);
                       if (pnConfigsDeleted != nullptr) *pnConfigsDeleted = nDeleted;
                       return true;
                     });
  if (bResult) SMGR_TRACE(6, "Done (returning TRUE, %u configs deleted).\n", nDeleted);
  return bResult;
}

SMGR_API BOOL SessMgr_IsCurrentConfigSaved(BOOL* pbAlreadySaved) {
  SMGR_TRACE(6, "Called (pbAlreadySaved=%p).\n", static_cast<void*>(pbAlreadySaved));
  SMGR_ASSERT(pbAlreadySaved != NULL);
  return ReadFlag(kIsSavedTraits, sizeof(SMGRPROT_MSG_CONFIG_VALUE_REQ), pbAlreadySaved);
}

SMGR_API BOOL SessMgr_SetConfigAutoSaveState(BOOL bEnable) {
  SMGR_TRACE(6, "Called (bEnable=%d).\n", bEnable);
  SMGRPROT_MSG_CONFIG_VALUE_REQ request{};
  request.iValue = bEnable;
  return smgr::Transact(kSetAutoSaveTraits, &request, sizeof(request), true);
}

SMGR_API BOOL SessMgr_GetConfigAutoSaveState(BOOL* pbEnabled) {
  SMGR_TRACE(6, "Called (pbEnabled=%p).\n", static_cast<void*>(pbEnabled));
  SMGR_ASSERT(pbEnabled != NULL);
  return ReadFlag(kGetAutoSaveTraits, sizeof(SMGRPROT_MSG_CONFIG_PLAIN_REQ), pbEnabled);
}

}  // extern "C"
