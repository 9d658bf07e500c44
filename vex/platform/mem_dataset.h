// TMemDataSet: an in-memory table built from field definitions. The records live as long as
// the object; Close keeps them and Open shows them again.
//
//   TMemDataSet ds({{u"Id", ftAutoInc}, {u"Name", ftWideString}});
//   ds.Open();
//   ds.Append(); ds.FieldByName(u"Name").SetAsString(u"Bob"); ds.Post();   // Id becomes 1
#pragma once
#include <vector>

#include "vex/platform/dataset.h"

namespace vex {

/// A column of a TMemDataSet.
struct TFieldDef {
  String Name;
  TFieldType DataType = ftWideString;
};

class TMemDataSet : public TDataSet {
 public:
  TMemDataSet() = default;
  explicit TMemDataSet(std::vector<TFieldDef> field_defs) : field_defs_(std::move(field_defs)) {}
  ~TMemDataSet() override;

  /// The columns; changing them drops every record and takes effect at the next Open.
  const std::vector<TFieldDef>& FieldDefs() const { return field_defs_; }
  void SetFieldDefs(std::vector<TFieldDef> field_defs);

 protected:
  void InternalOpen() override;
  void InternalClose() override;
  /// Gives an ftAutoInc field left null the next number of its column (from 1).
  void InternalPost(Record& record, bool inserted) override;
  void InternalDelete(Record& /*record*/) override {}

 private:
  std::vector<TFieldDef> field_defs_;
  RecordList stored_;
  int64_t next_auto_inc_ = 1;
};

}  // namespace vex
