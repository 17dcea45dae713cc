// Snapshot family of the simulator: the wire side of take, delete, delete
// all, rename, defaults and storage over the SnapshotModel.
#include <cstdio>

#include "dispatch.h"
#include "objects.h"
#include "sim_log.h"
#include "snapshot_model.h"

namespace sim {
namespace {

constexpr size_t kEmptySize = sizeof(SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ);
constexpr size_t kCountSize = sizeof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP);
constexpr size_t kResultSize = sizeof(SMGRPROT_MSG_SNAPSHOT_RESULT_RSP);

SnapshotModel& Snapshots(Context& context) { return context.appliance().family<SnapshotModel>(); }

void OnTake(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_SNAPSHOT_TAKE_REQ>();
  std::string name;
  auto* response = reply.as<SMGRPROT_MSG_SNAPSHOT_TAKE_RSP>();
  response->Data.Result = Snapshots(context).take(message.Data.Config, &name);
  if (response->Data.Result == SMGR_ERROR_SUCCESS)
    snprintf(response->Data.szFileName, sizeof response->Data.szFileName, "%s", name.c_str());
  else
    SIM_LOG_INFO("snapshot refused with %u", response->Data.Result);
}

void OnDelete(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_SNAPSHOT_DELETE_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_SNAPSHOT_COUNT_RSP>();
  if (!Terminated(message.Data.szFileName, sizeof message.Data.szFileName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  response->Data.Result = Snapshots(context).remove(message.Data.szFileName);
  response->Data.nCount = response->Data.Result == SMGR_ERROR_SUCCESS ? 1 : 0;
}

void OnDeleteAll(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_SNAPSHOT_COUNT_RSP>();
  response->Data.nCount = Snapshots(context).removeAll();
}

void OnRename(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_SNAPSHOT_RENAME_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_SNAPSHOT_COUNT_RSP>();
  if (!Terminated(message.Data.szOldFileName, sizeof message.Data.szOldFileName) ||
      !Terminated(message.Data.szNewFileName, sizeof message.Data.szNewFileName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  response->Data.Result = Snapshots(context).rename(message.Data.szOldFileName, message.Data.szNewFileName);
  response->Data.nCount = response->Data.Result == SMGR_ERROR_SUCCESS ? 1 : 0;
}

void OnGetDefaults(Context& context, const Request&, Reply& reply) {
  reply.as<SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP>()->Data.SnapShotDefaults = Snapshots(context).defaults();
}

void OnSetDefaults(Context& context, const Request& request, Reply& reply) {
  reply.result(Snapshots(context).setDefaults(
      request.as<SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ>().Data.SnapShotDefaults));
}

void OnSetAdmin(Context& context, const Request& request, Reply& reply) {
  reply.result(
      Snapshots(context).setAdmin(request.as<SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ>().Data.SnapShotAdminCfg));
}

void OnGetAdmin(Context& context, const Request&, Reply& reply) {
  reply.as<SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP>()->Data.SnapShotAdminInfo = Snapshots(context).adminInfo();
}

const FamilyRegistration kSnapshots{
    "snapshots",
    {{SMGRPROT_SNAPSHOT_TAKE_REQ, "snapshot take", sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_REQ),
      SMGRPROT_SNAPSHOT_TAKE_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP), OnTake},
     {SMGRPROT_SNAPSHOT_DELETE_REQ, "snapshot delete", sizeof(SMGRPROT_MSG_SNAPSHOT_DELETE_REQ),
      SMGRPROT_SNAPSHOT_DELETE_RSP, kCountSize, OnDelete},
     {SMGRPROT_SNAPSHOT_GETDEFAULTS_REQ, "snapshot get defaults", kEmptySize,
      SMGRPROT_SNAPSHOT_GETDEFAULTS_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP), OnGetDefaults},
     {SMGRPROT_SNAPSHOT_SETDEFAULTS_REQ, "snapshot set defaults",
      sizeof(SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ), SMGRPROT_SNAPSHOT_SETDEFAULTS_RSP, kResultSize,
      OnSetDefaults},
     {SMGRPROT_SNAPSHOT_SETADMINCFG_REQ, "snapshot set admin", sizeof(SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ),
      SMGRPROT_SNAPSHOT_SETADMINCFG_RSP, kResultSize, OnSetAdmin},
     {SMGRPROT_SNAPSHOT_GETADMININFO_REQ, "snapshot get admin", kEmptySize,
      SMGRPROT_SNAPSHOT_GETADMININFO_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP), OnGetAdmin},
     {SMGRPROT_SNAPSHOT_RENAME_REQ, "snapshot rename", sizeof(SMGRPROT_MSG_SNAPSHOT_RENAME_REQ),
      SMGRPROT_SNAPSHOT_RENAME_RSP, kCountSize, OnRename},
     {SMGRPROT_SNAPSHOT_DELETE_ALL_REQ, "snapshot delete all", kEmptySize, SMGRPROT_SNAPSHOT_DELETE_ALL_RSP,
      kCountSize, OnDeleteAll}}};

}  // namespace
}  // namespace sim
