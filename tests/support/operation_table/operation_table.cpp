// The table of every exported operation (see operation_table.h): valid
// invocations over guarded caller memory, the daemon's valid answers, and the
// documented outcome of each bad input.
#include "operation_table.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "stream_internal.h"

namespace smgr::test {
namespace {

using LE = Expectation::LastError;

// ---- Messages ------------------------------------------------------------------

template <typename T>
void Put(Bytes* pMessage, size_t nOffset, const T& value) {
  if (pMessage->size() < nOffset + sizeof(T)) pMessage->resize(nOffset + sizeof(T), 0);
  std::memcpy(pMessage->data() + nOffset, &value, sizeof(T));
}

template <typename T>
T Field(const Bytes& message, size_t nOffset) {
  T value{};
  if (nOffset < message.size())
    std::memcpy(&value, message.data() + nOffset, std::min(sizeof(T), message.size() - nOffset));
  return value;
}

// The answer to a request: type + 1, same sequence, Result 0.
Bytes Answer(const Bytes& request, size_t nSize) {
  return MakeMessage(static_cast<WORD>(RequestType(request) + 1), RequestSequence(request), nSize);
}

Bytes ResultOnly(const Bytes& request) { return Answer(request, 20); }
Bytes ResultWithDescription(const Bytes& request) { return Answer(request, 180); }

Bytes DebugInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP));
  Put(&message, 20, SMGR_DEBUG_INFO{sizeof(SMGR_DEBUG_INFO), 4242, TRUE, 2});
  return message;
}

// A page of nElementSize records: the request's count (at 16) capped to what
// one message of the default queue size holds; total one more than returned.
Bytes PageAnswer(const Bytes& request, size_t nElementSize, size_t nMaxRecords) {
  int32_t nWanted = Field<int32_t>(request, 16);
  uint32_t nReturned =
      static_cast<uint32_t>(std::clamp<int64_t>(nWanted, 0, static_cast<int64_t>(nMaxRecords)));
  Bytes message = Answer(request, SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET + nReturned * nElementSize);
  Put(&message, 20, nReturned + 1);
  Put(&message, 24, nReturned);
  Put(&message, 28, static_cast<uint32_t>(nElementSize));
  for (uint32_t i = 0; i < nReturned; ++i) {
    uint8_t* pRecord = message.data() + SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET + i * nElementSize;
    std::memset(pRecord, 'a' + static_cast<int>(i), nElementSize);
    std::memcpy(pRecord, &i, sizeof(i));
  }
  return message;
}
Bytes ThreadsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_THREAD_INFO), 3); }
Bytes MutexesAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_MUTEX_INFO), 3); }
Bytes StreamsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_STREAM_INFO), 1); }

constexpr int kCannedStreamId = 42;

Bytes StreamIdAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP));
  Put(&message, 20, kCannedStreamId);
  const char szName[] = "canned-stream";
  std::memcpy(message.data() + 24, szName, sizeof(szName));
  return message;
}

Bytes StreamInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_STREAM_INFO)));
  Put(&message, 24, kCannedStreamId);
  std::memset(message.data() + 28, 'n', SMGR_OBJECT_NAME_SIZE - 1);
  return message;
}

Bytes StreamStatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_GETSTATS_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_STREAM_STATS)));
  std::memset(message.data() + 24, 0x5A, message.size() - 24);
  return message;
}

Bytes StillDeleteAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STILL_DELETE_RSP));
  Put(&message, 20, uint32_t{3});
  Put(&message, 24, uint32_t{1});
  Put(&message, 28, int32_t{13});
  return message;
}

// ---- Caller memory shapes ----------------------------------------------------------

// A page buffer size chosen by a parameter byte: none, tiny, one short of an
// element, exactly one, two and a bit, and a size no daemon answer fills.
size_t PageBufferSize(uint8_t bChoice, size_t nElementSize) {
  switch (bChoice % 7) {
    case 0:
      return 3 * nElementSize + 7;
    case 1:
      return 0;
    case 2:
      return 1;
    case 3:
      return nElementSize - 1;
    case 4:
      return nElementSize;
    case 5:
      return 2 * nElementSize + 1;
    default:
      return 64 * 1024;
  }
}

// An API record of nRecordSize bytes whose nSize says nClaimed: older
// (shorter), exact, or newer (longer) callers.
template <typename T>
T* SizedRecord(CallContext& ctx, uint8_t bChoice) {
  size_t nSize = sizeof(T);
  switch (bChoice % 5) {
    case 1:
      nSize = sizeof(T) - 1;
      break;
    case 2:
      nSize = 100;
      break;
    case 3:
      nSize = sizeof(T) + 256;
      break;
    case 4:
      nSize = 4;
      break;
    default:
      break;
  }
  GuardedBuffer& buffer = ctx.buffer(nSize, 0x11);
  uint32_t nSize32 = static_cast<uint32_t>(nSize);
  std::memcpy(buffer.data(), &nSize32, sizeof(nSize32));
  return buffer.as<T>();
}

// Optional output pointer: NULL when the parameter bit is set.
template <typename T>
T* OptionalOut(CallContext& ctx, uint8_t bFlags, int nBit) {
  if (bFlags & (1u << nBit)) return nullptr;
  return ctx.buffer(sizeof(T), 0x33).as<T>();
}

