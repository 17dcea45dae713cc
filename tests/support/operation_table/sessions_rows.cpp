// Operation-table rows of the session family.
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedSessionId = 42;
constexpr char kCannedSessionName[] = "canned-session";

Bytes SessionIdAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SESSION_CREATE_RSP));
  Put(&message, 20, kCannedSessionId);
  std::memcpy(message.data() + 24, kCannedSessionName, sizeof(kCannedSessionName));
  return message;
}

Bytes SessionInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SESSION_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_SESSION_INFO)));
  Put(&message, 24, kCannedSessionId);
  std::memset(message.data() + 28, 'n', SMGR_OBJECT_NAME_SIZE - 1);
  return message;
}

Bytes SessionStatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_SESSION_GETSTATS_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_SESSION_STATS)));
  std::memset(message.data() + 24, 0x5A, message.size() - 24);
  return message;
}

Bytes SessionsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_SESSION_INFO), 2); }

SMGR_SESSION_CFG ValidSessionCfg() {
  SMGR_SESSION_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strcpy(cfg.szName, "fuzzed");
  cfg.nNumOfStreams = 2;
  cfg.Streams[0] = ById(1);
  cfg.Streams[1] = ByName("cam1");
  cfg.bAdvertise = TRUE;
  cfg.AdvertAddress.enType = SMGR_IPV4_ADDRESS;
  const uint8_t abAddress[4] = {239, 1, 1, 1};
  std::memcpy(cfg.AdvertAddress.acAddress, abAddress, sizeof(abAddress));
  cfg.usAdvertPort = 9875;
  return cfg;
}

BOOL CreateWith(CallContext& ctx, SMGR_SESSION_CFG cfg) {
  HSESSION* phSession = ctx.buffer(sizeof(HSESSION), 0).as<HSESSION>();
  BOOL bResult = SessMgr_CreateSession(&cfg, phSession);
  if (bResult) ctx.hCreated = *phSession;
  return bResult;
}

// The kit's handle is a session this process created (there is no Open).
void CreateCannedSession(CallContext& ctx) {
  SMGR_SESSION_CFG cfg = ValidSessionCfg();
  std::strcpy(cfg.szName, kCannedSessionName);
  HSESSION hSession = nullptr;
  if (SessMgr_CreateSession(&cfg, &hSession)) ctx.hOpen = hSession;
}

void CloseSessions(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HSESSION hSession = static_cast<HSESSION>(*ph);
    if (hSession != nullptr) SessMgr_CloseSession(&hSession);
    *ph = nullptr;
  }
}

constexpr HandleKit kSessionKit{CreateCannedSession, CloseSessions, SMGR_STREAM_HANDLE_SIGNATURE};

// A valid configuration changed by one step, for the bad-input variants.
BOOL CreateChanged(CallContext& ctx, void (*change)(SMGR_SESSION_CFG&)) {
  SMGR_SESSION_CFG cfg = ValidSessionCfg();
  change(cfg);
  return CreateWith(ctx, cfg);
}

void SetIPv4(SMGR_SESSION_CFG& cfg, uint8_t b0, uint8_t b1, uint8_t b2, uint8_t b3) {
  cfg.AdvertAddress.enType = SMGR_IPV4_ADDRESS;
  const uint8_t ab[4] = {b0, b1, b2, b3};
  std::memcpy(cfg.AdvertAddress.acAddress, ab, sizeof(ab));
}

// The address b0b1::1.
void SetIPv6(SMGR_SESSION_CFG& cfg, uint8_t b0, uint8_t b1) {
  cfg.AdvertAddress =
      SMGR_IP_ADDRESS{SMGR_IPV6_ADDRESS, {b0, b1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, {}};
}

std::vector<BadInput> CreateBadInputs() {
  const Expectation nonMulticast{FALSE, LE::Equals, SMGR_ERROR_NON_MULTICAST_ADVERTISEMENT_ADDRESS, false};
  const Expectation duplicate{FALSE, LE::Equals, SMGR_ERROR_ID_IN_USE, false};
  return {
      {"NULL configuration",
       [](CallContext& ctx) {
         return SessMgr_CreateSession(nullptr, ctx.buffer(sizeof(HSESSION)).as<HSESSION>());
       },
       invalidNoSend},
      {"NULL handle output",
       [](CallContext&) {
         SMGR_SESSION_CFG cfg = ValidSessionCfg();
         return SessMgr_CreateSession(&cfg, nullptr);
       },
       invalidNoSend},
      {"nSize 1083",
       [](CallContext& ctx) { return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { c.nSize = 1083; }); },
       invalidNoSend},
      {"nSize 0",
       [](CallContext& ctx) { return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { c.nSize = 0; }); },
       invalidNoSend},
      {"advert 192.168.1.1, not advertised",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) {
           SetIPv4(c, 192, 168, 1, 1);
           c.bAdvertise = FALSE;
         });
       },
       nonMulticast},
      {"advert fe80::1",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { SetIPv6(c, 0xFE, 0x80); });
       },
       nonMulticast},
      {"advert ff02::1",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { SetIPv6(c, 0xFF, 0x02); });
       },
       acceptedAndSent},
      {"advert by host name",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) {
           c.AdvertAddress.enType = SMGR_IPV4_HOSTNAME;
           std::strcpy(c.AdvertAddress.szHostName, "sap.local");
         });
       },
       invalidNoSend},
      {"nNumOfStreams 200: never past three entries",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { c.nNumOfStreams = 200; });
       },
       acceptedAndSent},
      {"member by NULL name",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { c.Streams[0] = ByName(nullptr); });
       },
       invalidNoSend},
      {"unterminated texts",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) {
           std::memset(c.szName, 'n', sizeof(c.szName));
           std::memset(c.szDescription, 'd', sizeof(c.szDescription));
         });
       },
       acceptedAndSent},
      {"name of a handle of this process",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { std::strcpy(c.szName, kCannedSessionName); });
       },
       duplicate},
      {"ID of a handle of this process",
       [](CallContext& ctx) {
         return CreateChanged(ctx, [](SMGR_SESSION_CFG& c) { c.nIndex = kCannedSessionId; });
       },
       duplicate},
  };
}

