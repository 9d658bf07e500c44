#include "vex/data/rtti_utils.h"

#include <utility>

#include "vex/companion/obj_props.h"
#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/text/convert_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

// --- the walk ---------------------------------------------------------------------------------
// One walk serves every public form; Visit is called as visit(name, type, address).

// Hands a value to visit under its name, after level tabs.
template <class Visit>
void VisitIndented(Visit& visit, const String& name, int32_t level, PTypeInfo type, void* addr) {
  if (level > 0) {
    visit(TStringUtils::GetTabStr(level) + name, type, addr);
  } else {
    visit(name, type, addr);
  }
}

template <class Visit>
void Walk(PTypeInfo type, void* addr, const String& name, Visit& visit, int32_t level,
          bool structures);

template <class Visit>
void WalkFields(void* addr, const String& prefix, const std::vector<TRttiField>& fields,
                Visit& visit, int32_t level, bool structures) {
  for (const TRttiField& field : fields) {
    PTypeInfo type = field.FieldType();
    if (type == nullptr) continue;
    const String name = level < 0 && !prefix.empty() ? prefix + u"." + field.Name : field.Name;
    Walk(type, static_cast<char*>(addr) + field.Offset, name, visit, level, structures);
  }
}

template <class Visit>
void WalkElements(PTypeInfo element, void* data, size_t count, const String& name, Visit& visit,
                  int32_t level, bool structures) {
  if (element == nullptr || data == nullptr) return;
  for (size_t i = 0; i < count; ++i) {
    Walk(element, static_cast<char*>(data) + i * element->Size,
         name + u"[" + IntToStr(static_cast<int64_t>(i)) + u"]", visit, level, structures);
  }
}

template <class Visit>
void Walk(PTypeInfo type, void* addr, const String& name, Visit& visit, int32_t level,
          bool structures) {
  const TTypeKind kind = type->Kind;
  if (kind == tkArray || kind == tkRecord || kind == tkDynArray) {
    if (structures && !name.empty()) VisitIndented(visit, name, level, type, addr);
  }
  switch (kind) {
    case tkArray:
      WalkElements(type->ElementType(), addr, type->ElementCount, name, visit, level, structures);
      break;
    case tkRecord:
      WalkFields(addr, name, type->Fields, visit, level >= 0 && !name.empty() ? level + 1 : level,
                 structures);
      break;
    case tkDynArray:
      // The length is read after the announcement, which may have resized the array.
      WalkElements(type->ElementType(), type->DynArrayData(addr), type->DynArrayLength(addr), name,
                   visit, level, structures);
      break;
    default:
      if (TRttiUtils::IsSimpleKind(kind)) VisitIndented(visit, name, level, type, addr);
      break;
  }
}

template <class Visit>
void Start(PTypeInfo type, const void* addr, const String& name, Visit& visit, int32_t level,
           bool structures) {
  if (type == nullptr || addr == nullptr) return;
  // Writing walks never store through the address; reading walks are given a mutable one.
  Walk(type, const_cast<void*>(addr), name, visit, level, structures);
}

// --- value text -------------------------------------------------------------------------------

bool IsOrdinalKind(TTypeKind kind) {
  return kind == tkInteger || kind == tkInt64 || kind == tkEnumeration;
}

String ValueText(PTypeInfo type, const Variant& value, bool quote_strings) {
  switch (type->Kind) {
    case tkInteger:
    case tkInt64:
      return IntToStr(value.AsInt64());
    case tkEnumeration:
      return TRttiUtils::IndexToTypeName(type, static_cast<int32_t>(TRttiType::OrdinalOf(value)));
    case tkFloat:
      return FloatToStr(value.AsDouble());
    default:
      if (!TRttiUtils::IsStringKind(type->Kind)) return String();
      return quote_strings ? TStringUtils::QuotedStr(value.AsString()) : value.AsString();
  }
}

