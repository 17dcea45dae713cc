// The building blocks of operation-table rows, shared by every family's rows
// file: canned daemon answers, caller memory shapes, selectors, and the row
// templates (value names, paged enumerations, selector and record operations)
// that give every operation of a kind the same bad inputs.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "operation_table.h"

namespace smgr::test {

using LE = Expectation::LastError;

// ---- Messages ------------------------------------------------------------------

template <typename T>
inline void Put(Bytes* pMessage, size_t nOffset, const T& value) {
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
inline Bytes Answer(const Bytes& request, size_t nSize) {
  return MakeMessage(static_cast<WORD>(RequestType(request) + 1), RequestSequence(request), nSize);
}

inline Bytes ResultOnly(const Bytes& request) { return Answer(request, 20); }
inline Bytes ResultWithDescription(const Bytes& request) { return Answer(request, 180); }

// A page of nElementSize records: the request's count (at 16) capped to what
// one message of the default queue size holds; total one more than returned.
inline Bytes PageAnswer(const Bytes& request, size_t nElementSize, size_t nMaxRecords) {
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
// ---- Caller memory shapes ----------------------------------------------------------

// A page buffer size chosen by a parameter byte: none, tiny, one short of an
// element, exactly one, two and a bit, and a size no daemon answer fills.
inline size_t PageBufferSize(uint8_t bChoice, size_t nElementSize) {
  const size_t sizes[] = {3 * nElementSize + 7, 0,        1, nElementSize - 1, nElementSize,
                          2 * nElementSize + 1, 64 * 1024};
  return sizes[bChoice % 7];
}

// An API record of nRecordSize bytes whose nSize says nClaimed: older
// (shorter), exact, or newer (longer) callers.
template <typename T>
T* SizedRecord(CallContext& ctx, uint8_t bChoice) {
  const size_t sizes[] = {sizeof(T), sizeof(T) - 1, 100, sizeof(T) + 256, 4};
  const size_t nSize = sizes[bChoice % 5];
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
inline BOOL InvokePage(CallContext& ctx, BOOL (*pfnEnumerate)(void*, size_t, UINT, UINT*, UINT*, size_t*)) {
  const uint8_t bFlags = ctx.params.byte();
  const size_t nBuffSize = PageBufferSize(ctx.params.byte(), sizeof(Element));
  const UINT nOffset = ctx.params.byte();
  void* pvBuffer = (bFlags & 1) ? nullptr : ctx.buffer(nBuffSize, 0x22).data();
  return pfnEnumerate(pvBuffer, nBuffSize, nOffset, OptionalOut<UINT>(ctx, bFlags, 1),
                      OptionalOut<UINT>(ctx, bFlags, 2), OptionalOut<size_t>(ctx, bFlags, 3));
}

// ---- Selectors and handles ---------------------------------------------------------------

inline constexpr char kLongName[] = "long-name-012345678901234567890123456789012345678901234567890123456789";
static_assert(sizeof(kLongName) - 1 == 70);

// A valid selector for the row's call: by ID, by name, or by the prepared
// handle when the operation takes handles and one is open.
inline SMGR_OBJECT_SELECTOR ChosenSelector(CallContext& ctx, bool bHandlesAccepted) {
  SMGR_OBJECT_SELECTOR selector{};
  const uint8_t bChoice = ctx.params.byte();
  if (bHandlesAccepted && ctx.hOpen != nullptr && bChoice % 3 == 2) {
    selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
    selector.Via.Handle = ctx.hOpen;
  } else if (bChoice % 3 == 1) {
    selector.enType = SMGR_SELECTBY_OBJECT_NAME;
    selector.Via.szName = (bChoice & 0x80) ? kLongName : "cam1";
  } else {
    selector.enType = SMGR_SELECTBY_OBJECT_ID;
    selector.Via.ID = static_cast<int>(ctx.params.u32());
  }
  return selector;
}

inline SMGR_OBJECT_SELECTOR ById(int nID) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = nID;
  return selector;
}

inline SMGR_OBJECT_SELECTOR OfKind(int enType) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = enType;
  return selector;
}

inline SMGR_OBJECT_SELECTOR ByHandle(HSMGR hHandle) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  selector.Via.Handle = hHandle;
  return selector;
}

inline SMGR_OBJECT_SELECTOR ByName(const char* szName) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  selector.Via.szName = szName;
  return selector;
}

// ---- Value names ------------------------------------------------------------------------------

using NameFn = char* (*)(int, char*, size_t);

