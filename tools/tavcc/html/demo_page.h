// tavcc demo as a page.
#pragma once

#include <string>
#include <vector>

#include "tavcc/batch_report.h"

namespace tavcc {

// One call of a single bill, with the bill's row before and after it.
struct DemoScene {
  std::string title;
  std::string call;  // "cls_CX.AuditBill(lngFID=121)"
  Exit verdict = Exit::kFailed;
  std::string message;
  std::vector<std::string> columns;
  std::vector<std::string> before;  // empty where there is no such bill
  std::vector<std::string> after;
  std::vector<Stretch> sent;
};

struct DemoReport {
  BatchReport audit;
  BatchReport un_audit;
  std::vector<DemoScene> scenes;
};

std::string DemoPage(const DemoReport& report);

}  // namespace tavcc
