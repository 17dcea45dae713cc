// Handler registry, Reply builder and the dispatcher: size checks, unknown
// types and unmodelled families are answered here so that no family has to.
#include "dispatch.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "sim_log.h"

namespace sim {

Reply::Reply(const SMGRPROT_HEADER& request, WORD type, size_t size) : type_(type), bytes_(size, 0) {
  if (bytes_.size() < kResultOnlyResponseSize) bytes_.resize(kResultOnlyResponseSize, 0);
  SMGRPROT_HEADER header{};
  header.wMsgType = type;
  header.wMsgSequence = request.wMsgSequence;
  header.wMsgSize = static_cast<WORD>(bytes_.size());
  header.dwSrcPID = static_cast<DWORD>(getpid());
  header.dwSrcUID = static_cast<DWORD>(getuid());
  memcpy(bytes_.data(), &header, kHeaderSize);
}

void Reply::resize(size_t size) {
  if (size < kResultOnlyResponseSize) size = kResultOnlyResponseSize;
  bytes_.resize(size, 0);
  WORD wSize = static_cast<WORD>(size);
  memcpy(bytes_.data() + offsetof(SMGRPROT_HEADER, wMsgSize), &wSize, sizeof wSize);
}

Reply& Reply::result(SMGR_RESULT result) {
  memcpy(bytes_.data() + kResultOffset, &result, sizeof result);
  return *this;
}

SMGR_RESULT Reply::result() const {
  SMGR_RESULT result;
  memcpy(&result, bytes_.data() + kResultOffset, sizeof result);
  return result;
}

Reply& Reply::describe(const char* format, ...) {
  if (bytes_.size() < kDescriptionOffset + kDescriptionSize) return *this;
  char* text = reinterpret_cast<char*>(bytes_.data() + kDescriptionOffset);
  va_list args;
  va_start(args, format);
  vsnprintf(text, kDescriptionSize, format, args);
  va_end(args);
  return *this;
}

std::string Reply::description() const {
  if (bytes_.size() < kDescriptionOffset + kDescriptionSize) return {};
  const char* text = reinterpret_cast<const char*>(bytes_.data() + kDescriptionOffset);
  return std::string(text, strnlen(text, kDescriptionSize));
}

void Context::progress(unsigned percentDone) {
  SMGRPROT_MSG_REQUEST_PROGRESS_IND indication{};
  indication.Header.wMsgType = SMGRPROT_REQUEST_PROGRESS_IND;
  indication.Header.wMsgSequence = request_.wMsgSequence;
  indication.Header.wMsgSize = sizeof indication;
  indication.Header.dwSrcPID = static_cast<DWORD>(getpid());
  indication.Data.nPercentageDone = percentDone;
  outbox_.sendTo(client_.pid, &indication, sizeof indication);
}

HandlerRegistry& HandlerRegistry::Global() {
  static HandlerRegistry registry;
  return registry;
}

void HandlerRegistry::add(const char* family, const HandlerEntry& entry) {
  if (!handlers_.emplace(entry.request, entry).second) {
    fprintf(stderr, "sessmgrd-sim: message %u registered twice (family %s)\n", entry.request, family);
    abort();
  }
  if (families_.empty() || families_.back() != family) families_.push_back(family);
}

const HandlerEntry* HandlerRegistry::find(WORD type) const {
  auto it = handlers_.find(type);
  return it == handlers_.end() ? nullptr : &it->second;
}

FamilyRegistration::FamilyRegistration(const char* family, std::initializer_list<HandlerEntry> entries) {
  for (const HandlerEntry& entry : entries) HandlerRegistry::Global().add(family, entry);
}

void Dispatcher::send(const ClientInfo& client, const Reply& reply) {
  SIM_LOG_DEBUG("-> pid %u: type %u seq %u size %zu result %u", static_cast<unsigned>(client.pid),
                reply.type(), reinterpret_cast<const SMGRPROT_HEADER*>(reply.data())->wMsgSequence,
                reply.size(), reply.result());
  outbox_.sendTo(client.pid, reply.data(), reply.size());
}

void Dispatcher::dispatch(const ClientInfo& client, const uint8_t* message, size_t size) {
  if (size < kHeaderSize) {
    SIM_LOG_WARN("pid %u: %zu-byte message is shorter than a header, dropped",
                 static_cast<unsigned>(client.pid), size);
    return;
  }
  Request request(message, size);
  const SMGRPROT_HEADER& header = request.header();
  const HandlerEntry* entry = registry_.find(header.wMsgType);

  if (!entry) {
    if (IsCataloguedRequest(header.wMsgType)) {
      SIM_LOG_WARN("pid %u: request %u is not modelled by this simulator, answering %u",
                   static_cast<unsigned>(client.pid), header.wMsgType, SMGR_ERROR_UNSUPPORTED_API);
      Reply reply(header, static_cast<WORD>(ResponseTypeOf(header.wMsgType)), kDescribedResponseSize);
      reply.result(SMGR_ERROR_UNSUPPORTED_API).describe("Request %u is not supported", header.wMsgType);
      send(client, reply);
    } else {
      SIM_LOG_WARN("pid %u: unknown message type %u (%zu bytes), dropped", static_cast<unsigned>(client.pid),
                   header.wMsgType, size);
    }
    return;
  }

  if (header.wMsgSize != size || size != entry->requestSize) {
    SIM_LOG_WARN("pid %u: %s request with wMsgSize %u, %zu bytes received, %zu expected",
                 static_cast<unsigned>(client.pid), entry->name, header.wMsgSize, size, entry->requestSize);
    if (entry->response) {
      Reply reply(header, entry->response, entry->responseSize);
      reply.result(SMGR_ERROR_INVALID_PARAMETERS).describe("Malformed %s request", entry->name);
      send(client, reply);
    }
    return;
  }

  SIM_LOG_DEBUG("<- pid %u: %s (type %u seq %u)", static_cast<unsigned>(client.pid), entry->name,
                header.wMsgType, header.wMsgSequence);
  Reply reply(header, entry->response, entry->responseSize);
  Context context(appliance_, outbox_, client, header);
  try {
    entry->handler(context, request, reply);
  } catch (const std::exception& e) {
    SIM_LOG_ERROR("pid %u: %s handler failed: %s", static_cast<unsigned>(client.pid), entry->name, e.what());
    reply = Reply(header, entry->response, entry->responseSize);
    reply.result(SMGR_ERROR_GENERIC_FAILURE);
  }
  if (entry->response && !reply.suppressed()) send(client, reply);
}

}  // namespace sim
