// The ports of the library as automation objects: dictionary, vector, and what has ADO's members.
//
// These are the faces of WrapObject and UnwrapObject in this module: a port that goes out gets a
// face of its own, and a face that comes back is the port again.
#pragma once

#include "automation/border/platform.h"
#include "foundation/connection.h"
#include "foundation/dictionary.h"
#include "foundation/recordset.h"
#include "foundation/vector.h"

namespace tavcc::host_automation {

// Each returns a new object with one reference.
IDispatch* FaceOf(const DictionaryPtr& dictionary);  // Item (default), Lookup
IDispatch* FaceOf(const VectorPtr& vector);          // Item (default), Add, Size, bounds
IDispatch* FaceOf(const RecordsetPtr& recordset);    // ADODB.Recordset's reading members
IDispatch* FaceOf(const ConnectionPtr& connection);  // ADODB.Connection's members that rules use

// An object that is no port: a component of this module, or some other module's. It travels as it
// is.
class ForeignObject final : public Object {
 public:
  explicit ForeignObject(IDispatch* object) : object_(object) {}
  IDispatch* object() const { return object_.Get(); }

 private:
  automation::ComPtr<IDispatch> object_;
};

// The value of a new object, whose one reference it takes over.
Value OwnedObject(IDispatch* object);

}  // namespace tavcc::host_automation
