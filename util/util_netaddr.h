/* IPv4/IPv6 text forms and host-name resolution. */
#ifndef SESSMGR_UTIL_NETADDR_H
#define SESSMGR_UTIL_NETADDR_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

/* Longest IPv6 text plus terminator. */
#define IP_ADDRESS_STRING_SIZE 46

/* Dotted (4 bytes) or colon (16 bytes) text of a raw address into szBuffer. Returns
 * szBuffer, or NULL (szBuffer then holds "" when nSize > 0) when the address is NULL
 * or its text does not fit in nSize: an address is never cut. */
char* GetIPv4AddressString(const BYTE* pbAddress, char* szBuffer, size_t nSize);
char* GetIPv6AddressString(const BYTE* pbAddress, char* szBuffer, size_t nSize);
/* Either of the above by nFamily (AF_INET or AF_INET6); other families write
 * "(Invalid)" (truncated to nSize) and return szBuffer. */
char* GetIPAddressString(const BYTE* pbAddress, int nFamily, char* szBuffer, size_t nSize);
/* Resolves szHostName (numeric or name) into pbAddress (nAddressSize >= 16 for IPv6,
 * IPv4 in the first 4 bytes, rest zeroed) and stores AF_INET/AF_INET6 in *piFamily.
 * IPv4 is preferred when both exist. FALSE when it does not resolve; names under the
 * reserved ".invalid" domain fail at once without asking the resolver. */
BOOL GetHostIPAddress(const char* szHostName, BYTE* pbAddress, size_t nAddressSize, int* piFamily);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_NETADDR_H */
