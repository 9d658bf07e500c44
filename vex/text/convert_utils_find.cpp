// TConvertUtils: find-dialog options to buffer-search options.
#include "vex/text/convert_utils.h"

namespace vex {

TStringSearchOptions TConvertUtils::ConvertFindOptions(TFindOptions Options) {
  TStringSearchOptions result;
  if (Options.Contains(frDown)) result.Include(soDown);
  if (Options.Contains(frMatchCase)) result.Include(soMatchCase);
  if (Options.Contains(frWholeWord)) result.Include(soWholeWord);
  return result;
}

}  // namespace vex
