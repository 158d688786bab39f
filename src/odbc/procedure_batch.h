// A procedure call as a batch.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "foundation/connection.h"

namespace tavcc::odbc {

// The batch that calls the procedure and returns, as its last result, one row with the output
// parameters in their order:
//
//   DECLARE @out1 nvarchar(max)
//   SET @out1 = N''
//   EXEC sp_Post @FID = 7, @Message = @out1 OUTPUT
//   SELECT @out1 AS [@Message]
//
// Errors: 13 for a parameter that is an object.
std::string ProcedureBatch(std::string_view name, std::span<const ProcedureParameter> parameters);

}  // namespace tavcc::odbc
