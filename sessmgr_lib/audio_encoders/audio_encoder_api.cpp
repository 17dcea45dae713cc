// Audio encoder operations: open by name into a counted handle (shared by name,
// then by the ID the daemon returns), local close, start, stop, mute,
// configure, information, statistics, enumeration. Each exchange is its
// RequestTraits plus the fill and copy-back steps the request engine runs.
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "audio_encoder_internal.h"
#include "lib_state.h"
#include "lib_trace.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "smgr_protocol.h"
#include "util_string.h"

namespace {

using smgr::AudioEncoderHandles;
using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SendFailure;
using smgr::SuccessLastError;
using smgr::SuccessTest;

// The encoder families' departures: IDs on the wire, Result alone (no
// description), only 0 succeeds, and "not initialised" is a bad argument (2).
constexpr RequestTraits AudioTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                    size_t nMinResponse,
                                    FailureLastError onFailure = FailureLastError::Result,
                                    SendFailure onSendFailure = SendFailure::SetLastError) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = onFailure;
  traits.sendFailure = onSendFailure;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr size_t kResultOnly = sizeof(SMGRPROT_MSG_AUDENC_RESULT_RSP);
constexpr const char* kStartSendFailure =
    "Failed to send encoder start request to sessmgrd, errno (%d):%s.\n";
constexpr const char* kGetConfigSendFailure =
    "Failed to send encoder get config request to sessmgrd, errno (%d):%s.\n";

constexpr RequestTraits kOpenTraits =
    AudioTraits("SessMgr_OpenAudioEncoder", SMGRPROT_AUDENC_OPEN_REQ,
                "Failed to send encoder open request to sessmgrd, errno (%d):%s.\n",
                sizeof(SMGRPROT_MSG_AUDENC_OPEN_RSP));
constexpr RequestTraits kStartTraits =
    AudioTraits("SessMgr_StartAudioEncoder", SMGRPROT_AUDENC_START_REQ, kStartSendFailure, kResultOnly);
constexpr RequestTraits kStopTraits =
    AudioTraits("SessMgr_StopAudioEncoder", SMGRPROT_AUDENC_STOP_REQ,
                "Failed to send encoder stop request to sessmgrd, errno (%d):%s.\n", kResultOnly);
// Mute traces with start's texts, on purpose.
constexpr RequestTraits kMuteTraits =
    AudioTraits("SessMgr_MuteAudioEncoder", SMGRPROT_AUDENC_MUTE_REQ, kStartSendFailure, kResultOnly);
constexpr RequestTraits kConfigureTraits =
    AudioTraits("SessMgr_ConfigureAudioEncoder", SMGRPROT_AUDENC_SETCFG_REQ, kGetConfigSendFailure,
                kResultOnly, FailureLastError::Result, SendFailure::TraceOnly);
constexpr RequestTraits kGetInfoTraits =
    AudioTraits("SessMgr_GetAudioEncoderInfo", SMGRPROT_AUDENC_GETINFO_REQ, kGetConfigSendFailure,
                sizeof(SMGRPROT_MSG_AUDENC_GETINFO_RSP), FailureLastError::Untouched, SendFailure::TraceOnly);
constexpr RequestTraits kGetStatsTraits = AudioTraits(
    "SessMgr_GetAudioEncoderStats", SMGRPROT_AUDENC_GETSTATS_REQ, kGetConfigSendFailure,
    sizeof(SMGRPROT_MSG_AUDENC_GETSTATS_RSP), FailureLastError::Untouched, SendFailure::TraceOnly);
constexpr RequestTraits kResetStatsTraits =
    AudioTraits("SessMgr_ResetAudioEncoderStats", SMGRPROT_AUDENC_RESETSTATS_REQ,
                "Failed to send encoder reset stats request to sessmgrd, errno (%d):%s.\n", kResultOnly,
                FailureLastError::Untouched, SendFailure::TraceOnly);
// Enumerate leaves the last error alone, success or failure; a refusal reaches
// the caller through errno only.
constexpr RequestTraits kEnumerateTraits = [] {
  RequestTraits traits =
      AudioTraits("SessMgr_EnumerateAudioEncoders", SMGRPROT_AUDENC_ENUMERATE_REQ,
                  "Failed to send audio encoder enumeration request to sessmgrd, errno (%d):%s.\n",
                  SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET, FailureLastError::Untouched, SendFailure::TraceOnly);
  traits.successLastError = SuccessLastError::Untouched;
  traits.bCopyBackOnFailure = true;  // to learn the Result that errno reports
  return traits;
}();

