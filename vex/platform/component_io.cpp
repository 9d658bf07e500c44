#include "vex/platform/component_io.h"

#include <algorithm>
#include <cmath>

#include "vex/platform/object_stream.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {

namespace {

String Utf16(const std::string& utf8) { return FromUtf8(utf8, TInvalidText::Replace); }
std::string Utf8(const String& text) { return ToUtf8(text, TInvalidText::Replace); }

[[noreturn]] void RaiseInvalidValue() { throw EReadError(u"Invalid property value"); }

[[noreturn]] void RaiseUnknownProperty(const String& name) {
  throw EReadError(u"Property " + name + u" does not exist");
}

// A currency is held as a 64-bit count of ten-thousandths.
bool CurrencyFits(long double value) {
  const long double units = value * 10000.0L;
  return units > -9223372036854775808.0L && units < 9223372036854775807.0L;
}

bool IsIntegerCode(TValueType t) {
  return t == vaInt8 || t == vaInt16 || t == vaInt32 || t == vaInt64;
}
bool IsFloatCode(TValueType t) {
  return IsIntegerCode(t) || t == vaExtended || t == vaSingle || t == vaCurrency || t == vaDate ||
         t == vaDouble;
}
bool IsStringCode(TValueType t) {
  return t == vaString || t == vaLString || t == vaWString || t == vaUTF8String;
}
bool IsIdentCode(TValueType t) {
  return t == vaIdent || t == vaFalse || t == vaTrue || t == vaNil || t == vaNull;
}

// The name an error message gives the object being read: a component's name, or
// its class name when it has none (collection items, unnamed components).
String DisplayName(const TPersistent& instance) {
  const auto* c = dynamic_cast<const TComponent*>(&instance);
  if (c != nullptr && !c->Name().empty()) return c->Name();
  return instance.ClassInfo().Name();
}

// Counts one level of nesting for a scope; too deep a stream raises instead of exhausting the
// stack.
class DepthGuard {
 public:
  explicit DepthGuard(int& depth) : depth_(depth) {
    if (++depth_ > kMaxObjectStreamDepth) {
      --depth_;
      throw EReadError(u"Objects are nested too deeply");
    }
  }
  ~DepthGuard() { --depth_; }
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;

 private:
  int& depth_;
};

}  // namespace

// --- TWriter
// ---------------------------------------------------------------------------------

TWriter::TWriter(TStream& stream) : out_(std::make_unique<TBinaryObjectWriter>(stream)) {}

TWriter::~TWriter() = default;

void TWriter::WriteRootComponent(TComponent& root) {
  root_ = &root;
  out_->WriteSignature();
  WriteComponent(root);
}

void TWriter::WriteComponent(TComponent& component) {
  component.SetState(csWriting, true);
  try {
    out_->WriteObjectHeader(Utf8(component.ClassInfo().Name()), Utf8(component.Name()));
    component.WriteState(*this);
  } catch (...) {
    component.SetState(csWriting, false);
    throw;
  }
  component.SetState(csWriting, false);
}

void TWriter::WriteData(TComponent& instance) {
  WriteProperties(instance, String());
  out_->WriteListEnd();
  instance.GetChildren([this](TComponent* child) { WriteComponent(*child); }, root_);
  out_->WriteListEnd();
}

void TWriter::WriteProperties(const TPersistent& instance, const String& prefix) {
  for (const TPropInfo* prop : instance.ClassInfo().Properties()) {
    if (prop->IsStored(instance)) WriteProperty(instance, *prop, prefix);
  }
  // DefineProperties names its data relative to the object being written.
  String saved = prefix_;
  prefix_ = prefix;
  const_cast<TPersistent&>(instance).DefineProperties(*this);
  prefix_ = saved;
}