// Every value name operation: unknown values, truncation to the buffer, and
// the generation's answer to a NULL or empty buffer.
template <NameFn pfn, bool bChecked>
inline std::vector<BadInput> NameBadInputs() {
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
inline OperationRow NameRow(const char* szName) {
  return {szName,  0,       SuccessCodes::ZeroOnly,        nullptr, nullptr,
          nullptr, nullptr, NameBadInputs<pfn, bChecked>()};
}

using AddressFn = char* (*)(const SMGR_IP_ADDRESS*, char*, size_t);

template <AddressFn pfn>
inline std::vector<BadInput> AddressBadInputs() {
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

inline const Expectation invalidNoSend{FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS, false};
inline const Expectation keptNoSend{FALSE, LE::Unchanged, 0, false};
inline const Expectation acceptedAndSent{TRUE, LE::Equals, SMGR_ERROR_SUCCESS, true};
// A local operation that behaved as documented (the call returns TRUE when it did).
inline const Expectation asDocumented{TRUE, LE::Unchanged};

// An operation only the sweep exercises (no valid invocation): local ones send
// nothing (wRequest 0); lifecycle ones name the request they would send.
inline OperationRow SweepOnlyRow(const char* szName, std::vector<BadInput> badInputs, WORD wRequest = 0) {
  return {szName, wRequest, SuccessCodes::ZeroOnly, nullptr, nullptr, nullptr, nullptr, std::move(badInputs)};
}

using PageFn = BOOL (*)(void*, size_t, UINT, UINT*, UINT*, size_t*);

// A paged enumeration: the buffer size decides how many records are asked
// for, and what does not fit is never written.
template <typename Element, PageFn Fn>
inline OperationRow PagedRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
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
inline BOOL CallWith(CallContext& ctx, SMGR_OBJECT_SELECTOR selector) {
  return Call::With(ctx, &selector);
}

template <typename Call, const HandleKit& Kit>
inline std::vector<BadInput> BadSelectorInputs() {
  return {
      {"NULL selector", [](CallContext& ctx) { return Call::With(ctx, nullptr); }, invalidNoSend},
      {"selector kind 5", [](CallContext& ctx) { return CallWith<Call>(ctx, OfKind(5)); }, keptNoSend},
      {"selector kind INT_MIN", [](CallContext& ctx) { return CallWith<Call>(ctx, OfKind(INT32_MIN)); },
       keptNoSend},
      {"by NULL name", [](CallContext& ctx) { return CallWith<Call>(ctx, ByName(nullptr)); }, invalidNoSend},
      {"by wiped handle", [](CallContext& ctx) { return CallWith<Call>(ctx, ByHandle(wipedHandle())); },
       keptNoSend},
      {"by handle of another family",
       [](CallContext& ctx) { return CallWith<Call>(ctx, ByHandle(foreignHandle(Kit.dwForeignSignature))); },
       keptNoSend},
      {"by NULL handle", [](CallContext& ctx) { return CallWith<Call>(ctx, ByHandle(nullptr)); }, keptNoSend},
      {"by a 70-character name", [](CallContext& ctx) { return CallWith<Call>(ctx, ByName(kLongName)); },
       acceptedAndSent},
  };
}

// An operation that takes a selector alone.
template <BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*)>
struct SelectorCall {
  static BOOL With(CallContext&, const SMGR_OBJECT_SELECTOR* pSelector) { return Fn(pSelector); }
};

// bHandles: whether the operation accepts a live handle of its family (sent as
// its ID); the others refuse it like any bad selector.
template <BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*), bool bHandles, const HandleKit& Kit>
inline OperationRow SelectorRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&),
                                SuccessCodes success) {
  std::vector<BadInput> bad = BadSelectorInputs<SelectorCall<Fn>, Kit>();
  if (Kit.open != nullptr)
    bad.push_back({"by a live handle",
                   [](CallContext& ctx) {
                     SMGR_OBJECT_SELECTOR s = ByHandle(ctx.hOpen);
                     return Fn(&s);
                   },
                   bHandles ? acceptedAndSent : keptNoSend});
  return {szName,
          wRequest,
          success,
          answer,
          Kit.open,
          [](CallContext& ctx) {
            SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, bHandles);
            return Fn(&s);
          },
          Kit.close,
          std::move(bad)};
}

// An operation that takes a selector and a sized record it fills (nSize negotiation).
template <typename Record, BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*, Record*)>
struct RecordCall {
  static BOOL With(CallContext& ctx, const SMGR_OBJECT_SELECTOR* pSelector) {
    return Fn(pSelector, SizedRecord<Record>(ctx, 0));
  }
};

template <typename Record, BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*, Record*), const HandleKit& Kit>
inline OperationRow RecordRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  std::vector<BadInput> bad = BadSelectorInputs<RecordCall<Record, Fn>, Kit>();
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
          Kit.open,
          [](CallContext& ctx) {
            SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, true);
            return Fn(&s, SizedRecord<Record>(ctx, ctx.params.byte()));
          },
          Kit.close,
          std::move(bad)};
}

}  // namespace smgr::test
