// Reads arbitrary bytes as a component stream into a component with a property of every kind,
// strictly or with an error hook that skips what fails (first byte odd). Any failure must be a
// library exception and leave nothing half-loaded. What was read must write out, read back
// into a fresh component and write out again to the very same bytes.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "../tests/platform/component_test_classes.h"
#include "vex/platform/component_io.h"
#include "vex/platform/exceptions.h"

#include "fuzz_support.h"

namespace {

std::string Written(vex::TComponent& c) {
  vex::TMemoryStream out;
  vex::WriteComponent(out, c);
  return std::string(reinterpret_cast<const char*>(out.Memory()), static_cast<size_t>(out.Size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  vex::test::RegisterTestClasses();
  const bool lenient = (data[0] & 1) != 0;
  vex::TMemoryStream in;
  in.WriteBuffer(data + 1, static_cast<int64_t>(size - 1));
  in.SetPosition(0);
  vex::test::TTestOther root(nullptr);
  try {
    vex::ReadComponent(in, root, [lenient](vex::TReader&, const vex::String&, bool& handled) {
      handled = lenient;
    });
  } catch (const vex::Exception&) {
    vex_fuzz::Check(!root.Loading());
    return 0;
  }
  vex_fuzz::Check(!root.Loading());
  const std::string first = Written(root);
  vex::TMemoryStream again;
  again.WriteBuffer(first.data(), static_cast<int64_t>(first.size()));
  again.SetPosition(0);
  vex::test::TTestOther copy(nullptr);
  vex::ReadComponent(again, copy);
  vex_fuzz::Check(Written(copy) == first);
  return 0;
}
