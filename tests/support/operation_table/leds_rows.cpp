// Operation-table rows of the LEDs and the temperature sensor: not
// initialised gives 2, and a daemon failure of an information call keeps the
// last error.
#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes LedsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_LEDS_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_LEDS_INFO)));
  for (size_t nOffset = 24; nOffset < message.size(); nOffset += 4) Put(&message, nOffset, int32_t{4});
  return message;
}

Bytes TemperatureAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_TEMPERATURE_INFO)));
  std::memset(message.data() + 24, 0x21, message.size() - 24);
  return message;
}

// The versioned copy of a record the caller sized: nSize sizes the copy and no floor applies.
template <typename Record, BOOL (*Fn)(Record*)>
std::vector<BadInput> InfoBadInputs() {
  const Expectation copied{TRUE, LE::Equals, SMGR_ERROR_SUCCESS, true};
  return {{"NULL info", [](CallContext&) { return Fn(nullptr); }, invalidNoSend},
          {"nSize 32: only the first 32 bytes",
           [](CallContext& ctx) {
             Record* pInfo = ctx.buffer(32, 0x11).template as<Record>();
             pInfo->nSize = 32;
             return static_cast<BOOL>(Fn(pInfo) && pInfo->nSize == 32);
           },
           copied},
          {"nSize 0 in 4 bytes",
           [](CallContext& ctx) {
             Record* pInfo = ctx.buffer(4).template as<Record>();
             return static_cast<BOOL>(Fn(pInfo) && pInfo->nSize == 0);
           },
           copied},
          {"nSize 4 GiB: the daemon's size",
           [](CallContext& ctx) {
             Record* pInfo = SizedRecord<Record>(ctx, 0);
             pInfo->nSize = 0xFFFFFFFFu;
             return static_cast<BOOL>(Fn(pInfo) && pInfo->nSize == sizeof(Record));
           },
           copied}};
}

template <typename Record, BOOL (*Fn)(Record*)>
OperationRow InfoRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  OperationRow row{szName,
                   wRequest,
                   SuccessCodes::ZeroOnly,
                   answer,
                   nullptr,
                   [](CallContext& ctx) { return Fn(SizedRecord<Record>(ctx, ctx.params.byte())); },
                   nullptr,
                   InfoBadInputs<Record, Fn>()};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  row.keptLastError = OperationRow::KeptLastError::OnDaemonFailure;
  return row;
}

OperationRow BlinkRow(const char* szName, BOOL (*invoke)(CallContext&)) {
  OperationRow row{
      szName, SMGRPROT_LEDS_BLINKSTATUS_REQ, SuccessCodes::ZeroOnly, ResultOnly, nullptr, invoke, nullptr,
      {}};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  return row;
}

std::vector<OperationRow> LedRows() {
  std::vector<OperationRow> rows;
  rows.push_back(InfoRow<SMGR_LEDS_INFO, SessMgr_GetLEDsInfo>("SessMgr_GetLEDsInfo",
                                                              SMGRPROT_LEDS_GETINFO_REQ, LedsAnswer));
  rows.push_back(BlinkRow("SessMgr_StartBlinkingLEDs",
                          [](CallContext& ctx) { return SessMgr_StartBlinkingLEDs(ctx.params.u32()); }));
  rows.push_back(
      BlinkRow("SessMgr_StopBlinkingLEDs", [](CallContext&) { return SessMgr_StopBlinkingLEDs(); }));
  rows.push_back(NameRow<SessMgr_GetLEDStateString, true>("SessMgr_GetLEDStateString"));
  rows.push_back(InfoRow<SMGR_TEMPERATURE_INFO, SessMgr_GetTemperatureInfo>(
      "SessMgr_GetTemperatureInfo", SMGRPROT_TEMPERATURE_GETINFO_REQ, TemperatureAnswer));
  return rows;
}

const RowRegistration kLedRows{"leds", LedRows};

}  // namespace
}  // namespace smgr::test
