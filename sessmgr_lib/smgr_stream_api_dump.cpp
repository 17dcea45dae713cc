// Level 6 dumps of stream records, one line per field: the configuration
// before a create request and the information record after GetInfo. Key
// bytes and pass phrases are never printed.
#include "lib_trace.h"
#include "sessmgr_api.h"
#include "stream_internal.h"
#include "stream_value_names.h"
#include "util_string.h"

namespace {

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
  SMGR_TRACE(6, "nLatencyInMS = %d.\n", srt.nLatencyInMS);
  SMGR_TRACE(6, "nMaxBwInKbps = %d.\n", srt.nMaxBwInKbps);
  SMGR_TRACE(6, "enMode = %s.\n", Name(kSrtModeNames, srt.enMode).sz);
  SMGR_TRACE(6, "bNetworkAdaptive = %s.\n", YesNo(srt.bNetworkAdaptive));
  SMGR_TRACE(6, "bStrictEncryption = %s.\n", YesNo(srt.bStrictEncryption));
  SMGR_TRACE(6, "szPublishingID = \"%s\".\n", Text(srt.szPublishingID).sz);
  SMGR_TRACE(6, "enLinkRedundancyMode = %s.\n", Name(kSrtRedundancyNames, srt.enLinkRedundancyMode).sz);
  SMGR_TRACE(6, "enDnGrRedundancyMode = %s.\n", Name(kSrtRedundancyNames, srt.enDnGrRedundancyMode).sz);
  SMGR_TRACE(6, "nLinkWeight = %d.\n", srt.nLinkWeight);
  SMGR_TRACE(6, "nSecLinkWeight = %d.\n", srt.nSecLinkWeight);
  SMGR_TRACE(6, "SecAddress = %s.\n", AddressText(srt.SecAddress).sz);
  SMGR_TRACE(6, "usSecPort = %u.\n", srt.usSecPort);
  SMGR_TRACE(6, "usSecSourcePort = %u.\n", srt.usSecSourcePort);
  SMGR_TRACE(6, "szSecNetworkInterface = \"%s\".\n", Text(srt.szSecNetworkInterface).sz);
  SMGR_TRACE(6, "szLinkDescription = \"%s\".\n", Text(srt.szLinkDescription).sz);
  SMGR_TRACE(6, "szSecLinkDescription = \"%s\".\n", Text(srt.szSecLinkDescription).sz);
}

void PrintSourceType(int nSource, int nCount, int enType) {
  switch (enType) {
    case SMGR_CONTENT_SRC_VIDEO:
      SMGR_TRACE(6, "Source %d/%d Type = VIDEO.\n", nSource, nCount);
      break;
    case SMGR_CONTENT_SRC_AUDIO:
      SMGR_TRACE(6, "Source %d/%d Type = AUDIO.\n", nSource, nCount);
      break;
    case SMGR_CONTENT_SRC_DATA:
      SMGR_TRACE(6, "Source %d/%d Type = DATA.\n", nSource, nCount);
      break;
    default:
      SMGR_TRACE(6, "Source %d/%d Type = Unknown (%d).\n", nSource, nCount, enType);
      break;
  }
}

// The fields that the configuration and the information record share, in
// dump order, up to the encapsulation (the records differ after it).
template <typename Record>
void PrintHead(const Record& r) {
  SMGR_TRACE(6, "nIndex = %d.\n", r.nIndex);
  SMGR_TRACE(6, "szName = \"%s\".\n", Text(r.szName).sz);
  SMGR_TRACE(6, "enType = %s.\n", Name(kStreamTypeNames, r.enType).sz);
}

