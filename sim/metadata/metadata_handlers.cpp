// Metadata family of the simulator: the wire side of messages 1100 to 1121
// over the MetaDataModel, its persisted section (which also installs the
// content-source lookup streams use) and its client-departure hook.
#include <cstring>

#include "dispatch.h"
#include "metadata_model.h"
#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr size_t kSelectSize = sizeof(SMGRPROT_MSG_METADATA_SELECT_REQ);
constexpr size_t kResultSize = sizeof(SMGRPROT_MSG_METADATA_RESULT_RSP);
constexpr size_t kDescribedSize = sizeof(SMGRPROT_MSG_METADATA_DESCRIBED_RSP);
constexpr size_t kInfoSize = sizeof(SMGRPROT_MSG_METADATA_INFO_RSP);

MetaDataModel& Sources(Context& context) { return context.appliance().family<MetaDataModel>(); }

bool Select(const Request& request, Reply& reply, ObjectSelector* selector) {
  auto message = request.as<SMGRPROT_MSG_METADATA_SELECT_REQ>();
  if (ParseWireSelector(message.Data.Select, selector)) return true;
  SIM_LOG_WARN("metadata request %u with a bad selector (type %d)", request.header().wMsgType,
               message.Data.Select.enType);
  reply.result(SMGR_ERROR_INVALID_PARAMETERS);
  return false;
}

void Log(const char* operation, const Outcome& outcome) {
  if (outcome.result != SMGR_ERROR_SUCCESS)
    SIM_LOG_INFO("metadata %s refused with 0x%x: %s", operation, outcome.result, outcome.description.c_str());
}

// Selector requests answered with the result alone, or with a description too.
HandlerFn Control(const char* operation, Outcome (MetaDataModel::*action)(const ObjectSelector&),
                  bool described) {
  return [=](Context& context, const Request& request, Reply& reply) {
    ObjectSelector selector;
    if (!Select(request, reply, &selector)) return;
    Outcome outcome = (Sources(context).*action)(selector);
    Log(operation, outcome);
    reply.result(outcome.result);
    if (described && outcome.result != SMGR_ERROR_SUCCESS) reply.describe("%s", outcome.description.c_str());
  };
}

void OnCreate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_METADATA_CREATE_REQ>();
  Outcome outcome = Sources(context).create(message.Data.MetaDataCfg);
  Log("create", outcome);
  auto* response = reply.as<SMGRPROT_MSG_METADATA_CREATE_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS) {
    response->Data.iMetaDataID = outcome.id;
    snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
    SIM_LOG_INFO("pid %d created metadata source %d \"%s\"", context.client().pid, outcome.id,
                 outcome.name.c_str());
  } else {
    snprintf(response->Data.szErrorDescription, sizeof response->Data.szErrorDescription, "%s",
             outcome.description.c_str());
  }
}

void OnConfigure(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_METADATA_SETCFG_REQ>();
  ObjectSelector selector;
  if (!ParseWireSelector(message.Data.Select, &selector)) {
    reply.result(SMGR_ERROR_INVALID_PARAMETERS);
    return;
  }
  Outcome outcome = Sources(context).configure(selector, message.Data.Config);
  Log("configure", outcome);
  reply.result(outcome.result);
  if (outcome.result != SMGR_ERROR_SUCCESS) reply.describe("%s", outcome.description.c_str());
}

void OnOpen(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  Outcome outcome = Sources(context).open(selector, context.client().pid);
  auto* response = reply.as<SMGRPROT_MSG_METADATA_INFO_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS) Sources(context).info(selector, &response->Data.MetaDataInfo);
}

