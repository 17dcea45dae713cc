// The rules a metadata configuration goes through inside the library: the
// identity of two sources, the tag-filter text, the checksum tag, relay
// uniqueness, host-name resolution and the order in which create and
// configure apply them. No request is sent from here.
#include <strings.h>
#include <sys/socket.h>

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "lib_trace.h"
#include "metadata_internal.h"
#include "util_netaddr.h"
#include "util_string.h"

namespace {

constexpr size_t kCauseSize = 52;

bool TagIsSet(const UINT* pBitField, UINT nTag) { return (pBitField[nTag / 32] >> (nTag % 32)) & 1u; }

void UpperCase(char* szText, size_t nSize) {
  for (size_t i = 0; i < nSize && szText[i] != '\0'; ++i)
    szText[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(szText[i])));
}

void _FixUASKLVTagSet(SMGR_METADATA_CFG* pCfg) {
  bool bAnySet = false;
  for (uint32_t nWord : pCfg->UASTagFilter) bAnySet = bAnySet || nWord != 0;
  if (!bAnySet || TagIsSet(pCfg->UASTagFilter, UAS_CHECKSUM_TAG)) return;
  pCfg->UASTagFilter[0] |= 1u << UAS_CHECKSUM_TAG;
  SMGR_TRACE(6, "Adding missing checksum to UAS Tag Set.\n");
}

// Relay i against relays 0..i-1: same type and, for binary IPv4/IPv6
// addresses only, the same address bytes. Ports, TOS and TTL do not count.
BOOL _IsRelayAddressUnique(const SMGR_METADATA_RELAY_CFG* pRelays, UINT nNumOfRelays,
                           const SMGR_IP_ADDRESS* pNewAddress) {
  for (UINT i = 0; i < nNumOfRelays; ++i) {
    const SMGR_IP_ADDRESS& earlier = pRelays[i].Address;
    if (earlier.enType != pNewAddress->enType) continue;
    char szAddress[IP_ADDRESS_STRING_SIZE] = "";
    if (earlier.enType == SMGR_IPV4_ADDRESS &&
        std::memcmp(earlier.acAddress, pNewAddress->acAddress, 4) == 0) {
      SMGR_TRACE(3, "Relaying address %s is already present at offset %u/%u.\n",
                 GetIPv4AddressString(pNewAddress->acAddress, szAddress, sizeof(szAddress)), i + 1,
                 nNumOfRelays);
      return FALSE;
    }
    if (earlier.enType == SMGR_IPV6_ADDRESS &&
        std::memcmp(earlier.acAddress, pNewAddress->acAddress, 16) == 0) {
      SMGR_TRACE(3, "IPv6 relaying address %s is already present at offset %u/%u.\n",
                 GetIPv6AddressString(pNewAddress->acAddress, szAddress, sizeof(szAddress)), i + 1,
                 nNumOfRelays);
      return FALSE;
    }
  }
  return TRUE;
}

// Resolves an unresolved host name in place. The utility lookup reports no
// cause, so *szCause stays empty; the caller appends one when there is.
bool ResolveHostName(SMGR_IP_ADDRESS* pAddress, char* szCause, size_t nCauseSize) {
  if (nCauseSize > 0) szCause[0] = '\0';
  char szHostName[SMGR_MAX_HOSTNAME_SIZE];
  CopyString(szHostName, pAddress->szHostName,
             sizeof(szHostName));  // the caller's text may lack a terminator
  int iFamily = 0;
  BYTE abAddress[16] = {};
  if (!GetHostIPAddress(szHostName, abAddress, sizeof(abAddress), &iFamily)) return false;
  std::memcpy(pAddress->acAddress, abAddress, sizeof(abAddress));
  if (iFamily == AF_INET)
    pAddress->enType = SMGR_HOSTNAME_RESOLVED_AS_IPV4;
  else if (iFamily == AF_INET6)
    pAddress->enType = SMGR_HOSTNAME_RESOLVED_AS_IPV6;
  else
    _DoTextAssert(__func__, __FILE__, __LINE__, "Unknown address family (%d) detected.\n", iFamily);
  return true;
}

