#include "vex/platform/object.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <typeinfo>

#include "vex/platform/unicode.h"

namespace vex {

String TObject::ClassName() const {
  const char* mangled = typeid(*this).name();
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> demangled(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &status), std::free);
  std::string name = (status == 0 && demangled) ? demangled.get() : mangled;
  if (auto colon = name.rfind("::"); colon != std::string::npos) name.erase(0, colon + 2);
  return FromUtf8(name, TInvalidText::Replace);
}

}  // namespace vex