void OnClose(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_METADATA_CLOSE_REQ>();
  reply.result(Sources(context).close(message.Data.iMetaDataID, context.client().pid).result);
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_METADATA_INFO_RSP>();
  response->Data.Result = Sources(context).info(selector, &response->Data.MetaDataInfo);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_METADATA_GETSTATS_RSP>();
  response->Data.Result = Sources(context).stats(selector, &response->Data.MetaDataStats);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_METADATA_ENUMERATE_REQ>();
  const int32_t wanted = static_cast<int32_t>(std::min<uint32_t>(message.Data.nNumOfItems, 0x7FFFFFFF));
  const int32_t offset = static_cast<int32_t>(std::min<uint32_t>(message.Data.nStartOffset, 0x7FFFFFFF));
  AnswerPage(context, reply, wanted, offset, Sources(context).list());
}

const FamilyRegistration kMetaData{
    "metadata",
    {
        {SMGRPROT_METADATA_CREATE_REQ, "metadata create", sizeof(SMGRPROT_MSG_METADATA_CREATE_REQ),
         SMGRPROT_METADATA_CREATE_RSP, sizeof(SMGRPROT_MSG_METADATA_CREATE_RSP), OnCreate},
        {SMGRPROT_METADATA_DELETE_REQ, "metadata delete", kSelectSize, SMGRPROT_METADATA_DELETE_RSP,
         kResultSize, Control("delete", &MetaDataModel::remove, false)},
        {SMGRPROT_METADATA_ENUMERATE_REQ, "metadata enumerate", sizeof(SMGRPROT_MSG_METADATA_ENUMERATE_REQ),
         SMGRPROT_METADATA_ENUMERATE_RSP, offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP, Data.MetaDataInfo),
         OnEnumerate},
        {SMGRPROT_METADATA_OPEN_REQ, "metadata open", kSelectSize, SMGRPROT_METADATA_OPEN_RSP, kInfoSize,
         OnOpen},
        {SMGRPROT_METADATA_CLOSE_REQ, "metadata close", sizeof(SMGRPROT_MSG_METADATA_CLOSE_REQ),
         SMGRPROT_METADATA_CLOSE_RSP, kResultSize, OnClose},
        {SMGRPROT_METADATA_GETINFO_REQ, "metadata getinfo", kSelectSize, SMGRPROT_METADATA_GETINFO_RSP,
         kInfoSize, OnGetInfo},
        {SMGRPROT_METADATA_GETSTATS_REQ, "metadata getstats", kSelectSize, SMGRPROT_METADATA_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_METADATA_GETSTATS_RSP), OnGetStats},
        {SMGRPROT_METADATA_START_REQ, "metadata start", kSelectSize, SMGRPROT_METADATA_START_RSP,
         kDescribedSize, Control("start", &MetaDataModel::start, true)},
        {SMGRPROT_METADATA_STOP_REQ, "metadata stop", kSelectSize, SMGRPROT_METADATA_STOP_RSP, kResultSize,
         Control("stop", &MetaDataModel::stop, false)},
        {SMGRPROT_METADATA_RESETSTATS_REQ, "metadata resetstats", kSelectSize,
         SMGRPROT_METADATA_RESETSTATS_RSP, kResultSize, Control("reset", &MetaDataModel::resetStats, false)},
        {SMGRPROT_METADATA_SETCFG_REQ, "metadata setcfg", sizeof(SMGRPROT_MSG_METADATA_SETCFG_REQ),
         SMGRPROT_METADATA_SETCFG_RSP, kDescribedSize, OnConfigure},
    }};

// Loaded before streams (order 10): streams that name a data source find it.
const PersistedSection kMetaDataSection{
    "metadata", 10, [](Appliance& appliance) { return appliance.family<MetaDataModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& saved) {
      MetaDataModel& model = appliance.family<MetaDataModel>();
      model.load(saved);
      appliance.sources().setLookup(
          kContentData, [&model](int id, const std::string* name) { return model.findContent(id, name); });
    }};

const ClientDepartureHook kMetaDataDeparture{
    "metadata", [](Appliance& appliance, pid_t pid) { appliance.family<MetaDataModel>().clientGone(pid); }};

}  // namespace
}  // namespace sim