void TWriter::WriteProperty(const TPersistent& instance, const TPropInfo& prop,
                            const String& prefix) {
  const String name = prefix + prop.name;
  switch (prop.kind) {
    case pkStrings: {
      const auto* list = dynamic_cast<const TStrings*>(prop.get_object(instance));
      if (list == nullptr || list->Count() == 0) return;
      out_->WritePropertyName(Utf8(name + u".Strings"));
      out_->WriteListBegin();
      for (int32_t i = 0; i < list->Count(); ++i) out_->WriteString(list->Strings(i));
      out_->WriteListEnd();
      return;
    }
    case pkPersistent: {
      const auto* nested = dynamic_cast<const TPersistent*>(prop.get_object(instance));
      if (nested != nullptr) WriteProperties(*nested, name + u".");
      return;
    }
    case pkCollection: {
      const auto* collection = dynamic_cast<const TCollection*>(prop.get_object(instance));
      if (collection == nullptr || collection->Count() == 0) return;
      out_->WritePropertyName(Utf8(name));
      WriteCollection(*collection);
      return;
    }
    default:
      break;
  }
  if (prop.IsDefault(instance)) return;
  out_->WritePropertyName(Utf8(name));
  WriteSimpleValue(instance, prop);
}

void TWriter::WriteSimpleValue(const TPersistent& instance, const TPropInfo& prop) {
  switch (prop.kind) {
    case pkInteger:
    case pkInt64:
      out_->WriteInteger(prop.get_ordinal(instance));
      break;
    case pkBoolean:
      out_->WriteBoolean(prop.get_ordinal(instance) != 0);
      break;
    case pkEnumeration:
      out_->WriteIdent(Utf8(EnumName(prop, prop.get_ordinal(instance))));
      break;
    case pkSet: {
      std::vector<std::string> names;
      const auto bits = static_cast<uint64_t>(prop.get_ordinal(instance));
      for (size_t i = 0; i < prop.names.size() && i < 64; ++i) {
        if ((bits >> i) & 1U) names.push_back(Utf8(prop.names[i]));
      }
      out_->WriteSet(names);
      break;
    }
    case pkFloat:
      WriteFloatValue(prop.float_kind, prop.get_float(instance));
      break;
    case pkString:
      out_->WriteString(prop.get_string(instance));
      break;
    case pkEvent:
      out_->WriteIdent(Utf8(prop.get_string(instance)));
      break;
    case pkBinary:
      out_->WriteBinary(prop.get_bytes(instance));
      break;
    case pkComponent:
      out_->WriteIdent(Utf8(ReferenceName(prop.get_component(instance))));
      break;
    case pkStrings:
    case pkPersistent:
    case pkCollection:
      break;
  }
}

void TWriter::WriteFloatValue(TFloatKind flavour, long double value) {
  switch (flavour) {
    case fkSingle:
      out_->WriteSingle(static_cast<float>(value));
      break;
    case fkCurrency:
      if (!CurrencyFits(value)) throw EWriteError(u"Currency value out of range");
      out_->WriteCurrency(static_cast<int64_t>(std::llroundl(value * 10000.0L)));
      break;
    case fkDate:
      out_->WriteDate(static_cast<double>(value));
      break;
    case fkExtended:
    case fkDouble:
      out_->WriteExtended(value);
      break;
  }
}

void TWriter::WriteCollection(const TCollection& collection) {
  out_->WriteCollectionBegin();
  for (int32_t i = 0; i < collection.Count(); ++i) {
    out_->WriteCollectionItemBegin();
    WriteProperties(*collection.Items(i), String());
    out_->WriteListEnd();
  }
  out_->WriteListEnd();
}

String TWriter::ReferenceName(const TComponent* component) const {
  if (component == root_ || component->Owner() == root_ || component->Owner() == nullptr) {
    return component->Name();
  }
  return component->Owner()->Name() + u"." + component->Name();
}

void TWriter::DefineProperty(const String& name, const TReaderProc& /*read*/,
                             const TWriterProc& write, bool has_data) {
  if (!has_data || !write) return;
  out_->WritePropertyName(Utf8(prefix_ + name));
  write(*this);
}

