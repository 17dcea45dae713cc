// The versioned copy of the LED and temperature records: the caller's nSize
// says how much of the record it knows; min(that, the daemon's nSize) bytes
// are copied (never past the bytes received) and stored back into nSize.
#pragma once

#include <cstring>

#include "request_engine.h"

namespace smgr {

inline bool CopyVersionedRecord(const ResponseView& response, size_t nOffset, void* pvRecord,
                                SMGR_RESULT* pLastError) {
  uint32_t nDaemonSize = 0;
  if (!response.read(nOffset, &nDaemonSize)) {
    *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
    return false;
  }
  uint32_t nCallerSize = 0;
  std::memcpy(&nCallerSize, pvRecord, sizeof(nCallerSize));
  const uint32_t nCopied =
      static_cast<uint32_t>(CopyRecordBack(response, nOffset, nDaemonSize, pvRecord, nCallerSize));
  if (nCallerSize >= sizeof(nCopied)) std::memcpy(pvRecord, &nCopied, sizeof(nCopied));
  return true;
}

}  // namespace smgr
