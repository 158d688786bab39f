// A server for the tests: speaks TDS 7.4 on loopback, just enough for a driver to log in and send
// batches, and answers each with what the test laid down. A call of a procedure by its name is a
// batch, too: "EXEC sp_columns @table_name = N't'".
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "odbc/tds_answer.h"

namespace tavcc::testing {

// What becomes of an answer.
enum class Delivery {
  kWhole,
  kCutOff,          // half of it, then the connection is closed
  kUntilCancelled,  // nothing before the client asks to cancel, and then that it was
  kNever,           // nothing, whatever the client asks
};

class TdsResponder {
 public:
  // What answers the batches that have no answer of their own.
  using Answerer = std::function<TdsAnswer(const std::string& batch)>;

  // Listens at once, on a port of its own. Without `others`, a batch that has no answer of its own
  // ends well and has no rows.
  explicit TdsResponder(Answerer others = nullptr);
  ~TdsResponder();
  TdsResponder(const TdsResponder&) = delete;
  TdsResponder& operator=(const TdsResponder&) = delete;

  uint16_t port() const { return port_; }

  void Answer(std::string batch, const TdsAnswer& answer, Delivery delivery = Delivery::kWhole);
  void RefuseLogins(int32_t number, std::string_view text);

  // What came so far: the batches, and "cancel" for a request to cancel.
  std::vector<std::string> Received() const;

 private:
  struct Message {
    uint8_t type = 0;  // 0: the client has gone
    std::string body;
  };
  struct Planned {
    std::string bytes;
    Delivery delivery = Delivery::kWhole;
  };

  void Serve();
  void Talk(int client);
  // False when the connection ends here.
  bool Reply(int client, const std::string& batch);
  Planned Plan(const std::string& batch);
  static Message Read(int client);
  static void Write(int client, std::string_view bytes);

  const Answerer others_;
  int listener_ = -1;
  uint16_t port_ = 0;
  mutable std::mutex mutex_;  // of what follows
  std::string login_;
  std::map<std::string, Planned> answers_;
  std::vector<std::string> received_;
  int client_ = -1;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace tavcc::testing