void TWriter::DefineBinaryProperty(const String& name, const TStreamProc& /*read*/,
                                   const TStreamProc& write, bool has_data) {
  if (!has_data || !write) return;
  TMemoryStream data;
  write(data);
  out_->WritePropertyName(Utf8(prefix_ + name));
  out_->WriteBinary(data.Memory(), static_cast<size_t>(data.Size()));
}

void TWriter::WriteInteger(int64_t value) { out_->WriteInteger(value); }
void TWriter::WriteBoolean(bool value) { out_->WriteBoolean(value); }
void TWriter::WriteFloat(long double value) { out_->WriteExtended(value); }
void TWriter::WriteString(const String& value) { out_->WriteString(value); }
void TWriter::WriteIdent(const String& value) { out_->WriteIdent(Utf8(value)); }
void TWriter::WriteListBegin() { out_->WriteListBegin(); }
void TWriter::WriteListEnd() { out_->WriteListEnd(); }

// --- TReader
// ---------------------------------------------------------------------------------

// A component reference read as a name, assigned once the whole stream is read.
struct TReader::Fixup {
  TPersistent* instance;
  const TPropInfo* prop;
  String name;
  TComponent* component;  // the component being read when the reference was met
};

TReader::TReader(TStream& stream) : in_(std::make_unique<TBinaryObjectReader>(stream)) {}

TReader::~TReader() = default;

TComponent* TReader::ReadRootComponent(TComponent* root) {
  in_->ReadSignature();
  TObjectHeader header = in_->ReadObjectHeader();
  std::unique_ptr<TComponent> created;
  if (root == nullptr) {
    created = CreateComponent(Utf16(header.class_name));
    root = created.get();
  }
  root_ = root;
  owner_ = root;
  parent_ = root;
  loaded_.clear();
  fixups_.clear();
  try {
    root->SetState(csLoading, true);
    loaded_.push_back(root);
    const String name = Utf16(header.object_name);
    if (!name.empty()) root->SetName(name);
    root->ReadState(*this);
    ResolveFixups();
  } catch (...) {
    for (TComponent* c : loaded_) {
      c->SetState(csLoading, false);
      c->SetState(csReading, false);
    }
    throw;
  }
  for (TComponent* c : loaded_) c->Loaded();
  loaded_.clear();
  created.release();
  return root;
}

void TReader::ReadData(TComponent& instance) {
  instance.SetState(csReading, true);
  while (!in_->EndOfList()) ReadProperty(instance);
  in_->ReadListEnd();
  instance.SetState(csReading, false);

  TComponent* saved_owner = owner_;
  TComponent* saved_parent = parent_;
  owner_ = instance.GetChildOwner() != nullptr ? instance.GetChildOwner() : root_;
  parent_ = instance.GetChildParent();
  try {
    while (!in_->EndOfList()) ReadComponent();
    in_->ReadListEnd();
  } catch (...) {
    owner_ = saved_owner;
    parent_ = saved_parent;
    throw;
  }
  owner_ = saved_owner;
  parent_ = saved_parent;
}

void TReader::ReadComponent() {
  DepthGuard depth(depth_);
  TObjectHeader header = in_->ReadObjectHeader();
  bool created = false;
  TComponent* component = nullptr;
  try {
    component = FindOrCreate(header, created);
  } catch (const Exception& e) {
    if (!Error(e.Message())) throw;
    SkipComponentBody();
    return;
  }
  try {
    component->SetState(csLoading, true);
    if ((header.flags & ffInline) != 0) component->SetState(csInline, true);
    if (std::find(loaded_.begin(), loaded_.end(), component) == loaded_.end()) {
      loaded_.push_back(component);
    }
    component->SetParentComponent(parent_);
    if ((header.flags & ffChildPos) != 0 && parent_ != nullptr) {
      parent_->SetChildOrder(component, header.position);
    }
    component->ReadState(*this);
  } catch (...) {
    if (created) Discard(component);
    throw;
  }
}

