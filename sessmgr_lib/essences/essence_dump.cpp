// Level 6 traces of essence configurations: the creation dump of every field
// and the configure dump of the flagged fields, with the texts the daemon's
// developers read in the field.
#include <cstdarg>
#include <cstdio>

#include "essence_internal.h"
#include "lib_trace.h"
#include "util_string.h"
#include "value_names.h"

namespace {

constexpr int kDumpLevel = 6;
constexpr size_t kTextSize = 600;  // an address with its host name

// A value's name without the value-name operation's own call traces.
const char* Name(const smgr::ValueNameTable& table, int nValue, char* szBuffer, size_t nSize) {
  smgr::ValueNameTable quiet = table;
  quiet.callTrace = smgr::NameCallTrace::Never;
  return smgr::NameOfValue(quiet, nValue, szBuffer, nSize);
}

const char* Address(const SMGR_IP_ADDRESS& address, char* szBuffer, size_t nSize) {
  return GetIPAddressDebugString(&address, szBuffer, nSize);
}

void Dump(const char* szFunction, const char* szFormat, ...) __attribute__((format(printf, 2, 3)));
void Dump(const char* szFunction, const char* szFormat, ...) {
  char szLine[kTextSize + 128];
  va_list args;
  va_start(args, szFormat);
  vsnprintf(szLine, sizeof(szLine), szFormat, args);
  va_end(args);
  SMGR_TRACE_AS(szFunction, kDumpLevel, "%s", szLine);
}

// Formats print the 64-bit code with "%d": the low 32 bits are passed.
int Low32(VIDEO_FORMAT lFormat) { return static_cast<int>(static_cast<uint32_t>(lFormat)); }

}  // namespace

char* _EssenceVideoFormatText(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return szBuffer;
  if (lFormat & 0x8000000000000000ull) {
    const unsigned nWidth = static_cast<unsigned>((lFormat >> 22) & 0x1FFF);
    const unsigned nHeight = static_cast<unsigned>((lFormat >> 9) & 0x1FFF);
    const unsigned nRate = static_cast<unsigned>((lFormat >> 1) & 0xFF);
    snprintf(szBuffer, nSize, "%ux%u%c%u", nWidth, nHeight, (lFormat & 1) ? 'i' : 'p', nRate);
  } else if (lFormat == 1) {
    CopyString(szBuffer, "Unknown", nSize);
  } else if (lFormat == 10) {
    CopyString(szBuffer, "720x480i29", nSize);
  } else if (lFormat == 0) {
    CopyString(szBuffer, "Auto-Detect", nSize);
  } else {
    snprintf(szBuffer, nSize, "(Invalid:%d)", Low32(lFormat));
  }
  return szBuffer;
}

void _PrintEssenceCfg(const SMGR_ESSENCE_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(kDumpLevel)) return;
  const char* szFn = "_PrintEssenceCfg";
  char szText[kTextSize];
  Dump(szFn, "nIndex = %d.\n", pCfg->nIndex);
  Dump(szFn, "szName = \"%.*s\".\n", static_cast<int>(sizeof(pCfg->szName)), pCfg->szName);
  Dump(szFn, "bAutoStart = %s.\n", pCfg->bAutoStart ? "Yes" : "No");
  Dump(szFn, "nInputChannel= %d.\n", static_cast<int>(pCfg->nInputChannel));
  Dump(szFn, "enMediaType = \"%s\":%d.\n",
       Name(smgr::essence_names::kMediaTypes, pCfg->enMediaType, szText, sizeof(szText)), pCfg->enMediaType);
  if (pCfg->enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    const VIDEO_FORMAT lFormat = pCfg->Media.Video.enInputFormat;
    Dump(szFn, "Media.Video.enInputFormat = \"%s\":%d.\n",
         _EssenceVideoFormatText(lFormat, szText, sizeof(szText)), Low32(lFormat));
  } else if (pCfg->enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO) {
    Dump(szFn, "Media.Audio.nNumOfChannels = %d.\n", static_cast<int>(pCfg->Media.Audio.nNumOfChannels));
    Dump(szFn, "Media.Audio.enPacketTime = \"%s\":%d.\n",
         Name(smgr::essence_names::kPacketTimes, pCfg->Media.Audio.enPacketTime, szText, sizeof(szText)),
         pCfg->Media.Audio.enPacketTime);
  }
  Dump(szFn, "Address = %s.\n", Address(pCfg->Address, szText, sizeof(szText)));
  Dump(szFn, "usPort =  %u.\n", static_cast<unsigned>(pCfg->usPort));
  Dump(szFn, "SourceAddress = %s.\n", Address(pCfg->SourceAddress, szText, sizeof(szText)));
}

