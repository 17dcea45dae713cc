// Video input family of the simulator: the wire side of open, information,
// counter reset, configure and enumeration over the VideoInputModel.
#include <cstring>

#include "dispatch.h"
#include "objects.h"
#include "sim_log.h"
#include "video_input_model.h"

namespace sim {
namespace {

VideoInputModel& Inputs(Context& context) { return context.appliance().family<VideoInputModel>(); }

void OnOpen(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDIN_OPEN_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_VIDIN_OPEN_RSP>();
  if (!Terminated(message.Data.szName, sizeof message.Data.szName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  Outcome outcome = Inputs(context).open(message.Data.szName);
  response->Data.Result = outcome.result;
  response->Data.iInputID = outcome.id;
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDIN_ID_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_VIDIN_GETINFO_RSP>();
  response->Data.iInputID = message.Data.iInputID;
  response->Data.Result = Inputs(context).info(message.Data.iInputID, &response->Data.Info);
}

void OnResetStats(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDIN_ID_REQ>();
  reply.result(Inputs(context).resetStats(message.Data.iInputID));
}

void OnSetConfig(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDIN_SETCFG_REQ>();
  SMGR_RESULT result = Inputs(context).configure(message.Data.iInputID, message.Data.Config);
  if (result != SMGR_ERROR_SUCCESS)
    SIM_LOG_INFO("configure of video input %d refused with %u", message.Data.iInputID, result);
  reply.result(result);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDIN_ENUMERATE_REQ>();
  AnswerPage(context, reply, static_cast<int32_t>(message.Data.nNumOfInputs),
             static_cast<int32_t>(message.Data.nStartOffset), Inputs(context).list());
}

const FamilyRegistration kVideoInputs{
    "video_inputs",
    {{SMGRPROT_VIDIN_OPEN_REQ, "video input open", sizeof(SMGRPROT_MSG_VIDIN_OPEN_REQ),
      SMGRPROT_VIDIN_OPEN_RSP, sizeof(SMGRPROT_MSG_VIDIN_OPEN_RSP), OnOpen},
     {SMGRPROT_VIDIN_GETINFO_REQ, "video input info", sizeof(SMGRPROT_MSG_VIDIN_ID_REQ),
      SMGRPROT_VIDIN_GETINFO_RSP, sizeof(SMGRPROT_MSG_VIDIN_GETINFO_RSP), OnGetInfo},
     {SMGRPROT_VIDIN_RESETSTATS_REQ, "video input reset stats", sizeof(SMGRPROT_MSG_VIDIN_ID_REQ),
      SMGRPROT_VIDIN_RESETSTATS_RSP, sizeof(SMGRPROT_MSG_VIDIN_RESULT_RSP), OnResetStats},
     {SMGRPROT_VIDIN_ENUMERATE_REQ, "video input enumerate", sizeof(SMGRPROT_MSG_VIDIN_ENUMERATE_REQ),
      SMGRPROT_VIDIN_ENUMERATE_RSP, offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP, Data.InputInfo), OnEnumerate},
     {SMGRPROT_VIDIN_SETCFG_REQ, "video input configure", sizeof(SMGRPROT_MSG_VIDIN_SETCFG_REQ),
      SMGRPROT_VIDIN_SETCFG_RSP, sizeof(SMGRPROT_MSG_VIDIN_RESULT_RSP), OnSetConfig}}};

}  // namespace
}  // namespace sim