template <typename Record>
void PrintTransport(const Record& r) {
  SMGR_TRACE(6, "enContents = 0x%X.\n", (unsigned)r.enContents);
  if (r.enContents & SMGR_STREAM_CONTENTS_VIDEO) SMGR_TRACE(6, "Contains VIDEO.\n");
  if (r.enContents & SMGR_STREAM_CONTENTS_AUDIO) SMGR_TRACE(6, "Contains AUDIO.\n");
  if (r.enContents & SMGR_STREAM_CONTENTS_DATA) SMGR_TRACE(6, "Contains DATA.\n");
  SMGR_TRACE(6, "enMetaDataEncaps = %s.\n", Name(kDataEncapsNames, r.enMetaDataEncaps).sz);
  SMGR_TRACE(6, "bUseRTCP = %s.\n", YesNo(r.bUseRTCP));
  const Text netIf(r.szNetworkInterface);
  SMGR_TRACE(6, "szNetworkInterface = %s.\n", netIf.sz[0] != '\0' ? netIf.sz : "Auto");
  const AddressText address(r.Address);
  SMGR_TRACE(6, "Address = %s.\n", address.sz);
  SMGR_TRACE(6, "Address Type = %s.\n", address.szType);
  SMGR_TRACE(6, "usPort = %u.\n", r.usPort);
  SMGR_TRACE(6, "usSourcePort = %u.\n", r.usSourcePort);
  SMGR_TRACE(6, "enEncapsulation = %s.\n", Name(kEncapsulationNames, r.enEncapsulation).sz);
  if (r.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) PrintSrt(r.EncapSpecCfg.SRT);
  SMGR_TRACE(6, "IpMTU = %u bytes.\n", r.IpMTU);
  SMGR_TRACE(6, "IpTOS = 0x%02X.\n", r.IpTOS);
  SMGR_TRACE(6, "IpTTL = %u hops.\n", r.IpTTL);
}

template <typename Record>
void PrintTail(const Record& r) {
  SMGR_TRACE(6, "bUseShaping = %s.\n", YesNo(r.bUseShaping));
  SMGR_TRACE(6, "nOverheadPercentage = %d%%.\n", r.nOverheadPercentage);
  SMGR_TRACE(6, "bSendIdleCells = %s.\n", YesNo(r.bSendIdleCells));
  SMGR_TRACE(6, "bDelayAudio = %s.\n", YesNo(r.bDelayAudio));
  SMGR_TRACE(6, "bEncrypted = %s.\n", YesNo(r.bEncrypted));
  if (r.bEncrypted)
    SMGR_TRACE(6, "AES Key Size = %d Bytes (%d bits).\n", r.CryptoCfg.nKeySize, r.CryptoCfg.nKeySize * 8);
  SMGR_TRACE(6, "enFECType = %s.\n", Name(kFecTypeNames, r.enFECType).sz);
  if (r.enFECType == SMGR_FEC_TYPE_PRO_MPEG) {
    const SMGR_PRO_MPEG_FEC_CFG& fec = r.FECCfg.ProMPEG;
    SMGR_TRACE(6, "enLevel = %s.\n", Name(kProMpegLevelNames, fec.enLevel).sz);
    SMGR_TRACE(6, "nNumOfRows = %u.\n", fec.nNumOfRows);
    SMGR_TRACE(6, "nNumOfColumns = %u.\n", fec.nNumOfColumns);
    SMGR_TRACE(6, "bBlockAligned = %s.\n", YesNo(fec.bBlockAligned));
    SMGR_TRACE(6, "bLinearFEC = %s.\n", YesNo(fec.bLinearFEC));
  }
  SMGR_TRACE(6, "bNonPersistent = %s.\n", YesNo(r.bNonPersistent));
}

int SourceCount(long nNumOfSources) {
  if (nNumOfSources < 0) return 0;
  return nNumOfSources > SMGR_MAX_STREAM_CONTENT_SOURCES ? SMGR_MAX_STREAM_CONTENT_SOURCES
                                                         : static_cast<int>(nNumOfSources);
}

}  // namespace

