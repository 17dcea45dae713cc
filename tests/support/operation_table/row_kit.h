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
template <typename Call, const HandleKit& Kit>
inline std::vector<BadInput> BadSelectorInputs() {
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
         SMGR_OBJECT_SELECTOR s = ByHandle(wipedHandle());
         return Call::With(ctx, &s);
       },
       keptNoSend},
      {"by handle of another family",
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR s = ByHandle(foreignHandle(Kit.dwForeignSignature));
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

template <BOOL (*Fn)(const SMGR_OBJECT_SELECTOR*), bool bHandles, const HandleKit& Kit>
inline OperationRow SelectorRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&),
                                SuccessCodes success) {
  return {szName,
          wRequest,
          success,
          answer,
          bHandles ? Kit.open : nullptr,
          [](CallContext& ctx) {
            SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, bHandles);
            return Fn(&s);
          },
          Kit.close,
          BadSelectorInputs<SelectorCall<Fn>, Kit>()};
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
