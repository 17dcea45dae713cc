// The temperature operation: the statistics of the appliance's sensor, with
// the LED family's departures (not-initialised code 2, asserting PID check,
// success on 0 only, versioned copy, a daemon failure keeping the last error).
#include "lib_trace.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "versioned_copy.h"

namespace {

constexpr smgr::RequestTraits kGetInfoTraits = [] {
  smgr::RequestTraits traits{"SessMgr_GetTemperatureInfo", SMGRPROT_TEMPERATURE_GETINFO_REQ};
  traits.success = smgr::SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = smgr::FailureLastError::Untouched;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.adaptFailure = smgr::AdaptFailure::Assert;
  traits.szSendFailureTrace = "Failed to send get temperature info request to sessmgrd, errno (%d):%s.\n";
  traits.nMinResponseSize = offsetof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP, Info) + sizeof(uint32_t);
  return traits;
}();

}  // namespace

extern "C" SMGR_API BOOL SessMgr_GetTemperatureInfo(SMGR_TEMPERATURE_INFO* pInfo) {
  SMGR_TRACE(5, "Called (pInfo=%p).\n", static_cast<void*>(pInfo));
  SMGRPROT_MSG_TEMPERATURE_GETINFO_REQ request{};
  return smgr::Transact(kGetInfoTraits, &request, sizeof(request), pInfo != nullptr, nullptr,
                        [&](const smgr::ResponseView& response, SMGR_RESULT* pLastError) {
                          return smgr::CopyVersionedRecord(
                              response, offsetof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP, Info), pInfo,
                              pLastError);
                        });
}