[[noreturn]] void RaiseNotInteger(const String& text) {
  throw EConvertError(u"'" + text + u"' is not a valid integer value");
}

// Stores the value of text (as written by ValueText with quoted strings) at addr.
void SetFromText(PTypeInfo type, void* addr, const String& text) {
  switch (type->Kind) {
    case tkInteger: {
      // Checked on a scratch copy first, so that a value out of the type's range is refused
      // without touching the variable.
      const int64_t v = StrToInt64(text);
      alignas(8) unsigned char scratch[8] = {};
      type->SetValue(scratch, Variant(v));
      if (type->GetValue(scratch).AsInt64() != v) RaiseNotInteger(text);
      type->SetValue(addr, Variant(v));
      break;
    }
    case tkInt64:
      type->SetValue(addr, Variant(StrToInt64(text)));
      break;
    case tkEnumeration: {
      const auto present = static_cast<int32_t>(TRttiType::OrdinalOf(type->GetValue(addr)));
      type->SetValue(addr, Variant(TRttiUtils::TypeNameToIndex(type, text, present)));
      break;
    }
    case tkFloat:
      type->SetValue(addr, Variant(StrToFloat(text)));
      break;
    default:
      if (TRttiUtils::IsStringKind(type->Kind)) {
        type->SetValue(addr, Variant(TStringUtils::DequoteStr(text)));
      }
      break;
  }
}

// --- keyed stores -------------------------------------------------------------------------------

class KeyedStore {
 public:
  virtual ~KeyedStore() = default;
  virtual bool Find(const String& name, String& value) const = 0;
  virtual void Store(const String& name, const String& value) = 0;
  /// Number of entries, the bound of an array length read back.
  virtual size_t Entries() const = 0;
};

class StringsStore final : public KeyedStore {
 public:
  explicit StringsStore(TStrings& list) : list_(list) {}
  bool Find(const String& name, String& value) const override {
    const int32_t i = list_.IndexOfName(name);
    if (i < 0) return false;
    value = list_.ValueFromIndex(i);
    return true;
  }
  void Store(const String& name, const String& value) override { list_.SetValues(name, value); }
  size_t Entries() const override { return static_cast<size_t>(list_.Count()); }

 private:
  TStrings& list_;
};

class QueryStore final : public KeyedStore {
 public:
  explicit QueryStore(TQueryList& list) : list_(list) {}
  bool Find(const String& path, String& value) const override {
    const size_t dot = path.rfind(u'.');
    const TQueryList* parent = &list_;
    if (dot != String::npos) {
      const TQueryItem* item = list_.GetItemByPath(path.substr(0, dot));
      parent = item ? item->Items() : nullptr;
      if (parent == nullptr) return false;
    }
    const int32_t i = parent->IndexOfName(dot == String::npos ? path : path.substr(dot + 1));
    if (i < 0) return false;
    value = parent->ValueFromIndex(i);
    return true;
  }
  void Store(const String& path, const String& value) override {
    list_.SetValueByPath(path, value);
  }
  size_t Entries() const override {
    if (entries_ == 0) entries_ = CountItems(list_);
    return entries_;
  }

 private:
  static size_t CountItems(const TQueryList& root) {
    size_t n = 0;
    std::vector<const TQueryList*> pending{&root};
    while (!pending.empty()) {
      const TQueryList* list = pending.back();
      pending.pop_back();
      n += static_cast<size_t>(list->Count());
      for (int32_t i = 0; i < list->Count(); ++i) {
        if (const TQueryList* sub = list->SubList(i)) pending.push_back(sub);
      }
    }
    return n;
  }

  TQueryList& list_;
  mutable size_t entries_ = 0;
};

void ReadLength(PTypeInfo type, void* addr, const String& name, const KeyedStore& store) {
  String text;
  if (!store.Find(name, text)) return;
  const int64_t length = StrToInt64(text);
  if (length < 0 || static_cast<uint64_t>(length) > store.Entries()) {
    throw EConvertError(u"Invalid array length in: " + text);
  }
  type->SetDynArrayLength(addr, static_cast<size_t>(length));
}

