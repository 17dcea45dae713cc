// Level 6 dumps of audio encoder records: the configuration before a
// configure request (the ten flag bits the library names; the PTS offset and
// the capture fields are not reported), the information and the statistics.
#include <cinttypes>
#include <cstdarg>
#include <cstdio>

#include "audio_encoder_internal.h"
#include "lib_trace.h"
#include "util_string.h"

namespace {

// A value's name without the value-name operation's own call traces.
struct Name {
  Name(const smgr::ValueNameTable& table, int nValue) {
    smgr::ValueNameTable quiet = table;
    quiet.callTrace = smgr::NameCallTrace::Never;
    smgr::NameOfValue(quiet, nValue, sz, sizeof(sz));
  }
  char sz[64];
};

// One line per named flag bit: "SETTING <label> to <value>." or "NOT Setting <label>.".
void PrintFlag(uint64_t nFlags, uint64_t nBit, const char* szLabel, const char* szFormat, ...)
    __attribute__((format(printf, 4, 5)));
void PrintFlag(uint64_t nFlags, uint64_t nBit, const char* szLabel, const char* szFormat, ...) {
  if ((nFlags & nBit) == 0) {
    SMGR_TRACE_AS("_PrintAudioEncoderCfg", 6, "NOT Setting %s.\n", szLabel);
    return;
  }
  char szValue[96];
  va_list args;
  va_start(args, szFormat);
  vsnprintf(szValue, sizeof(szValue), szFormat, args);
  va_end(args);
  SMGR_TRACE_AS("_PrintAudioEncoderCfg", 6, "SETTING %s to %s.\n", szLabel, szValue);
}

}  // namespace

using namespace smgr::audio_names;

void _PrintAudioEncoderCfg(const SMGR_AUDIO_ENCODER_CFG* pCfg) {
  const uint64_t nFlags = pCfg->SetFieldsFlag;
  char szLanguage[sizeof(pCfg->szLanguage) + 1];
  CopyString(szLanguage, pCfg->szLanguage, sizeof(szLanguage));
  SMGR_TRACE_AS("_PrintAudioEncoderCfg", 6, "SetFieldsFlag = 0x%016llX.\n",
                static_cast<unsigned long long>(nFlags));
  PrintFlag(nFlags, SMGR_AUDENC_SET_INPUT_INTERFACE, "INPUT_INTERFACE", "%s",
            Name(InputTypes(), pCfg->enInputInterface).sz);
  PrintFlag(nFlags, SMGR_AUDENC_SET_BITRATE, "BITRATE", "%uKbps", pCfg->nBitRateInKbps);
  PrintFlag(nFlags, SMGR_AUDENC_SET_SAMPLE_RATE, "SAMPLE_RATE", "%dKHz", pCfg->enSampleRate);
  PrintFlag(nFlags, SMGR_AUDENC_SET_CRC, "CRC", "%s", pCfg->bEnableCRCs ? "TRUE" : "FALSE");
  PrintFlag(nFlags, SMGR_AUDENC_SET_DELAY, "DELAY", "%ums", pCfg->nDelayInMS);
  PrintFlag(nFlags, SMGR_AUDENC_SET_MODE, "MODE", "%s", Name(kModes, pCfg->enMode).sz);
  PrintFlag(nFlags, SMGR_AUDENC_SET_ALGORITHM, "ALGORITHM", "%s", Name(kAlgorithms, pCfg->enAlgorithm).sz);
  PrintFlag(nFlags, SMGR_AUDENC_SET_INPUT_LEVEL, "INPUT_LEVEL", "%d", pCfg->nInputLevel);
  PrintFlag(nFlags, SMGR_AUDENC_SET_STC_SOURCE_IF, "STC_SOURCE_IF", "%s",
            Name(kStcSources, pCfg->enSTCSourceInterface).sz);
  PrintFlag(nFlags, SMGR_AUDENC_SET_LANGUAGE, "LANGUAGE", "%s", szLanguage);
}

void _PrintAudioEncoderInfo(const SMGR_AUDIO_ENCODER_INFO* pInfo) {
  char szName[SMGR_OBJECT_NAME_SIZE];
  char szFile[sizeof(pInfo->szCaptureFileName)];
  char szLanguage[sizeof(pInfo->szLanguage) + 1];
  CopyString(szName, pInfo->szName, sizeof(szName));
  CopyString(szFile, pInfo->szCaptureFileName, sizeof(szFile));
  CopyString(szLanguage, pInfo->szLanguage, sizeof(szLanguage));
  const char* szFn = "_PrintAudioEncoderInfo";
  SMGR_TRACE_AS(szFn, 6, "Name = \"%s\", ID = %u.\n", szName, pInfo->nID);
  SMGR_TRACE_AS(szFn, 6, "Input = %s, algorithm = %s, mode = %s.\n",
                Name(InputTypes(), pInfo->enInputInterface).sz, Name(kAlgorithms, pInfo->enAlgorithm).sz,
                Name(kModes, pInfo->enMode).sz);
  SMGR_TRACE_AS(szFn, 6, "Bit rate = %uKbps, sample rate = %dKHz, CRCs = %d, delay = %ums.\n",
                pInfo->nBitRateInKbps, pInfo->enSampleRate, pInfo->bEnableCRCs, pInfo->nDelayInMS);
  SMGR_TRACE_AS(szFn, 6, "PTS offset = %d, capture = %d (max %dKB, \"%s\").\n", pInfo->nPTSOffset,
                pInfo->bCaptureToDisk, pInfo->nMaxCaptureSizeInKBytes, szFile);
  SMGR_TRACE_AS(szFn, 6, "Input level = %d, STC source = %s, language = \"%s\".\n", pInfo->nInputLevel,
                Name(kStcSources, pInfo->enSTCSourceInterface).sz, szLanguage);
}

void _PrintAudioEncoderStats(const SMGR_AUDIO_ENCODER_STATS* pStats) {
  const char* szFn = "_PrintAudioEncoderStats";
  SMGR_TRACE_AS(szFn, 6, "State = %s, since up-time %us.\n", Name(kStates, pStats->enState).sz,
                pStats->nLastStateChangeUpTimeInSecs);
  SMGR_TRACE_AS(szFn, 6,
                "Frames = %" PRIu64 ", bytes = %" PRIu64 ", errors = %" PRIu64 ", PTS = %" PRId64 ".\n",
                static_cast<uint64_t>(pStats->nEncodedFrames), static_cast<uint64_t>(pStats->nEncodedBytes),
                static_cast<uint64_t>(pStats->nErrors), static_cast<int64_t>(pStats->nCurrentPTS));
  SMGR_TRACE_AS(szFn, 6,
                "Capture = %s (%" PRIu64 " bytes), bit rate = %dKbps, STC source = %s, max sample = %d.\n",
                Name(kCaptureStates, pStats->enCaptureState).sz, static_cast<uint64_t>(pStats->nCaptureSize),
                pStats->nBitRateInKbps, Name(kStcSources, pStats->enSTCSourceInterface).sz,
                static_cast<int>(pStats->nMaxSampleValue));
}
