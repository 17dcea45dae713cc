// Level 6 dumps of stream records, one line per field: the configuration
// before a create request and the information record after GetInfo. Key
// bytes and pass phrases are never printed.
#include "lib_trace.h"
#include "sessmgr_api.h"
#include "stream_internal.h"
#include "stream_value_names.h"
#include "util_string.h"

namespace {

// The dump lines carry the name of the dump being written (_PrintStreamCfg or
// _PrintStreamInfo), not the helper that formats the shared fields.
thread_local const char* t_szDumpFunction = "_PrintStreamCfg";
#define DUMP_TRACE(...) SMGR_TRACE_AS(t_szDumpFunction, 6, __VA_ARGS__)

using namespace smgr::stream_names;

const char* YesNo(BOOL b) { return b ? "Yes" : "No"; }

// A value's name without the value-name operation's own call traces.
struct Name {
  Name(const smgr::ValueNameTable& table, int nValue) {
    smgr::ValueNameTable quiet = table;
    quiet.callTrace = smgr::NameCallTrace::Never;
    smgr::NameOfValue(quiet, nValue, sz, sizeof(sz));
  }
  char sz[64];
};

template <size_t N>
struct Text {
  explicit Text(const char (&field)[N]) { CopyString(sz, field, N); }
  char sz[N];
};

struct AddressText {
  explicit AddressText(const SMGR_IP_ADDRESS& address) {
    GetIPAddressDebugString(&address, sz, sizeof(sz));
    _GetIPAddressTypeString(address.enType, szType, sizeof(szType));
  }
  char sz[600];
  char szType[48];
};

void PrintSrt(const SMGR_SRT_CFG& srt) {
  DUMP_TRACE("nLatencyInMS = %d.\n", srt.nLatencyInMS);
  DUMP_TRACE("nMaxBwInKbps = %d.\n", srt.nMaxBwInKbps);
  DUMP_TRACE("enMode = %s.\n", Name(kSrtModeNames, srt.enMode).sz);
  DUMP_TRACE("bNetworkAdaptive = %s.\n", YesNo(srt.bNetworkAdaptive));
  DUMP_TRACE("bStrictEncryption = %s.\n", YesNo(srt.bStrictEncryption));
  DUMP_TRACE("szPublishingID = \"%s\".\n", Text(srt.szPublishingID).sz);
  DUMP_TRACE("enLinkRedundancyMode = %s.\n", Name(kSrtRedundancyNames, srt.enLinkRedundancyMode).sz);
  DUMP_TRACE("enDnGrRedundancyMode = %s.\n", Name(kSrtRedundancyNames, srt.enDnGrRedundancyMode).sz);
  DUMP_TRACE("nLinkWeight = %d.\n", srt.nLinkWeight);
  DUMP_TRACE("nSecLinkWeight = %d.\n", srt.nSecLinkWeight);
  DUMP_TRACE("SecAddress = %s.\n", AddressText(srt.SecAddress).sz);
  DUMP_TRACE("usSecPort = %u.\n", srt.usSecPort);
  DUMP_TRACE("usSecSourcePort = %u.\n", srt.usSecSourcePort);
  DUMP_TRACE("szSecNetworkInterface = \"%s\".\n", Text(srt.szSecNetworkInterface).sz);
  DUMP_TRACE("szLinkDescription = \"%s\".\n", Text(srt.szLinkDescription).sz);
  DUMP_TRACE("szSecLinkDescription = \"%s\".\n", Text(srt.szSecLinkDescription).sz);
}

void PrintSourceType(int nSource, int nCount, int enType) {
  switch (enType) {
    case SMGR_CONTENT_SRC_VIDEO:
      DUMP_TRACE("Source %d/%d Type = VIDEO.\n", nSource, nCount);
      break;
    case SMGR_CONTENT_SRC_AUDIO:
      DUMP_TRACE("Source %d/%d Type = AUDIO.\n", nSource, nCount);
      break;
    case SMGR_CONTENT_SRC_DATA:
      DUMP_TRACE("Source %d/%d Type = DATA.\n", nSource, nCount);
      break;
    default:
      DUMP_TRACE("Source %d/%d Type = Unknown (%d).\n", nSource, nCount, enType);
      break;
  }
}

// The fields that the configuration and the information record share, in
// dump order, up to the encapsulation (the records differ after it).
template <typename Record>
void PrintHead(const Record& r) {
  DUMP_TRACE("nIndex = %d.\n", r.nIndex);
  DUMP_TRACE("szName = \"%s\".\n", Text(r.szName).sz);
  DUMP_TRACE("enType = %s.\n", Name(kStreamTypeNames, r.enType).sz);
}

template <typename Record>
void PrintTransport(const Record& r) {
  DUMP_TRACE("enContents = 0x%X.\n", (unsigned)r.enContents);
  if (r.enContents & SMGR_STREAM_CONTENTS_VIDEO) DUMP_TRACE("Contains VIDEO.\n");
  if (r.enContents & SMGR_STREAM_CONTENTS_AUDIO) DUMP_TRACE("Contains AUDIO.\n");
  if (r.enContents & SMGR_STREAM_CONTENTS_DATA) DUMP_TRACE("Contains DATA.\n");
  DUMP_TRACE("enMetaDataEncaps = %s.\n", Name(kDataEncapsNames, r.enMetaDataEncaps).sz);
  DUMP_TRACE("bUseRTCP = %s.\n", YesNo(r.bUseRTCP));
  const Text netIf(r.szNetworkInterface);
  DUMP_TRACE("szNetworkInterface = %s.\n", netIf.sz[0] != '\0' ? netIf.sz : "Auto");
  const AddressText address(r.Address);
  DUMP_TRACE("Address = %s.\n", address.sz);
  DUMP_TRACE("Address Type = %s.\n", address.szType);
  DUMP_TRACE("usPort = %u.\n", r.usPort);
  DUMP_TRACE("usSourcePort = %u.\n", r.usSourcePort);
  DUMP_TRACE("enEncapsulation = %s.\n", Name(kEncapsulationNames, r.enEncapsulation).sz);
  if (r.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) PrintSrt(r.EncapSpecCfg.SRT);
  DUMP_TRACE("IpMTU = %u bytes.\n", r.IpMTU);
  DUMP_TRACE("IpTOS = 0x%02X.\n", r.IpTOS);
  DUMP_TRACE("IpTTL = %u hops.\n", r.IpTTL);
}

template <typename Record>
void PrintTail(const Record& r) {
  DUMP_TRACE("bUseShaping = %s.\n", YesNo(r.bUseShaping));
  DUMP_TRACE("nOverheadPercentage = %d%%.\n", r.nOverheadPercentage);
  DUMP_TRACE("bSendIdleCells = %s.\n", YesNo(r.bSendIdleCells));
  DUMP_TRACE("bDelayAudio = %s.\n", YesNo(r.bDelayAudio));
  DUMP_TRACE("bEncrypted = %s.\n", YesNo(r.bEncrypted));
  if (r.bEncrypted)
    DUMP_TRACE("AES Key Size = %d Bytes (%d bits).\n", r.CryptoCfg.nKeySize, r.CryptoCfg.nKeySize * 8);
  DUMP_TRACE("enFECType = %s.\n", Name(kFecTypeNames, r.enFECType).sz);
  if (r.enFECType == SMGR_FEC_TYPE_PRO_MPEG) {
    const SMGR_PRO_MPEG_FEC_CFG& fec = r.FECCfg.ProMPEG;
    DUMP_TRACE("enLevel = %s.\n", Name(kProMpegLevelNames, fec.enLevel).sz);
    DUMP_TRACE("nNumOfRows = %u.\n", fec.nNumOfRows);
    DUMP_TRACE("nNumOfColumns = %u.\n", fec.nNumOfColumns);
    DUMP_TRACE("bBlockAligned = %s.\n", YesNo(fec.bBlockAligned));
    DUMP_TRACE("bLinearFEC = %s.\n", YesNo(fec.bLinearFEC));
  }
  DUMP_TRACE("bNonPersistent = %s.\n", YesNo(r.bNonPersistent));
}

int SourceCount(long nNumOfSources) {
  if (nNumOfSources < 0) return 0;
  return nNumOfSources > SMGR_MAX_STREAM_CONTENT_SOURCES ? SMGR_MAX_STREAM_CONTENT_SOURCES
                                                         : static_cast<int>(nNumOfSources);
}

}  // namespace