void ProcessWithStore(PTypeInfo type, void* addr, const String& name, KeyedStore& store,
                      bool with_lengths, bool indented, bool read) {
  auto visit = [&](const String& path, PTypeInfo t, void* at) {
    if (t->Kind == tkDynArray) {
      if (read) {
        ReadLength(t, at, path, store);
      } else {
        store.Store(path, IntToStr(static_cast<int64_t>(t->DynArrayLength(at))));
      }
      return;
    }
    if (!TRttiUtils::IsSimpleKind(t->Kind)) return;  // records and static arrays
    if (read) {
      String text;
      if (store.Find(path, text)) SetFromText(t, at, text);
    } else {
      store.Store(path, ValueText(t, t->GetValue(at), true));
    }
  };
  Start(type, addr, name, visit, indented ? 0 : -1, with_lengths);
}

}  // namespace

// --- enumerations and kinds
// -----------------------------------------------------------------------

String TRttiUtils::IndexToTypeName(PTypeInfo AType, int32_t AIndex, bool ARaiseError) {
  String name = GoodObjTypeName(AType, AIndex);
  if (!name.empty()) return name;
  if (ARaiseError) throw EConvertError(u"Invalid enumeration value in: " + IntToStr(AIndex));
  return IntToStr(AIndex);
}

int32_t TRttiUtils::TypeNameToIndex(PTypeInfo AType, const String& AName, int32_t ADefault) {
  constexpr int32_t kNone = INT32_MIN;
  const int32_t index = GoodObjTypeIndex(AType, AName, kNone);
  if (index != kNone) return index;
  int32_t number = 0;
  if (!TryStrToInt(AName, number)) return ADefault;
  const bool any = AType != nullptr && AType->Members.empty();
  return any || !GoodObjTypeName(AType, number).empty() ? number : ADefault;
}

String TRttiUtils::GetPropStr(TObject* AObject, const String& APropName, bool* AFound) {
  // Answered from the address alone: a caller may ask for it on an object whose properties
  // are not safe to read.
  if (APropName == u"Hash") {
    if (AFound) *AFound = true;
    return TConvertUtils::PtrToStr(AObject);
  }
  Variant value;
  const bool found = TryGetObjPropValue(AObject, APropName, value);
  if (AFound) *AFound = found;
  return found ? VarToStr(value) : String();
}

bool TRttiUtils::IsSimpleKind(TTypeKind AKind) {
  switch (AKind) {
    case tkInteger:
    case tkEnumeration:
    case tkFloat:
    case tkInt64:
      return true;
    default:
      return IsStringKind(AKind);
  }
}

bool TRttiUtils::IsStringKind(TTypeKind AKind) {
  return AKind == tkString || AKind == tkLString || AKind == tkWString || AKind == tkUString;
}

// --- the walk
// -------------------------------------------------------------------------------------

namespace {

auto WriteVisitor(const TVariableWriteProcTypeNameRef& proc) {
  return [&proc](const String& name, PTypeInfo type, void* addr) {
    proc(name, type->Name, type->GetValue(addr));
  };
}

}  // namespace

void TRttiUtils::WriteFields(const void* AInstance, const String& APrefix,
                             const std::vector<TRttiField>& AFields,
                             const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel,
                             bool AWithStructures) {
  if (AInstance == nullptr || !AProc) return;
  auto visit = WriteVisitor(AProc);
  WalkFields(const_cast<void*>(AInstance), APrefix, AFields, visit, ALevel, AWithStructures);
}

void TRttiUtils::WriteVariableByType(PTypeInfo AType, const void* AInstance, const String& AName,
                                     const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel,
                                     bool AWithStructures) {
  if (!AProc) return;
  auto visit = WriteVisitor(AProc);
  Start(AType, AInstance, AName, visit, ALevel, AWithStructures);
}

