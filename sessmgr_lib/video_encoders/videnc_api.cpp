// Video encoder operations: open, close, start, stop, reset, configure,
// information, statistics, control, parameter sets and enumeration. Each is a
// RequestTraits declaration plus the build and copy-back steps the request
// engine runs; the family's departures (result 2 when not initialised, no
// description, PID check and sequence before the lock, last error left alone
// by the query operations) are all declared in the traits below.
#include <errno.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_string.h"
#include "videnc_internal.h"

namespace {

using smgr::FailureLastError;
using smgr::PidCheck;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SendFailure;
using smgr::SequenceOrder;
using smgr::SuccessTest;
using smgr::VideoEncoderHandles;
using Handle = SMGR_VIDEO_ENCODER_HANDLE;

constexpr size_t kInfoSize = sizeof(SMGR_VIDEO_ENCODER_INFO);    // 220
constexpr size_t kStatsSize = sizeof(SMGR_VIDEO_ENCODER_STATS);  // 304
constexpr size_t kCfgSize = sizeof(SMGR_VIDEO_ENCODER_CFG);      // 148
constexpr size_t kSpsScratchSize = 300;
constexpr size_t kSpropTextSize = 600;

// Whether a failure sets the last error: callers of this family read it only
// after open, start, stop, reset, configure and enumerate.
enum class Reports { LastError, Nothing };

// The family's common departures: numeric IDs, a bare 20-byte result head,
// only 0 succeeds, 2 when not initialised, PID check and sequence number
// before the lock.
constexpr RequestTraits VidEncTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                     Reports reports, size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.pidCheck = PidCheck::BeforeLock;
  traits.sequenceOrder = SequenceOrder::BeforeLock;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  traits.failureLastError =
      reports == Reports::LastError ? FailureLastError::Result : FailureLastError::Untouched;
  traits.sendFailure = reports == Reports::LastError ? SendFailure::SetLastError : SendFailure::TraceOnly;
  return traits;
}

// The same text for configure, information, statistics and control (kept as it is).
constexpr const char* kGetConfigSendFailure =
    "Failed to send encoder get config request to sessmgrd, errno (%d):%s.\n";

constexpr RequestTraits kOpenTraits =
    VidEncTraits("SessMgr_OpenVideoEncoder", SMGRPROT_VIDENC_OPEN_REQ,
                 "Failed to send encoder open request to sessmgrd, errno (%d):%s.\n", Reports::LastError,
                 sizeof(SMGRPROT_MSG_VIDENC_OPEN_RSP));
constexpr RequestTraits kStartTraits =
    VidEncTraits("SessMgr_StartVideoEncoder", SMGRPROT_VIDENC_START_REQ,
                 "Failed to send encoder start request to sessmgrd, errno (%d):%s.\n", Reports::LastError);
constexpr RequestTraits kStopTraits =
    VidEncTraits("SessMgr_StopVideoEncoder", SMGRPROT_VIDENC_STOP_REQ,
                 "Failed to send encoder stop request to sessmgrd, errno (%d):%s.\n", Reports::LastError);
constexpr RequestTraits kResetTraits =
    VidEncTraits("SessMgr_ResetVideoEncoder", SMGRPROT_VIDENC_RESET_REQ,
                 "Failed to send encoder reset request to sessmgrd, errno (%d):%s.\n", Reports::LastError);
// Configure reports the daemon's result but only traces a send failure.
constexpr RequestTraits kConfigureTraits = [] {
  RequestTraits traits = VidEncTraits("SessMgr_ConfigureVideoEncoder", SMGRPROT_VIDENC_SETCFG_REQ,
                                      kGetConfigSendFailure, Reports::LastError);
  traits.sendFailure = SendFailure::TraceOnly;
  return traits;
}();
constexpr RequestTraits kGetInfoTraits =
    VidEncTraits("SessMgr_GetVideoEncoderInfo", SMGRPROT_VIDENC_GETINFO_REQ, kGetConfigSendFailure,
                 Reports::Nothing, offsetof(SMGRPROT_MSG_VIDENC_GETINFO_RSP, Data.Config));
