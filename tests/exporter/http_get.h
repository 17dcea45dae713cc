// A minimal HTTP/1.0 GET on loopback for the exporter's tests and benchmark:
// the body of http://127.0.0.1:PORT/PATH, or nullopt when nothing answered 200.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>
#include <string>

namespace exporter::test {

inline std::optional<std::string> HttpGet(int port, const std::string& path) {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) return std::nullopt;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  timeval timeout{5, 0};
  setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
  std::string response;
  if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    const std::string request = "GET " + path + " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n";
    if (send(fd, request.data(), request.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(request.size())) {
      char buffer[16384];
      for (ssize_t n; (n = recv(fd, buffer, sizeof buffer, 0)) > 0;) response.append(buffer, n);
    }
  }
  close(fd);
  const size_t body = response.find("\r\n\r\n");
  if (response.compare(0, 12, "HTTP/1.1 200") != 0 && response.compare(0, 12, "HTTP/1.0 200") != 0)
    return std::nullopt;
  if (body == std::string::npos) return std::nullopt;
  return response.substr(body + 4);
}

// A loopback TCP port nobody listens on right now.
inline int FreeLoopbackPort() {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
  close(fd);
  return ntohs(address.sin_port);
}

}  // namespace exporter::test
