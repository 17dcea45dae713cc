// Essence and ST 2110 synchronisation requests of the simulator, over the
// EssenceModel of the appliance. On an SDI unit the family does not exist:
// every request of the range answers 303 (with a description where the
// response carries one).
#include <cstring>

#include "dispatch.h"
#include "essence_model.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr size_t kSelectSize = sizeof(SMGRPROT_MSG_ESSENCE_SELECT_REQ);
constexpr size_t kResultSize = sizeof(SMGRPROT_MSG_ESSENCE_RESULT_RSP);
constexpr size_t kDescribedSize = sizeof(SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP);
constexpr size_t kCreateDescriptionOffset =
    offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.szErrorDescription);
constexpr const char* kSdiText = "Essences are not supported in the SDI personality";

EssenceModel& Essences(Context& context) { return context.appliance().family<EssenceModel>(); }

void DescribeCreate(Reply& reply, const std::string& text) {
  snprintf(reinterpret_cast<char*>(reply.data() + kCreateDescriptionOffset),
           SMGRPROT_ESSENCE_DESCRIPTION_SIZE, "%s", text.c_str());
}

// Runs the handler on a 2110 unit; answers 303 on an SDI one.
HandlerFn In2110(HandlerFn handler) {
  return [handler](Context& context, const Request& request, Reply& reply) {
    if (Essences(context).supported()) return handler(context, request, reply);
    reply.result(SMGR_ERROR_NOT_SUPPORTED_IN_SDI_PERSONALITY);
    if (reply.type() == SMGRPROT_ESSENCE_CREATE_RSP)
      DescribeCreate(reply, kSdiText);
    else if (reply.type() == SMGRPROT_ESSENCE_START_RSP || reply.type() == SMGRPROT_ESSENCE_SETCFG_RSP)
      reply.describe("%s", kSdiText);  // the other responses carry no description
  };
}

bool Select(const Request& request, Reply& reply, ObjectSelector* selector, size_t offset = 16) {
  SMGRPROT_OBJECT_SELECTOR wire{};
  memcpy(&wire, request.data() + offset, sizeof wire);
  if (ParseWireSelector(wire, selector)) return true;
  SIM_LOG_WARN("essence request %u with a bad selector (type %d)", request.header().wMsgType, wire.enType);
  reply.result(SMGR_ERROR_INVALID_PARAMETERS);
  return false;
}

void Answer(const char* operation, const Outcome& outcome, Reply& reply, bool described) {
  if (outcome.result != SMGR_ERROR_SUCCESS)
    SIM_LOG_INFO("essence %s answered %#x: %s", operation, outcome.result, outcome.description.c_str());
  reply.result(outcome.result);
  if (described && outcome.result != SMGR_ERROR_SUCCESS) reply.describe("%s", outcome.description.c_str());
}

HandlerFn Control(const char* operation, Outcome (EssenceModel::*action)(const ObjectSelector&),
                  bool described) {
  return In2110([=](Context& context, const Request& request, Reply& reply) {
    ObjectSelector selector;
    if (Select(request, reply, &selector))
      Answer(operation, (Essences(context).*action)(selector), reply, described);
  });
}

void OnCreate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ESSENCE_CREATE_REQ>();
  Outcome outcome = Essences(context).create(message.Data.EssenceCfg);
  auto* response = reply.as<SMGRPROT_MSG_ESSENCE_CREATE_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS || (outcome.result & SMGR_IS_SUCCESS_WITH_WARNING)) {
    response->Data.iEssenceID = outcome.id;
    snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
    SIM_LOG_INFO("pid %d created essence %d \"%s\"", context.client().pid, outcome.id, outcome.name.c_str());
  } else {
    SIM_LOG_INFO("essence create answered %#x: %s", outcome.result, outcome.description.c_str());
    DescribeCreate(reply, outcome.description);
  }
}

void OnConfigure(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto message = request.as<SMGRPROT_MSG_ESSENCE_SETCFG_REQ>();
  Answer("configure", Essences(context).configure(selector, message.Data.Config), reply, true);
}

void OnOpen(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  Outcome outcome = Essences(context).open(selector, context.client().pid);
  auto* response = reply.as<SMGRPROT_MSG_ESSENCE_INFO_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS)
    Essences(context).info(ObjectSelector{false, outcome.id, {}}, &response->Data.EssenceInfo);
}