constexpr RequestTraits kGetStatsTraits =
    VidEncTraits("SessMgr_GetVideoEncoderStats", SMGRPROT_VIDENC_GETSTATS_REQ, kGetConfigSendFailure,
                 Reports::Nothing, offsetof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP, Data.Stats));
constexpr RequestTraits kResetStatsTraits = VidEncTraits(
    "SessMgr_ResetVideoEncoderStats", SMGRPROT_VIDENC_RESETSTATS_REQ,
    "Failed to send encoder reset stats request to sessmgrd, errno (%d):%s.\n", Reports::Nothing);
constexpr RequestTraits kControlTraits =
    VidEncTraits("SessMgr_ControlVideoEncoder", SMGRPROT_VIDENC_CONTROL_REQ, kGetConfigSendFailure,
                 Reports::Nothing, offsetof(SMGRPROT_MSG_VIDENC_CONTROL_RSP, Data.abData));
constexpr RequestTraits kSpropTraits =
    VidEncTraits("SessMgr_GetVideoEncoderSPROP", SMGRPROT_VIDENC_GETSPSPPS_REQ,
                 "Failed to send encoder get ssps-pps request to sessmgrd, errno (%d):%s.\n",
                 Reports::Nothing, sizeof(SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP));
// Enumerate skips the initialisation check, reports the daemon's result (and
// puts it into errno) but only traces a send failure.
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      VidEncTraits("SessMgr_EnumerateVideoEncoders", SMGRPROT_VIDENC_ENUMERATE_REQ,
                   "Failed to send video encoder enumeration request to sessmgrd, errno (%d):%s.\n",
                   Reports::LastError, offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.EncoderInfo));
  traits.initCheck = smgr::InitCheck::None;
  traits.sendFailure = SendFailure::TraceOnly;
  traits.bCopyBackOnFailure = true;  // to learn the failing Result for errno
  return traits;
}();

BOOL Done(const RequestTraits& traits, BOOL bResult) {
  SMGR_TRACE_AS(traits.szOperation, 5, "Done (returning %s).\n", SMGR_BOOL_TEXT(bResult));
  return bResult;
}

BOOL Invalid(const RequestTraits& traits) {
  SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
  return Done(traits, FALSE);
}

// Valid: non-NULL and carrying the family signature (an HVIDIN or a stream
// handle is not); no list search.
Handle* ValidHandle(HVIDENC hEncoder) {
  Handle* pHandle = nullptr;
  return VideoEncoderHandles::IsValid(hEncoder, &pHandle) ? pHandle : nullptr;
}

unsigned Hex(const void* pv) { return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pv)); }

// The requests that carry the encoder ID alone. An invalid handle or argument
// sends nothing and reports 2 (so does a library that is not initialised).
BOOL IdRequest(const RequestTraits& traits, HVIDENC hEncoder, bool bOtherArgumentsValid,
               smgr::CopyBackStep copyBack = nullptr) {
  SMGRPROT_MSG_VIDENC_ID_REQ request{};
  Handle* pHandle = ValidHandle(hEncoder);
  if (pHandle != nullptr) request.Data.iEncoderID = pHandle->iID;
  return smgr::Transact(traits, &request, sizeof(request), pHandle != nullptr && bOtherArgumentsValid,
                        nullptr, copyBack);
}

// Copies min(caller's nSize, nRecordSize) bytes of the daemon's record (never
// past what arrived) and writes the number copied into the caller's nSize.
bool CopySizedRecord(const ResponseView& response, size_t nOffset, size_t nRecordSize, void* pvRecord) {
  uint32_t nCallerSize = 0;
  std::memcpy(&nCallerSize, pvRecord, sizeof(nCallerSize));
  const size_t nWanted = std::min<size_t>(nCallerSize, nRecordSize);
  const uint32_t nCopied = static_cast<uint32_t>(response.copyOut(nOffset, nWanted, pvRecord, nWanted));
  std::memcpy(pvRecord, &nCopied, sizeof(nCopied));
  return true;
}

// The linked handle opened under this exact name (case-sensitive), if any.
Handle* LocateByName(const char* szName) {
  for (FNODE_D* pNode = VideoEncoderHandles::List().pHead; pNode != nullptr; pNode = pNode->pNext) {
    Handle* pHandle = static_cast<Handle*>(pNode->pvObject);
    if (std::strcmp(pHandle->szName, szName) == 0) return pHandle;
  }
  return nullptr;
}