void _PrintStreamCfg(const SMGR_STREAM_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  const SMGR_STREAM_CFG& c = *pCfg;
  PrintHead(c);
  SMGR_TRACE(6, "bAutoStart = %s.\n", YesNo(c.bAutoStart));
  PrintTransport(c);
  SMGR_TRACE(6, "PCR PID = %d.\n", c.TsCfg.iPcrPID);
  SMGR_TRACE(6, "PMT PID = %d.\n", c.TsCfg.iPmtPID);
  SMGR_TRACE(6, "Stream ID = %d.\n", c.TsCfg.iStreamID);
  SMGR_TRACE(6, "Program Number = %d.\n", c.TsCfg.iProgNum);
  SMGR_TRACE(6, "nNumOfSources = %u.\n", c.nNumOfSources);
  const int nCount = SourceCount(c.nNumOfSources);
  for (int i = 0; i < nCount; ++i) {
    const SMGR_CONTENT_SRC& src = c.ContentSources[i];
    PrintSourceType(i + 1, nCount, src.enType);
    SMGR_TRACE(6, "Source %d/%d PID = %d.\n", i + 1, nCount, src.iTsPid);
    switch (src.Selector.enType) {
      case SMGR_SELECTBY_OBJECT_ID:
        SMGR_TRACE(6, "Source %d/%d ID = %d.\n", i + 1, nCount, src.Selector.Via.ID);
        break;
      case SMGR_SELECTBY_OBJECT_NAME:
        SMGR_TRACE(6, "Source %d/%d Name = \"%s\".\n", i + 1, nCount,
                   src.Selector.Via.szName != nullptr ? src.Selector.Via.szName : "(null)");
        break;
      default:
        SMGR_TRACE(6, "Source %d/%d Handle = 0x%x.\n", i + 1, nCount,
                   static_cast<unsigned>(reinterpret_cast<uintptr_t>(src.Selector.Via.Handle)));
        break;
    }
  }
  PrintTail(c);
}

void _PrintStreamInfo(const SMGR_STREAM_INFO* pInfo) {
  if (pInfo == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  const SMGR_STREAM_INFO& r = *pInfo;
  PrintHead(r);
  PrintTransport(r);
  SMGR_TRACE(6, "PCR PID = %d.\n", r.TsInfo.iPcrPID);
  SMGR_TRACE(6, "PCR PID was Auto-Assigned = %d.\n", r.TsInfo.bPcrPIDWasAutoAssigned);
  SMGR_TRACE(6, "PMT PID = %d.\n", r.TsInfo.iPmtPID);
  SMGR_TRACE(6, "PMT PID was Auto-Assigned = %d.\n", r.TsInfo.bPmtPIDWasAutoAssigned);
  SMGR_TRACE(6, "Stream ID = %d.\n", r.TsInfo.iStreamID);
  SMGR_TRACE(6, "Program Number = %d.\n", r.TsInfo.iProgNum);
  SMGR_TRACE(6, "Program Number was Auto-Assigned = %d.\n", r.TsInfo.bProgNumWasAutoAssigned);
  SMGR_TRACE(6, "nNumOfSources = %d.\n", r.nNumOfSources);
  const int nCount = SourceCount(r.nNumOfSources);
  for (int i = 0; i < nCount; ++i) {
    const SMGR_CONTENT_INFO& src = r.ContentSources[i];
    PrintSourceType(i + 1, nCount, src.enType);
    SMGR_TRACE(6, "Source %d/%d PID = %d.\n", i + 1, nCount, src.iTsPid);
    SMGR_TRACE(6, "Source %d/%d PID was Auto-Assigned = %d.\n", i + 1, nCount, src.bTsPidWasAutoAssigned);
    SMGR_TRACE(6, "Source %d/%d ID = %d.\n", i + 1, nCount, src.ID);
    SMGR_TRACE(6, "Source %d/%d Name = \"%s\".\n", i + 1, nCount, Text(src.szName).sz);
  }
  PrintTail(r);
  // Unlike the configuration dump, the information dump shows the key the
  // daemon reports (level 6 only, for field diagnosis of encrypted streams).
  SMGR_TRACE(6, "Encryption Key:\n");
  if (SMGR_TRACE_ENABLED(6))
    _DoDbgPrintBuffer(g_hSMGRApiDbg, 6, __func__, __FILE__, __LINE__, r.CryptoCfg.acKeyData,
                      sizeof(r.CryptoCfg.acKeyData));
}