void _PrintStreamCfg(const SMGR_STREAM_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  t_szDumpFunction = __func__;
  const SMGR_STREAM_CFG& c = *pCfg;
  PrintHead(c);
  DUMP_TRACE("bAutoStart = %s.\n", YesNo(c.bAutoStart));
  PrintTransport(c);
  DUMP_TRACE("PCR PID = %d.\n", c.TsCfg.iPcrPID);
  DUMP_TRACE("PMT PID = %d.\n", c.TsCfg.iPmtPID);
  DUMP_TRACE("Stream ID = %d.\n", c.TsCfg.iStreamID);
  DUMP_TRACE("Program Number = %d.\n", c.TsCfg.iProgNum);
  DUMP_TRACE("nNumOfSources = %u.\n", c.nNumOfSources);
  const int nCount = SourceCount(c.nNumOfSources);
  for (int i = 0; i < nCount; ++i) {
    const SMGR_CONTENT_SRC& src = c.ContentSources[i];
    PrintSourceType(i + 1, nCount, src.enType);
    DUMP_TRACE("Source %d/%d PID = %d.\n", i + 1, nCount, src.iTsPid);
    switch (src.Selector.enType) {
      case SMGR_SELECTBY_OBJECT_ID:
        DUMP_TRACE("Source %d/%d ID = %d.\n", i + 1, nCount, src.Selector.Via.ID);
        break;
      case SMGR_SELECTBY_OBJECT_NAME:
        DUMP_TRACE("Source %d/%d Name = \"%s\".\n", i + 1, nCount,
                   src.Selector.Via.szName != nullptr ? src.Selector.Via.szName : "(null)");
        break;
      default:
        DUMP_TRACE("Source %d/%d Handle = 0x%x.\n", i + 1, nCount,
                   static_cast<unsigned>(reinterpret_cast<uintptr_t>(src.Selector.Via.Handle)));
        break;
    }
  }
  PrintTail(c);
}

