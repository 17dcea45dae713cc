// Stream value names (tables as data on the one value-name mechanism) and
// the text forms of SMGR_IP_ADDRESS. No lock, no last error.
#include <sys/socket.h>

#include "lib_trace.h"
#include "sessmgr_api.h"
#include "stream_internal.h"
#include "stream_value_names.h"
#include "util_netaddr.h"
#include "util_string.h"
#include "value_names.h"

namespace {

using namespace smgr::stream_names;
using smgr::ValueName;

// The binary address of a kind as text; NULL when the kind carries none or
// the formatter fails.
enum class BinaryForm { None, IPv4, IPv6 };

BinaryForm BinaryFormOf(int enType) {
  switch (enType) {
    case SMGR_IPV4_ADDRESS:
    case SMGR_IPV4_HOSTNAME:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV4:
      return BinaryForm::IPv4;
    case SMGR_IPV6_ADDRESS:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV6:
      return BinaryForm::IPv6;
    default:
      return BinaryForm::None;
  }
}

const char* FormatBinary(const SMGR_IP_ADDRESS& address, char* szScratch, size_t nScratch) {
  switch (BinaryFormOf(address.enType)) {
    case BinaryForm::IPv4:
      return GetIPv4AddressString(address.acAddress, szScratch, nScratch);
    case BinaryForm::IPv6:
      return GetIPv6AddressString(address.acAddress, szScratch, nScratch);
    case BinaryForm::None:
      break;
  }
  return nullptr;
}

// The caller-facing text (without the debug prefix) into szBuffer.
void WriteAddressText(const SMGR_IP_ADDRESS& address, char* szBuffer, size_t nSize) {
  char szHostName[SMGR_MAX_HOSTNAME_SIZE];
  CopyString(szHostName, address.szHostName, sizeof(szHostName));  // the caller's text may lack a terminator
  char szScratch[IP_ADDRESS_STRING_SIZE] = "";
  const char* szBinary = nullptr;
  if (BinaryFormOf(address.enType) != BinaryForm::None) {
    szBinary = FormatBinary(address, szScratch, sizeof(szScratch));
    if (szBinary == nullptr) {
      CopyString(szBuffer, "INVALID", nSize);
      return;
    }
  }
  switch (address.enType) {
    case SMGR_IPV4_ADDRESS:
    case SMGR_IPV6_ADDRESS:
      CopyString(szBuffer, szBinary, nSize);
      break;
    case SMGR_IPV4_HOSTNAME:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV4:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV6:
      PrintToString(szBuffer, nSize, "\"%s\":%s", szHostName, szBinary);
      break;
    case SMGR_URL:
      PrintToString(szBuffer, nSize, "\"%s\"", szHostName);
      break;
    case SMGR_UNRESOLVED_HOSTNAME:
      PrintToString(szBuffer, nSize, "\"%s\":UNRESOLVED", szHostName);
      break;
    case SMGR_ANY_ADDRESS:
      CopyString(szBuffer, "ANY", nSize);
      break;
    case SMGR_UNKNOWN_ADDRESS:
      CopyString(szBuffer, "(Unknown)", nSize);
      break;
    default:
      CopyString(szBuffer, "INVALID", nSize);
      break;
  }
}

// The enumerator name that prefixes a debug text (IPv6 included here).
const char* DebugPrefixOf(int enType) {
  if (enType == SMGR_IPV6_ADDRESS) return "SMGR_IPV6_ADDRESS";
  for (const ValueName& kind : kAddressKinds)
    if (kind.nValue == enType) return kind.szText;
  return "";
}

}  // namespace

extern "C" {

SMGR_API char* SessMgr_GetStreamTypeString(int enType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStreamTypeNames, enType, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetStreamEncapsulationString(int enEncapsulation, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kEncapsulationNames, enEncapsulation, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetStreamContentFormatString(int enFormat, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kContentFormatNames, enFormat, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetStreamDataEncapsString(int enEncaps, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kDataEncapsNames, enEncaps, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetStreamStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStreamStateNames, enState, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetStreamModeString(int enMode, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kSrtModeNames, enMode, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetSRTStreamRedundancyString(int enMode, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kSrtRedundancyNames, enMode, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetFECTypeString(int enFECType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kFecTypeNames, enFECType, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetMpegProFECLevelString(int enLevel, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kProMpegLevelNames, enLevel, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetSRTVersionString(int iVersion, char* szBuffer, size_t nSize) {
  return smgr::FormatValueText(
      kSrtVersionContract, iVersion, szBuffer, nSize, [](int nValue, char* szOut, size_t nOut) {
        PrintToString(szOut, nOut, "%d.%d.%d", (nValue >> 16) & 0xFF, (nValue >> 8) & 0xFF, nValue & 0xFF);
      });
}

SMGR_API char* SessMgr_GetIPAddressString(const SMGR_IP_ADDRESS* pAddr, char* szBuffer, size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return szBuffer;
  if (pAddr == nullptr) {
    CopyString(szBuffer, "INVALID", nSize);
    return szBuffer;
  }
  WriteAddressText(*pAddr, szBuffer, nSize);
  return szBuffer;
}

SMGR_API char* GetIPAddressDebugString(const SMGR_IP_ADDRESS* pAddr, char* szBuffer, size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return szBuffer;
  if (pAddr == nullptr) {
    CopyString(szBuffer, "INVALID", nSize);
    return szBuffer;
  }
  const int enType = pAddr->enType;
  char szText[80];
  WriteAddressText(*pAddr, szText, sizeof(szText));
  switch (enType) {
    case SMGR_URL:  // the quoted text alone
    case SMGR_UNKNOWN_ADDRESS:
    case SMGR_ANY_ADDRESS:
      CopyString(szBuffer, enType == SMGR_ANY_ADDRESS ? "SMGR_ANY_ADDRESS" : szText, nSize);
      break;
    case SMGR_IPV4_ADDRESS:
    case SMGR_IPV6_ADDRESS:
    case SMGR_IPV4_HOSTNAME:
    case SMGR_UNRESOLVED_HOSTNAME:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV4:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV6:
      PrintToString(szBuffer, nSize, "%s %s", DebugPrefixOf(enType), szText);
      break;
    default:
      CopyString(szBuffer, "INVALID", nSize);
      break;
  }
  return szBuffer;
}

}  // extern "C"

char* _GetIPAddressTypeString(int enType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kAddressKindNames, enType, szBuffer, nSize);
}
