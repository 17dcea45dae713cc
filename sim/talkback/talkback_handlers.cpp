// Talkback family of the simulator: the wire side of the channel's configure,
// information, statistics and control requests (Result without a
// description), and its persisted configuration and administrative state.
#include "dispatch.h"
#include "persistence.h"
#include "sim_log.h"
#include "talkback_model.h"

namespace sim {
namespace {

constexpr size_t kControlRequest = sizeof(SMGRPROT_MSG_TALKBACK_CONTROL_REQ);
constexpr size_t kEmptyRequest = sizeof(SMGRPROT_MSG_TALKBACK_EMPTY_REQ);
constexpr size_t kResultOnly = sizeof(SMGRPROT_MSG_TALKBACK_RESULT_RSP);

TalkBackModel& Channel(Context& context) { return context.appliance().family<TalkBackModel>(); }

HandlerFn Control(const char* operation, SMGR_RESULT (TalkBackModel::*action)()) {
  return [operation, action](Context& context, const Request&, Reply& reply) {
    const SMGR_RESULT result = (Channel(context).*action)();
    if (result != SMGR_ERROR_SUCCESS) SIM_LOG_INFO("talkback %s refused with %u", operation, result);
    reply.result(result);
  };
}

void OnConfigure(Context& context, const Request& request, Reply& reply) {
  const SMGR_RESULT result =
      Channel(context).configure(request.as<SMGRPROT_MSG_TALKBACK_SETCFG_REQ>().Config);
  if (result != SMGR_ERROR_SUCCESS) SIM_LOG_INFO("talkback configure refused with %u", result);
  reply.result(result);
}

void OnGetInfo(Context& context, const Request&, Reply& reply) {
  SMGR_TALKBACK_INFO info{};
  Channel(context).info(&info);
  reply.as<SMGRPROT_MSG_TALKBACK_GETINFO_RSP>()->TalkBackInfo = info;
  reply.result(SMGR_ERROR_SUCCESS);
}

void OnGetStats(Context& context, const Request&, Reply& reply) {
  SMGR_TALKBACK_STATS stats{};
  Channel(context).stats(&stats);
  reply.as<SMGRPROT_MSG_TALKBACK_GETSTATS_RSP>()->TalkBackStats = stats;
  reply.result(SMGR_ERROR_SUCCESS);
}

const FamilyRegistration kTalkBack{
    "talkback",
    {
        {SMGRPROT_TALKBACK_START_REQ, "talkback start", kControlRequest, SMGRPROT_TALKBACK_START_RSP,
         kResultOnly, Control("start", &TalkBackModel::start)},
        {SMGRPROT_TALKBACK_STOP_REQ, "talkback stop", kControlRequest, SMGRPROT_TALKBACK_STOP_RSP,
         kResultOnly, Control("stop", &TalkBackModel::stop)},
        {SMGRPROT_TALKBACK_GETINFO_REQ, "talkback getinfo", kEmptyRequest, SMGRPROT_TALKBACK_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_TALKBACK_GETSTATS_REQ, "talkback getstats", kEmptyRequest, SMGRPROT_TALKBACK_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP), OnGetStats},
        {SMGRPROT_TALKBACK_RESETSTATS_REQ, "talkback resetstats", kEmptyRequest,
         SMGRPROT_TALKBACK_RESETSTATS_RSP, kResultOnly, Control("reset", &TalkBackModel::resetStats)},
        {SMGRPROT_TALKBACK_SETCFG_REQ, "talkback setcfg", sizeof(SMGRPROT_MSG_TALKBACK_SETCFG_REQ),
         SMGRPROT_TALKBACK_SETCFG_RSP, kResultOnly, OnConfigure},
        {SMGRPROT_TALKBACK_ENABLE_REQ, "talkback enable", kControlRequest, SMGRPROT_TALKBACK_ENABLE_RSP,
         kResultOnly, Control("enable", &TalkBackModel::enable)},
        {SMGRPROT_TALKBACK_DISABLE_REQ, "talkback disable", kControlRequest, SMGRPROT_TALKBACK_DISABLE_RSP,
         kResultOnly, Control("disable", &TalkBackModel::disable)},
    }};

const PersistedSection kTalkBackState{
    "talkback", 20, [](Appliance& appliance) { return appliance.family<TalkBackModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& saved) { appliance.family<TalkBackModel>().load(saved); }};

}  // namespace
}  // namespace sim
