// Library lifecycle and transport: start-up and the connect handshake, the
// wait for a response, fork handling, impersonation, the shutdown paths and
// the library's version record. The request sequence itself is in
// request_engine.cpp.
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <mqueue.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "last_error.h"
#include "lib_state.h"
#include "lib_trace.h"
#include "request_engine.h"
#include "util.h"

// ---- Library-wide state -------------------------------------------------

mqd_t g_OutMsgQID = static_cast<mqd_t>(-1);
mqd_t g_InMsgQID = static_cast<mqd_t>(-1);
std::atomic<WORD> g_wTxSequence{0};
int64_t g_nMaxMsgSize = 0;
BYTE* g_pInputBuffer = nullptr;
char g_szLocalQueueName[32] = "";
std::atomic<int> g_nLibInitCount{0};
std::atomic<BOOL> g_bDoStringAPITrace{TRUE};
// Recursive: family operations hold it when they call AdaptToPIDChange, which
// takes it again so that the whole re-connect stays under it.
pthread_mutex_t g_APIMutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
std::atomic<pid_t> g_ClientPID{0};
std::atomic<uid_t> g_ClientUID{0};
pid_t g_SessMgrDaemonPID = 0;
DWORD g_dwClientAPIVersion = 0;
int g_enCardType = -1;
int g_nIPCRespTimeoutInMS = 10000;
int g_enPersonality = VDR2_PERSONALITY_SDI;

