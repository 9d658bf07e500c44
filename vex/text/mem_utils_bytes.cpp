// TMemUtils: byte arrays.
#include "vex/text/mem_utils.h"

namespace vex {

void TMemUtils::AppendBytes(TBytes& Dest, const TBytes& Source) {
  if (&Dest == &Source) {
    // Inserting a vector's own range into it is undefined; append a copy instead.
    const TBytes copy = Source;
    Dest.insert(Dest.end(), copy.begin(), copy.end());
    return;
  }
  Dest.insert(Dest.end(), Source.begin(), Source.end());
}

}  // namespace vex