BOOL Refuse(const char* szOperation) {
  SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
  SMGR_TRACE_AS(szOperation, 5, "Done (returning FALSE).\n");
  return FALSE;
}

// The common local checks: initialised and a live handle of this family.
bool Usable(HAUDENC hEncoder, SMGR_AUDIO_ENCODER_HANDLE** ppHandle) {
  return smgr::IsLibraryInitialised() && AudioEncoderHandles::IsValid(hEncoder, ppHandle);
}

// Start, stop, reset statistics: the encoder's ID and nothing else.
BOOL IdRequest(const RequestTraits& traits, HAUDENC hEncoder) {
  SMGR_TRACE_AS(traits.szOperation, 6, "Called (hEncoder=%p).\n", static_cast<void*>(hEncoder));
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  if (!Usable(hEncoder, &pHandle)) return Refuse(traits.szOperation);
  SMGRPROT_MSG_AUDENC_ID_REQ request{};
  request.Data.iEncoderID = pHandle->iID;
  return smgr::Transact(traits, &request, sizeof(request), true);
}

// Information and statistics: at most the current record, nSize rewritten.
template <typename Record>
bool CopyCurrentRecord(const ResponseView& response, size_t nOffset, Record* pRecord) {
  const size_t nCopied = response.copyOut(nOffset, sizeof(Record), pRecord, sizeof(Record));
  pRecord->nSize = static_cast<DWORD>(nCopied);
  return true;
}

// The copy-back of one page; with bFailed the Result is only remembered.
struct EnumeratePage {
  smgr::PagedOutputs outputs;
  SMGR_RESULT failure = SMGR_ERROR_SUCCESS;
  BOOL run(UINT nOffset) {
    SMGRPROT_MSG_AUDENC_ENUMERATE_REQ request{};
    request.Data.nNumOfEncoders =
        static_cast<DWORD>(smgr::PagedRequestCount(outputs.nBuffSize, sizeof(SMGR_AUDIO_ENCODER_INFO)));
    request.Data.nStartOffset = nOffset;
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
};

}  // namespace

static void _CleanupAudEncHandles() { AudioEncoderHandles::Cleanup(); }
SMGR_REGISTER_HANDLE_FAMILY(smgr::AudioEncoderHandles, _CleanupAudEncHandles)

