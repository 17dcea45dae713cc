// Temperature family of the simulator: the wire side of the statistics request.
#include "dispatch.h"
#include "temperature_model.h"

namespace sim {
namespace {

void OnGetInfo(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP>();
  response->Result = SMGR_ERROR_SUCCESS;
  context.appliance().family<TemperatureModel>().info(&response->Info);
}

const FamilyRegistration kTemperature{
    "temperature",
    {
        {SMGRPROT_TEMPERATURE_GETINFO_REQ, "temperature getinfo",
         sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_REQ), SMGRPROT_TEMPERATURE_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP), OnGetInfo},
    }};

}  // namespace
}  // namespace sim
