#include "odbc/tds_responder.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "odbc/text.h"

namespace tavcc::testing {
namespace {

// Kinds of packets.
constexpr uint8_t kBatch = 0x01;
constexpr uint8_t kAnswer = 0x04;
constexpr uint8_t kAttention = 0x06;
constexpr uint8_t kLogin = 0x10;
constexpr uint8_t kPreLogin = 0x12;

constexpr size_t kHeader = 8;
constexpr size_t kPacket = 4096;
constexpr char kLastOfMessage = 0x01;

// VERSION 16.0, ENCRYPTION "not supported", the end; then their values.
constexpr std::string_view kPreLoginAnswer(
    "\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF\x10\x00\x00\x00\x00\x00\x02", 18);
// A DONE that acknowledges the request to cancel.
constexpr std::string_view kCancelled("\xFD\x20\x00\x00\x00\0\0\0\0\0\0\0\0", 13);

bool ReadExactly(int client, std::string& bytes, size_t count) {
  bytes.resize(count);
  for (size_t at = 0; at < count;) {
    const ssize_t got = recv(client, bytes.data() + at, count - at, 0);
    if (got <= 0) return false;
    at += static_cast<size_t>(got);
  }
  return true;
}

// The text of a batch, behind the headers that TDS 7.2 and later put before it.
std::string BatchText(std::string_view body) {
  const auto byte = [&](size_t at) { return static_cast<uint8_t>(body[at]); };
  const size_t headers = size_t{byte(0)} | size_t{byte(1)} << 8;
  std::vector<SQLWCHAR> wide;
  for (size_t at = headers; at + 1 < body.size(); at += 2) {
    wide.push_back(static_cast<SQLWCHAR>(byte(at) | byte(at + 1) << 8));
  }
  return odbc::FromWide(wide);
}

}  // namespace

TdsResponder::TdsResponder(Answerer others)
    : others_(std::move(others)), login_(TdsAnswer().LoginAccepted().Statement(0).Bytes()) {
  listener_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (listener_ < 0 || bind(listener_, any, size) != 0 || listen(listener_, 4) != 0 ||
      getsockname(listener_, any, &size) != 0) {
    throw std::runtime_error("no port of loopback can be had");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

TdsResponder::~TdsResponder() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    shutdown(listener_, SHUT_RDWR);
    if (client_ >= 0) shutdown(client_, SHUT_RDWR);
  }
  thread_.join();
  close(listener_);
}

void TdsResponder::Answer(std::string batch, const TdsAnswer& answer, Delivery delivery) {
  const std::lock_guard lock(mutex_);
  answers_[std::move(batch)] = {answer.Bytes(), delivery};
}

void TdsResponder::RefuseLogins(int32_t number, std::string_view text) {
  const std::lock_guard lock(mutex_);
  login_ = TdsAnswer().Error(number, text).Statement(0).Bytes();
}

std::vector<std::string> TdsResponder::Received() const {
  const std::lock_guard lock(mutex_);
  return received_;
}

void TdsResponder::Serve() {
  for (;;) {
    const int client = accept(listener_, nullptr, nullptr);
    {
      const std::lock_guard lock(mutex_);
      if (ending_ || client < 0) {
        if (client >= 0) close(client);
        return;
      }
      client_ = client;
    }
    Talk(client);
    const std::lock_guard lock(mutex_);
    client_ = -1;
    close(client);
  }
}

void TdsResponder::Talk(int client) {
  for (;;) {
    const Message message = Read(client);
    switch (message.type) {
      case kPreLogin:
        Write(client, kPreLoginAnswer);
        break;
      case kLogin: {
        const std::lock_guard lock(mutex_);
        Write(client, login_);
        break;
      }
      case kBatch:
        if (!Reply(client, BatchText(message.body))) return;
        break;
      case kAttention:
        // A request that comes after the answer.
        Write(client, kCancelled);
        break;
      default:
        return;
    }
  }
}

bool TdsResponder::Reply(int client, const std::string& batch) {
  const Planned planned = Plan(batch);
  if (planned.delivery == Delivery::kWhole) {
    Write(client, planned.bytes);
    return true;
  }
  if (planned.delivery == Delivery::kCutOff) {
    Write(client, std::string_view(planned.bytes).substr(0, planned.bytes.size() / 2));
    return false;
  }
  if (Read(client).type != kAttention) return false;
  {
    const std::lock_guard lock(mutex_);
    received_.emplace_back("cancel");
  }
  if (planned.delivery == Delivery::kUntilCancelled) {
    Write(client, kCancelled);
    return true;
  }
  return Read(client).type != 0;  // until the client has had enough
}

TdsResponder::Planned TdsResponder::Plan(const std::string& batch) {
  const std::lock_guard lock(mutex_);
  received_.push_back(batch);
  const auto found = answers_.find(batch);
  if (found != answers_.end()) return found->second;
  return {(others_ ? others_(batch) : TdsAnswer().Statement(0)).Bytes()};
}

TdsResponder::Message TdsResponder::Read(int client) {
  Message message;
  std::string header, body;
  do {
    if (!ReadExactly(client, header, kHeader)) return {};
    const size_t length =
        static_cast<size_t>(static_cast<uint8_t>(header[2])) << 8 | static_cast<uint8_t>(header[3]);
    if (!ReadExactly(client, body, length - kHeader)) return {};
    message.type = static_cast<uint8_t>(header[0]);
    message.body += body;
  } while ((header[1] & kLastOfMessage) == 0);
  return message;
}

void TdsResponder::Write(int client, std::string_view bytes) {
  do {
    const size_t size = std::min(bytes.size(), kPacket - kHeader);
    const bool last = size == bytes.size();
    const size_t length = size + kHeader;
    std::string packet{static_cast<char>(kAnswer), last ? kLastOfMessage : '\0',
                       static_cast<char>(length >> 8), static_cast<char>(length & 0xFF)};
    packet += std::string(4, '\0');
    packet += bytes.substr(0, size);
    if (send(client, packet.data(), packet.size(), MSG_NOSIGNAL) < 0) return;
    bytes.remove_prefix(size);
  } while (!bytes.empty());
}

}  // namespace tavcc::testing