void _PrintEssenceSetFields(const SMGR_ESSENCE_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(kDumpLevel)) return;
  const char* szFn = "_PrintEssenceSetFields";
  char szText[kTextSize];
  const uint64_t flags = pCfg->SetFieldsFlag;
  Dump(szFn, "SetFieldsFlag = 0x%016llX.\n", static_cast<unsigned long long>(flags));
  if (flags & SMGR_ESSENCE_SET_INDEX) Dump(szFn, "Setting ESSENCE_INDEX to %d.\n", pCfg->nIndex);
  if (flags & SMGR_ESSENCE_SET_NAME)
    Dump(szFn, "Setting ESSENCE_NAME to \"%.*s\".\n", static_cast<int>(sizeof(pCfg->szName)), pCfg->szName);
  if (flags & SMGR_ESSENCE_SET_AUTO_START) Dump(szFn, "Setting AUTO_START to %d.\n", pCfg->bAutoStart);
  if (flags & SMGR_ESSENCE_SET_MEDIA_TYPE)
    Dump(szFn, "Setting MEDIA_TYPE to \"%s\":%d.\n",
         Name(smgr::essence_names::kMediaTypes, pCfg->enMediaType, szText, sizeof(szText)),
         pCfg->enMediaType);
  if (flags & SMGR_ESSENCE_SET_ADDRESS)
    Dump(szFn, "Setting ADDRESS to %s.\n", Address(pCfg->Address, szText, sizeof(szText)));
  if (flags & SMGR_ESSENCE_SET_PORT) Dump(szFn, "Setting PORT to %u.\n", static_cast<unsigned>(pCfg->usPort));
  if (flags & SMGR_ESSENCE_SET_VIDEO_FORMAT)
    Dump(szFn, "Setting SMGR_ESSENCE_VIDEO_FORMAT to \"%s\":%d.\n",
         _EssenceVideoFormatText(pCfg->Media.Video.enInputFormat, szText, sizeof(szText)),
         Low32(pCfg->Media.Video.enInputFormat));
  if (flags & SMGR_ESSENCE_SET_INPUT_CHANNEL)
    Dump(szFn, "Setting SMGR_ESSENCE_INPUT_CHANNEL to %d.\n", static_cast<int>(pCfg->nInputChannel));
  if (flags & SMGR_ESSENCE_SET_AUDIO_NUM_CHANNELS)
    Dump(szFn, "Setting SMGR_ESSENCE_AUDIO_NUM_CHANNELS to %d.\n",
         static_cast<int>(pCfg->Media.Audio.nNumOfChannels));
  if (flags & SMGR_ESSENCE_SET_AUDIO_PACKET_TIME)
    Dump(szFn, "Setting SMGR_ESSENCE_AUDIO_PACKET_TIME to \"%s\":%d.\n",
         Name(smgr::essence_names::kPacketTimes, pCfg->Media.Audio.enPacketTime, szText, sizeof(szText)),
         pCfg->Media.Audio.enPacketTime);
  if (flags & SMGR_ESSENCE_SET_SOURCE_ADDRESS)
    Dump(szFn, "Setting SMGR_ESSENCE_SOURCE_ADDRESS to %s.\n",
         Address(pCfg->SourceAddress, szText, sizeof(szText)));
}
