// Video encoder family of the simulator: the wire side of open, info,
// configure, statistics, start, stop, reset, control, parameter sets and
// enumeration, over the VideoEncoderModel of the appliance.
#include <algorithm>
#include <climits>
#include <cstring>

#include "dispatch.h"
#include "sim_log.h"
#include "videnc_model.h"

namespace sim {
namespace {

constexpr size_t kIdRequestSize = sizeof(SMGRPROT_MSG_VIDENC_ID_REQ);
constexpr size_t kResultResponseSize = sizeof(SMGRPROT_MSG_VIDENC_RESULT_RSP);

VideoEncoderModel& Encoders(Context& context) { return context.appliance().family<VideoEncoderModel>(); }
int IdOf(const Request& request) { return request.as<SMGRPROT_MSG_VIDENC_ID_REQ>().Data.iEncoderID; }

void LogRefusal(const char* operation, int id, SMGR_RESULT result) {
  if (result != SMGR_ERROR_SUCCESS)
    SIM_LOG_INFO("video encoder %s of %d refused with %u", operation, id, result);
}

// Handler for the ID requests whose response carries the result alone.
HandlerFn Control(const char* operation, SMGR_RESULT (VideoEncoderModel::*action)(int)) {
  return [operation, action](Context& context, const Request& request, Reply& reply) {
    const SMGR_RESULT result = (Encoders(context).*action)(IdOf(request));
    LogRefusal(operation, IdOf(request), result);
    reply.result(result);
  };
}

void OnOpen(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDENC_OPEN_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_VIDENC_OPEN_RSP>();
  if (!Terminated(message.Data.szName, sizeof message.Data.szName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  const Outcome outcome = Encoders(context).open(message.Data.szName);
  response->Data.Result = outcome.result;
  response->Data.iEncoderID = outcome.id;
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_VIDENC_GETINFO_RSP>();
  SMGR_VIDEO_ENCODER_INFO info{};
  response->Data.Result = Encoders(context).info(IdOf(request), &info);
  response->Data.iEncoderID = IdOf(request);
  if (response->Data.Result == SMGR_ERROR_SUCCESS) memcpy(&response->Data.Config, &info, sizeof info);
}

void OnConfigure(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDENC_SETCFG_REQ>();
  const SMGR_RESULT result = Encoders(context).configure(message.Data.iEncoderID, message.Data.Config);
  LogRefusal("configure", message.Data.iEncoderID, result);
  reply.result(result);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_VIDENC_GETSTATS_RSP>();
  SMGR_VIDEO_ENCODER_STATS stats{};
  response->Data.Result = Encoders(context).stats(IdOf(request), &stats);
  response->Data.iEncoderID = IdOf(request);
  if (response->Data.Result == SMGR_ERROR_SUCCESS) memcpy(&response->Data.Stats, &stats, sizeof stats);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDENC_ENUMERATE_REQ>();
  const auto clamp = [](UINT n) { return static_cast<int32_t>(std::min<UINT>(n, INT32_MAX)); };
  AnswerPage(context, reply, clamp(message.Data.nNumOfEncoders), clamp(message.Data.nStartOffset),
             Encoders(context).list());
}

void OnControl(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_VIDENC_CONTROL_REQ>();
  const SMGR_RESULT result = Encoders(context).control(message.Data.iEncoderID, message.Data.enCommand);
  LogRefusal("control", message.Data.iEncoderID, result);
  reply.as<SMGRPROT_MSG_VIDENC_CONTROL_RSP>()->Data.Result = result;  // no reply data
}

void OnParameterSets(Context& context, const Request& request, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP>();
  std::vector<uint8_t> sps, pps;
  response->Data.Result = Encoders(context).parameterSets(IdOf(request), &sps, &pps);
  response->Data.iEncoderID = IdOf(request);
  if (response->Data.Result != SMGR_ERROR_SUCCESS) return;
  response->Data.nSPSSize = std::min(sps.size(), sizeof response->Data.abSPSBuffer);
  memcpy(response->Data.abSPSBuffer, sps.data(), response->Data.nSPSSize);
  response->Data.nPPSSize = std::min(pps.size(), sizeof response->Data.abPPSBuffer);
  memcpy(response->Data.abPPSBuffer, pps.data(), response->Data.nPPSSize);
}

const FamilyRegistration kVideoEncoders{
    "video_encoders",
    {
        {SMGRPROT_VIDENC_OPEN_REQ, "video encoder open", sizeof(SMGRPROT_MSG_VIDENC_OPEN_REQ),
         SMGRPROT_VIDENC_OPEN_RSP, sizeof(SMGRPROT_MSG_VIDENC_OPEN_RSP), OnOpen},
        {SMGRPROT_VIDENC_GETINFO_REQ, "video encoder getinfo", kIdRequestSize, SMGRPROT_VIDENC_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_VIDENC_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_VIDENC_SETCFG_REQ, "video encoder setcfg", sizeof(SMGRPROT_MSG_VIDENC_SETCFG_REQ),
         SMGRPROT_VIDENC_SETCFG_RSP, kResultResponseSize, OnConfigure},
        {SMGRPROT_VIDENC_GETSTATS_REQ, "video encoder getstats", kIdRequestSize, SMGRPROT_VIDENC_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP), OnGetStats},
        {SMGRPROT_VIDENC_RESETSTATS_REQ, "video encoder resetstats", kIdRequestSize,
         SMGRPROT_VIDENC_RESETSTATS_RSP, kResultResponseSize,
         Control("reset stats", &VideoEncoderModel::resetStats)},
        {SMGRPROT_VIDENC_ENUMERATE_REQ, "video encoder enumerate", sizeof(SMGRPROT_MSG_VIDENC_ENUMERATE_REQ),
         SMGRPROT_VIDENC_ENUMERATE_RSP, offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.EncoderInfo),
         OnEnumerate},
        {SMGRPROT_VIDENC_START_REQ, "video encoder start", kIdRequestSize, SMGRPROT_VIDENC_START_RSP,
         kResultResponseSize, Control("start", &VideoEncoderModel::start)},
        {SMGRPROT_VIDENC_STOP_REQ, "video encoder stop", kIdRequestSize, SMGRPROT_VIDENC_STOP_RSP,
         kResultResponseSize, Control("stop", &VideoEncoderModel::stop)},
        {SMGRPROT_VIDENC_RESET_REQ, "video encoder reset", kIdRequestSize, SMGRPROT_VIDENC_RESET_RSP,
         kResultResponseSize, Control("reset", &VideoEncoderModel::reset)},
        {SMGRPROT_VIDENC_CONTROL_REQ, "video encoder control", sizeof(SMGRPROT_MSG_VIDENC_CONTROL_REQ),
         SMGRPROT_VIDENC_CONTROL_RSP, sizeof(SMGRPROT_MSG_VIDENC_CONTROL_RSP), OnControl},
        {SMGRPROT_VIDENC_GETSPSPPS_REQ, "video encoder sps/pps", kIdRequestSize,
         SMGRPROT_VIDENC_GETSPSPPS_RSP, sizeof(SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP), OnParameterSets},
    }};

}  // namespace
}  // namespace sim