template <typename Element>
BOOL InvokePage(CallContext& ctx, BOOL (*pfnEnumerate)(void*, size_t, UINT, UINT*, UINT*, size_t*)) {
  const uint8_t bFlags = ctx.params.byte();
  const size_t nBuffSize = PageBufferSize(ctx.params.byte(), sizeof(Element));
  const UINT nOffset = ctx.params.byte();
  void* pvBuffer = (bFlags & 1) ? nullptr : ctx.buffer(nBuffSize, 0x22).data();
  return pfnEnumerate(pvBuffer, nBuffSize, nOffset, OptionalOut<UINT>(ctx, bFlags, 1),
                      OptionalOut<UINT>(ctx, bFlags, 2), OptionalOut<size_t>(ctx, bFlags, 3));
}

// ---- Selectors and handles ---------------------------------------------------------------

struct FakeHandleRecord {
  SMGR_STREAM_HANDLE record;
};

FakeHandleRecord g_WipedHandle;
FakeHandleRecord g_ForeignHandle;

constexpr char kLongName[] = "long-name-012345678901234567890123456789012345678901234567890123456789";
static_assert(sizeof(kLongName) - 1 == 70);

// A valid selector for the row's call: by ID, by name, or by the prepared
// handle when the operation takes handles and one is open.
SMGR_OBJECT_SELECTOR ChosenSelector(CallContext& ctx, bool bHandlesAccepted) {
  SMGR_OBJECT_SELECTOR selector{};
  const uint8_t bChoice = ctx.params.byte();
  if (bHandlesAccepted && ctx.hStream != nullptr && bChoice % 3 == 2) {
    selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
    selector.Via.Handle = ctx.hStream;
  } else if (bChoice % 3 == 1) {
    selector.enType = SMGR_SELECTBY_OBJECT_NAME;
    selector.Via.szName = (bChoice & 0x80) ? kLongName : "cam1";
  } else {
    selector.enType = SMGR_SELECTBY_OBJECT_ID;
    selector.Via.ID = static_cast<int>(ctx.params.u32());
  }
  return selector;
}

SMGR_OBJECT_SELECTOR ById(int nID) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = nID;
  return selector;
}

SMGR_OBJECT_SELECTOR OfKind(int enType) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = enType;
  return selector;
}

SMGR_OBJECT_SELECTOR ByHandle(HSMGR hHandle) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  selector.Via.Handle = hHandle;
  return selector;
}

SMGR_OBJECT_SELECTOR ByName(const char* szName) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  selector.Via.szName = szName;
  return selector;
}

void OpenCannedStream(CallContext& ctx) {
  SMGR_OBJECT_SELECTOR selector = ById(kCannedStreamId);
  HSTREAM hStream = nullptr;
  if (SessMgr_OpenStream(&selector, &hStream)) ctx.hStream = hStream;
}

void CloseStreams(CallContext& ctx) {
  for (HSTREAM* ph : {&ctx.hCreated, &ctx.hStream}) {
    if (*ph != nullptr) SessMgr_CloseStream(ph);
    *ph = nullptr;
  }
}

// ---- Stream configurations ----------------------------------------------------------------

SMGR_STREAM_CFG ValidStreamCfg() {
  SMGR_STREAM_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strcpy(cfg.szName, "fuzzed");
  cfg.enType = SMGR_STREAM_TYPE_TX;
  cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO;
  cfg.Address.enType = SMGR_IPV4_ADDRESS;
  const uint8_t abAddress[4] = {239, 1, 2, 3};
  std::memcpy(cfg.Address.acAddress, abAddress, sizeof(abAddress));
  cfg.usPort = 5004;
  cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
  cfg.nNumOfSources = 1;
  cfg.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
  cfg.ContentSources[0].Selector = ById(1);
  return cfg;
}

BOOL CreateWith(CallContext& ctx, SMGR_STREAM_CFG cfg) {
  HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM), 0).as<HSTREAM>();
  BOOL bResult = SessMgr_CreateStream(&cfg, phStream);
  if (bResult) ctx.hCreated = *phStream;
  return bResult;
}

// ---- Value names ------------------------------------------------------------------------------

using NameFn = char* (*)(int, char*, size_t);

// Every value name operation: unknown values, truncation to the buffer, and
// the generation's answer to a NULL or empty buffer.
template <NameFn pfn, bool bChecked>
std::vector<BadInput> NameBadInputs() {
  const Expectation local{TRUE, LE::Unchanged};
  return {
      {"unknown value into 1 byte",
       [](CallContext& ctx) -> BOOL {
         char* sz = ctx.buffer(1, 'x').as<char>();
         return pfn(-12345, sz, 1) == sz && sz[0] == '\0';
       },
       local},
      {"unknown value into 4 bytes",
       [](CallContext& ctx) -> BOOL {
         char* sz = ctx.buffer(4, 'x').as<char>();
         return pfn(0x7FFFFFFF, sz, 4) == sz && std::strlen(sz) <= 3;
       },
       local},
      {"NULL buffer",
       [](CallContext&) -> BOOL {
         char* sz = pfn(0, nullptr, 16);
         return bChecked ? (sz != nullptr && std::strcmp(sz, "Invalid input buffer") == 0) : sz == nullptr;
       },
       local},
      {"size 0",
       [](CallContext& ctx) -> BOOL {
         char* sz = ctx.buffer(1, 'x').as<char>();
         char* szResult = pfn(1, sz, 0);
         return sz[0] == 'x' &&
                (bChecked ? std::strcmp(szResult, "Invalid input buffer") == 0 : szResult == sz);
       },
       local},
  };
}

