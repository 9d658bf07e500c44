// Writing components to and reading them from the binary component stream ("TPF0"). The writer
// puts out a component's non-default published properties in declaration order (nested
// persistents as "Font.Name", custom data declared by DefineProperties), then its children;
// the reader assigns properties to a given root (or creates the root) and creates the children
// through the class registry, owned by the root.
//
//   TMemoryStream stream;
//   WriteComponent(stream, form);
//   stream.SetPosition(0);
//   TForm copy(nullptr);
//   ReadComponent(stream, copy);       // copy now has form's properties and children
//
// Reader errors (unknown property, wrong value type, unknown class) raise EReadError or
// EClassNotFound naming the component and the property, e.g. "Error reading Button1.Foo:
// Property Foo does not exist". With an OnError handler that sets `handled`, the reader skips
// what failed and goes on, so a form loads what it can and reports each problem.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "vex/platform/component.h"
#include "vex/platform/streams.h"
#include "vex/platform/types.h"

namespace vex {

class TBinaryObjectReader;
class TBinaryObjectWriter;
struct TObjectHeader;
enum TValueType : uint8_t;

class TReader;
class TWriter;

using TReaderProc = std::function<void(TReader& reader)>;
using TWriterProc = std::function<void(TWriter& writer)>;
using TStreamProc = std::function<void(TStream& stream)>;

/// What DefineProperties sees: the reader or the writer at work.
class TFiler : public TObject {
 public:
  TFiler() = default;
  TFiler(const TFiler&) = delete;
  TFiler& operator=(const TFiler&) = delete;

  /// The component at the top of the stream being read or written.
  TComponent* Root() const { return root_; }
  /// Declares custom data `name` of the object being filed: the reader calls `read` when the
  /// stream holds a property of that name; the writer calls `write` when `has_data`.
  virtual void DefineProperty(const String& name, const TReaderProc& read, const TWriterProc& write,
                              bool has_data) = 0;
  /// As DefineProperty for a byte block: `read` gets a memory stream holding the bytes at
  /// position 0, `write` fills an empty memory stream.
  virtual void DefineBinaryProperty(const String& name, const TStreamProc& read,
                                    const TStreamProc& write, bool has_data) = 0;

 protected:
  TComponent* root_ = nullptr;
};

/// The error hook of TReader: gets the message of a failure; setting `handled` makes the
/// reader skip what failed and go on instead of raising.
using TReaderError = std::function<void(TReader& reader, const String& message, bool& handled)>;

class TReader : public TFiler {
 public:
  /// Reads from `stream` at its position; the stream must outlive the reader.
  explicit TReader(TStream& stream);
  ~TReader() override;

  TReaderError OnError;

  /// Reads the signature and one component: into `root` when given (its name is set from the
  /// stream), or into a new one of the stream's class, created through the registry, which
  /// the caller then owns. Resolves component references, then calls Loaded on the root and
  /// every component read. Not a component stream: EReadError "Invalid stream format".
  TComponent* ReadRootComponent(TComponent* root);
  /// Reads the properties of `instance` up to their end marker, then its children.
  virtual void ReadData(TComponent& instance);

  /// The owner and the parent of the children being read.
  TComponent* Owner() const { return owner_; }
  TComponent* Parent() const { return parent_; }

  void DefineProperty(const String& name, const TReaderProc& read, const TWriterProc& write,
                      bool has_data) override;
  void DefineBinaryProperty(const String& name, const TStreamProc& read, const TStreamProc& write,
                            bool has_data) override;

  // Values, for DefineProperty readers. A value of another type raises EReadError
  // "Invalid property value".
  int32_t ReadInteger();
  int64_t ReadInt64();
  bool ReadBoolean();
  long double ReadFloat();
  String ReadString();
  String ReadIdent();
  void ReadListBegin();
  void ReadListEnd();
  /// True when the next byte is the end marker of a list.
  bool EndOfList();

 private:
  struct Fixup;

  void ReadComponent();
  TComponent* FindOrCreate(const TObjectHeader& header, bool& created);
  void Discard(TComponent* component);
  void SkipComponentBody();
  void ReadProperty(TPersistent& instance);
  void ReadPropertyValue(TPersistent& instance, const String& path);
  bool ReadDefined(TPersistent& target, const String& name);
  void ReadStrings(TStrings& list);
  void ReadValue(TPersistent& target, const TPropInfo& prop);
  void ReadSet(TPersistent& target, const TPropInfo& prop, TValueType next);
  void ReadNameValue(TPersistent& target, const TPropInfo& prop, TValueType next);
  void ReadCollection(TCollection& collection);
  void ResolveFixups();
  TComponent* FindReference(const String& name) const;
  bool Error(const String& message);

  std::unique_ptr<TBinaryObjectReader> in_;
  TComponent* owner_ = nullptr;
  TComponent* parent_ = nullptr;
  int depth_ = 0;
  // The custom property DefineProperties is asked for, and whether a definition took it.
  const String* defined_name_ = nullptr;
  bool defined_found_ = false;
  std::vector<TComponent*> loaded_;
  std::vector<std::unique_ptr<Fixup>> fixups_;
};

class TWriter : public TFiler {
 public:
  /// Writes at the stream's position; the stream must outlive the writer.
  explicit TWriter(TStream& stream);
  ~TWriter() override;

  /// Writes the signature and `root` with its children.
  void WriteRootComponent(TComponent& root);
  /// Writes the properties of `instance` and their end marker, then its children and theirs.
  virtual void WriteData(TComponent& instance);

  void DefineProperty(const String& name, const TReaderProc& read, const TWriterProc& write,
                      bool has_data) override;
  void DefineBinaryProperty(const String& name, const TStreamProc& read, const TStreamProc& write,
                            bool has_data) override;

  // Values, for DefineProperty writers.
  void WriteInteger(int64_t value);
  void WriteBoolean(bool value);
  void WriteFloat(long double value);
  void WriteString(const String& value);
  void WriteIdent(const String& value);
  void WriteListBegin();
  void WriteListEnd();

 private:
  void WriteComponent(TComponent& component);
  void WriteProperties(const TPersistent& instance, const String& prefix);
  void WriteProperty(const TPersistent& instance, const TPropInfo& prop, const String& prefix);
  void WriteSimpleValue(const TPersistent& instance, const TPropInfo& prop);
  void WriteFloatValue(TFloatKind flavour, long double value);
  void WriteCollection(const TCollection& collection);
  String ReferenceName(const TComponent* component) const;

  std::unique_ptr<TBinaryObjectWriter> out_;
  String prefix_;
};

/// Writes `root` with its children as a component stream at the stream's position.
void WriteComponent(TStream& stream, TComponent& root);
/// Reads a component stream from the stream's position into `root`; returns `root`.
TComponent* ReadComponent(TStream& stream, TComponent& root, const TReaderError& on_error = {});
/// Reads a component stream into a new component of the stream's class, which the caller owns.
std::unique_ptr<TComponent> ReadComponent(TStream& stream, const TReaderError& on_error = {});

}  // namespace vex
