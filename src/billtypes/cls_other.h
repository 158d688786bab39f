// clsOtherIn and clsOtherOut: the save and delete hooks of the other receipt and the other issue
// bill, both kept in t_CC_StockBill.
//
// AfterSave records the bill's serial numbers and clears FIntent of its customer (customer 0 where
// the bill names none); the result is Empty. Errors: see save_hook.h.
//
// BeforeDel refuses (error -5) a bill that is audited, foreign, dated before the current period, or
// has a serial number that was recorded again later; it returns 0. Errors: 3021 when the bill has
// no head row; the host's and the database's.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

namespace cls_other_in {
Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType,
                Vector& vctClassTypeEntry, Dictionary& dctTableInfo, Dictionary& dctData,
                Dictionary& dctLink);
Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary& dctClassType,
                int32_t nInterID);
}  // namespace cls_other_in

namespace cls_other_out {
Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary& dctClassType,
                int32_t nInterID);
Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType,
                Vector& vctClassTypeEntry, Dictionary& dctTableInfo, Dictionary& dctData,
                Dictionary& dctLink);
}  // namespace cls_other_out

}  // namespace tavcc
