#include "foundation/plug_in.h"

namespace tavcc {

PlugIn::PlugIn(Host& host) : host_(host), db_context_(host.NewDbContext()) {
  user_context_ = db_context_->GetUserContext();
}

int PlugIn::InitObjects(std::string_view sDsn) {
  db_context_ = host_.NewDbContext();
  db_context_->Bind(sDsn);
  user_context_ = db_context_->GetUserContext();
  return 0;
}

}  // namespace tavcc