Handle* LocateById(int iID) {
  for (FNODE_D* pNode = VideoEncoderHandles::List().pHead; pNode != nullptr; pNode = pNode->pNext) {
    Handle* pHandle = static_cast<Handle*>(pNode->pvObject);
    if (pHandle->iID == iID) return pHandle;
  }
  return nullptr;
}

// After the daemon opened the encoder: the handle of its ID when this process
// already has one (opened under another name, which it keeps), else a new one.
Handle* OpenAllocVidEnc(int iID, const char* szName) {
  if (Handle* pExisting = LocateById(iID)) {
    ++pExisting->nRefCount;
    return pExisting;
  }
  Handle* pHandle = nullptr;
  if (!VideoEncoderHandles::Alloc(&pHandle, iID, szName)) return nullptr;
  VideoEncoderHandles::Link(pHandle);
  return pHandle;
}

void CleanupVidEncList() { VideoEncoderHandles::Cleanup(); }

// Base64 of one parameter set into the 300-byte scratch; false when the size
// lies (over 256, past the bytes received) or the text does not fit.
bool EncodeParameterSet(const ResponseView& response, size_t nSizeOffset, size_t nDataOffset,
                        char* szScratch) {
  uint64_t nSize64 = 0;
  response.read(nSizeOffset, &nSize64);
  const uint32_t nSize = static_cast<uint32_t>(nSize64);  // only the low 32 bits count
  if (nSize > SMGRPROT_VIDENC_PARAMETER_SET_SIZE || !response.holds(nDataOffset, nSize)) return false;
  return Base64Encode(response.bytes() + nDataOffset, nSize, szScratch, kSpsScratchSize, nullptr) != FALSE;
}

// Enumeration shared by the exported operation and name-at-index.
BOOL Enumerate(void* pvBuffer, size_t nBuffSize, UINT nOffset, UINT* pnTotal, UINT* pnReturned,
               size_t* pnElementSize) {
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  if (!smgr::IsLibraryInitialised()) {
    // The request queue is closed: the send fails, traced only.
    if (SMGR_TRACE_ENABLED(3)) {
      char szErrno[80];
      SMGR_TRACE_AS(kEnumerateTraits.szOperation, 3, kEnumerateTraits.szSendFailureTrace, EBADF,
                    strerror_r(EBADF, szErrno, sizeof(szErrno)));
    }
    return Done(kEnumerateTraits, FALSE);
  }
  UINT nWanted = static_cast<UINT>(nBuffSize / kInfoSize);
  if (nBuffSize == kInfoSize) {
    SMGR_TRACE_AS(kEnumerateTraits.szOperation, 6, "Detected current client.\n");
    nWanted = 1;
  }
  SMGRPROT_MSG_VIDENC_ENUMERATE_REQ request{};
  request.Data.nNumOfEncoders = nWanted;
  request.Data.nStartOffset = nOffset;
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotal, pnReturned, pnElementSize};
  SMGR_RESULT failure = SMGR_ERROR_SUCCESS;
  const BOOL bResult = smgr::Transact(kEnumerateTraits, &request, sizeof(request), true, nullptr,
                                      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
                                        if (response.result() != SMGR_ERROR_SUCCESS) {
                                          failure = response.result();
                                          return true;
                                        }
                                        return smgr::CopyPagedEnumeration(
                                            response, smgr::kStandardPagedLayout, outputs, pLastError);
                                      });
  if (failure != SMGR_ERROR_SUCCESS) errno = static_cast<int>(failure);
  return bResult;
}

}  // namespace

SMGR_REGISTER_HANDLE_FAMILY(smgr::VideoEncoderHandles, CleanupVidEncList)

