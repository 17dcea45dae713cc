// The generic part of the operation table (see operation_table.h): guarded
// caller memory, parameters, stand-in handles, and the table assembled from
// every family's registered rows.
#include "operation_table.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <string>

namespace smgr::test {
namespace {

// Stand-in handle records: large and aligned enough for any family's record.
alignas(16) unsigned char g_WipedHandle[4096];
alignas(16) unsigned char g_ForeignHandle[4096];

std::map<std::string, std::vector<OperationRow> (*)()>& Families() {
  static auto* families = new std::map<std::string, std::vector<OperationRow> (*)()>;
  return *families;
}

}  // namespace

// ---- Public helpers ------------------------------------------------------------------------

GuardedBuffer::GuardedBuffer(size_t nSize, uint8_t bFill)
    : storage_(nSize + 2 * kGuard, kGuardByte), nSize_(nSize) {
  std::memset(storage_.data() + kGuard, bFill, nSize);
}

bool GuardedBuffer::intact() const {
  for (size_t i = 0; i < kGuard; ++i) {
    if (storage_[i] != kGuardByte || storage_[kGuard + nSize_ + i] != kGuardByte) return false;
  }
  return true;
}

uint32_t ParamReader::u32() {
  uint32_t n = 0;
  for (int i = 0; i < 4; ++i) n |= static_cast<uint32_t>(byte()) << (8 * i);
  return n;
}

GuardedBuffer& CallContext::buffer(size_t nSize, uint8_t bFill) {
  buffers.push_back(std::make_unique<GuardedBuffer>(nSize, bFill));
  return *buffers.back();
}

bool CallContext::guardsIntact() const {
  return std::all_of(buffers.begin(), buffers.end(), [](const auto& p) { return p->intact(); });
}

HSMGR wipedHandle() {
  std::memset(g_WipedHandle, 0, sizeof(g_WipedHandle));
  return g_WipedHandle;
}

HSMGR foreignHandle(DWORD dwSignature) {
  std::memset(g_ForeignHandle, 0, sizeof(g_ForeignHandle));
  std::memcpy(g_ForeignHandle, &dwSignature, sizeof(dwSignature));
  return g_ForeignHandle;
}

RowRegistration::RowRegistration(const char* szFamily, std::vector<OperationRow> (*build)()) {
  Families().emplace(szFamily, build);
}

const std::vector<OperationRow>& OperationTable() {
  // Never destroyed: exit handlers of the library may still send (and a fuzz
  // daemon answer from the table) after static destructors have run.
  static const std::vector<OperationRow>* table = [] {
    auto* rows = new std::vector<OperationRow>;
    for (const auto& [family, build] : Families()) {
      std::vector<OperationRow> familyRows = build();
      rows->insert(rows->end(), std::make_move_iterator(familyRows.begin()),
                   std::make_move_iterator(familyRows.end()));
    }
    return rows;
  }();
  return *table;
}

const OperationRow* FindRowByRequest(WORD wRequestType) {
  for (const OperationRow& row : OperationTable())
    if (row.wRequestType == wRequestType && row.validResponse != nullptr) return &row;
  return nullptr;
}

const OperationRow* FindRowByName(const std::string& name) {
  for (const OperationRow& row : OperationTable())
    if (name == row.szName) return &row;
  return nullptr;
}

Bytes MakeMessage(WORD wType, WORD wSequence, size_t nSize) {
  Bytes message(std::max(nSize, sizeof(SMGRPROT_HEADER)), 0);
  SMGRPROT_HEADER header{};
  header.wMsgType = wType;
  header.wMsgSequence = wSequence;
  header.wMsgSize = static_cast<WORD>(nSize);
  header.dwSrcPID = static_cast<DWORD>(getpid());
  std::memcpy(message.data(), &header, sizeof(header));
  message.resize(nSize);
  return message;
}

WORD RequestType(const Bytes& message) {
  WORD wType = 0;
  if (message.size() >= 2) std::memcpy(&wType, message.data(), sizeof(wType));
  return wType;
}

WORD RequestSequence(const Bytes& message) {
  WORD wSequence = 0;
  if (message.size() >= 4) std::memcpy(&wSequence, message.data() + 2, sizeof(wSequence));
  return wSequence;
}

}  // namespace smgr::test