void _PrintStreamInfo(const SMGR_STREAM_INFO* pInfo) {
  if (pInfo == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  t_szDumpFunction = __func__;
  const SMGR_STREAM_INFO& r = *pInfo;
  PrintHead(r);
  PrintTransport(r);
  DUMP_TRACE("PCR PID = %d.\n", r.TsInfo.iPcrPID);
  DUMP_TRACE("PCR PID was Auto-Assigned = %d.\n", r.TsInfo.bPcrPIDWasAutoAssigned);
  DUMP_TRACE("PMT PID = %d.\n", r.TsInfo.iPmtPID);
  DUMP_TRACE("PMT PID was Auto-Assigned = %d.\n", r.TsInfo.bPmtPIDWasAutoAssigned);
  DUMP_TRACE("Stream ID = %d.\n", r.TsInfo.iStreamID);
  DUMP_TRACE("Program Number = %d.\n", r.TsInfo.iProgNum);
  DUMP_TRACE("Program Number was Auto-Assigned = %d.\n", r.TsInfo.bProgNumWasAutoAssigned);
  DUMP_TRACE("nNumOfSources = %d.\n", r.nNumOfSources);
  const int nCount = SourceCount(r.nNumOfSources);
  for (int i = 0; i < nCount; ++i) {
    const SMGR_CONTENT_INFO& src = r.ContentSources[i];
    PrintSourceType(i + 1, nCount, src.enType);
    DUMP_TRACE("Source %d/%d PID = %d.\n", i + 1, nCount, src.iTsPid);
    DUMP_TRACE("Source %d/%d PID was Auto-Assigned = %d.\n", i + 1, nCount, src.bTsPidWasAutoAssigned);
    DUMP_TRACE("Source %d/%d ID = %d.\n", i + 1, nCount, src.ID);
    DUMP_TRACE("Source %d/%d Name = \"%s\".\n", i + 1, nCount, Text(src.szName).sz);
  }
  PrintTail(r);
  // Unlike the configuration dump, the information dump shows the key the
  // daemon reports (level 6 only, for field diagnosis of encrypted streams).
  DUMP_TRACE("Encryption Key:\n");
  if (SMGR_TRACE_ENABLED(6))
    _DoDbgPrintBuffer(g_hSMGRApiDbg, 6, __func__, __FILE__, __LINE__, r.CryptoCfg.acKeyData,
                      sizeof(r.CryptoCfg.acKeyData));
}