extern "C" {

SMGR_API BOOL SessMgr_OpenVideoEncoder(const char* szEncoderName, HVIDENC* phEncoder) {
  SMGR_TRACE(6, "Called (szEncoderName=\"%s\", phEncoder=0x%x).\n",
             szEncoderName != nullptr ? szEncoderName : "(null)", Hex(phEncoder));
  SMGR_ASSERT_TEXT(szEncoderName != nullptr, "szEncoderName != NULL");
  const bool bHasName = szEncoderName != nullptr && szEncoderName[0] != '\0';
  if (szEncoderName != nullptr) SMGR_ASSERT_TEXT(bHasName, "szEncoderName[0] != '\\0'");
  const bool bNameFits =
      bHasName && StringLength(szEncoderName, SMGR_OBJECT_NAME_SIZE) <= SMGR_MAX_OBJECT_NAME_LENGTH;
  if (bHasName) SMGR_ASSERT_TEXT(bNameFits, "strlen(szEncoderName) <= SMGR_MAX_OBJECT_NAME_LENGTH");
  SMGR_ASSERT_TEXT(phEncoder != nullptr, "phEncoder != NULL");
  if (!bNameFits || phEncoder == nullptr || !smgr::IsLibraryInitialised()) return Invalid(kOpenTraits);

  // Locked before the name lookup, and held across the request, so that two
  // threads opening one encoder share a handle.
  smgr::ApiLock lock;
  if (Handle* pExisting = LocateByName(szEncoderName)) {
    ++pExisting->nRefCount;
    *phEncoder = reinterpret_cast<HVIDENC>(pExisting);
    return Done(kOpenTraits, TRUE);
  }
  SMGRPROT_MSG_VIDENC_OPEN_REQ request{};
  CopyString(request.Data.szName, szEncoderName, sizeof(request.Data.szName));
  Handle* pOpened = nullptr;
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true, nullptr,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        int32_t iEncoderID = 0;
        response.read(offsetof(SMGRPROT_MSG_VIDENC_OPEN_RSP, Data.iEncoderID), &iEncoderID);
        SMGR_TRACE_AS(kOpenTraits.szOperation, 7, "Encoder \"%s\" opened successfully.\n", szEncoderName);
        pOpened = OpenAllocVidEnc(iEncoderID, szEncoderName);
        if (pOpened == nullptr) {
          *pLastError = SMGR_ERROR_OUT_OF_MEMORY;
          return false;
        }
        SMGR_TRACE_AS(kOpenTraits.szOperation, 7, "Encoder handle=0x%x.\n", Hex(pOpened));
        return true;
      });
  *phEncoder = reinterpret_cast<HVIDENC>(pOpened);  // NULL on any failure
  return bResult;
}

SMGR_API BOOL SessMgr_CloseVideoEncoder(HVIDENC* phEncoder) {
  SMGR_TRACE(6, "Called (phEncoder=0x%x).\n", Hex(phEncoder));
  SMGR_ASSERT_TEXT(phEncoder != nullptr, "phEncoder != NULL");
  if (phEncoder != nullptr) SMGR_ASSERT_TEXT(*phEncoder != nullptr, "*phEncoder != NULL");
  // Local and without the API mutex: callers must not close a handle while
  // another thread opens or closes the same encoder.
  Handle* pHandle = phEncoder != nullptr && *phEncoder != nullptr ? ValidHandle(*phEncoder) : nullptr;
  if (pHandle == nullptr) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  VideoEncoderHandles::Free(pHandle, true);  // the caller's variable is kept
  SMGR_TRACE(5, "Done (returning TRUE).\n");
  return TRUE;
}

SMGR_API BOOL SessMgr_StartVideoEncoder(HVIDENC hEncoder) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x).\n", Hex(hEncoder));
  return IdRequest(kStartTraits, hEncoder, true);
}

SMGR_API BOOL SessMgr_StopVideoEncoder(HVIDENC hEncoder) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x).\n", Hex(hEncoder));
  return IdRequest(kStopTraits, hEncoder, true);
}

SMGR_API BOOL SessMgr_ResetVideoEncoder(HVIDENC hEncoder) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x).\n", Hex(hEncoder));
  return IdRequest(kResetTraits, hEncoder, true);
}

SMGR_API BOOL SessMgr_ResetVideoEncoderStats(HVIDENC hEncoder) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x).\n", Hex(hEncoder));
  return IdRequest(kResetStatsTraits, hEncoder, true);
}

