// Paged enumeration: request count and bounded copy-back of one page of
// element records (see paged_enumeration.h).
#include "paged_enumeration.h"

#include <cstring>
#include <limits>

namespace smgr {

int32_t PagedRequestCount(size_t nBuffSize, size_t nElementSize) {
  if (nElementSize == 0) return 0;
  size_t nCount = nBuffSize / nElementSize;
  constexpr size_t kMax = static_cast<size_t>(std::numeric_limits<int32_t>::max());
  return static_cast<int32_t>(nCount > kMax ? kMax : nCount);
}

bool CopyPagedEnumeration(const ResponseView& response, const PagedLayout& layout,
                          const PagedOutputs& outputs, SMGR_RESULT* pLastError) {
  DWORD nTotal = 0;
  DWORD nReturned = 0;
  DWORD nElementSize = 0;
  if (!response.read(layout.nTotalCountOffset, &nTotal) ||
      !response.read(layout.nReturnedCountOffset, &nReturned) ||
      !response.read(layout.nElementSizeOffset, &nElementSize)) {
    *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
    return false;
  }
  uint64_t nRecordBytes = static_cast<uint64_t>(nReturned) * nElementSize;
  if (outputs.pvBuffer != nullptr && nRecordBytes <= outputs.nBuffSize) {
    if (!response.holds(layout.nRecordsOffset, static_cast<size_t>(nRecordBytes))) {
      *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
      return false;
    }
    std::memcpy(outputs.pvBuffer, response.bytes() + layout.nRecordsOffset,
                static_cast<size_t>(nRecordBytes));
  }
  if (outputs.pnElementSize != nullptr) *outputs.pnElementSize = nElementSize;
  if (outputs.pnTotalCount != nullptr) *outputs.pnTotalCount = nTotal;
  if (outputs.pnReturnedCount != nullptr) *outputs.pnReturnedCount = nReturned;
  return true;
}

}  // namespace smgr