TComponent* TReader::FindOrCreate(const TObjectHeader& header, bool& created) {
  const String name = Utf16(header.object_name);
  // A child that the owner already has (built by code, or inherited) is filled
  // in place.
  TComponent* existing = owner_->FindComponent(name);
  if (existing != nullptr && SameText(existing->ClassInfo().Name(), Utf16(header.class_name))) {
    return existing;
  }
  const String class_name = Utf16(header.class_name);
  if (GetClass(class_name) == nullptr && OnUnknownClass) {
    if (TComponent* stand_in = OnUnknownClass(*this, class_name, owner_)) {
      std::unique_ptr<TComponent> component(stand_in);
      component->SetState(csLoading, true);
      component->SetName(name);
      created = true;
      return component.release();
    }
  }
  const TClassInfo& info = FindClass(class_name);
  if (info.Factories().component == nullptr) {
    throw EReadError(u"Cannot create an instance of " + info.Name());
  }
  std::unique_ptr<TComponent> component(info.Factories().component(owner_));
  component->SetState(csLoading, true);
  component->SetName(name);
  created = true;
  return component.release();
}

void TReader::Discard(TComponent* component) {
  // Freeing the component frees what it owns too: forget all of them.
  const auto gone = [component](const TComponent* c) {
    for (; c != nullptr; c = c->Owner()) {
      if (c == component) return true;
    }
    return false;
  };
  std::erase_if(loaded_, gone);
  std::erase_if(fixups_, [&gone](const std::unique_ptr<Fixup>& f) { return gone(f->component); });
  delete component;
}

void TReader::SkipComponentBody() {
  while (!in_->EndOfList()) {
    in_->ReadPropertyName();
    in_->SkipValue();
  }
  in_->ReadListEnd();
  while (!in_->EndOfList()) {
    DepthGuard depth(depth_);
    in_->ReadObjectHeader();
    SkipComponentBody();
  }
  in_->ReadListEnd();
}

void TReader::ReadProperty(TPersistent& instance) {
  const String path = Utf16(in_->ReadPropertyName());
  const int64_t value_start = in_->Stream().Position();
  try {
    try {
      ReadPropertyValue(instance, path);
    } catch (const Exception& e) {
      // Leave the stream after the value whatever part of it was read.
      in_->Stream().SetPosition(value_start);
      in_->SkipValue();
      throw EReadError(u"Error reading " + DisplayName(instance) + u"." + path + u": " +
                       e.Message());
    }
  } catch (const EReadError& e) {
    if (!Error(e.Message())) throw;
  }
}

void TReader::ReadPropertyValue(TPersistent& instance, const String& path) {
  TPersistent* target = &instance;
  size_t start = 0;
  for (;;) {
    const size_t dot = path.find(u'.', start);
    const String part = path.substr(start, dot == String::npos ? String::npos : dot - start);
    const TPropInfo* prop = target->ClassInfo().FindProperty(part);
    if (dot == String::npos) {
      if (prop != nullptr) {
        ReadValue(*target, *prop);
      } else if (!ReadDefined(*target, part)) {
        RaiseUnknownProperty(part);
      }
      return;
    }
    if (prop == nullptr) RaiseUnknownProperty(part);
    const String rest = path.substr(dot + 1);
    if (prop->kind == pkStrings && SameText(rest, u"Strings")) {
      auto* list = dynamic_cast<TStrings*>(prop->get_object(*target));
      if (list == nullptr) RaiseInvalidValue();
      ReadStrings(*list);
      return;
    }
    auto* nested = prop->kind == pkPersistent
                       ? dynamic_cast<TPersistent*>(prop->get_object(*target))
                       : nullptr;
    if (nested == nullptr) throw EReadError(u"Invalid property path");
    target = nested;
    start = dot + 1;
  }
}

bool TReader::ReadDefined(TPersistent& target, const String& name) {
  const String* saved_name = defined_name_;
  bool saved_found = defined_found_;
  defined_name_ = &name;
  defined_found_ = false;
  try {
    target.DefineProperties(*this);
  } catch (...) {
    defined_name_ = saved_name;
    defined_found_ = saved_found;
    throw;
  }
  const bool found = defined_found_;
  defined_name_ = saved_name;
  defined_found_ = saved_found;
  return found;
}

