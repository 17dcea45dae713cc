// LED operations: the LED states, blinking, and the LED state names. They
// depart from the standard sequence in the not-initialised code (2), the
// asserting PID check, success on 0 only and the versioned copy of the record.
#include <cstring>

#include "lib_trace.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "value_names.h"
#include "versioned_copy.h"

namespace {

using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;

constexpr RequestTraits LedTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                  FailureLastError failure, size_t nMinResponse = 0) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = smgr::SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = failure;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.adaptFailure = smgr::AdaptFailure::Assert;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// A daemon failure leaves the last error as it was in the information call.
constexpr RequestTraits kGetInfoTraits =
    LedTraits("SessMgr_GetLEDsInfo", SMGRPROT_LEDS_GETINFO_REQ,
              "Failed to send get LEDS info request to sessmgrd, errno (%d):%s.\n",
              FailureLastError::Untouched, offsetof(SMGRPROT_MSG_LEDS_GETINFO_RSP, Info) + sizeof(uint32_t));
constexpr RequestTraits kStartBlinkTraits =
    LedTraits("SessMgr_StartBlinkingLEDs", SMGRPROT_LEDS_BLINKSTATUS_REQ,
              "Failed to send LEDS blink request to sessmgrd, errno (%d):%s.\n", FailureLastError::Result);
constexpr RequestTraits kStopBlinkTraits = [] {
  RequestTraits traits = kStartBlinkTraits;
  traits.szOperation = "SessMgr_StopBlinkingLEDs";
  return traits;
}();

BOOL Blink(const RequestTraits& traits, BOOL bEnable, UINT nDurationInSecs) {
  SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ request{};
  request.bEnable = bEnable;
  request.nDurationInSecs = nDurationInSecs;
  return smgr::Transact(traits, &request, sizeof(request), true);
}

constexpr smgr::ValueName kLedStates[] = {
    {SMGR_LED_STATE_OFF, "Off"},        {SMGR_LED_STATE_AMBER_BLINKING, "Amber-Blinking"},
    {SMGR_LED_STATE_AMBER_ON, "Amber"}, {SMGR_LED_STATE_GREEN_BLINKING, "Green-Blinking"},
    {SMGR_LED_STATE_GREEN_ON, "Green"}, {SMGR_LED_STATE_RED_ON, "Red"},
};
constexpr smgr::ValueNameTable kLedStateNames =
    smgr::MakeValueNameTable("SessMgr_GetLEDStateString", kLedStates, smgr::NameGeneration::Checked,
                             smgr::UnknownValueForm::WithValue);

}  // namespace

extern "C" {

SMGR_API BOOL SessMgr_GetLEDsInfo(SMGR_LEDS_INFO* pInfo) {
  SMGR_TRACE(5, "Called (pInfo=%p).\n", static_cast<void*>(pInfo));
  SMGRPROT_MSG_LEDS_GETINFO_REQ request{};
  return smgr::Transact(kGetInfoTraits, &request, sizeof(request), pInfo != nullptr, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT* pLastError) {
                          return smgr::CopyVersionedRecord(
                              response, offsetof(SMGRPROT_MSG_LEDS_GETINFO_RSP, Info), pInfo, pLastError);
                        });
}

SMGR_API BOOL SessMgr_StartBlinkingLEDs(UINT nHowLongInSeconds) {
  SMGR_TRACE(5, "Called (nHowLongInSeconds=%u).\n", nHowLongInSeconds);
  return Blink(kStartBlinkTraits, TRUE, nHowLongInSeconds);
}

SMGR_API BOOL SessMgr_StopBlinkingLEDs(void) {
  SMGR_TRACE(5, "Called ().\n");
  return Blink(kStopBlinkTraits, FALSE, 0);
}

SMGR_API char* SessMgr_GetLEDStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kLedStateNames, enState, szBuffer, nSize);
}

}  // extern "C"
