// Reading a form description (the text form or the binary component stream) into a live
// control tree, loading what can be loaded: an unknown class becomes a TUnknownControl, an
// unknown property or a value of the wrong type is skipped, and every such problem is reported
// with the component, the property and, for text, the line it stands on.
//
//   std::vector<TFormProblem> problems;
//   auto form = ReadFormDescription(bytes, problems);   // form->ClassName() == u"TForm"
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vex/platform/component.h"
#include "vex/platform/types.h"

namespace vex {

/// A part of a form description that could not be loaded.
struct TFormProblem {
  int32_t Line = 0;  ///< 1-based line in the text form; 0 when unknown (binary input)
  String Component;  ///< the component's name, or the unknown class's name
  String Property;   ///< the property path; empty for an unknown class
  String Message;    ///< the reader's message
};

/// Reads the description in `data` (binary when it starts with the component stream's
/// signature, text otherwise). A description that is not readable at all (bad text syntax, a
/// truncated stream) raises the converter's or reader's error; everything else loads.
std::unique_ptr<TComponent> ReadFormDescription(const TBytes& data,
                                                std::vector<TFormProblem>& problems);

}  // namespace vex
