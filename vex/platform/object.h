// TObject, the root of every library class. An object reference in the library's API is a
// TObject*, so "when the object is a string list" reads as a dynamic_cast.
#pragma once

#include "vex/platform/types.h"

namespace vex {

class TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = default;
  TObject& operator=(const TObject&) = default;
  virtual ~TObject() = default;

  /// The class name without namespace, e.g. u"TStringList".
  virtual String ClassName() const;
  /// A text for the object; the class name unless a class says otherwise.
  virtual String ToString() const { return ClassName(); }
};

}  // namespace vex