extern "C" {

SMGR_API BOOL SessMgr_OpenAudioEncoder(const char* szEncoderName, HAUDENC* phEncoder) {
  SMGR_TRACE(6, "Called (szEncoderName=%s, phEncoder=%p).\n", szEncoderName ? szEncoderName : "NULL",
             static_cast<void*>(phEncoder));
  SMGR_ASSERT(szEncoderName != NULL);
  if (szEncoderName != nullptr) {
    SMGR_ASSERT(szEncoderName[0] != '\0');
    SMGR_ASSERT(strlen(szEncoderName) <= SMGR_MAX_OBJECT_NAME_LENGTH);
  }
  SMGR_ASSERT(phEncoder != NULL);
  if (szEncoderName == nullptr || szEncoderName[0] == '\0' ||
      StringLength(szEncoderName, SMGR_OBJECT_NAME_SIZE) > SMGR_MAX_OBJECT_NAME_LENGTH ||
      phEncoder == nullptr || !smgr::IsLibraryInitialised())
    return Refuse(kOpenTraits.szOperation);

  smgr::ApiLock lock;  // held across the request, so that two threads opening one name share a handle
  SMGR_OBJECT_SELECTOR byName{};
  byName.enType = SMGR_SELECTBY_OBJECT_NAME;
  byName.Via.szName = szEncoderName;
  if (SMGR_AUDIO_ENCODER_HANDLE* pOpen = AudioEncoderHandles::LocateBySelector(&byName)) {
    ++pOpen->nRefCount;
    *phEncoder = pOpen;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    SMGR_TRACE(5, "Done (returning TRUE).\n");
    return TRUE;
  }
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  SMGRPROT_MSG_AUDENC_OPEN_REQ request{};
  CopyString(request.Data.szName, szEncoderName, sizeof(request.Data.szName));
  const BOOL bResult = smgr::Transact(
      kOpenTraits, &request, sizeof(request), true, nullptr,
      [&](const ResponseView& response, SMGR_RESULT* pLastError) {
        int iID = 0;
        response.read(offsetof(SMGRPROT_MSG_AUDENC_OPEN_RSP, Data.iEncoderID), &iID);
        SMGR_TRACE_AS(kOpenTraits.szOperation, 7, "Encoder \"%s\" opened successfully.\n", szEncoderName);
        // _OpenAllocAudEnc: an encoder already open under another name keeps its handle.
        SMGR_OBJECT_SELECTOR byId{};
        byId.enType = SMGR_SELECTBY_OBJECT_ID;
        byId.Via.ID = iID;
        pHandle = AudioEncoderHandles::LocateBySelector(&byId);
        if (pHandle != nullptr) {
          ++pHandle->nRefCount;
        } else if (AudioEncoderHandles::Alloc(&pHandle, iID, szEncoderName)) {
          AudioEncoderHandles::Link(pHandle);
        } else {
          *pLastError = SMGR_ERROR_OUT_OF_MEMORY;
          return false;
        }
        SMGR_TRACE_AS(kOpenTraits.szOperation, 7, "Encoder handle=0x%x.\n",
                      static_cast<unsigned>(reinterpret_cast<uintptr_t>(pHandle)));
        return true;
      });
  *phEncoder = bResult ? pHandle : nullptr;
  return bResult;
}

SMGR_API BOOL SessMgr_CloseAudioEncoder(HAUDENC* phEncoder) {
  SMGR_TRACE(6, "Called (phEncoder=%p).\n", static_cast<void*>(phEncoder));
  SMGR_ASSERT(phEncoder != NULL);
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  // Local and without the API mutex; the caller's variable keeps its value.
  if (phEncoder == nullptr || !AudioEncoderHandles::IsValid(*phEncoder, &pHandle))
    return Refuse("SessMgr_CloseAudioEncoder");
  AudioEncoderHandles::Free(pHandle, true);
  SMGR_TRACE(5, "Done (returning TRUE).\n");
  return TRUE;
}

SMGR_API BOOL SessMgr_StartAudioEncoder(HAUDENC hEncoder) { return IdRequest(kStartTraits, hEncoder); }

SMGR_API BOOL SessMgr_StopAudioEncoder(HAUDENC hEncoder) { return IdRequest(kStopTraits, hEncoder); }

SMGR_API BOOL SessMgr_ResetAudioEncoderStats(HAUDENC hEncoder) {
  return IdRequest(kResetStatsTraits, hEncoder);
}

SMGR_API BOOL SessMgr_MuteAudioEncoder(HAUDENC hEncoder, BOOL bMute) {
  SMGR_TRACE(6, "Called (hEncoder=%p, bMute=%d).\n", static_cast<void*>(hEncoder), bMute);
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  if (!Usable(hEncoder, &pHandle)) return Refuse(kMuteTraits.szOperation);
  SMGRPROT_MSG_AUDENC_MUTE_REQ request{};
  request.Data.iEncoderID = pHandle->iID;
  request.Data.bMute = bMute;  // as given: 2 stays 2
  const BOOL bResult = smgr::Transact(kMuteTraits, &request, sizeof(request), true);
  if (bResult) SMGR_TRACE(7, "Encoder started successfully.\n");
  return bResult;
}

SMGR_API BOOL SessMgr_ConfigureAudioEncoder(HAUDENC hEncoder, const SMGR_AUDIO_ENCODER_CFG* pCfg) {
  SMGR_TRACE(6, "Called (hEncoder=%p, pCfg=%p).\n", static_cast<void*>(hEncoder),
             static_cast<const void*>(pCfg));
  SMGR_ASSERT(pCfg != NULL);
  if (pCfg != nullptr) SMGR_ASSERT(pCfg->nSize >= sizeof(*pCfg));
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  if (!Usable(hEncoder, &pHandle) || pCfg == nullptr || pCfg->nSize < sizeof(*pCfg))
    return Refuse(kConfigureTraits.szOperation);
  SMGRPROT_MSG_AUDENC_SETCFG_REQ request{};
  request.Data.iEncoderID = pHandle->iID;
  std::memcpy(&request.Data.Config, pCfg,
              sizeof(request.Data.Config));  // a longer record sends its first 64 bytes
  if (SMGR_TRACE_ENABLED(6)) _PrintAudioEncoderCfg(&request.Data.Config);
  return smgr::Transact(kConfigureTraits, &request, sizeof(request), true);
}

SMGR_API BOOL SessMgr_GetAudioEncoderInfo(HAUDENC hEncoder, SMGR_AUDIO_ENCODER_INFO* pInfo) {
  SMGR_TRACE(6, "Called (hEncoder=%p, pInfo=%p).\n", static_cast<void*>(hEncoder), static_cast<void*>(pInfo));
  SMGR_ASSERT(pInfo != NULL);
  if (pInfo != nullptr) SMGR_ASSERT(pInfo->nSize >= sizeof(*pInfo));
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  if (!Usable(hEncoder, &pHandle) || pInfo == nullptr || pInfo->nSize < sizeof(*pInfo))
    return Refuse(kGetInfoTraits.szOperation);
  SMGRPROT_MSG_AUDENC_ID_REQ request{};
  request.Data.iEncoderID = pHandle->iID;
  return smgr::Transact(kGetInfoTraits, &request, sizeof(request), true, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          CopyCurrentRecord(response, offsetof(SMGRPROT_MSG_AUDENC_GETINFO_RSP, Data.Config),
                                            pInfo);
                          if (SMGR_TRACE_ENABLED(6)) _PrintAudioEncoderInfo(pInfo);
                          return true;
                        });
}