bool CheckRelays(const char* szOperation, SMGR_METADATA_CFG* pCfg, size_t nDescriptionSize) {
  if (pCfg->nNumOfRelays > SMGR_METADATA_MAX_RELAYS) {
    SMGR_TRACE_AS(szOperation, 3, "Too many relays (%u).\n", pCfg->nNumOfRelays);
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return false;
  }
  char szDescription[170];
  nDescriptionSize = nDescriptionSize < sizeof(szDescription) ? nDescriptionSize : sizeof(szDescription);
  for (UINT i = 0; i < pCfg->nNumOfRelays; ++i) {
    SMGR_IP_ADDRESS& address = pCfg->Relays[i].Address;
    if (address.enType == SMGR_UNRESOLVED_HOSTNAME) {
      char szHostName[SMGR_MAX_HOSTNAME_SIZE];
      CopyString(szHostName, address.szHostName, sizeof(szHostName));
      char szCause[kCauseSize];
      if (!ResolveHostName(&address, szCause, sizeof(szCause))) {
        SMGR_TRACE_AS(szOperation, 3, "Unable to resolve hostname \"%s\" ip address.\n", szHostName);
        PrintToString(szDescription, nDescriptionSize, "Relay #%d has unresolvable host name \"%s\"",
                      static_cast<int>(i + 1), szHostName);
        if (szCause[0] != '\0') {
          StringCat(szDescription, ", cause: ", nDescriptionSize);
          StringCat(szDescription, szCause, nDescriptionSize);
        }
        SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_METADATA_RELAY_ADDRESS, 0, szDescription);
        return false;
      }
      SMGR_TRACE_AS(szOperation, 6,
                    "Successfully resolved address for metadata relay with hostname of \"%s\".\n",
                    szHostName);
    }
    if (!_IsRelayAddressUnique(pCfg->Relays, i, &address)) {
      PrintToString(szDescription, nDescriptionSize, "Relay #%d has duplicate IP address",
                    static_cast<int>(i + 1));
      SessMgr_SetLastErrorEx(SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS, 0, szDescription);
      return false;
    }
  }
  return true;
}

int _CompareSensors(const void* First, const void* Second) {
  return strncasecmp(static_cast<const char*>(First), static_cast<const char*>(Second),
                     SMGR_METADATA_SENSOR_UID_SIZE);
}

}  // namespace

namespace smgr {

unsigned ConfigurePrepareSteps(uint64_t nSetFieldsFlag) {
  unsigned nSteps = 0;
  if (nSetFieldsFlag & SMGR_METADATA_SET_CLASSIFYING_COUNTRY) nSteps |= kUpperClassifyingCountry;
  if (nSetFieldsFlag & SMGR_METADATA_SET_OBJECT_COUNTRY) nSteps |= kUpperObjectCountry;
  if (nSetFieldsFlag & SMGR_METADATA_SET_INET_ADDRESS) nSteps |= kResolveSourceAddress;
  if (nSetFieldsFlag & SMGR_METADATA_SET_RELAYS) nSteps |= kCheckRelays;
  if (nSetFieldsFlag & SMGR_METADATA_SET_UAS_TAG_FILTER) nSteps |= kAddChecksumTag;
  return nSteps;
}

bool PrepareMetaDataConfig(const char* szOperation, SMGR_METADATA_CFG* pCfg, unsigned nSteps,
                           size_t nDescriptionSize) {
  if (nSteps & kUpperClassifyingCountry)
    UpperCase(pCfg->szClassifyingCountry, sizeof(pCfg->szClassifyingCountry));
  if (nSteps & kUpperObjectCountry) UpperCase(pCfg->szObjectCountry, sizeof(pCfg->szObjectCountry));
  if ((nSteps & kDefaultClassification) && !pCfg->bClassifyMission && pCfg->enClassification == 0)
    pCfg->enClassification = SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED;
  if ((nSteps & kResolveSourceAddress) && pCfg->enInputType == SMGR_METADATA_IN_TYPE_INET &&
      pCfg->in.Network.Address.enType == SMGR_UNRESOLVED_HOSTNAME) {
    char szCause[kCauseSize];
    if (!ResolveHostName(&pCfg->in.Network.Address, szCause, sizeof(szCause))) {
      SMGR_TRACE_AS(szOperation, 3, "Unable to resolve hostname of the metadata source.\n");
      SessMgr_SetLastError(SMGR_ERROR_INVALID_METADATA_SOURCE_ADDRESS);
      return false;
    }
  }
  if ((nSteps & kCheckRelays) && !CheckRelays(szOperation, pCfg, nDescriptionSize)) return false;
  if (nSteps & kAddChecksumTag) _FixUASKLVTagSet(pCfg);
  return true;
}

void _CopyInfoToConfig(const SMGR_METADATA_INFO* pInfo, SMGR_METADATA_CFG* pCfg) {
  pCfg->SetFieldsFlag = 0;
  pCfg->nSize = pInfo->nSize;
  pCfg->nIndex = pInfo->nIndex;
  CopyString(pCfg->szName, pInfo->szName, sizeof(pCfg->szName));
  pCfg->enInputType = pInfo->enInputType;
  pCfg->enInputFormat = pInfo->enInputFormat;
  if (pInfo->enInputType == SMGR_METADATA_IN_TYPE_SERIAL) {
    CopyString(pCfg->in.Serial.szInputDeviceName, pInfo->in.Serial.szInputDeviceName,
               sizeof(pCfg->in.Serial.szInputDeviceName));
  } else if (pInfo->enInputType == SMGR_METADATA_IN_TYPE_INET) {
    std::memcpy(&pCfg->in.Network.Address, &pInfo->in.Network.Address, sizeof(SMGR_IP_ADDRESS));
    pCfg->in.Network.usPort = pInfo->in.Network.usPort;
  }
  // Video-input sources (the fixed SDI KLV sources) carry nothing more that identifies them.
}

void SortSensorUIDs(SMGR_METADATA_COT_STATS* pCoT, uint32_t nCount) {
  if (nCount > SMGR_METADATA_MAX_SENSORS) nCount = SMGR_METADATA_MAX_SENSORS;
  if (nCount > 1) std::qsort(pCoT->aszSensorUIDs, nCount, SMGR_METADATA_SENSOR_UID_SIZE, _CompareSensors);
}

}  // namespace smgr

