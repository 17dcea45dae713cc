// Operation-table rows of the daemon diagnostics.
#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes DebugInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP));
  Put(&message, 20, SMGR_DEBUG_INFO{sizeof(SMGR_DEBUG_INFO), 4242, TRUE, 2});
  return message;
}

Bytes ThreadsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_THREAD_INFO), 3); }
Bytes MutexesAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_MUTEX_INFO), 3); }

std::vector<OperationRow> DiagnosticsRows() {
  std::vector<OperationRow> rows;
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

  return rows;
}

const RowRegistration kDiagnosticsRows{"diagnostics", DiagnosticsRows};

}  // namespace
}  // namespace smgr::test
