// Operation-table rows of the snapshot family.
#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes TakeAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP));
  std::memset(message.data() + 20, 's', SMGR_MAX_API_FNAME_SIZE);  // unterminated: cut by the library
  return message;
}

Bytes CountAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP));
  Put(&message, 20, uint32_t{4});
  return message;
}

Bytes DefaultsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP));
  std::memset(message.data() + 20, 0x5D, sizeof(SMGR_SNAPSHOT_DEFAULTS));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_SNAPSHOT_DEFAULTS)));
  return message;
}

Bytes AdminInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP));
  std::memset(message.data() + 20, 'd', sizeof(SMGR_SNAPSHOT_ADMIN_INFO));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_SNAPSHOT_ADMIN_INFO)));
  return message;
}

// A name of nLength characters in guarded caller memory.
const char* NameOf(CallContext& ctx, size_t nLength) {
  char* sz = ctx.buffer(nLength + 1, 'f').as<char>();
  sz[nLength] = '\0';
  return sz;
}

SMGR_SNAPSHOT_CFG* TakeRecord(CallContext& ctx) {
  auto* pCfg = ctx.buffer(sizeof(SMGR_SNAPSHOT_CFG)).as<SMGR_SNAPSHOT_CFG>();
  pCfg->nSize = sizeof(*pCfg);
  pCfg->nVidencID = 1;
  std::strcpy(pCfg->szFileName, "/tmp/elsewhere/still.jpg");
  return pCfg;
}

template <typename Record>
Record* Claiming(CallContext& ctx, uint32_t nSize) {
  // A claim above 4 KiB gets the record alone: the valid answers never fill more.
  const size_t nBytes = std::max<size_t>(std::min<size_t>(nSize, 4096), sizeof(Record));
  Record* pRecord = ctx.buffer(nBytes, 0x11).as<Record>();
  pRecord->nSize = nSize;
  return pRecord;
}