template <NameFn pfn, bool bChecked>
OperationRow NameRow(const char* szName) {
  return {szName,  0,       SuccessCodes::ZeroOnly,        nullptr, nullptr,
          nullptr, nullptr, NameBadInputs<pfn, bChecked>()};
}

using AddressFn = char* (*)(const SMGR_IP_ADDRESS*, char*, size_t);

template <AddressFn pfn>
std::vector<BadInput> AddressBadInputs() {
  const Expectation local{TRUE, LE::Unchanged};
  return {
      {"NULL address",
       [](CallContext& ctx) -> BOOL {
         char* sz = ctx.buffer(16).as<char>();
         return pfn(nullptr, sz, 16) == sz && std::strcmp(sz, "INVALID") == 0;
       },
       local},
      {"NULL buffer",
       [](CallContext&) -> BOOL {
         SMGR_IP_ADDRESS address{};
         return pfn(&address, nullptr, 16) == nullptr;
       },
       local},
      {"unterminated host name of an unknown kind into 2 bytes",
       [](CallContext& ctx) -> BOOL {
         SMGR_IP_ADDRESS* pAddress = ctx.buffer(sizeof(SMGR_IP_ADDRESS), 'h').as<SMGR_IP_ADDRESS>();
         for (int enType : {-1, SMGR_IPV4_HOSTNAME, 1000}) {
           pAddress->enType = enType;
           char* sz = ctx.buffer(2, 'x').as<char>();
           if (pfn(pAddress, sz, 2) != sz || std::strlen(sz) > 1) return FALSE;
         }
         return TRUE;
       },
       local},
  };
}

// ---- Rows -----------------------------------------------------------------------------------

const Expectation invalidNoSend{FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS, false};
const Expectation keptNoSend{FALSE, LE::Unchanged, 0, false};
const Expectation acceptedAndSent{TRUE, LE::Equals, SMGR_ERROR_SUCCESS, true};

using PageFn = BOOL (*)(void*, size_t, UINT, UINT*, UINT*, size_t*);

// A paged enumeration: the buffer size decides how many records are asked
// for, and what does not fit is never written.
template <typename Element, PageFn Fn>
OperationRow PagedRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  return {
      szName,
      wRequest,
      SuccessCodes::ZeroOnly,
      answer,
      nullptr,
      [](CallContext& ctx) { return InvokePage<Element>(ctx, Fn); },
      nullptr,
      {{"NULL buffer, size 0: the total alone",
        [](CallContext& ctx) {
          UINT* pnTotal = ctx.buffer(sizeof(UINT), 0xFF).as<UINT>();
          return static_cast<BOOL>(Fn(nullptr, 0, 0, pnTotal, nullptr, nullptr) && *pnTotal != 0xFFFFFFFFu);
        },
        acceptedAndSent},
       {"buffer one byte short of a record",
        [](CallContext& ctx) {
          const size_t n = sizeof(Element) - 1;
          return Fn(ctx.buffer(n).data(), n, 0, nullptr, nullptr, nullptr);
        },
        acceptedAndSent},
       {"huge size with a NULL buffer and offset UINT_MAX",
        [](CallContext&) { return Fn(nullptr, SIZE_MAX, 0xFFFFFFFFu, nullptr, nullptr, nullptr); },
        acceptedAndSent}}};
}

// The bad selectors every selector operation is swept with. The call is a type
// (Call::With) so that captureless lambdas, which rows store as plain function
// pointers, can reach the operation.
template <typename Call>
std::vector<BadInput> BadSelectorInputs() {
  return {
      {"NULL selector", [](CallContext& ctx) { return Call::With(ctx, nullptr); }, invalidNoSend},
      {"selector kind 5",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = OfKind(5);
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"selector kind INT_MIN",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = OfKind(INT32_MIN);
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"by NULL name",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByName(nullptr);
         return Call::With(ctx, &s);
       },
       invalidNoSend},
      {"by wiped handle",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByHandle(wipedStreamHandle());
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"by handle of another family",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByHandle(foreignHandle());
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"by NULL handle",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByHandle(nullptr);
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"by a 70-character name",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByName(kLongName);
         return Call::With(ctx, &s);
       },
       acceptedAndSent},
  };
}

// An operation that takes a selector alone.
template <BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*)>
struct SelectorCall {
  static BOOL With(CallContext&, const SMGR_OBJECT_SELECTOR* pSelector) { return Fn(pSelector); }
};

template <BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*), bool bHandles>
OperationRow SelectorRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&),
                         SuccessCodes success) {
  return {szName,
          wRequest,
          success,
          answer,
          bHandles ? OpenCannedStream : nullptr,
          [](CallContext& ctx) {
            SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, bHandles);
            return Fn(&s);
          },
          CloseStreams,
          BadSelectorInputs<SelectorCall<Fn>>()};
}

