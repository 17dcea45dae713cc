// How requests reach the families: a registry of handlers keyed by message
// type (each family file registers its handlers from one static
// FamilyRegistration), the Reply builder that sizes and fills responses, and
// the Dispatcher that checks a request against its handler's declared sizes.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "appliance.h"
#include "sim_protocol.h"

namespace sim {

// A connected client process, known by the receive queue named in its connect request.
struct ClientInfo {
  pid_t pid = 0;
  uid_t uid = 0;
  std::string queueName;
  std::string processName;
};

// Where responses and indications go. The server sends on the client's queue
// (non-blocking); tests capture.
class Outbox {
 public:
  virtual ~Outbox() = default;
  virtual bool sendTo(pid_t pid, const void* data, size_t size) = 0;
  // Largest message the client's receive queue takes.
  virtual size_t messageLimit(pid_t pid) = 0;
};

// One received request; the bytes are the whole message, header included.
class Request {
 public:
  Request(const uint8_t* data, size_t size) : data_(data), size_(size) {
    memcpy(&header_, data, kHeaderSize);
  }
  const SMGRPROT_HEADER& header() const { return header_; }
  size_t size() const { return size_; }
  const uint8_t* data() const { return data_; }
  // The message as its record; the dispatcher has checked the size already.
  template <typename T>
  T as() const {
    T record{};
    memcpy(&record, data_, sizeof(T) < size_ ? sizeof(T) : size_);
    return record;
  }

 private:
  SMGRPROT_HEADER header_;
  const uint8_t* data_;
  size_t size_;
};

// A response under construction: zeroed, header filled (type, the request's
// sequence, size, the simulator's PID).
class Reply {
 public:
  Reply(const SMGRPROT_HEADER& request, WORD type, size_t size);

  WORD type() const { return type_; }
  size_t size() const { return bytes_.size(); }
  const uint8_t* data() const { return bytes_.data(); }
  uint8_t* data() { return bytes_.data(); }
  // Changes the size (variable-length enumerations); new bytes are zero.
  void resize(size_t size);

  // Access the whole message as its record type; the reply must be at least that large.
  template <typename T>
  T* as() {
    if (bytes_.size() < sizeof(T)) resize(sizeof(T));
    return reinterpret_cast<T*>(bytes_.data());
  }

  Reply& result(SMGR_RESULT result);
  SMGR_RESULT result() const;
  // Writes szErrorDescription; only for responses that carry one (180 bytes and more).
  Reply& describe(const char* format, ...) __attribute__((format(printf, 2, 3)));
  std::string description() const;
  // The handler answers nothing (an indication, or a reply it has sent itself).
  void suppress() { suppressed_ = true; }
  bool suppressed() const { return suppressed_; }

 private:
  WORD type_;
  std::vector<uint8_t> bytes_;
  bool suppressed_ = false;
};

class Context {
 public:
  Context(Appliance& appliance, Outbox& outbox, const ClientInfo& client, const SMGRPROT_HEADER& request)
      : appliance_(appliance), outbox_(outbox), client_(client), request_(request) {}
  Appliance& appliance() { return appliance_; }
  const ClientInfo& client() const { return client_; }
  // Largest response the client can receive.
  size_t messageLimit() { return outbox_.messageLimit(client_.pid); }
  // Sends a progress indication (5000) for the request being handled.
  void progress(unsigned percentDone);

 private:
  Appliance& appliance_;
  Outbox& outbox_;
  const ClientInfo& client_;
  SMGRPROT_HEADER request_;
};

using HandlerFn = std::function<void(Context&, const Request&, Reply&)>;

// A request type that a family answers.
struct HandlerEntry {
  WORD request = 0;
  const char* name = "";
  size_t requestSize = 0;   // exact wMsgSize the request must have
  WORD response = 0;        // 0: the request has no response
  size_t responseSize = 0;  // initial size of the reply
  HandlerFn handler;
};

class HandlerRegistry {
 public:
  static HandlerRegistry& Global();
  // Aborts on a duplicate type: two families claiming one message is a build mistake.
  void add(const char* family, const HandlerEntry& entry);
  const HandlerEntry* find(WORD type) const;
  const std::map<WORD, HandlerEntry>& entries() const { return handlers_; }
  const std::vector<std::string>& families() const { return families_; }
  size_t size() const { return handlers_.size(); }

 private:
  std::map<WORD, HandlerEntry> handlers_;
  std::vector<std::string> families_;
};

// Static registration object: one per family file.
struct FamilyRegistration {
  FamilyRegistration(const char* family, std::initializer_list<HandlerEntry> entries);
};

// Runs one request of a connected client through the registry and sends the reply.
class Dispatcher {
 public:
  Dispatcher(Appliance& appliance, Outbox& outbox,
             const HandlerRegistry& registry = HandlerRegistry::Global())
      : appliance_(appliance), outbox_(outbox), registry_(registry) {}

  void dispatch(const ClientInfo& client, const uint8_t* message, size_t size);

 private:
  void send(const ClientInfo& client, const Reply& reply);

  Appliance& appliance_;
  Outbox& outbox_;
  const HandlerRegistry& registry_;
};

}  // namespace sim