void TRttiUtils::ReadWriteVariableByType(PTypeInfo AType, void* AInstance, const String& AName,
                                         const TVariantReadWriteProcRef& AProc, int32_t ALevel,
                                         bool AWithStructures) {
  if (!AProc) return;
  ReadWriteVariableByType(
      AType, AInstance, AName,
      [&AProc](const String& name, const String&, Variant& value) { AProc(name, value); }, ALevel,
      AWithStructures);
}

void TRttiUtils::ReadWriteVariableByType(PTypeInfo AType, void* AInstance, const String& AName,
                                         const TVariableReadProcTypeNameRef& AProc, int32_t ALevel,
                                         bool AWithStructures) {
  if (!AProc) return;
  auto visit = [&AProc](const String& name, PTypeInfo type, void* addr) {
    Variant value = type->GetValue(addr);
    AProc(name, type->Name, value);
    if (!value.IsEmpty()) type->SetValue(addr, value);
  };
  Start(AType, AInstance, AName, visit, ALevel, AWithStructures);
}

// --- entry points
// ---------------------------------------------------------------------------------

void TRttiUtils::WriteVariable(PTypeInfo ATypeInfo, const void* AInstance, const String& AName,
                               const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel,
                               bool AWithStructures) {
  WriteVariableByType(ATypeInfo, AInstance, AName, AProc, ALevel, AWithStructures);
}

void TRttiUtils::ReadVariable(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                              const TVariableReadProcTypeNameRef& AProc, int32_t ALevel,
                              bool AWithStructures) {
  ReadWriteVariableByType(ATypeInfo, AInstance, AName, AProc, ALevel, AWithStructures);
}

void TRttiUtils::ProcessVariable(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                                 const TVariableTypeProcRef& AProc, int32_t ALevel,
                                 bool AWithStructures) {
  if (!AProc) return;
  auto visit = [&AProc](const String& name, PTypeInfo type, void* addr) {
    AProc(name, type, addr);
  };
  Start(ATypeInfo, AInstance, AName, visit, ALevel, AWithStructures);
}

// --- lists
// ------------------------------------------------------------------------------------------

void TRttiUtils::WriteVariableToList(PTypeInfo ATypeInfo, const void* AInstance,
                                     const String& AName, TStrings& AList, bool AWithTypeNames,
                                     bool AIndented, bool AValueAsTag) {
  TStringsUpdate update(AList);
  auto visit = [&](const String& name, PTypeInfo type, void* addr) {
    String line = name;
    if (AWithTypeNames) {
      line += u": ";
      line += type->Name;
    }
    intptr_t tag = type->Kind;
    const Variant value = type->GetValue(addr);
    if (AValueAsTag && IsOrdinalKind(type->Kind)) {
      tag = static_cast<intptr_t>(TRttiType::OrdinalOf(value));
    } else if (!value.IsEmpty()) {
      line += u" = ";
      line += ValueText(type, value, false);
    }
    AList.AddObject(line, TStrings::TagToObject(tag));
  };
  Start(ATypeInfo, AInstance, AName, visit, AIndented ? 0 : -1, AIndented);
}

void TRttiUtils::ProcessVariableWithList(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                                         TStrings& AList, bool AWithLengths, bool AIndented,
                                         bool ARead) {
  StringsStore store(AList);
  if (ARead) {
    ProcessWithStore(ATypeInfo, AInstance, AName, store, AWithLengths, AIndented, ARead);
    return;
  }
  TStringsUpdate update(AList);
  ProcessWithStore(ATypeInfo, AInstance, AName, store, AWithLengths, AIndented, ARead);
}

void TRttiUtils::ProcessVariableWithList(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                                         TQueryList& AList, bool AWithLengths, bool AIndented,
                                         bool ARead) {
  QueryStore store(AList);
  ProcessWithStore(ATypeInfo, AInstance, AName, store, AWithLengths, AIndented, ARead);
}

}  // namespace vex
