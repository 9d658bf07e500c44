// TMemDataSet: field definitions and automatic numbers over the records TDataSet holds.
#include "vex/platform/mem_dataset.h"

#include <algorithm>

#include "vex/platform/exceptions.h"

namespace vex {

TMemDataSet::~TMemDataSet() = default;

void TMemDataSet::SetFieldDefs(std::vector<TFieldDef> field_defs) {
  if (Active()) DatabaseError(u"Cannot perform this operation on an open dataset");
  field_defs_ = std::move(field_defs);
  stored_.clear();
  next_auto_inc_ = 1;
}

void TMemDataSet::InternalOpen() {
  for (const TFieldDef& def : field_defs_) AddField(def.Name, def.DataType);
  for (Record& record : stored_) AddRecord(record.key, std::move(record.values));
  stored_.clear();
}

void TMemDataSet::InternalClose() { stored_ = std::move(Records()); }

void TMemDataSet::InternalPost(Record& record, bool inserted) {
  for (int32_t i = 0; i < FieldCount(); ++i) {
    if (Fields(i)->DataType() != ftAutoInc) continue;
    Variant& value = record.values[i];
    if (inserted && value.IsNull()) {
      value = static_cast<int32_t>(next_auto_inc_++);
    } else if (!value.IsNull()) {
      next_auto_inc_ = std::max(next_auto_inc_, value.AsInt64() + 1);
    }
  }
}

}  // namespace vex
