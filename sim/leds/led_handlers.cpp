// LED family of the simulator: the wire side of the LED states and blinking.
#include "dispatch.h"
#include "led_model.h"

namespace sim {
namespace {

LedModel& Leds(Context& context) { return context.appliance().family<LedModel>(); }

void OnGetInfo(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_LEDS_GETINFO_RSP>();
  response->Result = SMGR_ERROR_SUCCESS;
  Leds(context).info(&response->Info);
}

void OnBlink(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ>();
  LedModel& leds = Leds(context);
  reply.result((message.bEnable ? leds.startBlinking(message.nDurationInSecs) : leds.stopBlinking()).result);
}

const FamilyRegistration kLeds{
    "leds",
    {
        {SMGRPROT_LEDS_GETINFO_REQ, "leds getinfo", sizeof(SMGRPROT_MSG_LEDS_GETINFO_REQ),
         SMGRPROT_LEDS_GETINFO_RSP, sizeof(SMGRPROT_MSG_LEDS_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_LEDS_BLINKSTATUS_REQ, "leds blink", sizeof(SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ),
         SMGRPROT_LEDS_BLINKSTATUS_RSP, sizeof(SMGRPROT_MSG_LEDS_BLINKSTATUS_RSP), OnBlink},
    }};

}  // namespace
}  // namespace sim
