// The in-memory daemon and queues of the fuzz targets (see fake_daemon.h).
// Under AddressSanitizer the receive buffer is poisoned past the bytes each
// receive delivered, so any read of a response beyond what arrived is a finding.
#include "fake_daemon.h"

#include <errno.h>
#include <fcntl.h>
#include <mqueue.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "request_engine.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SMGR_FUZZ_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define SMGR_FUZZ_ASAN 1
#endif
#ifdef SMGR_FUZZ_ASAN
#include <sanitizer/asan_interface.h>
#define POISON(p, n) ASAN_POISON_MEMORY_REGION((p), (n))
#define UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION((p), (n))
#else
#define POISON(p, n) ((void)(p), (void)(n))
#define UNPOISON(p, n) ((void)(p), (void)(n))
#endif

namespace smgr::fuzz {
namespace {

constexpr int kDaemonQueue = 100;  // descriptor of the daemon's request queue
constexpr long kSelectRoundMicros = 1'000'000;

FakeDaemon& D() { return FakeDaemon::instance(); }

mqd_t HookOpen(const char* szName, int nFlags, mode_t, struct mq_attr*) { return D().open(szName, nFlags); }
int HookClose(mqd_t queue) { return D().close(queue); }
int HookUnlink(const char* szName) { return D().unlink(szName); }
int HookGetattr(mqd_t queue, struct mq_attr* pAttr) {
  long nMsgSize = 0;
  long nCurMsgs = 0;
  if (D().getattr(queue, &nMsgSize, &nCurMsgs) != 0) return -1;
  memset(pAttr, 0, sizeof(*pAttr));
  pAttr->mq_maxmsg = 10;
  pAttr->mq_msgsize = nMsgSize;
  pAttr->mq_curmsgs = nCurMsgs;
  return 0;
}
int HookSend(mqd_t queue, const char* pb, size_t n, unsigned) { return D().send(queue, pb, n); }
int HookWaitReadable(mqd_t queue, bool* pbSet) { return D().waitReadable(queue, pbSet); }
ssize_t HookReceive(mqd_t queue, char* pb, size_t n, unsigned*) { return D().receive(queue, pb, n); }
int HookTimeOfDay(struct timeval* pNow) { return D().timeOfDay(pNow); }
BOOL HookUpTime(DWORD* pdwSeconds) {
  *pdwSeconds = FakeDaemon::kUpTimeSecs;
  return TRUE;
}
void HookSleepMicros(unsigned nMicros) { D().sleepMicros(nMicros); }

const smgr::TransportHooks kFakeTransport = {HookOpen,   HookClose,        HookUnlink,  HookGetattr,
                                             HookSend,   HookWaitReadable, HookReceive, HookTimeOfDay,
                                             HookUpTime, HookSleepMicros};

bool IsReceiveKind(Item::Kind kind) {
  return kind == Item::Kind::Message || kind == Item::Kind::ReceiveError || kind == Item::Kind::ZeroBytes;
}

}  // namespace

FakeDaemon& FakeDaemon::instance() {
  static FakeDaemon* daemon = new FakeDaemon;
  return *daemon;
}

void FakeDaemon::install() { smgr::SetTransportHooks(&kFakeTransport); }

void FakeDaemon::reset() {
  inbox.clear();
  requests.clear();
  delivered.clear();
  nOpenDaemonErrno = nCreateErrno = nGetattrErrno = nSendErrno = 0;
  nSendAttempts = 0;
  nResetMicros_ = nNowMicros_;
}

void FakeDaemon::answerWithValidResponses() {
  onRequest = [this](const Bytes& request) {
    const auto* pRow = smgr::test::FindRowByRequest(smgr::test::RequestType(request));
    if (smgr::test::RequestType(request) == SMGRPROT_USER_CONNECT_REQ) {
      Bytes answer = smgr::test::MakeMessage(SMGRPROT_USER_CONNECT_RSP, smgr::test::RequestSequence(request),
                                             sizeof(SMGRPROT_MSG_CONNECT_RSP));
      inbox.push_back({Item::Kind::Message, answer, 0, 0});
    } else if (pRow != nullptr) {
      inbox.push_back({Item::Kind::Message, pRow->validResponse(request), 0, 0});
    }
  };
}

long FakeDaemon::elapsedMicros() const { return static_cast<long>(nNowMicros_ - nResetMicros_); }

void FakeDaemon::advance(long nMicros) { nNowMicros_ += nMicros; }

int FakeDaemon::open(const char* szName, int nFlags) {
  if (szName == nullptr) {
    errno = EINVAL;
    return -1;
  }
  if ((nFlags & O_CREAT) == 0) {
    if (nOpenDaemonErrno != 0) {
      errno = nOpenDaemonErrno;
      return -1;
    }
    ++nOpen_;
    return kDaemonQueue;
  }
  if (nCreateErrno != 0) {
    errno = nCreateErrno;
    return -1;
  }
  ++nOpen_;
  ++nLinked_;
  inbox.clear();  // a fresh queue
  return nNextQueue_++;
}

int FakeDaemon::close(int queue) {
  if (queue < 0 || nOpen_ == 0) {
    errno = EBADF;
    return -1;
  }
  --nOpen_;
  return 0;
}

int FakeDaemon::unlink(const char*) {
  if (nLinked_ == 0) {
    errno = ENOENT;
    return -1;
  }
  --nLinked_;
  return 0;
}

int FakeDaemon::getattr(int queue, long* pnMsgSize, long* pnCurMsgs) {
  if (queue < 0 || nGetattrErrno != 0) {
    errno = nGetattrErrno != 0 ? nGetattrErrno : EBADF;
    return -1;
  }
  *pnMsgSize = nMsgSize;
  *pnCurMsgs = static_cast<long>(inbox.size());
  return 0;
}

int FakeDaemon::send(int queue, const char* pb, size_t n) {
  if (queue != kDaemonQueue) {
    errno = EBADF;
    return -1;
  }
  ++nSendAttempts;
  if (nSendErrno != 0) {
    errno = nSendErrno;
    return -1;
  }
  Bytes request(reinterpret_cast<const uint8_t*>(pb), reinterpret_cast<const uint8_t*>(pb) + n);
  requests.push_back(request);
  if (onRequest) onRequest(request);
  return 0;
}

int FakeDaemon::waitReadable(int queue, bool* pbSet) {
  *pbSet = false;
  if (queue < 0) {  // poll ignores a negative descriptor: a plain time-out
    advance(kSelectRoundMicros);
    return 0;
  }
  while (!inbox.empty() && inbox.front().kind == Item::Kind::ClockAdvance) {
    advance(inbox.front().nMicros);
    inbox.pop_front();
  }
  if (inbox.empty()) {
    advance(kSelectRoundMicros);
    return 0;
  }
  Item& item = inbox.front();
  switch (item.kind) {
    case Item::Kind::SelectTimeout:
      inbox.pop_front();
      advance(kSelectRoundMicros);
      return 0;
    case Item::Kind::SelectError: {
      int nErrno = item.nErrno;
      inbox.pop_front();
      errno = nErrno;
      return -1;
    }
    case Item::Kind::NotSet:
      inbox.pop_front();
      return 1;
    default:
      *pbSet = true;
      return 1;
  }
}

ssize_t FakeDaemon::receive(int queue, char* pb, size_t n) {
  if (queue < 0 || pb == nullptr) {
    errno = EBADF;
    return -1;
  }
  if (n < static_cast<size_t>(nMsgSize)) {
    errno = EMSGSIZE;
    return -1;
  }
  if (inbox.empty() || !IsReceiveKind(inbox.front().kind)) {
    errno = EAGAIN;
    return -1;
  }
  Item item = std::move(inbox.front());
  inbox.pop_front();
  switch (item.kind) {
    case Item::Kind::ReceiveError:
      errno = item.nErrno;
      return -1;
    case Item::Kind::ZeroBytes:
      return 0;
    default:
      break;
  }
  const size_t nLength = std::min(item.bytes.size(), static_cast<size_t>(nMsgSize));
  UNPOISON(pb, n);
  memcpy(pb, item.bytes.data(), nLength);
  POISON(pb + nLength, n - nLength);  // nothing past what arrived may be read
  delivered.push_back(Bytes(item.bytes.begin(), item.bytes.begin() + static_cast<ptrdiff_t>(nLength)));
  return static_cast<ssize_t>(nLength);
}

int FakeDaemon::timeOfDay(struct timeval* pNow) {
  pNow->tv_sec = static_cast<time_t>(nNowMicros_ / 1'000'000);
  pNow->tv_usec = static_cast<suseconds_t>(nNowMicros_ % 1'000'000);
  return 0;
}

// Item format (one tag byte, then the item's own bytes):
//   tag % 8 in 0..3  a message: u16 length (mod message size + 1), a fix-up byte f, then
//                    the bytes (zeros when the input ends). f & 3: type as given /
//                    the expected one / progress (5000) / a wrong one; (f >> 2) & 3:
//                    sequence as given / the request's / one before / a later one;
//                    f & 0x10: wMsgSize = the length; f & 0x20: Result 0;
//                    f & 0x40: Result a warning; f & 0x80: the bytes start as the
//                    valid response and the input patches up to 8 of them instead.
//   4  a select time-out      5  a transport fault (next byte: select error,
//   6  time passes (next byte x 37 ms)   not set, receive error, zero bytes)
//   7  the valid response, unchanged
void DecodeItems(smgr::test::ParamReader& in, WORD wExpectedType, WORD wSequence, const Bytes& validResponse,
                 size_t nMsgSize, size_t nMaxItems, std::deque<Item>* pItems) {
  for (size_t nItem = 0; nItem < nMaxItems; ++nItem) {
    const size_t nBefore = in.consumed();
    const uint8_t bTag = in.byte();
    if (in.consumed() == nBefore) return;  // input exhausted
    switch (bTag % 8) {
      case 4:
        pItems->push_back({Item::Kind::SelectTimeout, {}, 0, 0});
        break;
      case 5: {
        const uint8_t b = in.byte();
        static const Item::Kind kinds[] = {Item::Kind::SelectError, Item::Kind::NotSet,
                                           Item::Kind::ReceiveError, Item::Kind::ZeroBytes};
        static const int errnos[] = {EINTR, EBADF, EAGAIN, EMSGSIZE};
        pItems->push_back({kinds[b % 4], {}, 0, errnos[(b >> 2) % 4]});
        break;
      }
      case 6:
        pItems->push_back({Item::Kind::ClockAdvance, {}, static_cast<long>(in.byte()) * 37'000, 0});
        break;
      case 7:
        pItems->push_back({Item::Kind::Message, validResponse, 0, 0});
        break;
      default: {
        size_t nLength = in.byte();
        nLength |= static_cast<size_t>(in.byte()) << 8;
        nLength %= nMsgSize + 1;
        const uint8_t f = in.byte();
        Bytes message(std::max<size_t>(nLength, sizeof(SMGRPROT_HEADER) + 4), 0);
        if (f & 0x80) {
          std::copy_n(validResponse.begin(), std::min(validResponse.size(), message.size()), message.begin());
          const int nPatches = in.byte() % 9;
          for (int i = 0; i < nPatches && nLength > 0; ++i) {
            size_t nOffset = in.byte();
            nOffset |= static_cast<size_t>(in.byte()) << 8;
            message[nOffset % nLength] = in.byte();
          }
        } else {
          for (size_t i = 0; i < nLength; ++i) message[i] = in.byte();
        }
        SMGRPROT_HEADER header;
        memcpy(&header, message.data(), sizeof(header));
        const WORD types[] = {header.wMsgType, wExpectedType, SMGRPROT_REQUEST_PROGRESS_IND,
                              static_cast<WORD>(wExpectedType + 1 + (bTag >> 3))};
        const WORD sequences[] = {header.wMsgSequence, wSequence, static_cast<WORD>(wSequence - 1),
                                  static_cast<WORD>(wSequence + 1 + (bTag >> 3))};
        header.wMsgType = types[f & 3];
        header.wMsgSequence = sequences[(f >> 2) & 3];
        if (f & 0x10) header.wMsgSize = static_cast<WORD>(nLength);
        memcpy(message.data(), &header, sizeof(header));
        if (f & 0x60) {
          const SMGR_RESULT result = (f & 0x20) ? SMGR_ERROR_SUCCESS : (0x80000000u | in.byte());
          memcpy(message.data() + sizeof(SMGRPROT_HEADER), &result, sizeof(result));
        }
        message.resize(nLength);
        pItems->push_back({Item::Kind::Message, std::move(message), 0, 0});
        break;
      }
    }
  }
}

void Violation(const char* szWhat, const char* szDetail) {
  fprintf(stderr, "\n==FUZZ PROPERTY VIOLATED== %s %s\n", szWhat, szDetail);
  fflush(stderr);
  abort();
}

const std::vector<const smgr::test::OperationRow*>& ResponseRows() {
  static const auto* rows = [] {
    auto* list = new std::vector<const smgr::test::OperationRow*>;
    for (const auto& row : smgr::test::OperationTable())
      if (row.invoke != nullptr && row.validResponse != nullptr) list->push_back(&row);
    return list;
  }();
  return *rows;
}

void WriteSeedsIfAsked() {
  const char* szDir = getenv("SMGR_FUZZ_WRITE_SEEDS");
  if (szDir == nullptr || *szDir == '\0') return;
  const std::vector<Bytes> seeds = SeedInputs();
  for (size_t i = 0; i < seeds.size(); ++i) {
    char szPath[4096];
    snprintf(szPath, sizeof(szPath), "%s/seed-%03zu", szDir, i);
    FILE* pFile = fopen(szPath, "wb");
    if (pFile == nullptr) {
      fprintf(stderr, "cannot write %s\n", szPath);
      exit(1);
    }
    fwrite(seeds[i].data(), 1, seeds[i].size(), pFile);
    fclose(pFile);
  }
  fprintf(stderr, "wrote %zu seeds to %s\n", seeds.size(), szDir);
  exit(0);
}

void PrepareEnvironment() {
  // One settings file shared by every fuzz process (same content, rewritten
  // at each start): libFuzzer may end a process without running exit handlers.
  const char* szSettings = "/tmp/smgrfuzz-settings.ini";
  FILE* pFile = fopen(szSettings, "w");
  if (pFile != nullptr) {
    fputs("[API Library]\nInitIPCTimeout=0\nResponseTimeout=10000\n", pFile);
    fclose(pFile);
  }
  setenv("SESSMGR_SETTINGS_FILE", szSettings, 1);
  setenv("SESSMGR_STARTED_MARKER", "/tmp/smgrfuzz-no-such-marker", 1);
  setenv("SESSMGR_DAEMON_QUEUE", "/smgrfuzz-no-such-queue", 1);
}

void StartConnectedLibrary() {
  WriteSeedsIfAsked();
  PrepareEnvironment();
  FakeDaemon& daemon = FakeDaemon::instance();
  daemon.install();
  daemon.reset();
  daemon.answerWithValidResponses();
  if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) Violation("canned initialisation failed");
}

}  // namespace smgr::fuzz