SMGR_API BOOL SessMgr_ConfigureVideoEncoder(HVIDENC hEncoder, const SMGR_VIDEO_ENCODER_CFG* pCfg) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x, pCfg=0x%x).\n", Hex(hEncoder), Hex(pCfg));
  SMGR_ASSERT_TEXT(pCfg != nullptr, "pCfg != NULL");
  SMGRPROT_MSG_VIDENC_SETCFG_REQ request{};
  Handle* pHandle = ValidHandle(hEncoder);
  const bool bValid = pHandle != nullptr && pCfg != nullptr;
  if (bValid) {
    request.Data.iEncoderID = pHandle->iID;
    // An older caller's shorter record leaves the newer fields zero; no range checks here.
    std::memcpy(&request.Data.Config, pCfg, std::min<size_t>(pCfg->nSize, kCfgSize));
    _PrintVideoEncoderCfg(&request.Data.Config);
  }
  return smgr::Transact(kConfigureTraits, &request, sizeof(request), bValid);
}

SMGR_API BOOL SessMgr_GetVideoEncoderInfo(HVIDENC hEncoder, SMGR_VIDEO_ENCODER_INFO* pInfo) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x, pInfo=0x%x).\n", Hex(hEncoder), Hex(pInfo));
  SMGR_ASSERT_TEXT(pInfo != nullptr, "pInfo != NULL");
  return IdRequest(
      kGetInfoTraits, hEncoder, pInfo != nullptr, [&](const ResponseView& response, SMGR_RESULT*) {
        CopySizedRecord(response, offsetof(SMGRPROT_MSG_VIDENC_GETINFO_RSP, Data.Config), kInfoSize, pInfo);
        if (pInfo->nSize >= kInfoSize) _PrintVideoEncoderInfo(pInfo);
        return true;
      });
}

SMGR_API BOOL SessMgr_GetVideoEncoderStats(HVIDENC hEncoder, SMGR_VIDEO_ENCODER_STATS* pStats) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x, pStats=0x%x).\n", Hex(hEncoder), Hex(pStats));
  SMGR_ASSERT_TEXT(pStats != nullptr, "pStats != NULL");
  return IdRequest(kGetStatsTraits, hEncoder, pStats != nullptr,
                   [&](const ResponseView& response, SMGR_RESULT*) {
                     return CopySizedRecord(response, offsetof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP, Data.Stats),
                                            kStatsSize, pStats);
                   });
}

SMGR_API BOOL SessMgr_ControlVideoEncoder(HVIDENC hEncoder, int enCommand, void* pvCmdData,
                                          size_t* pnCmdDataSize) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x, enCommand=%d, pvCmdData=0x%x, pnCmdDataSize=0x%x).\n", Hex(hEncoder),
             enCommand, Hex(pvCmdData), Hex(pnCmdDataSize));
  SMGRPROT_MSG_VIDENC_CONTROL_REQ request{};
  bool bDataValid = true;
  if (pnCmdDataSize != nullptr) {
    SMGR_ASSERT_TEXT(pvCmdData != nullptr, "pvCmdData != NULL");
    SMGR_ASSERT_TEXT(*pnCmdDataSize <= sizeof(request.Data.abData),
                     "*pnCmdDataSize <= sizeof(Request.Data.abData)");
    bDataValid = pvCmdData != nullptr && *pnCmdDataSize <= sizeof(request.Data.abData);
  }
  Handle* pHandle = ValidHandle(hEncoder);
  const bool bValid = pHandle != nullptr && bDataValid;
  if (bValid) {
    request.Data.iEncoderID = pHandle->iID;
    request.Data.enCommand = enCommand;
    if (pnCmdDataSize != nullptr) {
      request.Data.nDataSize = static_cast<int32_t>(*pnCmdDataSize);
      std::memcpy(request.Data.abData, pvCmdData, *pnCmdDataSize);
    }
  }
  return smgr::Transact(
      kControlTraits, &request, sizeof(request), bValid, nullptr,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        uint32_t nDataSize = 0;
        response.read(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_RSP, Data.nDataSize), &nDataSize);
        if (nDataSize == 0 || pnCmdDataSize == nullptr) return true;  // caller's data kept
        const size_t nOffset = offsetof(SMGRPROT_MSG_VIDENC_CONTROL_RSP, Data.abData);
        SMGR_ASSERT_TEXT(*pnCmdDataSize >= nDataSize, "*pnCmdDataSize >= pResponse->Data.nDataSize");
        if (nDataSize > *pnCmdDataSize || !response.holds(nOffset, nDataSize)) {
          *pLastError = SessMgr_GetLastError();  // FALSE with the last error as it was
          return false;
        }
        response.copyOut(nOffset, nDataSize, pvCmdData, *pnCmdDataSize);
        *pnCmdDataSize = nDataSize;
        return true;
      });
}

