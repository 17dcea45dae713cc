// The paged enumeration contract shared by every Enumerate operation: how many
// elements to ask for, and the copy-back of counts and element records from
// the response (bounded by the caller's buffer and by the bytes received).
#pragma once

#include <cstddef>
#include <cstdint>

#include "request_engine.h"

namespace smgr {

// Where an enumeration response keeps its counts and records (message offsets).
struct PagedLayout {
  size_t nTotalCountOffset;     // DWORD: elements that exist in the daemon
  size_t nReturnedCountOffset;  // DWORD: element records that follow
  size_t nElementSizeOffset;    // DWORD: size of one record as the daemon lays it out
  size_t nRecordsOffset;        // first record
};

// Result, total, returned, element size, records: the layout of every
// enumeration response of the protocol so far.
inline constexpr PagedLayout kStandardPagedLayout{20, 24, 28, 32};

// The caller's side of one page; every pointer may be NULL.
struct PagedOutputs {
  void* pvBuffer;
  size_t nBuffSize;
  UINT* pnTotalCount;
  UINT* pnReturnedCount;
  size_t* pnElementSize;
};

// Elements the caller's buffer holds: nBuffSize / nElementSize, rounded down
// (0 for a buffer smaller than one element). Not capped by the message size.
int32_t PagedRequestCount(size_t nBuffSize, size_t nElementSize);

// Copy-back of one page. The records are copied into pvBuffer only when it is
// non-NULL and returned count x element size fits nBuffSize; the counts and
// the element size are stored in any case. Fails with
// SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR in *pLastError (and stores nothing)
// when the response is too short for its counts, or for the records it
// announces and the caller could take.
bool CopyPagedEnumeration(const ResponseView& response, const PagedLayout& layout,
                          const PagedOutputs& outputs, SMGR_RESULT* pLastError);

}  // namespace smgr
