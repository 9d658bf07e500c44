#include "vex/data/stream_utils.h"

#include "vex/platform/component_io.h"
#include "vex/platform/object_text.h"
#include "vex/platform/text_io.h"

namespace vex {

namespace {

constexpr size_t kTextBufferSize = 4096;

}  // namespace

int32_t TStreamUtils::LoadStreamFromBuffer(TStream& Stream, const void* Buffer, int32_t Count) {
  Stream.SetSize(0);
  Stream.SetPosition(0);
  return static_cast<int32_t>(Stream.Write(Buffer, Count));
}

int32_t TStreamUtils::SaveStreamToBuffer(TStream& Stream, void* Buffer, int32_t Count) {
  Stream.SetPosition(0);
  return static_cast<int32_t>(Stream.Read(Buffer, Count));
}

TBytes TStreamUtils::GetStreamBytes(TStream& Stream) {
  TBytes bytes(static_cast<size_t>(Stream.Size()));
  if (!bytes.empty()) {
    Stream.SetPosition(0);
    Stream.ReadBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
  }
  return bytes;
}

int32_t TStreamUtils::SetStreamBytes(TStream& Stream, const TBytes& Bytes) {
  if (Bytes.empty()) return 0;
  Stream.SetSize(0);
  Stream.SetPosition(0);
  Stream.WriteBuffer(Bytes.data(), static_cast<int64_t>(Bytes.size()));
  return static_cast<int32_t>(Bytes.size());
}

void TStreamUtils::LoadStreamFromStr(TStream& Stream, const String& Value) {
  TStreamWriter writer(Stream, kTextBufferSize);
  writer.Write(Value);
  writer.Flush();
}

String TStreamUtils::SaveStreamToStr(TStream& Stream) {
  TStreamReader reader(Stream, TInvalidText::Raise, kTextBufferSize, /*skip_bom=*/false);
  return reader.ReadToEnd();
}

std::unique_ptr<TMemoryStream> TStreamUtils::CreateStreamFromList(const TStrings* List) {
  auto stream = std::make_unique<TMemoryStream>();
  if (List != nullptr) List->SaveToStream(*stream);
  return stream;
}

TStrings* TStreamUtils::CreateListFromStream(TStream* Stream, TStrings& List) {
  if (Stream == nullptr) return nullptr;
  List.LoadFromStream(*Stream);
  return &List;
}

std::unique_ptr<TStringList> TStreamUtils::CreateListFromStream(TStream* Stream) {
  if (Stream == nullptr) return nullptr;
  auto list = std::make_unique<TStringList>();
  list->LoadFromStream(*Stream);
  return list;
}

int32_t TStreamUtils::SaveListToBinaryStream(const TStrings& List, TStream& Stream) {
  TMemoryStream text;
  List.SaveToStream(text);
  text.SetPosition(0);
  ObjectTextToBinary(text, Stream);
  const auto written = static_cast<int32_t>(Stream.Position());
  Stream.SetPosition(0);
  return written;
}

int32_t TStreamUtils::LoadListFromBinaryStream(TStream& Stream, TStrings& List) {
  TMemoryStream text;
  Stream.SetPosition(0);
  ObjectBinaryToText(Stream, text);
  text.SetPosition(0);
  List.LoadFromStream(text);
  return List.Count();
}

int32_t TStreamUtils::ReadComponentFromList(TComponent& Component, const TStrings& List) {
  // No lines describe no component: nothing to convert, nothing to read.
  if (List.Count() == 0) return 0;
  TMemoryStream binary;
  const int32_t count = SaveListToBinaryStream(List, binary);
  if (count > 0) {
    binary.SetPosition(0);
    ReadComponent(binary, Component);
  }
  return count;
}

int32_t TStreamUtils::WriteComponentToList(TComponent& Component, TStrings& List) {
  TMemoryStream binary;
  WriteComponent(binary, Component);
  return LoadListFromBinaryStream(binary, List);
}

}  // namespace vex
