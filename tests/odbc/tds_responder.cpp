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
constexpr uint8_t kCall = 0x03;
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

// Reads a request from its first byte to its last, without the headers that TDS 7.2 and later put
// before it. Behind the end there is nothing but zeros.
class Request {
 public:
  explicit Request(std::string_view body) : body_(body) { at_ = Number(2); }

  bool AtEnd() const { return at_ >= body_.size(); }
  size_t Number(int bytes) {
    size_t number = 0;
    for (int i = 0; i < bytes; ++i, ++at_) {
      const uint8_t byte = AtEnd() ? 0 : static_cast<uint8_t>(body_[at_]);
      number |= size_t{byte} << (8 * i);
    }
    return number;
  }
  std::string Text(size_t characters) {
    std::vector<SQLWCHAR> wide;
    while (characters-- > 0 && !AtEnd()) wide.push_back(static_cast<SQLWCHAR>(Number(2)));
    return odbc::FromWide(wide);
  }

 private:
  const std::string_view body_;
  size_t at_ = 0;
};

std::string BatchText(std::string_view body) {
  return Request(body).Text(body.size());
}

// The value of a parameter as a batch writes it: texts and whole numbers, which is what catalog
// functions take.
std::string ParameterText(Request& request) {
  constexpr size_t kNullText = 0xFFFF;
  const size_t type = request.Number(1);
  if (type == kIntN) {
    request.Number(1);
    const size_t bytes = request.Number(1);
    return bytes == 0 ? "NULL" : std::to_string(request.Number(static_cast<int>(bytes)));
  }
  if (type != kNVarChar) throw std::runtime_error("a parameter of a type that is not known here");
  request.Number(2);  // the longest text
  request.Number(5);  // the collation
  const size_t bytes = request.Number(2);
  if (bytes == kNullText) return "NULL";
  std::string literal = "N'";
  for (const char c : request.Text(bytes / 2)) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

// A call of a procedure by its name, as the batch that says the same.
std::string CallText(std::string_view body) {
  Request request(body);
  std::string text = "EXEC " + request.Text(request.Number(2));
  request.Number(2);  // options
  for (const char* before = " "; !request.AtEnd(); before = ", ") {
    text += before + request.Text(request.Number(1)) + " = ";
    request.Number(1);  // whether it comes back
    text += ParameterText(request);
  }
  return text;
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
      case kCall:
        if (!Reply(client, CallText(message.body))) return;
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
