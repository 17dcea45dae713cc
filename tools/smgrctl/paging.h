// The one pager of smgrctl: collects every record of a paged enumeration of
// the library (streams, threads, mutexes, ...) into a vector.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "sessmgr_api.h"

namespace smgrctl {

// The shape every SessMgr_Enumerate... operation shares.
using EnumerateFn = BOOL (*)(void* pvBuffer, size_t nBuffSize, UINT nStartOffset, UINT* pnTotal,
                             UINT* pnReturned, size_t* pnElementSize);

// Pages through the enumeration, nPerPage records at a time; false when a page fails
// (the last error says why). Records shorter than Record are zero-filled.
template <typename Record>
bool CollectPages(EnumerateFn enumerate, std::vector<Record>* records, size_t nPerPage = 16) {
  std::vector<uint8_t> buffer(nPerPage * sizeof(Record));
  UINT offset = 0;
  for (int guard = 0; guard < 10000; ++guard) {
    UINT total = 0, returned = 0;
    size_t elementSize = 0;
    if (!enumerate(buffer.data(), buffer.size(), offset, &total, &returned, &elementSize)) return false;
    if (returned == 0 || elementSize == 0 || returned * elementSize > buffer.size()) break;
    for (UINT i = 0; i < returned; ++i) {
      Record record{};
      memcpy(&record, buffer.data() + i * elementSize, std::min(elementSize, sizeof record));
      records->push_back(record);
    }
    offset += returned;
    if (offset >= total) break;
  }
  return true;
}

}  // namespace smgrctl
