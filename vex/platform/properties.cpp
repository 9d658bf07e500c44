#include "vex/platform/properties.h"

#include <cmath>
#include <map>
#include <mutex>
#include <shared_mutex>

#include "vex/platform/component.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"

namespace vex {

// --- TPropInfo -------------------------------------------------------------------------------

bool TPropInfo::IsStored(const TPersistent& instance) const {
  return stored && (!stored_if || stored_if(instance));
}

bool TPropInfo::IsDefault(const TPersistent& instance) const {
  switch (kind) {
    case pkInteger:
    case pkInt64:
    case pkEnumeration:
    case pkSet:
    case pkBoolean:
      return has_default && get_ordinal(instance) == default_ordinal;
    case pkFloat:
      return get_float(instance) == 0;
    case pkString:
      return get_string(instance) == default_string;
    case pkEvent:
      return get_string(instance).empty();
    case pkBinary:
      return get_bytes(instance).empty();
    case pkComponent:
      return get_component(instance) == nullptr;
    case pkStrings:
    case pkPersistent:
    case pkCollection:
      return get_object(instance) == nullptr;
  }
  return false;
}

bool TPropInfo::Writable() const {
  return kind != pkStrings && kind != pkPersistent && kind != pkCollection;
}

void RaiseInvalidReference(const String& prop_name, TComponent* value) {
  throw EPropertyConvertError(u"Invalid property value: " + value->ClassInfo().Name() +
                              u" cannot be assigned to " + prop_name);
}

// --- TClassInfo ------------------------------------------------------------------------------

TClassInfo::TClassInfo(String name, const TClassInfo* parent, std::vector<TPropInfo> own_props,
                       TClassFactories factories)
    : name_(std::move(name)), parent_(parent), own_(std::move(own_props)), factories_(factories) {
  if (parent_ != nullptr) all_ = parent_->all_;
  for (const TPropInfo& p : own_) {
    bool replaced = false;
    for (const TPropInfo*& inherited : all_) {
      if (SameText(inherited->name, p.name)) {
        inherited = &p;
        replaced = true;
        break;
      }
    }
    if (!replaced) all_.push_back(&p);
  }
}

bool TClassInfo::InheritsFrom(const TClassInfo& other) const {
  for (const TClassInfo* c = this; c != nullptr; c = c->parent_) {
    if (c == &other) return true;
  }
  return false;
}

const TPropInfo* TClassInfo::FindProperty(const String& name) const {
  for (const TPropInfo* p : all_) {
    if (SameText(p->name, name)) return p;
  }
  return nullptr;
}

// --- Registry --------------------------------------------------------------------------------

namespace {

struct Registry {
  std::shared_mutex mutex;
  // Keyed by upper-case name: class names are identifiers, compared case-insensitively.
  std::map<String, const TClassInfo*> classes;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace

void RegisterClass(const TClassInfo& info) {
  Registry& r = TheRegistry();
  std::unique_lock lock(r.mutex);
  for (const TClassInfo* c = &info; c != nullptr; c = c->Parent()) {
    auto [it, inserted] = r.classes.emplace(UpperCase(c->Name()), c);
    if (!inserted && it->second != c) {
      throw EFilerError(u"A class named " + c->Name() + u" already exists");
    }
  }
}

void RegisterClasses(std::initializer_list<const TClassInfo*> infos) {
  for (const TClassInfo* info : infos) RegisterClass(*info);
}

void UnRegisterClass(const TClassInfo& info) {
  Registry& r = TheRegistry();
  std::unique_lock lock(r.mutex);
  auto it = r.classes.find(UpperCase(info.Name()));
  if (it != r.classes.end() && it->second == &info) r.classes.erase(it);
}

const TClassInfo* GetClass(const String& name) {
  Registry& r = TheRegistry();
  std::shared_lock lock(r.mutex);
  auto it = r.classes.find(UpperCase(name));
  return it == r.classes.end() ? nullptr : it->second;
}

const TClassInfo& FindClass(const String& name) {
  const TClassInfo* info = GetClass(name);
  if (info == nullptr) throw EClassNotFound(u"Class " + name + u" not found");
  return *info;
}

// --- Enumerations and sets -------------------------------------------------------------------

String EnumName(const TPropInfo& prop, int64_t value) {
  if (value >= 0 && value < static_cast<int64_t>(prop.names.size())) {
    return prop.names[static_cast<size_t>(value)];
  }
  return IntToStr(value);
}

int64_t EnumValue(const TPropInfo& prop, const String& name) {
  for (size_t i = 0; i < prop.names.size(); ++i) {
    if (SameText(prop.names[i], name)) return static_cast<int64_t>(i);
  }
  return -1;
}

String SetToString(const TPropInfo& prop, int64_t bits, bool brackets) {
  String out;
  for (size_t i = 0; i < prop.names.size() && i < 64; ++i) {
    if ((static_cast<uint64_t>(bits) >> i) & 1U) {
      if (!out.empty()) out += u',';
      out += prop.names[i];
    }
  }
  return brackets ? u"[" + out + u"]" : out;
}

int64_t StringToSet(const TPropInfo& prop, const String& text) {
  String body = Trim(text);
  if (!body.empty() && body.front() == u'[') {
    if (body.back() != u']') {
      throw EPropertyConvertError(u"Invalid set value: " + text);
    }
    body = body.substr(1, body.size() - 2);
  }
  uint64_t bits = 0;
  size_t start = 0;
  while (start <= body.size()) {
    size_t comma = body.find(u',', start);
    if (comma == String::npos) comma = body.size();
    String member = Trim(body.substr(start, comma - start));
    if (!member.empty()) {
      int64_t ordinal = EnumValue(prop, member);
      if (ordinal < 0 || ordinal >= 64) {
        throw EPropertyConvertError(u"Invalid property element: " + member);
      }
      bits |= uint64_t{1} << ordinal;
    }
    start = comma + 1;
  }
  return static_cast<int64_t>(bits);
}

// --- Access by name --------------------------------------------------------------------------

const std::vector<const TPropInfo*>& GetPropList(const TPersistent& instance) {
  return instance.ClassInfo().Properties();
}

const TPropInfo* FindPropInfo(const TPersistent& instance, const String& path,
                              TPersistent** target) {
  const TPersistent* current = &instance;
  size_t start = 0;
  for (;;) {
    size_t dot = path.find(u'.', start);
    String part = path.substr(start, dot == String::npos ? String::npos : dot - start);
    const TPropInfo* prop = current->ClassInfo().FindProperty(part);
    if (prop == nullptr) return nullptr;
    if (dot == String::npos) {
      if (target != nullptr) *target = const_cast<TPersistent*>(current);
      return prop;
    }
    if (prop->kind != pkPersistent && prop->kind != pkCollection) return nullptr;
    current = dynamic_cast<const TPersistent*>(prop->get_object(*current));
    if (current == nullptr) return nullptr;
    start = dot + 1;
  }
}

bool IsPublishedProp(const TPersistent& instance, const String& path) {
  return FindPropInfo(instance, path) != nullptr;
}

namespace {

const TPropInfo& Resolve(const TPersistent& instance, const String& path, TPersistent*& target) {
  const TPropInfo* prop = FindPropInfo(instance, path, &target);
  if (prop == nullptr) throw EPropertyError(u"Unknown property: \"" + path + u"\"");
  return *prop;
}

[[noreturn]] void RaiseConvert(const TPropInfo& prop) {
  throw EPropertyConvertError(u"Invalid property type: " + prop.name);
}

String BytesToHex(const TBytes& bytes) {
  static const char16_t kDigits[] = u"0123456789ABCDEF";
  String out;
  out.reserve(bytes.size() * 2);
  for (uint8_t b : bytes) {
    out += kDigits[b >> 4];
    out += kDigits[b & 15];
  }
  return out;
}

int HexDigit(Char c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return -1;
}

TBytes HexToBytes(const TPropInfo& prop, const String& hex) {
  if (hex.size() % 2 != 0) RaiseConvert(prop);
  TBytes out(hex.size() / 2);
  for (size_t i = 0; i < out.size(); ++i) {
    int hi = HexDigit(hex[2 * i]);
    int lo = HexDigit(hex[2 * i + 1]);
    if (hi < 0 || lo < 0) RaiseConvert(prop);
    out[i] = static_cast<uint8_t>(hi * 16 + lo);
  }
  return out;
}

// A reference names a component of the same owner as the instance, the owner itself, or
// (for a free-standing instance) one of the instance's own components.
TComponent* LookUpComponent(const TPersistent& instance, const String& name) {
  const TPersistent* p = &instance;
  while (p != nullptr && dynamic_cast<const TComponent*>(p) == nullptr) p = p->GetOwner();
  auto* self = const_cast<TComponent*>(dynamic_cast<const TComponent*>(p));
  if (self == nullptr) return nullptr;
  TComponent* root = self->Owner() != nullptr ? self->Owner() : self;
  if (SameText(root->Name(), name)) return root;
  return root->FindComponent(name);
}

void CheckRange(const TPropInfo& prop, int64_t value) {
  if (prop.kind == pkInteger && (value < INT32_MIN || value > INT32_MAX)) RaiseConvert(prop);
  if (prop.kind == pkEnumeration &&
      (value < 0 || value >= static_cast<int64_t>(prop.names.size()))) {
    RaiseConvert(prop);
  }
}

void SetOrdinalFromVariant(TPersistent& target, const TPropInfo& prop, const Variant& value) {
  int64_t ordinal = 0;
  if (prop.kind == pkEnumeration && value.VarType() == varUString) {
    ordinal = EnumValue(prop, value.AsString());
    if (ordinal < 0) RaiseConvert(prop);
  } else if (prop.kind == pkSet && value.VarType() == varUString) {
    ordinal = StringToSet(prop, value.AsString());
  } else if (prop.kind == pkBoolean) {
    ordinal = value.AsBoolean() ? 1 : 0;
  } else {
    ordinal = value.AsInt64();
  }
  CheckRange(prop, ordinal);
  prop.set_ordinal(target, ordinal);
}

}  // namespace

TPropKind PropKind(const TPersistent& instance, const String& path) {
  TPersistent* target = nullptr;
  return Resolve(instance, path, target).kind;
}

Variant GetPropValue(const TPersistent& instance, const String& path) {
  TPersistent* target = nullptr;
  const TPropInfo& prop = Resolve(instance, path, target);
  switch (prop.kind) {
    case pkInteger:
      return static_cast<int32_t>(prop.get_ordinal(*target));
    case pkInt64:
      return prop.get_ordinal(*target);
    case pkBoolean:
      return prop.get_ordinal(*target) != 0;
    case pkEnumeration:
      return EnumName(prop, prop.get_ordinal(*target));
    case pkSet:
      return SetToString(prop, prop.get_ordinal(*target));
    case pkFloat: {
      double v = static_cast<double>(prop.get_float(*target));
      return prop.float_kind == fkDate ? Variant::FromDate(v) : Variant(v);
    }
    case pkString:
    case pkEvent:
      return prop.get_string(*target);
    case pkStrings:
      return static_cast<const TStrings*>(prop.get_object(*target))->Text();
    case pkBinary:
      return BytesToHex(prop.get_bytes(*target));
    case pkComponent: {
      const TComponent* c = prop.get_component(*target);
      return c == nullptr ? String() : c->Name();
    }
    case pkPersistent:
    case pkCollection:
      break;
  }
  RaiseConvert(prop);
}

void SetPropValue(TPersistent& instance, const String& path, const Variant& value) {
  TPersistent* target = nullptr;
  const TPropInfo& prop = Resolve(instance, path, target);
  try {
    switch (prop.kind) {
      case pkInteger:
      case pkInt64:
      case pkBoolean:
      case pkEnumeration:
      case pkSet:
        SetOrdinalFromVariant(*target, prop, value);
        return;
      case pkFloat:
        prop.set_float(*target, value.AsDouble());
        return;
      case pkString:
      case pkEvent:
        prop.set_string(*target, VarToStr(value));
        return;
      case pkStrings:
        static_cast<TStrings*>(prop.get_object(*target))->SetText(VarToStr(value));
        return;
      case pkBinary:
        prop.set_bytes(*target, HexToBytes(prop, VarToStr(value)));
        return;
      case pkComponent: {
        String name = VarToStr(value);
        TComponent* c = name.empty() ? nullptr : LookUpComponent(*target, name);
        if (!name.empty() && c == nullptr) {
          throw EPropertyConvertError(u"Component " + name + u" not found for " + prop.name);
        }
        prop.set_component(*target, c);
        return;
      }
      case pkPersistent:
      case pkCollection:
        break;
    }
  } catch (const EVariantError&) {
    RaiseConvert(prop);
  }
  RaiseConvert(prop);
}

String GetPropText(const TPersistent& instance, const String& path) {
  TPersistent* target = nullptr;
  const TPropInfo& prop = Resolve(instance, path, target);
  if (prop.kind == pkFloat) return FloatToStr(static_cast<double>(prop.get_float(*target)));
  if (prop.kind == pkBoolean) return prop.get_ordinal(*target) != 0 ? u"True" : u"False";
  return VarToStr(GetPropValue(*target, prop.name));
}

void SetPropText(TPersistent& instance, const String& path, const String& text) {
  TPersistent* target = nullptr;
  const TPropInfo& prop = Resolve(instance, path, target);
  switch (prop.kind) {
    case pkInteger:
    case pkInt64: {
      int64_t v = 0;
      if (!TryStrToInt64(text, v)) RaiseConvert(prop);
      CheckRange(prop, v);
      prop.set_ordinal(*target, v);
      return;
    }
    case pkBoolean: {
      bool b = false;
      if (!TryStrToBool(text, b)) RaiseConvert(prop);
      prop.set_ordinal(*target, b ? 1 : 0);
      return;
    }
    case pkFloat: {
      double v = 0;
      if (!TryStrToFloat(text, v)) RaiseConvert(prop);
      prop.set_float(*target, v);
      return;
    }
    default:
      SetPropValue(*target, prop.name, text);
  }
}

}  // namespace vex