SMGR_API BOOL SessMgr_GetVideoEncoderSPROP(HVIDENC hEncoder, char* szBuffer, size_t* pnSize) {
  SMGR_TRACE(6, "Called (hEncoder=0x%x, szBuffer=0x%x, pnSize=0x%x).\n", Hex(hEncoder), Hex(szBuffer),
             Hex(pnSize));
  SMGR_ASSERT_TEXT(pnSize != nullptr, "pnSize != NULL");
  if (pnSize != nullptr) SMGR_ASSERT_TEXT(*pnSize > 0, "*pnSize > 0");
  const bool bValid = szBuffer != nullptr && pnSize != nullptr && *pnSize > 0;
  return IdRequest(kSpropTraits, hEncoder, bValid,
                   [&](const ResponseView& response, SMGR_RESULT* pLastError) {
                     using Rsp = SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP;
                     char szSps[kSpsScratchSize];
                     char szPps[kSpsScratchSize];
                     if (!EncodeParameterSet(response, offsetof(Rsp, Data.nSPSSize),
                                             offsetof(Rsp, Data.abSPSBuffer), szSps) ||
                         !EncodeParameterSet(response, offsetof(Rsp, Data.nPPSSize),
                                             offsetof(Rsp, Data.abPPSBuffer), szPps)) {
                       SMGR_TRACE_AS(kSpropTraits.szOperation, 3, "Failed to encode the parameter sets.\n");
                       *pLastError = SessMgr_GetLastError();  // FALSE without a last error of its own
                       return false;
                     }
                     char szText[kSpropTextSize];
                     CopyString(szText, szSps, sizeof(szText));
                     StringCat(szText, ",", sizeof(szText));
                     StringCat(szText, szPps, sizeof(szText));
                     CopyString(szBuffer, szText, *pnSize);
                     *pnSize = std::strlen(szText);
                     return true;
                   });
}

SMGR_API BOOL SessMgr_EnumerateVideoEncoders(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                             UINT* pnTotalEncoderCount, UINT* pnReturnedEncoders,
                                             size_t* pnElementSize) {
  SMGR_TRACE(6, "Called (pvBuffer=0x%x, nBuffSize=%zu, nOffset=%u).\n", Hex(pvBuffer), nBuffSize, nOffset);
  return Enumerate(pvBuffer, nBuffSize, nOffset, pnTotalEncoderCount, pnReturnedEncoders, pnElementSize);
}

SMGR_API BOOL SessMgr_GetVideoEncoderNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize) {
  const bool bTraced = g_bDoStringAPITrace != FALSE;
  if (bTraced)
    SMGR_TRACE(6, "Called (nOffset=%u, szBuffer=0x%x, nSize=%zu).\n", nOffset, Hex(szBuffer), nSize);
  SMGR_VIDEO_ENCODER_INFO info{};
  UINT nReturned = 0;
  if (!Enumerate(&info, sizeof(info), nOffset, nullptr, &nReturned, nullptr)) {
    SMGR_TRACE(3, "Error getting encoder name for ID %d.\n", static_cast<int>(nOffset));
    if (bTraced) SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  if (nReturned != 1) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
    if (bTraced) SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  char szName[SMGR_OBJECT_NAME_SIZE];
  CopyString(szName, info.szName, sizeof(szName));  // the daemon's name may lack its terminator
  if (szBuffer != nullptr) CopyString(szBuffer, szName, nSize);
  SMGR_TRACE(5, "Done (returning TRUE).\n");
  return TRUE;
}

}  // extern "C"
