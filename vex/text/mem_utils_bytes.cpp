// TMemUtils: byte arrays and memory blocks.
#include "vex/text/mem_utils.h"

#include "vex/platform/memory.h"

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

void TMemUtils::AdviseHugePages(const void* Data, size_t Bytes) {
  vex::AdviseHugePages(Data, Bytes);
}

}  // namespace vex