void TReader::ReadStrings(TStrings& list) {
  if (in_->NextValue() != vaList) RaiseInvalidValue();
  in_->ReadListBegin();
  TStringsUpdate update(list);
  list.Clear();
  while (!in_->EndOfList()) {
    if (!IsStringCode(in_->NextValue())) RaiseInvalidValue();
    list.Add(in_->ReadString());
  }
  in_->ReadListEnd();
}

void TReader::ReadValue(TPersistent& target, const TPropInfo& prop) {
  const TValueType next = in_->NextValue();
  switch (prop.kind) {
    case pkInteger:
    case pkInt64: {
      if (!IsIntegerCode(next)) RaiseInvalidValue();
      const int64_t v = in_->ReadInteger();
      if (prop.kind == pkInteger && (v < INT32_MIN || v > INT32_MAX)) RaiseInvalidValue();
      prop.set_ordinal(target, v);
      return;
    }
    case pkBoolean:
    case pkEnumeration: {
      if (!IsIdentCode(next)) RaiseInvalidValue();
      const int64_t v = EnumValue(prop, ReadIdent());
      if (v < 0) RaiseInvalidValue();
      prop.set_ordinal(target, v);
      return;
    }
    case pkSet:
      ReadSet(target, prop, next);
      return;
    case pkFloat: {
      if (!IsFloatCode(next)) RaiseInvalidValue();
      const long double v = next == vaCurrency
                                ? static_cast<long double>(in_->ReadCurrency()) / 10000.0L
                                : in_->ReadFloat();
      if (prop.float_kind == fkCurrency && !CurrencyFits(v)) RaiseInvalidValue();
      prop.set_float(target, v);
      return;
    }
    case pkString:
      if (!IsStringCode(next)) RaiseInvalidValue();
      prop.set_string(target, in_->ReadString());
      return;
    case pkEvent:
    case pkComponent:
      ReadNameValue(target, prop, next);
      return;
    case pkBinary:
      if (next != vaBinary) RaiseInvalidValue();
      prop.set_bytes(target, in_->ReadBinary());
      return;
    case pkCollection: {
      auto* collection = dynamic_cast<TCollection*>(prop.get_object(target));
      if (next != vaCollection || collection == nullptr) RaiseInvalidValue();
      ReadCollection(*collection);
      return;
    }
    case pkStrings:
    case pkPersistent:
      RaiseInvalidValue();
  }
}

void TReader::ReadSet(TPersistent& target, const TPropInfo& prop, TValueType next) {
  if (next != vaSet) RaiseInvalidValue();
  uint64_t bits = 0;
  for (const std::string& member : in_->ReadSet()) {
    const int64_t ordinal = EnumValue(prop, Utf16(member));
    if (ordinal < 0 || ordinal >= 64) RaiseInvalidValue();
    bits |= uint64_t{1} << ordinal;
  }
  prop.set_ordinal(target, static_cast<int64_t>(bits));
}

void TReader::ReadNameValue(TPersistent& target, const TPropInfo& prop, TValueType next) {
  if (next != vaIdent && next != vaNil) RaiseInvalidValue();
  String name = ReadIdent();
  if (next == vaNil) name.clear();
  if (prop.kind == pkEvent) {
    prop.set_string(target, name);
    return;
  }
  prop.set_component(target, nullptr);
  if (!name.empty()) {
    TComponent* reading = loaded_.empty() ? root_ : loaded_.back();
    fixups_.push_back(std::make_unique<Fixup>(Fixup{&target, &prop, name, reading}));
  }
}

void TReader::ReadCollection(TCollection& collection) {
  DepthGuard depth(depth_);
  in_->ReadCollectionBegin();
  // References waiting on the old items would outlive them.
  std::erase_if(fixups_, [&collection](const std::unique_ptr<Fixup>& f) {
    auto* item = dynamic_cast<TCollectionItem*>(f->instance);
    return item != nullptr && item->Collection() == &collection;
  });
  collection.Clear();
  while (!in_->EndOfList()) {
    in_->ReadCollectionItemBegin();
    TCollectionItem* item = collection.Add();
    while (!in_->EndOfList()) ReadProperty(*item);
    in_->ReadListEnd();
  }
  in_->ReadListEnd();
}

