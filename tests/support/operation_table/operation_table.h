// The table of every exported operation, shared by the fuzz targets (which
// play the daemon through the transport seam) and the bad-input sweep (which
// runs against the test peer). Each family has one rows file beside this one
// (<family>_rows.cpp) that registers its rows with a static RowRegistration:
// its request types, a valid invocation with guarded caller memory, a valid
// daemon response per request, and its documented bad-input outcomes.
// row_kit.h has the shared building blocks. Free of GoogleTest so that the
// fuzz targets can link it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lib_state.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr::test {

using Bytes = std::vector<uint8_t>;

// Caller memory of an exact size with guard bytes on both sides: anything the
// library writes outside [data(), data() + size()) breaks intact().
class GuardedBuffer {
 public:
  explicit GuardedBuffer(size_t nSize, uint8_t bFill = 0);
  void* data() { return storage_.data() + kGuard; }
  size_t size() const { return nSize_; }
  bool intact() const;
  template <typename T>
  T* as() {
    return static_cast<T*>(data());
  }

 private:
  static constexpr size_t kGuard = 64;
  static constexpr uint8_t kGuardByte = 0xA5;
  std::vector<uint8_t> storage_;
  size_t nSize_;
};

// Little helper over the fuzz input (or fixed bytes): every read succeeds and
// yields zeros past the end, so any input is a valid invocation.
class ParamReader {
 public:
  ParamReader() = default;
  ParamReader(const uint8_t* pb, size_t n) : pb_(pb), n_(n) {}
  uint8_t byte() { return pos_ < n_ ? pb_[pos_++] : 0; }
  uint32_t u32();
  size_t consumed() const { return pos_; }

 private:
  const uint8_t* pb_ = nullptr;
  size_t n_ = 0;
  size_t pos_ = 0;
};

// The state one invocation works with.
struct CallContext {
  ParamReader params;
  // Caller memory the call may write; checked after the call.
  std::vector<std::unique_ptr<GuardedBuffer>> buffers;
  HSMGR hOpen = nullptr;     // a live handle, when the row's prepare step opened one
  HSMGR hCreated = nullptr;  // what a successful Create/Open returned

  GuardedBuffer& buffer(size_t nSize, uint8_t bFill = 0);
  bool guardsIntact() const;
};

// Handles for the bad-input variants: records in static memory, so no freed
// memory is ever touched. wipedHandle() looks like any family's handle after
// its last close (the library wipes the signature before freeing the record);
// foreignHandle() carries the given signature (another family's).
HSMGR wipedHandle();
HSMGR foreignHandle(DWORD dwSignature);

// How the generic selector and record rows of a handle family open and close
// the handle they use: open stores a live handle in ctx.hOpen (canned
// exchanges), close releases ctx.hOpen and ctx.hCreated. dwForeignSignature is
// another family's handle signature, for the "handle of another family" input.
struct HandleKit {
  void (*open)(CallContext& ctx);
  void (*close)(CallContext& ctx);
  DWORD dwForeignSignature;
};

enum class SuccessCodes {
  ZeroOnly,            // TRUE leaves last error 0
  ZeroOrWarning,       // TRUE leaves 0 or a warning (top bit set)
  Untouched,           // TRUE leaves the last error as it was (configuration store)
  UntouchedOrWarning,  // TRUE leaves it as it was, or sets a warning
  ZeroEvenOnWarning,   // a warning succeeds too, but TRUE leaves 0 either way
};

// What a bad input must do.
struct Expectation {
  enum class LastError { Equals, Unchanged, Any };
  BOOL bReturn = FALSE;
  LastError lastError = LastError::Equals;
  SMGR_RESULT code = SMGR_ERROR_INVALID_PARAMETERS;
  bool bSendsRequest = false;  // one request of the row's type reaches the daemon
};

struct BadInput {
  const char* szWhat;
  // Makes the call; local operations turn their documented outcome into TRUE
  // (as documented) or FALSE (not as documented).
  BOOL (*call)(CallContext& ctx);
  Expectation expect;
};

struct OperationRow {
  const char* szName;    // exported name
  WORD wRequestType;     // 0 for local operations (nothing sent)
  SuccessCodes success;  // what TRUE means for the last error
  // The daemon's valid answer to a request of this row (header included:
  // type + 1, same sequence, wMsgSize = length). Null for local operations.
  Bytes (*validResponse)(const Bytes& request);
  // Canned exchanges before the call (e.g. opening the handle it uses); may be null.
  void (*prepare)(CallContext& ctx);
  // The valid invocation, outputs in ctx.buffers; params shape buffer sizes,
  // offsets and optional pointers. Null for rows only the sweep can exercise.
  BOOL (*invoke)(CallContext& ctx);
  // Releases what prepare or a successful invoke made (canned exchanges); may be null.
  void (*finish)(CallContext& ctx);
  std::vector<BadInput> badInputs;
  // Last error of the valid invocation before SessMgrLib_Init: most operations
  // check first (14); some report 2, and those that skip the check fail to send (10).
  SMGR_RESULT notInitialisedResult = SMGR_ERROR_LIB_NOT_INITIALIZED;
  // Which failures return FALSE with the last error as it was (families that
  // report only some failures say which).
  enum class KeptLastError { Never, OnSendFailure, OnDaemonFailure, OnDaemonOrSendFailure };
  KeptLastError keptLastError = KeptLastError::Never;
};

// Static registration of one family's rows; the table lists families in name order.
struct RowRegistration {
  RowRegistration(const char* szFamily, std::vector<OperationRow> (*build)());
};

const std::vector<OperationRow>& OperationTable();
const OperationRow* FindRowByRequest(WORD wRequestType);
const OperationRow* FindRowByName(const std::string& name);

// Handles of every handle family alive in this process (leak check).
using smgr::LiveHandleCount;

// A message with a header: type, sequence, wMsgSize = nSize, source PID.
Bytes MakeMessage(WORD wType, WORD wSequence, size_t nSize);
WORD RequestType(const Bytes& message);
WORD RequestSequence(const Bytes& message);

}  // namespace smgr::test