SMGR_API BOOL SessMgr_GetAudioEncoderStats(HAUDENC hEncoder, SMGR_AUDIO_ENCODER_STATS* pStats) {
  SMGR_TRACE(6, "Called (hEncoder=%p, pStats=%p).\n", static_cast<void*>(hEncoder),
             static_cast<void*>(pStats));
  SMGR_ASSERT(pStats != NULL);
  if (pStats != nullptr) SMGR_ASSERT(pStats->nSize >= sizeof(*pStats));
  SMGR_AUDIO_ENCODER_HANDLE* pHandle = nullptr;
  if (!Usable(hEncoder, &pHandle) || pStats == nullptr || pStats->nSize < sizeof(*pStats))
    return Refuse(kGetStatsTraits.szOperation);
  SMGRPROT_MSG_AUDENC_ID_REQ request{};
  request.Data.iEncoderID = pHandle->iID;
  return smgr::Transact(kGetStatsTraits, &request, sizeof(request), true, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          CopyCurrentRecord(response, offsetof(SMGRPROT_MSG_AUDENC_GETSTATS_RSP, Data.Stats),
                                            pStats);
                          if (SMGR_TRACE_ENABLED(6)) _PrintAudioEncoderStats(pStats);
                          return true;
                        });
}

SMGR_API BOOL SessMgr_EnumerateAudioEncoders(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                             UINT* pnTotalEncoderCount, UINT* pnReturnedEncoders,
                                             size_t* pnElementSize) {
  SMGR_TRACE(6, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u).\n", pvBuffer, nBuffSize, nOffset);
  EnumeratePage page{{pvBuffer, nBuffSize, pnTotalEncoderCount, pnReturnedEncoders, pnElementSize}};
  return page.run(nOffset);
}

SMGR_API BOOL SessMgr_GetAudioEncoderNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize) {
  if (g_bDoStringAPITrace)
    SMGR_TRACE(5, "Called (nOffset=%u, szBuffer=%p, nSize=%zu).\n", nOffset, szBuffer, nSize);
  SMGR_AUDIO_ENCODER_INFO info{};
  UINT nReturned = 0;
  if (!SessMgr_EnumerateAudioEncoders(&info, sizeof(info), nOffset, nullptr, &nReturned, nullptr)) {
    SMGR_TRACE(3, "Error getting encoder name for ID %d.\n", static_cast<int>(nOffset));
    if (g_bDoStringAPITrace) SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  if (nReturned != 1) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
    if (g_bDoStringAPITrace) SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  char szName[SMGR_OBJECT_NAME_SIZE];
  CopyString(szName, info.szName, sizeof(szName));  // the daemon's name may lack its terminator
  CopyString(szBuffer, szName, nSize);
  return TRUE;
}

}  // extern "C"