void OnClose(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ESSENCE_CLOSE_REQ>();
  reply.result(Essences(context).close(message.Data.iEssenceID, context.client().pid).result);
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_ESSENCE_INFO_RSP>();
  response->Data.Result = Essences(context).info(selector, &response->Data.EssenceInfo);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_ESSENCE_GETSTATS_RSP>();
  response->Data.Result = Essences(context).stats(selector, &response->Data.EssenceStats);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ>();
  AnswerPage(context, reply, static_cast<int32_t>(message.Data.nNumOfItems),
             static_cast<int32_t>(message.Data.nStartOffset), Essences(context).list());
}

void OnSyncInfo(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_2110_SYNC_GETINFO_RSP>();
  response->Data.SyncInfo = Essences(context).syncInfo();
  response->Data.Result = SMGR_ERROR_SUCCESS;
}

void OnSetMode(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_2110_SYNC_SETMODE_REQ>();
  reply.result(Essences(context).setClockMode(message.Data.enMode));
  SIM_LOG_INFO("clock mode %d requested: %#x", message.Data.enMode, reply.result());
}

const FamilyRegistration kEssences{
    "essences",
    {
        {SMGRPROT_ESSENCE_CREATE_REQ, "essence create", sizeof(SMGRPROT_MSG_ESSENCE_CREATE_REQ),
         SMGRPROT_ESSENCE_CREATE_RSP, sizeof(SMGRPROT_MSG_ESSENCE_CREATE_RSP), In2110(OnCreate)},
        {SMGRPROT_ESSENCE_DELETE_REQ, "essence delete", kSelectSize, SMGRPROT_ESSENCE_DELETE_RSP, kResultSize,
         Control("delete", &EssenceModel::remove, false)},
        {SMGRPROT_ESSENCE_ENUMERATE_REQ, "essence enumerate", sizeof(SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ),
         SMGRPROT_ESSENCE_ENUMERATE_RSP, offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP, Data.EssenceInfo),
         In2110(OnEnumerate)},
        {SMGRPROT_ESSENCE_OPEN_REQ, "essence open", kSelectSize, SMGRPROT_ESSENCE_OPEN_RSP,
         sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP), In2110(OnOpen)},
        {SMGRPROT_ESSENCE_CLOSE_REQ, "essence close", sizeof(SMGRPROT_MSG_ESSENCE_CLOSE_REQ),
         SMGRPROT_ESSENCE_CLOSE_RSP, kResultSize, In2110(OnClose)},
        {SMGRPROT_ESSENCE_GETINFO_REQ, "essence getinfo", kSelectSize, SMGRPROT_ESSENCE_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP), In2110(OnGetInfo)},
        {SMGRPROT_ESSENCE_GETSTATS_REQ, "essence getstats", kSelectSize, SMGRPROT_ESSENCE_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP), In2110(OnGetStats)},
        {SMGRPROT_ESSENCE_START_REQ, "essence start", kSelectSize, SMGRPROT_ESSENCE_START_RSP, kDescribedSize,
         Control("start", &EssenceModel::start, true)},
        {SMGRPROT_ESSENCE_STOP_REQ, "essence stop", kSelectSize, SMGRPROT_ESSENCE_STOP_RSP, kResultSize,
         Control("stop", &EssenceModel::stop, false)},
        {SMGRPROT_ESSENCE_RESETSTATS_REQ, "essence resetstats", kSelectSize, SMGRPROT_ESSENCE_RESETSTATS_RSP,
         kResultSize, Control("reset", &EssenceModel::resetStats, false)},
        {SMGRPROT_ESSENCE_SETCFG_REQ, "essence setcfg", sizeof(SMGRPROT_MSG_ESSENCE_SETCFG_REQ),
         SMGRPROT_ESSENCE_SETCFG_RSP, kDescribedSize, In2110(OnConfigure)},
        {SMGRPROT_2110_SYNC_GETINFO_REQ, "2110 sync getinfo", sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_REQ),
         SMGRPROT_2110_SYNC_GETINFO_RSP, sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP), In2110(OnSyncInfo)},
        {SMGRPROT_2110_SYNC_SETMODE_REQ, "2110 sync setmode", sizeof(SMGRPROT_MSG_2110_SYNC_SETMODE_REQ),
         SMGRPROT_2110_SYNC_SETMODE_RSP, kResultSize, In2110(OnSetMode)},
    }};

}  // namespace
}  // namespace sim