std::vector<OperationRow> SessionRows() {
  const Expectation local{TRUE, LE::Unchanged};
  std::vector<OperationRow> rows;
  rows.push_back({"SessMgr_CreateSession", SMGRPROT_SESSION_CREATE_REQ, SuccessCodes::ZeroOnly,
                  SessionIdAnswer, CreateCannedSession,
                  [](CallContext& ctx) {
                    SMGR_SESSION_CFG cfg = ValidSessionCfg();
                    const uint8_t bShape = ctx.params.byte();
                    if (bShape & 1) cfg.nSize = 0xFFFFFFFFu;  // a newer, longer caller record
                    if (bShape & 2) cfg.AdvertAddress.enType = SMGR_ANY_ADDRESS;
                    if (bShape & 4) cfg.nNumOfStreams = ctx.params.byte();
                    if (bShape & 8) cfg.szName[0] = '\0';
                    return CreateWith(ctx, cfg);
                  },
                  CloseSessions, CreateBadInputs()});
  rows.push_back(
      {"SessMgr_CloseSession",
       SMGRPROT_SESSION_CLOSE_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       CreateCannedSession,
       [](CallContext& ctx) {
         HSESSION* phSession = ctx.buffer(sizeof(HSESSION)).as<HSESSION>();
         *phSession = static_cast<HSESSION>(ctx.hOpen);
         ctx.hOpen = nullptr;  // released by this call whatever the daemon says
         return SessMgr_CloseSession(phSession);
       },
       CloseSessions,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseSession(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) { return SessMgr_CloseSession(ctx.buffer(sizeof(HSESSION)).as<HSESSION>()); },
         invalidNoSend},
        {"handle after its last close (wiped signature)",
         [](CallContext& ctx) {
           HSESSION* phSession = ctx.buffer(sizeof(HSESSION)).as<HSESSION>();
           *phSession = static_cast<HSESSION>(wipedHandle());
           return SessMgr_CloseSession(phSession);
         },
         invalidNoSend},
        {"handle of another family",
         [](CallContext& ctx) {
           HSESSION* phSession = ctx.buffer(sizeof(HSESSION)).as<HSESSION>();
           *phSession = static_cast<HSESSION>(foreignHandle(kSessionKit.dwForeignSignature));
           return SessMgr_CloseSession(phSession);
         },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_GetSessionID",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL handle",
         [](CallContext& ctx) { return SessMgr_GetSessionID(nullptr, ctx.buffer(sizeof(int)).as<int>()); },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
        {"handle of another family",
         [](CallContext& ctx) {
           return SessMgr_GetSessionID(static_cast<HSESSION>(foreignHandle(SMGR_STREAM_HANDLE_SIGNATURE)),
                                       ctx.buffer(sizeof(int)).as<int>());
         },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}});
  // Start, Stop and Delete take IDs and names only: a handle is refused unsent.
  rows.push_back(SelectorRow<SessMgr_StartSession, false, kSessionKit>(
      "SessMgr_StartSession", SMGRPROT_SESSION_START_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_StopSession, false, kSessionKit>(
      "SessMgr_StopSession", SMGRPROT_SESSION_STOP_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_DeleteSession, false, kSessionKit>(
      "SessMgr_DeleteSession", SMGRPROT_SESSION_DELETE_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(RecordRow<SMGR_SESSION_INFO, SessMgr_GetSessionInfo, kSessionKit>(
      "SessMgr_GetSessionInfo", SMGRPROT_SESSION_GETINFO_REQ, SessionInfoAnswer));
  rows.push_back(RecordRow<SMGR_SESSION_STATS, SessMgr_GetSessionStats, kSessionKit>(
      "SessMgr_GetSessionStats", SMGRPROT_SESSION_GETSTATS_REQ, SessionStatsAnswer));
  rows.push_back(PagedRow<SMGR_SESSION_INFO, SessMgr_EnumerateSessions>(
      "SessMgr_EnumerateSessions", SMGRPROT_SESSION_ENUMERATE_REQ, SessionsAnswer));
  rows.push_back({"CleanupSessMgrSessions",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrSessions();
                      return TRUE;
                    },
                    local}}});
  return rows;
}

const RowRegistration kSessionRows{"sessions", SessionRows};

}  // namespace
}  // namespace smgr::test