namespace {

constexpr DWORD kSupportedApiVersion = SMGR_API_VERSION_1_0;
constexpr int kDefaultResponseTimeoutMs = 10000;
constexpr int kDefaultInitIpcAttempts = 60;
constexpr DWORD kBootWindowSecs = 300;
constexpr const char* kSettingsSection = "API Library";
constexpr const char* kDaemonProcessName = "sessmgrd";
constexpr const char* kDefaultDaemonQueue = "/vdsessmgr";
constexpr const char* kDefaultStartedMarker = "/tmp/.sessmgrd_was_started";
constexpr const char* kLocalQueuePrefix = "/vdsesslib";

BOOL _g_bDebugInitDone = FALSE;
WORD _g_usInitCount = 0;
BOOL _g_bSessmgrdAlreadyStarted = TRUE;
BOOL _g_bThreadLocalDataAllocated = FALSE;
bool _g_bExitHandlersInstalled = false;
void (*_g_pfnPreviousSegvHandler)(int) = nullptr;
size_t _g_nInputBufferCapacity = 0;
// The process that created the current receive queue: after fork the child
// inherits the parent's descriptor, which it must never remove.
pid_t _g_ReceiveQueueOwnerPID = 0;

// Names in force for this connection (environment overrides, read when the
// library goes from 0 to 1 user).
char _g_szDaemonQueueName[NAME_MAX + 1] = "";
char _g_szStartedMarker[PATH_MAX] = "";

// Handle-table cleanups of the families (fixed table, filled at load time).
struct HandleFamilyEntry {
  smgr::HandleCleanupFn cleanup;
  smgr::HandleCountFn count;
};
constexpr int kMaxHandleFamilies = 32;
HandleFamilyEntry _g_aHandleFamilies[kMaxHandleFamilies];
std::atomic<int> _g_nHandleFamilies{0};

// Version record, found in the file by tools; the library never reads it.
#pragma pack(push, 1)
struct VDVERSIONINFOBLOB {
  BYTE abSignature[16];
  DWORD dwSize;
  BYTE cMajor;
  BYTE cMinor;
  BYTE szRevision[12];
  BYTE szDescription[64];
  BYTE szCopyright[32];
  BYTE szBuildIdentifier[32];
  BYTE szBuildDate[16];
  BYTE szBuildTime[16];
  BYTE szNotes[80];
};
#pragma pack(pop)
static_assert(sizeof(VDVERSIONINFOBLOB) == 274);
static_assert(offsetof(VDVERSIONINFOBLOB, dwSize) == 16);
static_assert(offsetof(VDVERSIONINFOBLOB, cMajor) == 20);
static_assert(offsetof(VDVERSIONINFOBLOB, cMinor) == 21);
static_assert(offsetof(VDVERSIONINFOBLOB, szRevision) == 22);
static_assert(offsetof(VDVERSIONINFOBLOB, szDescription) == 34);
static_assert(offsetof(VDVERSIONINFOBLOB, szCopyright) == 98);
static_assert(offsetof(VDVERSIONINFOBLOB, szBuildIdentifier) == 130);
static_assert(offsetof(VDVERSIONINFOBLOB, szBuildDate) == 162);
static_assert(offsetof(VDVERSIONINFOBLOB, szBuildTime) == 178);
static_assert(offsetof(VDVERSIONINFOBLOB, szNotes) == 194);

[[maybe_unused]] __attribute__((used)) const VDVERSIONINFOBLOB _g_VersionInfo = {
    {'V', '$', 'D', '$', 'V', '$', 'B', '$', 'L', '$', 'O', '$', 'B', '<', '>', '.'},
    sizeof(VDVERSIONINFOBLOB),
    1,
    4,
    "23980",
    "SessMgr API Library",
    "(c) SessMgr API Library authors",
    "tessaro_enc_v1.4.2-27",
    __DATE__,
    __TIME__,
    "",
};

// ---- Helpers --------------------------------------------------------------

const char* _ErrnoText(int nErrno, char* szBuffer, size_t nSize) {
  return strerror_r(nErrno, szBuffer, nSize);
}

BOOL _InitDebugChannel() {
  _DoDbgInit("SESSMGRLIB", &g_hSMGRApiDbg);
  g_enPersonality = GetSystemPersonality();
  return TRUE;
}

void _DebugInitOnce() { DoExecuteOnceOnlyFunction(_InitDebugChannel, &_g_bDebugInitDone); }

// The once-only debug initialisation holds one attachment of the channel for
// the life of the library; each successful SessMgrLib_Init takes one more that
// its SessMgrLib_Shutdown releases. The handle thus stays valid (and the same)
// while any thread may trace. Counted under g_APIMutex.
int _g_nInitDebugAttachments = 0;

void _AttachDebugChannelForInit() {
  HDBG hDbg = nullptr;
  if (_DoDbgInit("SESSMGRLIB", &hDbg)) ++_g_nInitDebugAttachments;
}

// Under g_APIMutex: true when this shutdown has an attachment to release.
bool _TakeInitDebugAttachment() {
  if (_g_nInitDebugAttachments <= 0) return false;
  --_g_nInitDebugAttachments;
  return true;
}

void _ReleaseDebugChannel() {
  if (g_hSMGRApiDbg != nullptr) _DoDbgUninitEx(g_hSMGRApiDbg, __func__, __FILE__, __LINE__);
}

void _ReadEnvironmentOverrides() {
  const char* szQueue = secure_getenv("SESSMGR_DAEMON_QUEUE");
  CopyString(_g_szDaemonQueueName, (szQueue && *szQueue) ? szQueue : kDefaultDaemonQueue,
             sizeof(_g_szDaemonQueueName));
  const char* szMarker = secure_getenv("SESSMGR_STARTED_MARKER");
  CopyString(_g_szStartedMarker, (szMarker && *szMarker) ? szMarker : kDefaultStartedMarker,
             sizeof(_g_szStartedMarker));
}

void _CheckStartMarker() {
  int fd = open(_g_szStartedMarker, O_RDONLY | O_CLOEXEC);
  if (fd >= 0) {
    close(fd);
    _g_bSessmgrdAlreadyStarted = TRUE;
    SMGR_TRACE(6, "Sessmgrd already started.\n");
  } else {
    _g_bSessmgrdAlreadyStarted = FALSE;
    SMGR_TRACE(6, "Sessmgrd not yet started.\n");
  }
}

void _FillHeader(SMGRPROT_HEADER* pHeader, WORD wType, WORD wSize) {
  pHeader->wMsgType = wType;
  pHeader->wMsgSequence = ++g_wTxSequence;
  pHeader->wMsgSize = wSize;
  pHeader->wReserved = 0;
  pHeader->dwSrcPID = static_cast<DWORD>(getpid());
  pHeader->dwSrcUID = static_cast<DWORD>(g_ClientUID.load());
}

void _RaiseMessageQueueLimit() {
  if (!IsRootUser()) {
    SMGR_TRACE(6, "Not touching limit for non root user.\n");
    return;
  }
  char szErrno[80];
  struct rlimit limit;
  if (getrlimit(RLIMIT_MSGQUEUE, &limit) != 0) {
    int nErrno = errno;
    SMGR_TRACE(3, "Call to getrlimit failed, errno (%d):%s.\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    return;
  }
  if (limit.rlim_cur == RLIM_INFINITY) return;
  limit.rlim_cur = RLIM_INFINITY;
  limit.rlim_max = RLIM_INFINITY;
  if (setrlimit(RLIMIT_MSGQUEUE, &limit) != 0) {
    int nErrno = errno;
    SMGR_TRACE(3, "Call to setrlimit failed, errno (%d):%s.\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    return;
  }
  SMGR_TRACE(6, "Limit upgraded to infinity.\n");
}

// Opens the daemon's request queue, waiting for it while the appliance is
// still booting. Leaves errno of the last failure behind on false.
bool _OpenDaemonQueue(int nMaxAttempts) {
  if (g_OutMsgQID != static_cast<mqd_t>(-1)) {
    smgr::Transport().close(g_OutMsgQID);  // left open by an earlier, failed initialisation
    g_OutMsgQID = static_cast<mqd_t>(-1);
  }
  DWORD dwUpTime = 0;
  smgr::Transport().upTime(&dwUpTime);
  char szErrno[80];
  int nAttempt = 0;
  for (;;) {
    g_OutMsgQID = smgr::Transport().open(_g_szDaemonQueueName, O_WRONLY | O_NONBLOCK | O_CLOEXEC, 0, nullptr);
    if (g_OutMsgQID != static_cast<mqd_t>(-1)) break;
    int nErrno = errno;
    if (nErrno == ENOENT && dwUpTime <= kBootWindowSecs) {
      if (nAttempt <= nMaxAttempts) {
        SMGR_TRACE(4, "Failed attempt %d/%d to open msg queue.\n", nAttempt + 1, nMaxAttempts);
        smgr::Transport().sleepMicros(1000000);
        ++nAttempt;
        continue;
      }
      SMGR_TRACE(3, "Failed to open msg queue after %d attempts, errno (%d):%s.\n", nAttempt, nErrno,
                 _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    } else {
      SMGR_TRACE(3, "Failed to open msg queue \"%s\", errno (%d):%s.\n", _g_szDaemonQueueName, nErrno,
                 _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    }
    errno = nErrno;
    return false;
  }
  if (nAttempt > 0) SMGR_TRACE(5, "Successfully opened msg queue after %d attempts.\n", nAttempt);
  return true;
}

// Removes the receive queue (close, then unlink by name).
void _RemoveReceiveQueue() {
  char szErrno[80];
  if (g_InMsgQID == static_cast<mqd_t>(-1)) return;
  if (smgr::Transport().close(g_InMsgQID) != 0) {
    int nErrno = errno;
    SMGR_TRACE(3, "Failed to close rx msg queue, errno=%d, \"%s\".\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
  }
  g_InMsgQID = static_cast<mqd_t>(-1);
  if (smgr::Transport().unlink(g_szLocalQueueName) != 0 && errno != ENOENT) {
    int nErrno = errno;
    SMGR_TRACE(3, "Failed to unlink msg queue \"%s\" errno=%d, \"%s\".\n", g_szLocalQueueName, nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
  }
  _g_ReceiveQueueOwnerPID = 0;
}

void _FreeInputBuffer() {
  free(g_pInputBuffer);
  g_pInputBuffer = nullptr;
  _g_nInputBufferCapacity = 0;
}

// Makes sure the receive buffer holds g_nMaxMsgSize bytes (allocated once per
// connection; grown only when a re-connect after fork got a larger queue).
bool _EnsureInputBuffer() {
  size_t nNeeded = static_cast<size_t>(std::max<int64_t>(g_nMaxMsgSize, sizeof(SMGRPROT_HEADER)));
  if (g_pInputBuffer != nullptr && _g_nInputBufferCapacity >= nNeeded) return true;
  BYTE* pNew = static_cast<BYTE*>(calloc(1, nNeeded));
  if (pNew == nullptr) return false;
  free(g_pInputBuffer);
  g_pInputBuffer = pNew;
  _g_nInputBufferCapacity = nNeeded;
  return true;
}

// Sends the connect request and waits for its response. Sets the last error on
// send failure and on a response too short to read; *pbRefused is set when the
// daemon answered with a Result other than 0.
enum class ConnectOutcome { Connected, SendFailed, NoResponse, Refused };

ConnectOutcome _Connect(SMGRPROT_MSG_CONNECT_RSP* pResponse) {
  SMGRPROT_MSG_CONNECT_REQ request;
  memset(&request, 0, sizeof(request));
  _FillHeader(&request.Header, SMGRPROT_USER_CONNECT_REQ, sizeof(request));
  if (!GetProcessNameFromPID(getpid(), BASE_PROCESS_NAME_ONLY, request.Data.ProcessName,
                             sizeof(request.Data.ProcessName))) {
    request.Data.ProcessName[0] = '\0';
    SMGR_TRACE(4, "Failed to get local process name.\n");
  }
  CopyString(request.Data.RxMsgQName, g_szLocalQueueName, sizeof(request.Data.RxMsgQName));
  if (smgr::Transport().send(g_OutMsgQID, reinterpret_cast<const char*>(&request), sizeof(request), 0) != 0) {
    int nErrno = errno;
    char szErrno[80];
    SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR, nErrno, nullptr);
    SMGR_TRACE(3, "Failed to send connect request to sessmgrd, errno (%d):%s.\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    return ConnectOutcome::SendFailed;
  }
  size_t nReported = 0;
  size_t nReceived = 0;
  if (!smgr::WaitForResponse(SMGRPROT_USER_CONNECT_RSP, request.Header.wMsgSequence, g_nIPCRespTimeoutInMS,
                             &nReported, &nReceived))
    return ConnectOutcome::NoResponse;
  if (nReceived < sizeof(*pResponse)) {
    SMGR_TRACE(3, "Connect response of %zu bytes is too short.\n", nReceived);
    SessMgr_SetLastError(SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
    return ConnectOutcome::NoResponse;
  }
  memcpy(pResponse, g_pInputBuffer, sizeof(*pResponse));
  return pResponse->Data.Result == SMGRPROT_RESULT_SUCCESS ? ConnectOutcome::Connected
                                                           : ConnectOutcome::Refused;
}

// Creates a new receive queue named from this process and the counter; sets
// g_InMsgQID and g_szLocalQueueName. Leaves errno behind on false.
bool _CreateReceiveQueue() {
  ++_g_usInitCount;
  PrintToString(g_szLocalQueueName, sizeof(g_szLocalQueueName), "%s%d-%05u", kLocalQueuePrefix,
                static_cast<int>(getpid()), static_cast<unsigned>(_g_usInitCount));
  g_InMsgQID =
      smgr::Transport().open(g_szLocalQueueName, O_RDONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666, nullptr);
  if (g_InMsgQID == static_cast<mqd_t>(-1)) return false;
  _g_ReceiveQueueOwnerPID = getpid();
  return true;
}

// Reads the receive queue's message size into g_nMaxMsgSize.
bool _ReadReceiveQueueAttributes() {
  struct mq_attr attr;
  if (smgr::Transport().getattr(g_InMsgQID, &attr) != 0) return false;
  g_nMaxMsgSize = attr.mq_msgsize;
  SMGR_TRACE(6, "msg queue can contain up to %d messages of %d bytes each.\n",
             static_cast<int>(attr.mq_maxmsg), static_cast<int>(attr.mq_msgsize));
  if (attr.mq_curmsgs != 0)
    SMGR_TRACE(5, "msg queue already has %d messages!\n", static_cast<int>(attr.mq_curmsgs));
  return true;
}

void _SegvHandler(int nSignal);
void _ExitCleanup();

void _InstallExitHandlers() {
  // Once per process: repeated registrations would pile up exit handlers and
  // make the SIGSEGV handler its own predecessor.
  if (_g_bExitHandlersInstalled) return;
  _g_bExitHandlersInstalled = true;
  _g_pfnPreviousSegvHandler = signal(SIGSEGV, _SegvHandler);
  if (atexit(_ExitCleanup) != 0) SMGR_TRACE(4, "Unable to register atexit handler.\n");
}

void _ExitCleanup() {
  SMGR_TRACE(6, "Called.\n");
  if (g_nLibInitCount.load() > 0) {
    SMGR_TRACE(4, "Performing cleanup since caller hasn't (init count=%d).\n", g_nLibInitCount.load());
    g_nLibInitCount = 1;
    SessMgrLib_Shutdown();
  }
}

void _SegvHandler(int nSignal) {
  static int s_nTrapCount = 0;
  SMGR_TRACE(2, "Called (trap count=%d).\n", s_nTrapCount);
  if (g_nLibInitCount.load() > 0) {
    g_nLibInitCount = 1;
    SessMgrLib_Shutdown();
  }
  ++s_nTrapCount;
  // SIG_IGN is not a function: only a real handler can be chained.
  if (s_nTrapCount == 1 && _g_pfnPreviousSegvHandler != nullptr && _g_pfnPreviousSegvHandler != SIG_IGN &&
      _g_pfnPreviousSegvHandler != SIG_ERR)
    _g_pfnPreviousSegvHandler(nSignal);
  SMGR_TRACE(2, "Process Exitting.\n");
  exit(1);
}

// The initialisation proper, under g_APIMutex up to the connect response.
BOOL _InitializeLibrary() {
  pthread_mutex_lock(&g_APIMutex);
  _DebugInitOnce();
  if (g_nLibInitCount.load() == 0) {
    _ReadEnvironmentOverrides();
    _CheckStartMarker();
    g_ClientUID = getuid();
  }
  SMGR_TRACE(5, "Called.\n");
  if (g_nLibInitCount.load() > 0) {
    int nCount = ++g_nLibInitCount;
    _AttachDebugChannelForInit();
    SMGR_TRACE(5, "Already initialized, init count now at %d.\n", nCount);
    pthread_mutex_unlock(&g_APIMutex);
    return TRUE;
  }
  g_ClientPID = getpid();
  SMGR_TRACE(5, "Initializing SMGR API client with pid of %d.\n", static_cast<int>(g_ClientPID.load()));

  if (!_g_bThreadLocalDataAllocated) {
    int nRc = 0;
    if (!EnsureThreadDataKey(&nRc)) {
      SMGR_TRACE(2, "pthread_key_create FAILED rc=%d.\n", nRc);
      pthread_mutex_unlock(&g_APIMutex);
      return FALSE;
    }
    _g_bThreadLocalDataAllocated = TRUE;
  }
  _InstallExitHandlers();
  MakeThreadDataForCallingThread();
  srand(static_cast<unsigned>(time(nullptr)));
  g_wTxSequence = static_cast<WORD>(rand() & 0xFFFF);
  _RaiseMessageQueueLimit();

  int nInitIpcAttempts = kDefaultInitIpcAttempts;
  CfgFile_GetIntValue(GetSettingsFileName(), kSettingsSection, "InitIPCTimeout", &nInitIpcAttempts,
                      kDefaultInitIpcAttempts);

  if (_g_bSessmgrdAlreadyStarted && GetProcessPID(kDaemonProcessName, nullptr) == 0) {
    pthread_mutex_unlock(&g_APIMutex);
    SessMgr_SetLastError(SMGR_ERROR_DAEMON_GONE);
    SMGR_TRACE(3, "Failed to locate sessmgrd pid.\n");
    return FALSE;
  }

  char szErrno[80];
  if (!_OpenDaemonQueue(nInitIpcAttempts)) {
    SessMgr_SetLastErrorEx(SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR, errno, nullptr);
    pthread_mutex_unlock(&g_APIMutex);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }

  if (!_CreateReceiveQueue()) {
    int nErrno = errno;
    SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_LOCAL_IPC_INIT_ERROR, nErrno, nullptr);
    SMGR_TRACE(3, "Failed to create local input msg queue \"%s\", errno (%d):%s.\n", g_szLocalQueueName,
               nErrno, _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    pthread_mutex_unlock(&g_APIMutex);
    return FALSE;
  }
  if (!_ReadReceiveQueueAttributes()) {
    int nErrno = errno;
    SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_LOCAL_IPC_INIT_ERROR, nErrno, nullptr);
    SMGR_TRACE(3, "Failed to get msg queue information, errno (%d): \"%s\".\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
    _RemoveReceiveQueue();
    pthread_mutex_unlock(&g_APIMutex);
    return FALSE;
  }
  if (!_EnsureInputBuffer()) {
    SessMgr_SetLastError(SMGR_ERROR_OUT_OF_MEMORY);
    SMGR_TRACE(2, "Failed to allocate input buffer.\n");
    _RemoveReceiveQueue();
    pthread_mutex_unlock(&g_APIMutex);
    return FALSE;
  }

  CfgFile_GetIntValue(GetSettingsFileName(), kSettingsSection, "ResponseTimeout", &g_nIPCRespTimeoutInMS,
                      kDefaultResponseTimeoutMs);
  if (g_nIPCRespTimeoutInMS != kDefaultResponseTimeoutMs)
    SMGR_TRACE(5, "Using configured IPC timeout of %d ms.\n", g_nIPCRespTimeoutInMS);

  SMGRPROT_MSG_CONNECT_RSP response;
  if (_Connect(&response) != ConnectOutcome::Connected) {
    _FreeInputBuffer();
    _RemoveReceiveQueue();
    pthread_mutex_unlock(&g_APIMutex);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }

  SMGR_TRACE(5, "lib initialization successful.\n");
  ++g_nLibInitCount;
  _AttachDebugChannelForInit();
  SMGR_ASSERT_TEXT(g_nLibInitCount.load() == 1, "g_nLibInitCount == 1");
  // Taken before unlocking: a request of another thread may start as soon as
  // the mutex is free, and its wait watches this PID.
  g_SessMgrDaemonPID = static_cast<pid_t>(response.Header.dwSrcPID);
  g_enCardType = response.Data.enCardType;
  _g_bSessmgrdAlreadyStarted = TRUE;
  pid_t daemonPid = g_SessMgrDaemonPID;
  int enCardType = g_enCardType;
  pthread_mutex_unlock(&g_APIMutex);
  SMGR_TRACE(5, "Sessgmrd PID is %d.\n", static_cast<int>(daemonPid));
  SMGR_TRACE(5, "Running on card type %d.\n", enCardType);
  SMGR_TRACE(5, "Done (returning TRUE).\n");
  return TRUE;
}

bool _SendNoResponseMessage(WORD wType, const char* szFailureTrace) {
  // Disconnect indication and system shutdown request share one 20-byte layout.
  static_assert(sizeof(SMGRPROT_MSG_DISCONNECT_IND) == 20 && sizeof(SMGRPROT_MSG_SYSTEM_SHUTDOWN_REQ) == 20);
  SMGRPROT_MSG_DISCONNECT_IND message;
  memset(&message, 0, sizeof(message));
  _FillHeader(&message.Header, wType, sizeof(message));
  if (smgr::Transport().send(g_OutMsgQID, reinterpret_cast<const char*>(&message), sizeof(message), 0) == 0)
    return true;
  int nErrno = errno;
  char szErrno[80];
  SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR, nErrno, nullptr);
  SMGR_TRACE(3, szFailureTrace, nErrno, _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
  return false;
}

// One select round of the wait on the receive queue: > 0 readable, 0 time-out,
// -1 on error.
int _PosixWaitReadable(mqd_t queue, bool* pbSet) {
  *pbSet = false;
  if (queue >= 0 && queue < FD_SETSIZE) {
    fd_set readSet;
    FD_ZERO(&readSet);
    FD_SET(queue, &readSet);
    struct timeval timeout = {1, 0};
    SMGR_TRACE(7, "Calling select with timeout of %d.%06d.\n", static_cast<int>(timeout.tv_sec),
               static_cast<int>(timeout.tv_usec));
    int nRc = select(queue + 1, &readSet, nullptr, nullptr, &timeout);
    SMGR_TRACE(7, "Select returned %d.\n", nRc);
    if (nRc > 0) *pbSet = FD_ISSET(queue, &readSet);
    return nRc;
  }
  // A descriptor beyond FD_SETSIZE cannot go into an fd_set: same wait with poll.
  struct pollfd pfd = {queue, POLLIN, 0};
  int nRc = poll(&pfd, 1, 1000);
  SMGR_TRACE(7, "Select returned %d.\n", nRc);
  if (nRc > 0) *pbSet = (pfd.revents & POLLIN) != 0;
  return nRc;
}

mqd_t _PosixOpen(const char* szName, int nFlags, mode_t mode, struct mq_attr* pAttr) {
  return (nFlags & O_CREAT) != 0 ? mq_open(szName, nFlags, mode, pAttr) : mq_open(szName, nFlags);
}
int _PosixTimeOfDay(struct timeval* pNow) { return gettimeofday(pNow, nullptr); }
void _PosixSleepMicros(unsigned nMicroSeconds) { MicroSleep(nMicroSeconds, TRUE); }

// The transport of every client process (see TransportHooks).
constexpr smgr::TransportHooks kPosixTransport = {
    _PosixOpen,         mq_close,   mq_unlink,       mq_getattr,      mq_send,
    _PosixWaitReadable, mq_receive, _PosixTimeOfDay, GetSystemUPTime, _PosixSleepMicros,
};
const smgr::TransportHooks* _g_pTransport = &kPosixTransport;

}  // namespace

// ---- Internal interfaces -------------------------------------------------------

namespace smgr {

const TransportHooks& Transport() { return *_g_pTransport; }
void SetTransportHooks(const TransportHooks* pHooks) {
  _g_pTransport = pHooks != nullptr ? pHooks : &kPosixTransport;
}

namespace {
std::atomic<pid_t> g_CachedPid{0};
// A fork waits for the request in flight (if any) to end, so that the child
// never inherits the API mutex or the thread-record list held by a thread
// that does not exist in it. The API mutex comes first, as everywhere.
void _BeforeFork() {
  pthread_mutex_lock(&g_APIMutex);
  LockThreadDataListForFork();
}
void _AfterForkInParent() {
  UnlockThreadDataListAfterFork();
  pthread_mutex_unlock(&g_APIMutex);
}
// The child cannot unlock what the parent's thread locked (a recursive mutex
// remembers its owner's thread ID, which differs in the child): being the
// only thread, it makes both locks anew, unlocked.
void _AfterForkInChild() {
  g_CachedPid.store(getpid(), std::memory_order_relaxed);
  ResetThreadDataListAfterForkInChild();
  pthread_mutexattr_t attr;
  pthread_mutexattr_init(&attr);
  pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&g_APIMutex, &attr);
  pthread_mutexattr_destroy(&attr);
}
[[maybe_unused]] const bool s_bForkHandlerInstalled =
    (pthread_atfork(_BeforeFork, _AfterForkInParent, _AfterForkInChild) == 0);
}  // namespace

pid_t CurrentPid() {
  pid_t pid = g_CachedPid.load(std::memory_order_relaxed);
  if (pid == 0) {
    pid = getpid();
    g_CachedPid.store(pid, std::memory_order_relaxed);
  }
  return pid;
}

void RegisterHandleFamily(HandleCleanupFn cleanup, HandleCountFn count) {
  int nIndex = _g_nHandleFamilies.fetch_add(1);
  SMGR_ASSERT(nIndex < kMaxHandleFamilies);
  if (nIndex < kMaxHandleFamilies) {
    _g_aHandleFamilies[nIndex] = {cleanup, count};
  } else {
    _g_nHandleFamilies = kMaxHandleFamilies;
  }
}

void RunHandleCleanups() {
  int nCount = std::min(_g_nHandleFamilies.load(), kMaxHandleFamilies);
  for (int i = 0; i < nCount; ++i) _g_aHandleFamilies[i].cleanup();
}

size_t LiveHandleCount() {
  size_t nLive = 0;
  int nCount = std::min(_g_nHandleFamilies.load(), kMaxHandleFamilies);
  for (int i = 0; i < nCount; ++i) nLive += _g_aHandleFamilies[i].count();
  return nLive;
}

BOOL WaitForResponse(WORD wRespType, WORD wSequence, int nTimeoutMs, size_t* pnReportedSize,
                     size_t* pnReceived) {
  if (g_nLibInitCount.load() < 1) SMGR_TRACE(6, "Called.\n");
  struct timeval start;
  int nTimeOfDayRc = smgr::Transport().timeOfDay(&start);
  SMGR_ASSERT_TEXT(nTimeOfDayRc == 0, "gettimeofday(&tStart, NULL) == 0");

  static unsigned long s_nReceiveErrors = 0;
  static time_t s_tLastReceiveErrorTrace = 0;
  for (;;) {
    if (wRespType != SMGRPROT_USER_CONNECT_RSP && _g_bSessmgrdAlreadyStarted) {
      SMGR_ASSERT_TEXT(g_SessMgrDaemonPID != 0, "g_SessMgrDaemonPID != 0");
      if (!IsValidPID(g_SessMgrDaemonPID)) {
        SessMgr_SetLastError(SMGR_ERROR_DAEMON_GONE);
        return FALSE;
      }
    }
    bool bSet = false;
    int nSelected = smgr::Transport().waitReadable(g_InMsgQID, &bSet);
    if (nSelected < 0) {
      int nErrno = errno;
      SessMgr_SetLastErrorEx(SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR, nErrno, nullptr);
      SMGR_TRACE(3, "Unexpected error code from select waiting for response from sessmgrd.\n");
      return FALSE;
    }
    if (nSelected == 0) {
      SMGR_TRACE(7, "Timeout occured.\n");
    } else {
      if (!bSet) SMGR_TRACE(4, "Select returned %d but mq fd (%d) is NOT SET.\n", nSelected, g_InMsgQID);
      ssize_t nBytes = smgr::Transport().receive(g_InMsgQID, reinterpret_cast<char*>(g_pInputBuffer),
                                                 static_cast<size_t>(g_nMaxMsgSize), nullptr);
      if (nBytes == 0) {
        SMGR_TRACE(4, "mq_receive returned ZERO bytes waiting for response to %hu request.\n",
                   static_cast<WORD>(wRespType - 1));
      } else if (nBytes < 0) {
        int nErrno = errno;
        ++s_nReceiveErrors;
        // Rate limit kept as it always was: the time starts at 0 and is only set
        // when the trace is written, so the trace never appears.
        time_t now = time(nullptr);
        if (now - s_tLastReceiveErrorTrace < 6) {
          s_tLastReceiveErrorTrace = now;
          char szErrno[80];
          SMGR_TRACE(
              4,
              "mq_receive returned %d waiting for response type %hu (err_count=%lu), errno (%d): \"%s\".\n",
              static_cast<int>(nBytes), wRespType, s_nReceiveErrors, nErrno,
              _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
        }
      } else {
        size_t nReceived = static_cast<size_t>(nBytes);
        SMGR_TRACE(7, "received msg of %d bytes.\n", static_cast<int>(nBytes));
        // A message shorter than the header reads as zeros where it ended.
        SMGRPROT_HEADER header;
        memset(&header, 0, sizeof(header));
        memcpy(&header, g_pInputBuffer, std::min(nReceived, sizeof(header)));
        if (header.wMsgType == wRespType && header.wMsgSequence == wSequence) {
          *pnReportedSize = header.wMsgSize;
          *pnReceived = nReceived;
          return TRUE;
        }
        if (header.wMsgType == wRespType) {
          SessMgr_SetLastError(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR);
          SMGR_TRACE(4, "received incorrect sequence of %hu vs expected %hu.\n", header.wMsgSequence,
                     wSequence);
        } else if (header.wMsgType == SMGRPROT_REQUEST_PROGRESS_IND) {
          DWORD nPercentageDone = 0;
          if (nReceived >= sizeof(SMGRPROT_MSG_REQUEST_PROGRESS_IND))
            memcpy(&nPercentageDone, g_pInputBuffer + sizeof(SMGRPROT_HEADER), sizeof(nPercentageDone));
          SMGR_TRACE(6, "received progress indication of %u%%.\n", nPercentageDone);
          continue;  // progress never counts against the time-out check of this round
        } else {
          SessMgr_SetLastError(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR);
          SMGR_TRACE(4, "received incorrect message type of %hu vs expected %hu.\n", header.wMsgType,
                     wRespType);
        }
      }
    }
    struct timeval now;
    struct timeval elapsed;
    smgr::Transport().timeOfDay(&now);
    CalcTimeOfDayAbsDiff(&now, &start, &elapsed);
    SMGR_TRACE(7, "Time spent for this request now at %d.%06d.\n", static_cast<int>(elapsed.tv_sec),
               static_cast<int>(elapsed.tv_usec));
    long nTimeoutSecs = nTimeoutMs / 1000;
    long nTimeoutMicros = static_cast<long>(nTimeoutMs % 1000) * 1000;
    if (elapsed.tv_sec > nTimeoutSecs ||
        (elapsed.tv_sec == nTimeoutSecs && elapsed.tv_usec >= nTimeoutMicros)) {
      SessMgr_SetLastError(SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR);
      SMGR_TRACE(3, "Timeout waiting for response from sessmgrd.\n");
      SMGR_TRACE(6, "Done.\n");
      return FALSE;
    }
  }
}

}  // namespace smgr

// ---- Exported operations ---------------------------------------------------------

BOOL SessMgrLib_Init(DWORD dwClientAPIVersion, DWORD* pdwActualAPIVersion) {
  _DebugInitOnce();
  SMGR_TRACE(5, "Called (dwClientAPIVersion=%d.%d, pdwActualAPIVersion=0x%x).\n",
             static_cast<int>(dwClientAPIVersion >> 16), static_cast<int>(dwClientAPIVersion & 0xFFFF),
             static_cast<unsigned>(reinterpret_cast<uintptr_t>(pdwActualAPIVersion)));
  if (dwClientAPIVersion != kSupportedApiVersion) {
    SessMgr_SetLastError(SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION);
    SMGR_TRACE(3, "Called with invalid client API version of %d.%d.\n",
               static_cast<int>(dwClientAPIVersion >> 16), static_cast<int>(dwClientAPIVersion & 0xFFFF));
    return FALSE;
  }
  if (pdwActualAPIVersion != nullptr) *pdwActualAPIVersion = kSupportedApiVersion;
  g_dwClientAPIVersion = kSupportedApiVersion;
  return _InitializeLibrary();
}

BOOL SessMgrLib_WaitForResponse(WORD wRespType, WORD wSequence, size_t* pnSize) {
  size_t nReported = 0;
  size_t nReceived = 0;
  BOOL bResult = smgr::WaitForResponse(wRespType, wSequence, g_nIPCRespTimeoutInMS, &nReported, &nReceived);
  if (bResult && pnSize != nullptr) *pnSize = nReported;
  return bResult;
}

BOOL AdaptToPIDChange(void) {
  _DebugInitOnce();
  SMGR_TRACE(5, "Need to adapt to PID change.\n");
  pthread_mutex_lock(&g_APIMutex);
  if (getpid() == g_ClientPID.load()) {  // another thread of this child got there first
    pthread_mutex_unlock(&g_APIMutex);
    return TRUE;
  }
  SMGR_TRACE(5, "Creating new client rx queue.\n");
  char szErrno[80];
  if (_g_ReceiveQueueOwnerPID != getpid()) {
    // The inherited descriptor is the parent's queue: drop this process's copy
    // of it (the parent keeps its own) and make a queue of our own.
    mqd_t inherited = g_InMsgQID;
    if (!_CreateReceiveQueue()) {
      int nErrno = errno;
      g_InMsgQID = inherited;
      SMGR_TRACE(2, "mq_open failed, errno=%d, \"%s\".\n", nErrno,
                 _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
      SMGR_ASSERT_TEXT(false, "0");
      pthread_mutex_unlock(&g_APIMutex);
      return FALSE;
    }
    if (inherited != static_cast<mqd_t>(-1)) smgr::Transport().close(inherited);
  }
  if (!_ReadReceiveQueueAttributes()) {
    int nErrno = errno;
    SMGR_TRACE(3, "mq_getattr failed, errno=%d, \"%s\".\n", nErrno,
               _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
  }
  if (!_EnsureInputBuffer()) {
    SMGR_TRACE(2, "Failed to allocate input buffer.\n");
    pthread_mutex_unlock(&g_APIMutex);
    return FALSE;
  }
  SMGRPROT_MSG_CONNECT_RSP response;
  switch (_Connect(&response)) {
    case ConnectOutcome::Connected:
      break;
    case ConnectOutcome::SendFailed:
      pthread_mutex_unlock(&g_APIMutex);
      return FALSE;
    case ConnectOutcome::NoResponse:
      SMGR_TRACE(3, "Didn't get any response.\n");
      pthread_mutex_unlock(&g_APIMutex);
      return FALSE;
    case ConnectOutcome::Refused:
      SMGR_TRACE(3, "Got wrong response.\n");
      pthread_mutex_unlock(&g_APIMutex);
      return FALSE;
  }
  SMGR_TRACE(5, "PID Change handling successful.\n");
  g_ClientPID = getpid();
  pthread_mutex_unlock(&g_APIMutex);
  return TRUE;
}

BOOL SessMgrLib_SetUID(uid_t UID) {
  SMGR_ASSERT_TEXT(g_nLibInitCount.load() > 0, "g_nLibInitCount > 0");
  if (!IsRootUser()) {
    SMGR_TRACE(3, "Rejecting non-root request to impersonate UID (%d).\n", static_cast<int>(UID));
    return FALSE;
  }
  char szUserName[80];
  if (!GetUserNameAndRightsFromUID(UID, szUserName, sizeof(szUserName), nullptr)) {
    SMGR_TRACE(3, "Invalid UID (%d) provided.\n", static_cast<int>(UID));
    return FALSE;
  }
  g_ClientUID = UID;
  SMGR_TRACE(5, "Will now impersonate user \"%s\".\n", szUserName);
  return TRUE;
}

BOOL SessMgr_Shutdown(void) {
  SMGR_ASSERT_TEXT(g_nLibInitCount.load() > 0, "g_nLibInitCount > 0");
  SMGR_TRACE(5, "Called ().\n");
  if (g_nLibInitCount.load() < 1) {
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  pthread_mutex_lock(&g_APIMutex);
  bool bSent = _SendNoResponseMessage(SMGRPROT_SYSTEM_SHUTDOWN_REQ,
                                      "Failed to send shutdown request to sessmgrd, errno (%d):%s.\n");
  pthread_mutex_unlock(&g_APIMutex);
  SMGR_TRACE(5, "Done (returning %s).\n", SMGR_BOOL_TEXT(bSent));
  return bSent ? TRUE : FALSE;
}

void SessMgrLib_Shutdown(void) {
  pthread_mutex_lock(&g_APIMutex);
  SMGR_TRACE(5, "Called, init count=%d.\n", g_nLibInitCount.load());
  if (getpid() != g_ClientPID.load()) {
    SMGR_TRACE(5, "Not doing cleanup since pid is not current one.\n");
    // A re-connect that failed in this child may have left a queue of its own.
    if (_g_ReceiveQueueOwnerPID == getpid()) _RemoveReceiveQueue();
    pthread_mutex_unlock(&g_APIMutex);
    return;
  }
  if (g_nLibInitCount.load() <= 0) {
    SMGR_ASSERT_TEXT(false, "g_nLibInitCount > 0");
    SessMgr_SetLastError(SMGR_ERROR_LIB_NOT_INITIALIZED);
  } else if (--g_nLibInitCount == 0) {
    SMGR_TRACE(5, "Sending disconnect indication to smgr.\n");
    _SendNoResponseMessage(SMGRPROT_USER_DISCONNECT_IND, "Failed to send disconnection indication.\n");
    SMGR_TRACE(5, "Cleaning handles.\n");
    smgr::RunHandleCleanups();
    _FreeInputBuffer();
    _RemoveReceiveQueue();
    if (g_OutMsgQID != static_cast<mqd_t>(-1)) {
      if (smgr::Transport().close(g_OutMsgQID) != 0) {
        int nErrno = errno;
        char szErrno[80];
        SMGR_TRACE(3, "Failed to close tx msg queue, errno=%d, \"%s\".\n", nErrno,
                   _ErrnoText(nErrno, szErrno, sizeof(szErrno)));
      }
      g_OutMsgQID = static_cast<mqd_t>(-1);
    }
    SMGR_TRACE(5, "Cleaning thread data.\n");
  }
  bool bRelease = _TakeInitDebugAttachment();
  pthread_mutex_unlock(&g_APIMutex);
  SMGR_TRACE(5, "Done.\n");
  if (bRelease) _ReleaseDebugChannel();
}

__attribute__((destructor)) void __SmgrAPILIB_AutoShutdown(void) {
  if (g_hSMGRApiDbg == nullptr) return;
  HDBG hDbg = g_hSMGRApiDbg;
  g_hSMGRApiDbg = nullptr;
  _DoDbgUninitEx(hDbg, __func__, __FILE__, __LINE__);
}