void TReader::ResolveFixups() {
  for (const auto& f : fixups_) {
    TComponent* found = FindReference(f->name);
    // An unknown name leaves the reference nil, as a stream read on its own
    // cannot know components outside its root.
    if (found != nullptr) f->prop->set_component(*f->instance, found);
  }
  fixups_.clear();
}

TComponent* TReader::FindReference(const String& name) const {
  const size_t dot = name.find(u'.');
  if (dot == String::npos) {
    if (SameText(root_->Name(), name)) return root_;
    return root_->FindComponent(name);
  }
  const String first = name.substr(0, dot);
  const String rest = name.substr(dot + 1);
  if (SameText(root_->Name(), first)) return root_->FindComponent(rest);
  TComponent* middle = root_->FindComponent(first);
  return middle == nullptr ? nullptr : middle->FindComponent(rest);
}

bool TReader::Error(const String& message) {
  bool handled = false;
  if (OnError) OnError(*this, message, handled);
  return handled;
}

void TReader::DefineProperty(const String& name, const TReaderProc& read,
                             const TWriterProc& /*write*/, bool /*has_data*/) {
  if (defined_name_ == nullptr || defined_found_ || !read || !SameText(name, *defined_name_)) {
    return;
  }
  defined_found_ = true;
  read(*this);
}

void TReader::DefineBinaryProperty(const String& name, const TStreamProc& read,
                                   const TStreamProc& /*write*/, bool /*has_data*/) {
  if (defined_name_ == nullptr || defined_found_ || !read || !SameText(name, *defined_name_)) {
    return;
  }
  defined_found_ = true;
  if (in_->NextValue() != vaBinary) RaiseInvalidValue();
  const TBytes bytes = in_->ReadBinary();
  TMemoryStream data;
  if (!bytes.empty()) data.WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
  data.SetPosition(0);
  read(data);
}

int32_t TReader::ReadInteger() {
  if (!IsIntegerCode(in_->NextValue())) RaiseInvalidValue();
  const int64_t v = in_->ReadInteger();
  if (v < INT32_MIN || v > INT32_MAX) RaiseInvalidValue();
  return static_cast<int32_t>(v);
}

int64_t TReader::ReadInt64() {
  if (!IsIntegerCode(in_->NextValue())) RaiseInvalidValue();
  return in_->ReadInteger();
}

bool TReader::ReadBoolean() { return in_->ReadBoolean(); }

long double TReader::ReadFloat() {
  if (!IsFloatCode(in_->NextValue())) RaiseInvalidValue();
  return in_->ReadFloat();
}

String TReader::ReadString() {
  if (!IsStringCode(in_->NextValue())) RaiseInvalidValue();
  return in_->ReadString();
}

String TReader::ReadIdent() { return Utf16(in_->ReadIdent()); }
void TReader::ReadListBegin() { in_->ReadListBegin(); }
void TReader::ReadListEnd() { in_->ReadListEnd(); }
bool TReader::EndOfList() { return in_->EndOfList(); }

// --- Free functions
// --------------------------------------------------------------------------

void WriteComponent(TStream& stream, TComponent& root) {
  TWriter writer(stream);
  writer.WriteRootComponent(root);
}

TComponent* ReadComponent(TStream& stream, TComponent& root, const TReaderError& on_error) {
  TReader reader(stream);
  reader.OnError = on_error;
  return reader.ReadRootComponent(&root);
}

std::unique_ptr<TComponent> ReadComponent(TStream& stream, const TReaderError& on_error) {
  TReader reader(stream);
  reader.OnError = on_error;
  return std::unique_ptr<TComponent>(reader.ReadRootComponent(nullptr));
}

}  // namespace vex