// An operation that takes a selector and a sized record it fills (nSize negotiation).
template <typename Record, BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*, Record*)>
struct RecordCall {
  static BOOL With(CallContext& ctx, const SMGR_OBJECT_SELECTOR* pSelector) {
    return Fn(pSelector, SizedRecord<Record>(ctx, 0));
  }
};

template <typename Record, BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*, Record*)>
OperationRow RecordRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  std::vector<BadInput> bad = BadSelectorInputs<RecordCall<Record, Fn>>();
  bad.insert(bad.end(), {{"NULL record",
                          [](CallContext&) {
                            SMGR_OBJECT_SELECTOR s = ById(1);
                            return Fn(&s, nullptr);
                          },
                          invalidNoSend},
                         {"record of nSize 0 in 4 bytes",
                          [](CallContext& ctx) {
                            SMGR_OBJECT_SELECTOR s = ById(1);
                            Record* pRecord = ctx.buffer(4).as<Record>();
                            return static_cast<BOOL>(Fn(&s, pRecord) && pRecord->nSize == 0);
                          },
                          acceptedAndSent},
                         {"record one byte short",
                          [](CallContext& ctx) {
                            SMGR_OBJECT_SELECTOR s = ById(1);
                            Record* pRecord = SizedRecord<Record>(ctx, 1);
                            return static_cast<BOOL>(Fn(&s, pRecord) && pRecord->nSize == sizeof(Record) - 1);
                          },
                          acceptedAndSent},
                         {"record claiming 4 GiB, daemon's record fits",
                          [](CallContext& ctx) {
                            SMGR_OBJECT_SELECTOR s = ById(1);
                            Record* pRecord = SizedRecord<Record>(ctx, 0);
                            pRecord->nSize = 0xFFFFFFFFu;
                            return static_cast<BOOL>(Fn(&s, pRecord) && pRecord->nSize == sizeof(Record));
                          },
                          acceptedAndSent}});
  return {szName,
          wRequest,
          SuccessCodes::ZeroOnly,
          answer,
          OpenCannedStream,
          [](CallContext& ctx) {
            SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, true);
            return Fn(&s, SizedRecord<Record>(ctx, ctx.params.byte()));
          },
          CloseStreams,
          std::move(bad)};
}