std::vector<OperationRow> SnapshotRows() {
  std::vector<OperationRow> rows;
  rows.push_back({"SessMgr_TakeSnapshot",
                  SMGRPROT_SNAPSHOT_TAKE_REQ,
                  SuccessCodes::ZeroOnly,
                  TakeAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_SNAPSHOT_CFG* pCfg = TakeRecord(ctx);
                    if (ctx.params.byte() & 1) pCfg->nSize = 4;  // nSize does not shorten the record sent
                    return static_cast<BOOL>(SessMgr_TakeSnapshot(pCfg) &&
                                             std::strlen(pCfg->szFileName) == 287);
                  },
                  nullptr,
                  {{"NULL record", [](CallContext&) { return SessMgr_TakeSnapshot(nullptr); }, invalidNoSend},
                   {"unterminated name (288 characters)",
                    [](CallContext& ctx) {
                      SMGR_SNAPSHOT_CFG* pCfg = TakeRecord(ctx);
                      std::memset(pCfg->szFileName, 'n', sizeof(pCfg->szFileName));
                      return SessMgr_TakeSnapshot(pCfg);
                    },
                    invalidNoSend}}});
  rows.push_back(
      {"SessMgr_DeleteSnapshot",
       SMGRPROT_SNAPSHOT_DELETE_REQ,
       SuccessCodes::ZeroOnly,
       CountAnswer,
       nullptr,
       [](CallContext& ctx) {
         static const char* const kNames[] = {"still.jpg", "/x/y/still.png", "", "dir/"};
         return SessMgr_DeleteSnapshot(kNames[ctx.params.byte() % 4]);
       },
       nullptr,
       {{"NULL name", [](CallContext&) { return SessMgr_DeleteSnapshot(nullptr); }, invalidNoSend},
        {"256 characters", [](CallContext& ctx) { return SessMgr_DeleteSnapshot(NameOf(ctx, 256)); },
         invalidNoSend},
        {"288 characters", [](CallContext& ctx) { return SessMgr_DeleteSnapshot(NameOf(ctx, 288)); },
         invalidNoSend},
        {"255 characters", [](CallContext& ctx) { return SessMgr_DeleteSnapshot(NameOf(ctx, 255)); },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_DeleteAllSnapshots",
       SMGRPROT_SNAPSHOT_DELETE_ALL_REQ,
       SuccessCodes::ZeroOnly,
       CountAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_DeleteAllSnapshots(OptionalOut<ULONG>(ctx, ctx.params.byte(), 0));
       },
       nullptr,
       {{"NULL count", [](CallContext&) { return SessMgr_DeleteAllSnapshots(nullptr); }, acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_RenameSnapshot",
       SMGRPROT_SNAPSHOT_RENAME_REQ,
       SuccessCodes::ZeroOnly,
       CountAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_RenameSnapshot((ctx.params.byte() & 1) ? "/a/old.jpg" : "old.jpg", "new.jpg");
       },
       nullptr,
       {{"NULL old name", [](CallContext&) { return SessMgr_RenameSnapshot(nullptr, "b"); }, invalidNoSend},
        {"NULL new name", [](CallContext&) { return SessMgr_RenameSnapshot("a", nullptr); }, invalidNoSend},
        {"old name of 256 characters",
         [](CallContext& ctx) { return SessMgr_RenameSnapshot(NameOf(ctx, 256), "b"); }, invalidNoSend},
        {"new name of 288 characters",
         [](CallContext& ctx) { return SessMgr_RenameSnapshot("a", NameOf(ctx, 288)); }, invalidNoSend}}});
  rows.push_back(
      {"SessMgr_GetSnapshotDefaults",
       SMGRPROT_SNAPSHOT_GETDEFAULTS_REQ,
       SuccessCodes::ZeroOnly,
       DefaultsAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_GetSnapshotDefaults(
             Claiming<SMGR_SNAPSHOT_DEFAULTS>(ctx, (ctx.params.byte() & 1) ? 36 : 4096));
       },
       nullptr,
       {{"NULL record", [](CallContext&) { return SessMgr_GetSnapshotDefaults(nullptr); }, invalidNoSend},
        {"nSize 20",
         [](CallContext& ctx) {
           return SessMgr_GetSnapshotDefaults(Claiming<SMGR_SNAPSHOT_DEFAULTS>(ctx, 20));
         },
         invalidNoSend},
        {"nSize 4 GiB: the daemon's 36",
         [](CallContext& ctx) {
           auto* p = Claiming<SMGR_SNAPSHOT_DEFAULTS>(ctx, 0xFFFFFFFFu);
           return static_cast<BOOL>(SessMgr_GetSnapshotDefaults(p) && p->nSize == 36);
         },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_SetSnapshotDefaults",
       SMGRPROT_SNAPSHOT_SETDEFAULTS_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) {
         const uint32_t kSizes[] = {0, 4, 20, 36, 0xFFFFFFFFu};
         return SessMgr_SetSnapshotDefaults(
             Claiming<SMGR_SNAPSHOT_DEFAULTS>(ctx, kSizes[ctx.params.byte() % 5] % 4096));
       },
       nullptr,
       {{"NULL record", [](CallContext&) { return SessMgr_SetSnapshotDefaults(nullptr); }, invalidNoSend},
        {"nSize 4 GiB in a 36-byte record",
         [](CallContext& ctx) {
           auto* p = ctx.buffer(sizeof(SMGR_SNAPSHOT_DEFAULTS)).as<SMGR_SNAPSHOT_DEFAULTS>();
           p->nSize = 0xFFFFFFFFu;
           return SessMgr_SetSnapshotDefaults(p);
         },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_SetSnapshotAdminCfg",
       SMGRPROT_SNAPSHOT_SETADMINCFG_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_SetSnapshotAdminCfg(
             Claiming<SMGR_SNAPSHOT_ADMIN_CFG>(ctx, (ctx.params.byte() & 1) ? 12 : 20));
       },
       nullptr,
       {{"NULL record", [](CallContext&) { return SessMgr_SetSnapshotAdminCfg(nullptr); }, invalidNoSend},
        {"nSize 4 GiB in a 20-byte record",
         [](CallContext& ctx) {
           auto* p = ctx.buffer(sizeof(SMGR_SNAPSHOT_ADMIN_CFG)).as<SMGR_SNAPSHOT_ADMIN_CFG>();
           p->nSize = 0xFFFFFFFFu;
           return SessMgr_SetSnapshotAdminCfg(p);
         },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_GetSnapshotAdminInfo",
       SMGRPROT_SNAPSHOT_GETADMININFO_REQ,
       SuccessCodes::ZeroOnly,
       AdminInfoAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_GetSnapshotAdminInfo(
             Claiming<SMGR_SNAPSHOT_ADMIN_INFO>(ctx, (ctx.params.byte() & 1) ? 300 : 301));
       },
       nullptr,
       {{"NULL record", [](CallContext&) { return SessMgr_GetSnapshotAdminInfo(nullptr); }, invalidNoSend},
        {"nSize 299",
         [](CallContext& ctx) {
           return SessMgr_GetSnapshotAdminInfo(Claiming<SMGR_SNAPSHOT_ADMIN_INFO>(ctx, 299));
         },
         invalidNoSend}}});
  rows.push_back(NameRow<SessMgr_GetSnapshotFormatString, true>("SessMgr_GetSnapshotFormatString"));
  rows.push_back(
      NameRow<SessMgr_GetSnapshotStorageDeviceString, true>("SessMgr_GetSnapshotStorageDeviceString"));
  rows.push_back(NameRow<SessMgr_GetSnapshotPaletteString, true>("SessMgr_GetSnapshotPaletteString"));
  return rows;
}

const RowRegistration kSnapshotRows{"snapshots", SnapshotRows};

}  // namespace
}  // namespace smgr::test
