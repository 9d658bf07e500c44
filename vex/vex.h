// Umbrella header: includes every public header of vex::common.
#pragma once

#include "vex/companion/query_list.h"
#include "vex/core/base_const.h"
#include "vex/core/base_types.h"
#include "vex/patterns/reg_exp_utils.h"
#include "vex/patterns/regex.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object.h"
#include "vex/platform/random.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/types.h"
#include "vex/platform/unicode.h"
#include "vex/text/integer_utils.h"
#include "vex/text/mem_utils.h"
#include "vex/text/string_utils.h"