std::vector<OperationRow> BuildTable() {
  const Expectation local{TRUE, LE::Unchanged};

  std::vector<OperationRow> rows;

  // -- Lifecycle (the sweep runs these against the peer; the connect fuzzer covers Init).
  rows.push_back({"SessMgrLib_Init",
                  SMGRPROT_USER_CONNECT_REQ,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"version 1.1",
                    [](CallContext&) { return SessMgrLib_Init(0x00010001u, nullptr); },
                    {FALSE, LE::Equals, SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION, false}},
                   {"version 0 with an output",
                    [](CallContext& ctx) {
                      DWORD* pdw = ctx.buffer(sizeof(DWORD), 0x44).as<DWORD>();
                      return SessMgrLib_Init(0, pdw);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION, false}}}});
  rows.push_back({"SessMgrLib_Shutdown",
                  SMGRPROT_USER_DISCONNECT_IND,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {}});  // the sweep checks it uninitialised (last error 14, nothing sent)
  rows.push_back({"SessMgrLib_WaitForResponse",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"a response nobody sends, NULL size",
                    [](CallContext&) { return SessMgrLib_WaitForResponse(0x7FFE, 1, nullptr); },
                    {FALSE, LE::Equals, SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR, false}}}});
  rows.push_back({"SessMgr_Shutdown",
                  SMGRPROT_SYSTEM_SHUTDOWN_REQ,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {}});  // no arguments: only the uninitialised case
  rows.push_back({"SessMgrLib_SetUID",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"unknown user",
                    [](CallContext&) { return SessMgrLib_SetUID(static_cast<uid_t>(0x7FFFFFF0)); },
                    {FALSE, LE::Unchanged, 0, false}}}});
  rows.push_back({"AdaptToPIDChange",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"no fork happened", [](CallContext&) { return AdaptToPIDChange(); }, local}}});
  rows.push_back({"__SmgrAPILIB_AutoShutdown",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"called by hand while connected",
                    [](CallContext&) -> BOOL {
                      __SmgrAPILIB_AutoShutdown();
                      return TRUE;
                    },
                    local}}});

  // -- Last error (thread-local, no request).
  rows.push_back({"SessMgr_SetLastError",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"any code",
                    [](CallContext&) -> BOOL {
                      return SessMgr_SetLastError(0xFFFFFFFFu) && SessMgr_GetLastError() == 0xFFFFFFFFu;
                    },
                    {TRUE, LE::Any}}}});
  rows.push_back({"SessMgr_SetLastErrorEx",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL text",
                    [](CallContext&) -> BOOL {
                      return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 5, nullptr) &&
                             SessMgr_GetLastErrno() == 5;
                    },
                    {TRUE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
                   {"text of 4000 characters",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(4001, 'T').as<char>();
                      sz[4000] = '\0';
                      return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 0, sz);
                    },
                    {TRUE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}});
  rows.push_back(
      {"SessMgr_GetLastError",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"read twice", [](CallContext&) -> BOOL { return SessMgr_GetLastError() == SessMgr_GetLastError(); },
         local}}});
  rows.push_back({"SessMgr_GetLastErrno",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"read",
                    [](CallContext&) -> BOOL {
                      SessMgr_GetLastErrno();
                      return TRUE;
                    },
                    local}}});
  rows.push_back({"SessMgr_GetLastErrorString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL buffer",
                    [](CallContext&) -> BOOL {
                      SessMgr_GetLastErrorString(nullptr, 100);
                      return TRUE;
                    },
                    local},
                   {"1-byte and 0-byte buffers",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(1, 'x').as<char>();
                      SessMgr_GetLastErrorString(sz, 1);
                      if (sz[0] != '\0') return FALSE;
                      char* szNone = ctx.buffer(1, 'y').as<char>();
                      SessMgr_GetLastErrorString(szNone, 0);
                      return szNone[0] == 'y';
                    },
                    local}}});
  rows.push_back({"SessMgr_GetErrorString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL buffer",
                    [](CallContext&) -> BOOL {
                      return std::strcmp(SessMgr_GetErrorString(2, nullptr, 10), "Invalid input buffer") == 0;
                    },
                    local},
                   {"unknown and errno codes into 3 bytes",
                    [](CallContext& ctx) -> BOOL {
                      for (SMGR_RESULT code : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x20000000u | 9999u, 0u}) {
                        char* sz = ctx.buffer(3, 'x').as<char>();
                        if (SessMgr_GetErrorString(code, sz, 3) != sz || std::strlen(sz) > 2) return FALSE;
                      }
                      return TRUE;
                    },
                    local}}});

  // -- Companion helpers exported for front ends.
  rows.push_back({"FixUpInputFileName",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL name",
                    [](CallContext&) { return FixUpInputFileName(nullptr, 16, "/tmp/", ".mp4"); },
                    {FALSE, LE::Unchanged}},
                   {"NULL folder and size 0",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(16, 'a').as<char>();
                      sz[15] = '\0';
                      return static_cast<BOOL>(FixUpInputFileName(sz, 16, nullptr, ".mp4") ||
                                               FixUpInputFileName(sz, 0, "/tmp/", ".mp4"));
                    },
                    {FALSE, LE::Unchanged}},
                   {"name filling its buffer",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(8, 'a').as<char>();
                      sz[7] = '\0';
                      FixUpInputFileName(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4");
                      return TRUE;
                    },
                    local},
                   {"unterminated name of exactly nSize bytes: refused, untouched",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(8, 'a').as<char>();
                      BOOL bResult = FixUpInputFileName(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4");
                      return std::memcmp(sz, "aaaaaaaa", 8) == 0 ? bResult : 2;
                    },
                    {FALSE, LE::Unchanged}}}});
  rows.push_back(
      {"FixUpInputFileNameNoPath",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL name, NULL error code",
         [](CallContext&) { return FixUpInputFileNameNoPath(nullptr, 16, "/tmp/", ".mp4", nullptr); },
         {FALSE, LE::Unchanged}},
        {"name filling its buffer",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 'a').as<char>();
           sz[7] = '\0';
           int* piErr = ctx.buffer(sizeof(int)).as<int>();
           FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", piErr);
           return TRUE;
         },
         local},
        {"unterminated name of exactly nSize bytes: refused",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 'a').as<char>();
           return FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", nullptr);
         },
         {FALSE, LE::Unchanged}},
        {"name whose extension does not fit: refused, not cut",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 0).as<char>();
           std::memcpy(sz, "abcd", 5);
           BOOL bResult =
               FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", nullptr);
           return std::strcmp(sz, "abcd") == 0 ? bResult : 2;
         },
         {FALSE, LE::Unchanged}}}});
  rows.push_back({"GetObjectSelectorInfoText",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL selector, kind 99, NULL name, tiny buffers",
                    [](CallContext& ctx) -> BOOL {
                      SMGR_OBJECT_SELECTOR selectors[] = {OfKind(99), ByName(nullptr), ByName(kLongName),
                                                          ByHandle(nullptr)};
                      char* sz = ctx.buffer(2, 'x').as<char>();
                      if (GetObjectSelectorInfoText(nullptr, sz, 2) != sz) return FALSE;
                      for (const auto& selector : selectors) {
                        if (GetObjectSelectorInfoText(&selector, sz, 2) != sz || std::strlen(sz) > 1)
                          return FALSE;
                      }
                      return TRUE;
                    },
                    local}}});

  // -- Diagnostics.
  rows.push_back({"SessMgr_SetDebugState",
                  SMGRPROT_DEBUG_SETCFG_REQ,
                  SuccessCodes::ZeroOnly,
                  ResultOnly,
                  nullptr,
                  [](CallContext& ctx) { return SessMgr_SetDebugState(static_cast<int>(ctx.params.u32())); },
                  nullptr,
                  {{"unknown state -1 passes through", [](CallContext&) { return SessMgr_SetDebugState(-1); },
                    acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_GetDebugInfo",
       SMGRPROT_DEBUG_GETINFO_REQ,
       SuccessCodes::ZeroOnly,
       DebugInfoAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_GetDebugInfo(ctx.buffer(sizeof(SMGR_DEBUG_INFO), 0x44).as<SMGR_DEBUG_INFO>());
       },
       nullptr,
       {{"NULL info", [](CallContext&) { return SessMgr_GetDebugInfo(nullptr); }, invalidNoSend}}});
  rows.push_back(PagedRow<SMGR_THREAD_INFO, SessMgr_EnumerateThreads>(
      "SessMgr_EnumerateThreads", SMGRPROT_THREAD_ENUMERATE_REQ, ThreadsAnswer));
  rows.push_back(PagedRow<SMGR_MUTEX_INFO, SessMgr_EnumerateMutexes>(
      "SessMgr_EnumerateMutexes", SMGRPROT_MUTEX_ENUMERATE_REQ, MutexesAnswer));
  rows.push_back(
      {"SessMgr_DebugRequest",
       SMGRPROT_DEBUG_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) {
         const size_t nData = ctx.params.byte() * 2u + 1u;  // 1..511
         GuardedBuffer& data = ctx.buffer(nData, 0x55);
         return SessMgr_DebugRequest(static_cast<int>(ctx.params.u32()), data.data(), nData);
       },
       nullptr,
       {{"513 bytes of data",
         [](CallContext& ctx) { return SessMgr_DebugRequest(1, ctx.buffer(513).data(), 513); },
         invalidNoSend},
        {"SIZE_MAX bytes of data",
         [](CallContext& ctx) { return SessMgr_DebugRequest(1, ctx.buffer(16).data(), SIZE_MAX); },
         invalidNoSend},
        {"NULL data with a size", [](CallContext&) { return SessMgr_DebugRequest(1, nullptr, 100000); },
         acceptedAndSent}}});

  // -- Streams.
  rows.push_back({"SessMgr_CreateStream",
                  SMGRPROT_STREAM_CREATE_REQ,
                  SuccessCodes::ZeroOrWarning,
                  StreamIdAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_STREAM_CFG cfg = ValidStreamCfg();
                    const uint8_t bShape = ctx.params.byte();
                    if (bShape & 1) cfg.nSize = 1024;  // an older, shorter caller record
                    if (bShape & 2) cfg.nSize = 0xFFFFFFFFu;
                    if (bShape & 4) cfg.nIndex = static_cast<int32_t>(ctx.params.u32() & 0xFFFF) + 100;
                    if (bShape & 8) cfg.szName[0] = '\0';
                    return CreateWith(ctx, cfg);
                  },
                  CloseStreams,
                  {{"NULL configuration",
                    [](CallContext& ctx) {
                      return SessMgr_CreateStream(nullptr, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"NULL handle output",
                    [](CallContext&) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      return SessMgr_CreateStream(&cfg, nullptr);
                    },
                    invalidNoSend},
                   {"nSize 0",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.nSize = 0;
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_CONTENTS, false}},
                   {"nSize 4 (record cut before every field)",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.nSize = 4;
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_CONTENTS, false}},
                   {"25 content sources",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.nNumOfSources = SMGR_MAX_STREAM_CONTENT_SOURCES + 1;
                      return CreateWith(ctx, cfg);
                    },
                    invalidNoSend},
                   {"4 billion content sources",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.nNumOfSources = 0xFFFFFFFFu;
                      return CreateWith(ctx, cfg);
                    },
                    invalidNoSend},
                   {"unknown content source kind",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.ContentSources[0].enType = 77;
                      return CreateWith(ctx, cfg);
                    },
                    invalidNoSend},
                   {"content source by NULL name",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.ContentSources[0].Selector = ByName(nullptr);
                      return CreateWith(ctx, cfg);
                    },
                    invalidNoSend},
                   {"contents without a source",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.enContents |= SMGR_STREAM_CONTENTS_AUDIO;
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_CONTENTS, false}},
                   {"empty host name",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.Address.enType = SMGR_IPV4_HOSTNAME;
                      std::memset(cfg.Address.acAddress, 0, sizeof(cfg.Address.acAddress));
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_ADDRESS, false}},
                   {"unterminated host name",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.Address.enType = SMGR_IPV4_HOSTNAME;
                      std::memset(cfg.Address.szHostName, 'h', sizeof(cfg.Address.szHostName));
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_ADDRESS, false}},
                   {"unresolvable host name: sent with the warning",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      cfg.Address.enType = SMGR_IPV4_HOSTNAME;
                      std::memset(cfg.Address.acAddress, 0, sizeof(cfg.Address.acAddress));
                      std::strcpy(cfg.Address.szHostName, "nowhere.invalid");
                      return CreateWith(ctx, cfg);
                    },
                    {TRUE, LE::Equals, SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME, true}},
                   {"unterminated still image name",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      std::memset(cfg.szStillImageFName, 's', sizeof(cfg.szStillImageFName));
                      return CreateWith(ctx, cfg);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_FILENAME_TOO_LONG, false}},
                   {"unterminated name (64 characters)",
                    [](CallContext& ctx) {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      std::memset(cfg.szName, 'n', sizeof(cfg.szName));
                      return CreateWith(ctx, cfg);
                    },
                    acceptedAndSent}}});
  rows.push_back({"SessMgr_OpenStream",
                  SMGRPROT_STREAM_OPEN_REQ,
                  SuccessCodes::ZeroOnly,
                  StreamIdAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_OBJECT_SELECTOR selector = ChosenSelector(ctx, false);
                    HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM), 0).as<HSTREAM>();
                    BOOL bResult = SessMgr_OpenStream(&selector, phStream);
                    if (bResult) ctx.hCreated = *phStream;
                    return bResult;
                  },
                  CloseStreams,
                  {{"NULL selector",
                    [](CallContext& ctx) {
                      return SessMgr_OpenStream(nullptr, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"NULL handle output",
                    [](CallContext&) {
                      SMGR_OBJECT_SELECTOR selector = ById(1);
                      return SessMgr_OpenStream(&selector, nullptr);
                    },
                    invalidNoSend},
                   {"selector by handle",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = ByHandle(wipedStreamHandle());
                      return SessMgr_OpenStream(&selector, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"selector kind 5",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = OfKind(5);
                      return SessMgr_OpenStream(&selector, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"selector kind -1",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = OfKind(-1);
                      return SessMgr_OpenStream(&selector, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"by NULL name",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = ByName(nullptr);
                      return SessMgr_OpenStream(&selector, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
                    },
                    invalidNoSend},
                   {"by a 70-character name",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = ByName(kLongName);
                      HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
                      BOOL bResult = SessMgr_OpenStream(&selector, phStream);
                      if (bResult) ctx.hCreated = *phStream;
                      return bResult;
                    },
                    acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_CloseStream",
       SMGRPROT_STREAM_CLOSE_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       OpenCannedStream,
       [](CallContext& ctx) {
         HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
         *phStream = ctx.hStream;
         ctx.hStream = nullptr;  // released by this call whatever the daemon says
         return SessMgr_CloseStream(phStream);
       },
       CloseStreams,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseStream(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           return SessMgr_CloseStream(phStream);
         },
         invalidNoSend},
        {"handle after its last close (wiped signature); the variable is kept",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           *phStream = wipedStreamHandle();
           BOOL bResult = SessMgr_CloseStream(phStream);
           return *phStream == wipedStreamHandle() ? bResult : 2;
         },
         invalidNoSend},
        {"handle of another family",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           *phStream = foreignHandle();
           return SessMgr_CloseStream(phStream);
         },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_GetStreamID",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL handle",
         [](CallContext& ctx) { return SessMgr_GetStreamID(nullptr, ctx.buffer(sizeof(int)).as<int>()); },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
        {"wiped handle",
         [](CallContext& ctx) {
           return SessMgr_GetStreamID(wipedStreamHandle(), ctx.buffer(sizeof(int)).as<int>());
         },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
        {"handle of another family",
         [](CallContext& ctx) {
           return SessMgr_GetStreamID(foreignHandle(), ctx.buffer(sizeof(int)).as<int>());
         },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}});

  // The selector operations: one list of bad selectors, the kinds each accepts.
  rows.push_back(SelectorRow<SessMgr_DeleteStream, false>("SessMgr_DeleteStream", SMGRPROT_STREAM_DELETE_REQ,
                                                          ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_StartStream, true>("SessMgr_StartStream", SMGRPROT_STREAM_START_REQ,
                                                        ResultWithDescription, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StopStream, false>("SessMgr_StopStream", SMGRPROT_STREAM_STOP_REQ,
                                                        ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_PauseStream, true>("SessMgr_PauseStream", SMGRPROT_STREAM_PAUSE_REQ,
                                                        ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_ResumeStream, true>("SessMgr_ResumeStream", SMGRPROT_STREAM_RESUME_REQ,
                                                         ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_ResetStreamStats, true>(
      "SessMgr_ResetStreamStats", SMGRPROT_STREAM_RESETSTATS_REQ, ResultOnly, SuccessCodes::ZeroOnly));

  rows.push_back(RecordRow<SMGR_STREAM_INFO, SessMgr_GetStreamInfo>(
      "SessMgr_GetStreamInfo", SMGRPROT_STREAM_GETINFO_REQ, StreamInfoAnswer));
  rows.push_back(RecordRow<SMGR_STREAM_STATS, SessMgr_GetStreamStats>(
      "SessMgr_GetStreamStats", SMGRPROT_STREAM_GETSTATS_REQ, StreamStatsAnswer));
  rows.push_back(PagedRow<SMGR_STREAM_INFO, SessMgr_EnumerateStreams>(
      "SessMgr_EnumerateStreams", SMGRPROT_STREAM_ENUMERATE_REQ, StreamsAnswer));
  rows.push_back(
      {"SessMgr_DeleteStillImage",
       SMGRPROT_STILL_DELETE_REQ,
       SuccessCodes::ZeroOnly,
       StillDeleteAnswer,
       nullptr,
       [](CallContext& ctx) {
         static const char* const kNames[] = {"logo", "logo.mp4", "/usr/share/ostrelle/still_images/x.mp4",
                                              "../../etc/passwd", ""};
         return SessMgr_DeleteStillImage(kNames[ctx.params.byte() % 5]);
       },
       nullptr,
       {{"NULL name", [](CallContext&) { return SessMgr_DeleteStillImage(nullptr); }, invalidNoSend},
        {"name of 300 characters",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(301, 'f').as<char>();
           sz[300] = '\0';
           return SessMgr_DeleteStillImage(sz);
         },
         invalidNoSend},
        {"name of 256 characters (no room for the terminator)",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(257, 'f').as<char>();
           sz[256] = '\0';
           return SessMgr_DeleteStillImage(sz);
         },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_DeleteAllStillImages",
       SMGRPROT_STILL_DELETE_REQ,
       SuccessCodes::ZeroOnly,
       StillDeleteAnswer,
       nullptr,
       [](CallContext& ctx) {
         const uint8_t bFlags = ctx.params.byte();
         return SessMgr_DeleteAllStillImages(OptionalOut<ULONG>(ctx, bFlags, 0),
                                             OptionalOut<ULONG>(ctx, bFlags, 1));
       },
       nullptr,
       {{"NULL counts", [](CallContext&) { return SessMgr_DeleteAllStillImages(nullptr, nullptr); },
         acceptedAndSent}}});
  rows.push_back({"SessMgr_CompareStreamConfigs",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"same record twice",
                    [](CallContext&) -> BOOL {
                      SMGR_STREAM_CFG cfg = ValidStreamCfg();
                      return SessMgr_CompareStreamConfigs(&cfg, &cfg) == 0;
                    },
                    local},
                   {"unterminated texts, unknown kinds, 4 billion sources",
                    [](CallContext&) -> BOOL {
                      SMGR_STREAM_CFG a = ValidStreamCfg();
                      SMGR_STREAM_CFG b = ValidStreamCfg();
                      std::memset(&a, 0xEE, sizeof(a));
                      std::memset(&b, 0xEE, sizeof(b));
                      b.nNumOfSources = 0xFFFFFFFFu;
                      a.nNumOfSources = 0xFFFFFFFFu;
                      SessMgr_CompareStreamConfigs(&a, &b);
                      return TRUE;
                    },
                    local}}});
  rows.push_back(NameRow<SessMgr_GetStreamTypeString, false>("SessMgr_GetStreamTypeString"));
  rows.push_back(
      NameRow<SessMgr_GetStreamEncapsulationString, false>("SessMgr_GetStreamEncapsulationString"));
  rows.push_back(
      NameRow<SessMgr_GetStreamContentFormatString, false>("SessMgr_GetStreamContentFormatString"));
  rows.push_back(NameRow<SessMgr_GetStreamDataEncapsString, false>("SessMgr_GetStreamDataEncapsString"));
  rows.push_back(NameRow<SessMgr_GetStreamStateString, true>("SessMgr_GetStreamStateString"));
  rows.push_back(NameRow<SessMgr_GetSRTVersionString, true>("SessMgr_GetSRTVersionString"));
  rows.push_back(NameRow<SessMgr_GetStreamModeString, true>("SessMgr_GetStreamModeString"));
  rows.push_back(NameRow<SessMgr_GetSRTStreamRedundancyString, true>("SessMgr_GetSRTStreamRedundancyString"));
  rows.push_back(NameRow<SessMgr_GetFECTypeString, true>("SessMgr_GetFECTypeString"));
  rows.push_back(NameRow<SessMgr_GetMpegProFECLevelString, true>("SessMgr_GetMpegProFECLevelString"));
  rows.push_back({"SessMgr_GetIPAddressString", 0, SuccessCodes::ZeroOnly, nullptr, nullptr, nullptr, nullptr,
                  AddressBadInputs<SessMgr_GetIPAddressString>()});
  rows.push_back({"GetIPAddressDebugString", 0, SuccessCodes::ZeroOnly, nullptr, nullptr, nullptr, nullptr,
                  AddressBadInputs<GetIPAddressDebugString>()});
  rows.push_back({"CleanupSessMgrStreams",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrStreams();
                      return TRUE;
                    },
                    local}}});
  return rows;
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

HSTREAM wipedStreamHandle() {
  g_WipedHandle.record = SMGR_STREAM_HANDLE{};
  g_WipedHandle.record.iStreamID = 7;
  return reinterpret_cast<HSTREAM>(&g_WipedHandle.record);
}

HSTREAM foreignHandle() {
  g_ForeignHandle.record = SMGR_STREAM_HANDLE{};
  g_ForeignHandle.record.dwSignature = SMGR_SESSION_HANDLE_SIGNATURE;
  g_ForeignHandle.record.iStreamID = 8;
  return reinterpret_cast<HSTREAM>(&g_ForeignHandle.record);
}

const std::vector<OperationRow>& OperationTable() {
  // Never destroyed: exit handlers of the library may still send (and a fuzz
  // daemon answer from the table) after static destructors have run.
  static const std::vector<OperationRow>* table = new std::vector<OperationRow>(BuildTable());
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

size_t LiveHandleCount() {
  size_t nCount = 0;
  for (FNODE_D* pNode = StreamHandles::List().pHead; pNode != nullptr; pNode = pNode->pNext) ++nCount;
  return nCount;
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

WORD RequestType(const Bytes& message) { return Field<WORD>(message, 0); }
WORD RequestSequence(const Bytes& message) { return Field<WORD>(message, 2); }

}  // namespace smgr::test