extern "C" {

SMGR_API BOOL AreMetaDataSrcConfigsIdentical(const SMGR_METADATA_CFG* pCfg1, const SMGR_METADATA_CFG* pCfg2) {
  SMGR_ASSERT(pCfg1 != NULL);
  SMGR_ASSERT(pCfg2 != NULL);
  if (pCfg1 == nullptr || pCfg2 == nullptr) return FALSE;
  if (pCfg1->szName[0] != '\0' && strncasecmp(pCfg1->szName, pCfg2->szName, sizeof(pCfg1->szName)) == 0) {
    char szName[SMGR_OBJECT_NAME_SIZE];
    SMGR_TRACE(7, "Found handle with same name \"%s\".\n", CopyString(szName, pCfg1->szName, sizeof(szName)));
    return TRUE;
  }
  if (pCfg1->nIndex > 0 && pCfg1->nIndex == pCfg2->nIndex) {
    SMGR_TRACE(7, "Found handle with same index (%d).\n", pCfg1->nIndex);
    return TRUE;
  }
  if (pCfg1->enInputType != pCfg2->enInputType) return FALSE;
  if (pCfg1->enInputType == SMGR_METADATA_IN_TYPE_SERIAL) {
    const char* szDevice1 = pCfg1->in.Serial.szInputDeviceName;
    if (std::strncmp(szDevice1, pCfg2->in.Serial.szInputDeviceName, SMGR_METADATA_DEVICE_NAME_SIZE) != 0)
      return FALSE;
    char szDevice[SMGR_METADATA_DEVICE_NAME_SIZE];
    SMGR_TRACE(7, "Found handle with same input device \"%s\".\n",
               CopyString(szDevice, szDevice1, sizeof(szDevice)));
    return TRUE;
  }
  if (pCfg1->enInputType == SMGR_METADATA_IN_TYPE_INET &&
      pCfg1->in.Network.usPort == pCfg2->in.Network.usPort) {
    SMGR_TRACE(7, "Found handle with same UDP port (%d).\n", pCfg1->in.Network.usPort);
    return TRUE;
  }
  return FALSE;
}

SMGR_API void _GenerateTagFilterString(const UINT* BitField, UINT nMinVal, UINT nMaxVal, char* szBuffer,
                                       size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return;
  szBuffer[0] = '\0';
  if (BitField == nullptr) return;
  bool bFirst = true;
  char szTag[16];
  for (UINT nTag = nMinVal; nTag <= nMaxVal && nTag <= SMGR_METADATA_MAX_UAS_TAG; ++nTag) {
    if (!TagIsSet(BitField, nTag)) continue;
    PrintToString(szTag, sizeof(szTag), bFirst ? "%u" : ",%u", nTag);
    StringCat(szBuffer, szTag, nSize);
    bFirst = false;
  }
}

}  // extern "C"
