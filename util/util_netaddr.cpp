// IPv4/IPv6 text forms and host-name resolution. Names under the reserved
// ".invalid" domain never resolve and are refused without asking the resolver,
// so a test (or a typo of that form) cannot hang on DNS.
#include "util_netaddr.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

#include <cstring>

#include "util_string.h"

namespace {

char* formatAddress(int nFamily, const BYTE* pbAddress, char* szBuffer, size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return nullptr;
  szBuffer[0] = '\0';
  if (pbAddress == nullptr) return nullptr;
  char acText[INET6_ADDRSTRLEN];
  if (inet_ntop(nFamily, pbAddress, acText, sizeof(acText)) == nullptr) return nullptr;
  // A cut address would read as a different, valid one: refuse instead.
  if (strlen(acText) >= nSize) return nullptr;
  return CopyString(szBuffer, acText, nSize);
}

// RFC 6761: "invalid" and every name below it never resolve.
bool isReservedInvalidName(const char* szHostName) {
  size_t nLength = strlen(szHostName);
  if (nLength > 0 && szHostName[nLength - 1] == '.') --nLength;
  constexpr size_t kSuffix = sizeof("invalid") - 1;
  if (nLength < kSuffix || strncasecmp(szHostName + nLength - kSuffix, "invalid", kSuffix) != 0) return false;
  return nLength == kSuffix || szHostName[nLength - kSuffix - 1] == '.';
}

}  // namespace

extern "C" {

char* GetIPv4AddressString(const BYTE* pbAddress, char* szBuffer, size_t nSize) {
  return formatAddress(AF_INET, pbAddress, szBuffer, nSize);
}

char* GetIPv6AddressString(const BYTE* pbAddress, char* szBuffer, size_t nSize) {
  return formatAddress(AF_INET6, pbAddress, szBuffer, nSize);
}

char* GetIPAddressString(const BYTE* pbAddress, int nFamily, char* szBuffer, size_t nSize) {
  if (nFamily == AF_INET || nFamily == AF_INET6) return formatAddress(nFamily, pbAddress, szBuffer, nSize);
  CopyString(szBuffer, "(Invalid)", nSize);
  return szBuffer;
}

BOOL GetHostIPAddress(const char* szHostName, BYTE* pbAddress, size_t nAddressSize, int* piFamily) {
  if (szHostName == nullptr || *szHostName == '\0' || pbAddress == nullptr || nAddressSize < 4) return FALSE;
  if (isReservedInvalidName(szHostName)) return FALSE;
  struct addrinfo hints;
  memset(&hints, 0, sizeof(hints));
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_DGRAM;  // one entry per address instead of one per socket type
  struct addrinfo* pList = nullptr;
  if (getaddrinfo(szHostName, nullptr, &hints, &pList) != 0 || pList == nullptr) return FALSE;
  const struct addrinfo* pChosen = nullptr;
  for (const struct addrinfo* p = pList; p != nullptr; p = p->ai_next) {
    if (p->ai_family == AF_INET) {
      pChosen = p;
      break;
    }
    if (p->ai_family == AF_INET6 && pChosen == nullptr && nAddressSize >= 16) pChosen = p;
  }
  BOOL bResolved = FALSE;
  if (pChosen != nullptr) {
    memset(pbAddress, 0, nAddressSize);
    if (pChosen->ai_family == AF_INET) {
      memcpy(pbAddress, &reinterpret_cast<const sockaddr_in*>(pChosen->ai_addr)->sin_addr, 4);
    } else {
      memcpy(pbAddress, &reinterpret_cast<const sockaddr_in6*>(pChosen->ai_addr)->sin6_addr, 16);
    }
    if (piFamily != nullptr) *piFamily = pChosen->ai_family;
    bResolved = TRUE;
  }
  freeaddrinfo(pList);
  return bResolved;
}

}  // extern "C"
