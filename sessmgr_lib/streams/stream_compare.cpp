// SessMgr_CompareStreamConfigs: field-by-field comparison of two stream
// configurations in a fixed order, stopping at the first difference with one
// level 5 trace naming it. Local only: no message, no lock, no last error.
#include <cstring>

#include "lib_trace.h"
#include "sessmgr_api.h"
#include "stream_internal.h"
#include "util_string.h"

namespace {

constexpr const char* kCompareName = "SessMgr_CompareStreamConfigs";

// A caller's text field as a terminated string (fields may fill their whole size).
template <size_t N>
struct Text {
  explicit Text(const char (&field)[N]) { CopyString(sz, field, N); }
  char sz[N];
};
template <size_t N>
bool SameText(const char (&a)[N], const char (&b)[N]) {
  return std::strncmp(a, b, N) == 0;
}

// The texts of one address comparison (the main address and the SRT second
// link use different wordings for the same rules).
struct AddressTexts {
  const char* szIPv4;
  const char* szIPv6;
  const char* szHostName;  // host name and URL kinds, with the two names
  const char* szResolvedIPv4;
  const char* szResolvedIPv6;
  const char* szUnresolved;  // with the two names
};

constexpr AddressTexts kMainAddressTexts{
    "Address.acAddress fields differ.\n",
    "IPv6 Address.acAddress fields differ.\n",
    "szHostName fields differ \"%s\" vs \"%s\".\n",
    "IPv4 resolved host Address.acAddress fields differ.\n",
    "IPv6 resolved host Address.acAddress fields differ.\n",
    "IPv4 resolved host Address.acAddress fields differ \"%s\" vs \"%s\".\n"};

constexpr AddressTexts kSecondLinkAddressTexts{
    "EncapSpecCfg.SRT.SecAddress.acAddress fields differ.\n",
    "IPv6 EncapSpecCfg.SRT.SecAddress.acAddress fields differ.\n",
    "szHostName fields differ \"%s\" vs \"%s\".\n",
    "IPv4 resolved host EncapSpecCfg.SRT.SecAddress.acAddress fields differ.\n",
    "IPv6 resolved host EncapSpecCfg.SRT.SecAddress.acAddress fields differ.\n",
    "IPv4 unresolved host EncapSpecCfg.SRT.SecAddress.szHostName fields differ \"%s\" vs \"%s\".\n"};

// Addresses of the same kind: true when they differ (and traced).
bool AddressesDiffer(const SMGR_IP_ADDRESS& a, const SMGR_IP_ADDRESS& b, const AddressTexts& texts) {
  auto bytesDiffer = [&](size_t nBytes, const char* szText) {
    if (std::memcmp(a.acAddress, b.acAddress, nBytes) == 0) return false;
    SMGR_TRACE_AS(kCompareName, 5, "%s", szText);
    return true;
  };
  auto namesDiffer = [&](const char* szText) {
    if (SameText(a.szHostName, b.szHostName)) return false;
    SMGR_TRACE_AS(kCompareName, 5, szText, Text(a.szHostName).sz, Text(b.szHostName).sz);
    return true;
  };
  switch (a.enType) {
    case SMGR_IPV4_ADDRESS:
      return bytesDiffer(4, texts.szIPv4);
    case SMGR_IPV6_ADDRESS:
      return bytesDiffer(16, texts.szIPv6);
    case SMGR_IPV4_HOSTNAME:
    case SMGR_URL:
      return namesDiffer(texts.szHostName);
    case SMGR_HOSTNAME_RESOLVED_AS_IPV4:
      return bytesDiffer(4, texts.szResolvedIPv4);
    case SMGR_HOSTNAME_RESOLVED_AS_IPV6:
      return bytesDiffer(16, texts.szResolvedIPv6);
    case SMGR_UNRESOLVED_HOSTNAME:
      return namesDiffer(texts.szUnresolved);
    default:  // any address, unknown kinds: nothing to compare
      return false;
  }
}

const char* OrNull(const char* sz) { return sz != nullptr ? sz : "(null)"; }

bool SelectorNamesDiffer(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return a != b;
  return std::strcmp(a, b) != 0;
}

// The comparison proper on two records of equal nSize, read only within it.
int CompareRecords(const SMGR_STREAM_CFG& c1, const SMGR_STREAM_CFG& c2) {
#define DIFFERS(cond, ...)                         \
  do {                                             \
    if (cond) {                                    \
      SMGR_TRACE_AS(kCompareName, 5, __VA_ARGS__); \
      return 1;                                    \
    }                                              \
  } while (0)
#define DIFFERS_NUM(field, text) DIFFERS(c1.field != c2.field, text, (int)c1.field, (int)c2.field)
#define DIFFERS_UNSIGNED(field, text) \
  DIFFERS(c1.field != c2.field, text, (unsigned)c1.field, (unsigned)c2.field)
#define DIFFERS_TEXT(field, text) \
  DIFFERS(!SameText(c1.field, c2.field), text, Text(c1.field).sz, Text(c2.field).sz)

  DIFFERS(c1.nIndex != c2.nIndex, "nIndex fields differ %lu vs %lu.\n", (unsigned long)c1.nIndex,
          (unsigned long)c2.nIndex);
  DIFFERS_TEXT(szName, "szName fields differ \"%s\" vs \"%s\".\n");
  DIFFERS_NUM(enType, "enType fields differ %d vs %d.\n");
  DIFFERS_NUM(bAutoStart, "bAutoStart fields differ %d vs %d.\n");
  DIFFERS_NUM(enContents, "enContents fields differ %d vs %d.\n");
  DIFFERS_NUM(nNumOfSources, "nNumOfSources fields differ %d vs %d.\n");

  const uint32_t nSources =
      c1.nNumOfSources < SMGR_MAX_STREAM_CONTENT_SOURCES ? c1.nNumOfSources : SMGR_MAX_STREAM_CONTENT_SOURCES;
  for (uint32_t i = 0; i < nSources; ++i) {
    const SMGR_CONTENT_SRC& s1 = c1.ContentSources[i];
    const SMGR_CONTENT_SRC& s2 = c2.ContentSources[i];
    const int n = static_cast<int>(i);
    DIFFERS(s1.enType != s2.enType, "ContentSources[%d].enType fields differ %d vs %d.\n", n, s1.enType,
            s2.enType);
    DIFFERS(s1.iTsPid != s2.iTsPid, "ContentSources[%d].iTsPid fields differ %d vs %d.\n", n, s1.iTsPid,
            s2.iTsPid);
    DIFFERS(s1.Selector.enType != s2.Selector.enType,
            "ContentSources[%d].Selector.enType fields differ %d vs %d.\n", n, s1.Selector.enType,
            s2.Selector.enType);
    switch (s1.Selector.enType) {
      case SMGR_SELECTBY_OBJECT_ID:
        DIFFERS(s1.Selector.Via.ID != s2.Selector.Via.ID,
                "ContentSources[%d].Selector.Via.ID fields differ %d vs %d.\n", n, s1.Selector.Via.ID,
                s2.Selector.Via.ID);
        break;
      case SMGR_SELECTBY_OBJECT_HANDLE:
        DIFFERS(s1.Selector.Via.Handle != s2.Selector.Via.Handle,
                "ContentSources[%d].Selector.Via.ID fields differ %p vs %p.\n", n, s1.Selector.Via.Handle,
                s2.Selector.Via.Handle);
        break;
      case SMGR_SELECTBY_OBJECT_NAME:
        DIFFERS(SelectorNamesDiffer(s1.Selector.Via.szName, s2.Selector.Via.szName),
                "ContentSources[%d].Selector.Via.szName fields differ \"%s\" vs \"%s\".\n", n,
                OrNull(s1.Selector.Via.szName), OrNull(s2.Selector.Via.szName));
        break;
      default:
        break;
    }
  }

  DIFFERS_NUM(bUseRTCP, "bUseRTCP fields differ %d vs %d.\n");
  if (c1.bUseRTCP) DIFFERS_NUM(RtcpCfg.usPort, "RTCP usPort fields differ %d vs %d.\n");
  DIFFERS_NUM(Address.enType, "Address.enType fields differ %d vs %d.\n");
  if (AddressesDiffer(c1.Address, c2.Address, kMainAddressTexts)) return 1;
  DIFFERS_UNSIGNED(usPort, "usPort fields differ %u vs %u.\n");
  DIFFERS_NUM(enEncapsulation, "enEncapsulation fields differ %d vs %d.\n");

  const int enEncaps = c1.enEncapsulation;
  switch (enEncaps) {
    case SMGR_STREAM_ENCAPS_DIRECT_RTP:
    case SMGR_STREAM_ENCAPS_TS_UDP:
    case SMGR_STREAM_ENCAPS_TS_RTP:
    case SMGR_STREAM_ENCAPS_QUICKTIME:
    case SMGR_STREAM_ENCAPS_TS_SRT:
      DIFFERS_UNSIGNED(usSourcePort, "usSourcePort fields differ %u vs %u.\n");
      break;
    default:
      break;
  }
  if (enEncaps & 0x2) {  // the transport-stream encapsulations
    DIFFERS_NUM(TsCfg.iPcrPID, "iPcrPID fields differ %d vs %d.\n");
    DIFFERS_NUM(TsCfg.iPmtPID, "iPmtPID fields differ %d vs %d.\n");
    DIFFERS_NUM(TsCfg.iStreamID, "iStreamID fields differ %d vs %d.\n");
    DIFFERS_NUM(TsCfg.iProgNum, "iProgNum fields differ %d vs %d.\n");
  }
  if (c1.enType == SMGR_STREAM_TYPE_TX) {
    DIFFERS_NUM(IpMTU, "IpMTU fields differ %d vs %d.\n");
    DIFFERS_NUM(IpTOS, "IpTOS fields differ %d vs %d.\n");
    DIFFERS_NUM(IpTTL, "IpTTL fields differ %d vs %d.\n");
  }
  DIFFERS_NUM(bUseShaping, "bUseShaping fields differ %d vs %d.\n");
  if (c1.bUseShaping) DIFFERS_NUM(nOverheadPercentage, "nOverheadPercentage fields differ %d vs %d.\n");
  DIFFERS_NUM(bDelayAudio, "bDelayAudio fields differ %d vs %d.\n");
  DIFFERS_NUM(enFECType, "enFECType fields differ %d vs %d.\n");
  if (c1.enFECType == SMGR_FEC_TYPE_PRO_MPEG) {  // bLinearFEC is not compared
    DIFFERS_NUM(FECCfg.ProMPEG.enLevel, "ProMPEG.enLevel fields differ %d vs %d.\n");
    DIFFERS_NUM(FECCfg.ProMPEG.nNumOfRows, "ProMPEG.nNumOfRows fields differ %d vs %d.\n");
    DIFFERS_NUM(FECCfg.ProMPEG.nNumOfColumns, "ProMPEG.nNumOfColumns fields differ %d vs %d.\n");
    DIFFERS_NUM(FECCfg.ProMPEG.bBlockAligned, "ProMPEG.bBlockAligned fields differ %d vs %d.\n");
  }
  DIFFERS_NUM(bEncrypted, "bEncrypted fields differ %d vs %d.\n");
  if (c1.bEncrypted) {
    DIFFERS_NUM(CryptoCfg.nKeySize, "CryptoCfg.nKeySize fields differ %d vs %d.\n");
    if (enEncaps == SMGR_STREAM_ENCAPS_TS_SRT)  // never print the secrets
      DIFFERS(!SameText(c1.CryptoCfg.szPassphrase, c2.CryptoCfg.szPassphrase),
              "CryptoCfg.szPassphrase fields differ.\n");
    else
      DIFFERS(
          std::memcmp(c1.CryptoCfg.acKeyData, c2.CryptoCfg.acKeyData, sizeof(c1.CryptoCfg.acKeyData)) != 0,
          "CryptoCfg.acKeyData fields differ.\n");
  }
  {
    const Text still1(c1.szStillImageFName), still2(c2.szStillImageFName);
    const char* szBase1 = GetBaseName(still1.sz);
    const char* szBase2 = GetBaseName(still2.sz);
    DIFFERS(std::strcmp(szBase1, szBase2) != 0, "szStillImageFName fields differ \"%s\" vs \"%s\".\n",
            szBase1, szBase2);
  }
  DIFFERS_NUM(bNonPersistent, "bNonPersistent fields differ %d vs %d.\n");
  DIFFERS_NUM(bSendIdleCells, "bSendIdleCells fields differ %d vs %d.\n");
  DIFFERS_TEXT(szUserData, "szUserData fields differ \"%s\" vs \"%s\".\n");
  DIFFERS_NUM(enMetaDataEncaps, "enMetaDataEncaps fields differ %d vs %d.\n");
  DIFFERS_NUM(bAutoDetectDataBitRate, "bAutoDetectDataBitRate fields differ %d vs %d.\n");
  if (!c1.bAutoDetectDataBitRate)
    DIFFERS_NUM(nDataBitRateInKbps, "nDataBitRateInKbps fields differ %d vs %d.\n");
  DIFFERS_TEXT(szNetworkInterface, "szNetworkInterface fields differ \"%s\" vs \"%s\".\n");

  if (enEncaps & 0x20) {  // SRT
    DIFFERS_NUM(EncapSpecCfg.SRT.nLatencyInMS, "EncapSpecCfg.SRT.nLatencyInMS fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.nMaxBwInKbps, "nOverheadPercentage fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.enMode, "SRT enMode fields differ %d vs %d.\n");
    if (c1.EncapSpecCfg.SRT.enMode == SMGR_SRT_MODE_SERVER)
      DIFFERS_NUM(EncapSpecCfg.SRT.bStrictEncryption,
                  "SRT listener strict encryption fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.bNetworkAdaptive,
                "EncapSpecCfg.SRT.bNetworkAdaptive fields differ %d vs %d.\n");
    DIFFERS_TEXT(EncapSpecCfg.SRT.szPublishingID, "SRT publishing ID fields differ \"%s\" vs \"%s\".\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.enLinkRedundancyMode,
                "EncapSpecCfg.SRT.enLinkRedundancyMode fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.nLinkWeight, "EncapSpecCfg.SRT.nLinkWeight fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.nSecLinkWeight, "EncapSpecCfg.SRT.nSecLinkWeight fields differ %d vs %d.\n");
    DIFFERS_NUM(EncapSpecCfg.SRT.SecAddress.enType, "Address.enType fields differ %d vs %d.\n");
    if (AddressesDiffer(c1.EncapSpecCfg.SRT.SecAddress, c2.EncapSpecCfg.SRT.SecAddress,
                        kSecondLinkAddressTexts))
      return 1;
    DIFFERS_UNSIGNED(EncapSpecCfg.SRT.usSecPort, "EncapSpecCfg.SRT.usSecPort fields differ %u vs %u.\n");
    DIFFERS_UNSIGNED(EncapSpecCfg.SRT.usSecSourcePort,
                     "EncapSpecCfg.SRT.usSecSourcePort fields differ %u vs %u.\n");
    DIFFERS_TEXT(EncapSpecCfg.SRT.szSecNetworkInterface,
                 "SRT szSecNetworkInterface fields differ \"%s\" vs \"%s\".\n");
    DIFFERS_TEXT(EncapSpecCfg.SRT.szLinkDescription,
                 "SRT szLinkDescription fields differ \"%s\" vs \"%s\".\n");
    DIFFERS_TEXT(EncapSpecCfg.SRT.szSecLinkDescription,
                 "SRT szSecLinkDescription fields differ \"%s\" vs \"%s\".\n");
  }
  if (enEncaps == SMGR_STREAM_ENCAPS_CDN_PUBLISHING) {
    DIFFERS_TEXT(EncapSpecCfg.CDN.szPublishName, "szPublishName fields differ \"%s\" vs \"%s\".\n");
    DIFFERS_TEXT(EncapSpecCfg.CDN.szUserName, "szUserName fields differ \"%s\" vs \"%s\".\n");
    DIFFERS_TEXT(EncapSpecCfg.CDN.szPassword, "szPassword fields differ \"%s\" vs \"%s\".\n");
  }
  return 0;
#undef DIFFERS_TEXT
#undef DIFFERS_UNSIGNED
#undef DIFFERS_NUM
#undef DIFFERS
}

}  // namespace

extern "C" SMGR_API int SessMgr_CompareStreamConfigs(const SMGR_STREAM_CFG* pCfg1,
                                                     const SMGR_STREAM_CFG* pCfg2) {
  if (pCfg1 == nullptr || pCfg2 == nullptr) {
    SMGR_TRACE(3, "Called with a NULL configuration (pCfg1=%p, pCfg2=%p).\n", static_cast<const void*>(pCfg1),
               static_cast<const void*>(pCfg2));
    return 1;
  }
  if (pCfg1->nSize != pCfg2->nSize) {
    SMGR_TRACE(5, "nSize fields differ %lu vs %lu.\n", (unsigned long)pCfg1->nSize,
               (unsigned long)pCfg2->nSize);
    return 1;
  }
  // Records of older callers are shorter: compare what they hold, zeros beyond.
  const size_t nBytes = pCfg1->nSize < sizeof(SMGR_STREAM_CFG) ? pCfg1->nSize : sizeof(SMGR_STREAM_CFG);
  SMGR_STREAM_CFG cfg1{}, cfg2{};
  std::memcpy(&cfg1, pCfg1, nBytes);
  std::memcpy(&cfg2, pCfg2, nBytes);
  return CompareRecords(cfg1, cfg2);
}
