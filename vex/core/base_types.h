// The value records, enumerations and callback types that cross the library's interface.
//
// The working core is the name/value pair (TNameValue, TNameValueInt) and the two record arrays
// that keep an ordered set of such pairs with their own delimiters and render them as text
// ("name", value delimiter, "value", record delimiter, ..., without the last record delimiter
// and without any quoting):
//
//   TNameValueArrayRec recs = TNameValueArrayRec::Create(u';', u'=');
//   recs.AddNameValue(u"a", u"1");
//   recs.AddNameValue(u"b", u"2");
//   recs.AddNameValue(u"a", u"3");   // overwrites in place: index 0
//   recs.JoinRecs();                 // u"a=3;b=2"
//
// Names compare case-sensitively and whole. Everything else here is a plain value type; only
// TListRec and TStrListRec own what they point to (see there).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "vex/platform/list.h"
#include "vex/platform/object.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

class TStream;
class TDataSet;
class TField;
class TRttiType;

// --- Enumerations (members in their defined order; the ordinals are part of the interface) ---

enum TLineCompareType : uint8_t { lctSameStr, lctStartsWith, lctEndsWith, lctContains, lctRegExp };
enum TLineCompareOption : uint8_t { cmpIgnoreCase, cmpWholeWords };
using TLineCompareOptions = Set<TLineCompareOption>;
enum TLineProcessType : uint8_t { lpTrimLeft, lpTrimRight, lpInverse };
using TLineProcessTypes = Set<TLineProcessType>;
enum TBitProcType : uint8_t { bpNone, bpAnd, bpOr, bpXor };
enum TSimpleDataType : uint8_t { sdtInteger, sdtFloat, sdtString };
enum TCustomDialogType : uint8_t { dlgInfo, dlgWarning, dlgError, dlgQuery, dlgCancel, dlgNumber };
enum TAllowSaveJump : uint8_t { jmpWithOutSave, jmpWithSave, jmpCancel };
enum TCustomControlType : uint8_t { cctAuto, cctCheckBox, cctLabel, cctEdit, cctGroupBox };
enum TListOperType : uint8_t {
  lotBeginUpdate, lotEndUpdate, lotGetIndex, lotSetIndex, lotGetCount, lotDelete,
  lotPageUp, lotPageDown, lotMovePageEx, lotAddPage, lotFindIndex
};
// dtRemove (not dotRemove) is the defined spelling.
enum TDataOperType : uint8_t {
  dotDisable, dotEnable, dotRefresh, dotReload, dotGetIndex, dotGetCount, dotSetOwner,
  dtRemove, dotGetData, dotSetData
};
enum TControlPropType : uint8_t {
  cptParent, cptOwner, cptFont, cptHandle, cptName, cptClassName, cptCaption, cptText,
  cptItems, cptCoord, cptSize, cptPlace, cptColor, cptStyle, cptAlign, cptMultiLine, cptRegName
};
using TControlPropTypes = Set<TControlPropType>;
using TControlPropArray = std::vector<TControlPropType>;
enum TExcelImportError : uint8_t {
  errGood, errBadRowCount, errBadHeader, errBadNumeration, errNoNumber, errNoTextValue,
  errNoParamPath, errNoAddress
};
using TExcelImportErrors = Set<TExcelImportError>;
enum TColumnKind : uint8_t {
  ckIndex, ckAddress, ckTabSheet, ckNode, ckGroup, ckProtection, ckParameter, ckTextValue,
  ckConstraint, ckParamPath, ckBinValue
};
enum TUpdateCellValueType : uint8_t { ucvBoolean, ucvNotBoolean };
using TUpdateCellValueTypes = Set<TUpdateCellValueType>;
// TUserPrivelege and TUserPriveleges are the defined spellings.
enum TUserPrivelege : uint8_t { upNone, upAuthor, upSigner, upConductor };
using TUserPriveleges = Set<TUserPrivelege>;
enum TUserActionType : uint8_t { uatEdit, uatSign, uatControl, uatConduct };
enum TExternalEventType : uint8_t {
  etUpdate, etClose, etResize, etSave, etLoad, etShow, etOwner, etLink, etInfo, etClone
};
using TExternalEventArray = std::vector<TExternalEventType>;

// --- Name/value records -----------------------------------------------------------------------

/// A name and a string value.
struct TNameValue {
  String Name;
  String Value;

  /// Both fields as given.
  [[nodiscard]] static TNameValue Create(const String& AName, const String& AValue);
  /// Parses Init at the first Delimiter: the trimmed text before it and the trimmed text after
  /// it become Name and Value (swapped when DoSwap); later delimiters stay in the right part.
  /// Without a delimiter, Name is the whole of Init, untrimmed, and Value is empty.
  [[nodiscard]] static TNameValue Create(const String& Init, bool DoSwap, Char Delimiter);

  /// Name + Delimiter + Value; Value alone when Name is empty.
  String JoinFields(Char Delimiter) const;
};
using PNameValue = TNameValue*;
using TNameValueArray = std::vector<TNameValue>;

/// A name and a signed 32-bit value.
struct TNameValueInt {
  String Name;
  int32_t Value = 0;

  [[nodiscard]] static TNameValueInt Create(const String& AName, int32_t AValue);
  /// Parses Init at the first "=": Name is the trimmed left part and Value the trimmed right
  /// part as an integer, 0 when it is not one (sides swapped when DoSwap). Without "=": a whole
  /// integer gives an empty Name and that Value; anything else is the Name, untrimmed, with 0.
  [[nodiscard]] static TNameValueInt Create(const String& Init, bool DoSwap);

  /// Reads "name = integer" from S. Value becomes 0 first. Without "=" the result is false and
  /// Name keeps its previous content (deliberately). Otherwise Name is the trimmed left part and
  /// the result tells whether the trimmed right part is an integer, which is stored in Value
  /// (0 when it is not).
  bool Accept(const String& S);

  /// Name + "=" + decimal Value; the decimal Value alone when Name is empty.
  String JoinFields() const;
};
using PNameValueInt = TNameValueInt*;
using TNameValueIntArray = std::vector<TNameValueInt>;

/// An ordered set of TNameValue with its text delimiters. Names stay unique while records are
/// added only through AddNameValue; Recs may be edited directly, and then every lookup acts on
/// the first match. Lookups are linear scans: this is meant for short option lists.
struct TNameValueArrayRec {
  Char fRecDelim = 0;    // written after every record by JoinRecs (the last one is dropped)
  Char fValueDelim = 0;  // written between name and value
  TNameValueArray Recs;

  /// An empty array with the two delimiters.
  [[nodiscard]] static TNameValueArrayRec Create(Char RecDelim, Char ValueDelim);
  /// Empties Recs and keeps the delimiters.
  void Clear();
  /// Index of the first record whose Name equals AName exactly; -1 when none.
  int32_t IndexOf(const String& AName) const;
  /// Overwrites the value of the record named AName in place, or appends a new record; returns
  /// the record's index.
  int32_t AddNameValue(const String& AName, const String& AValue);
  /// Clears AValue, then copies the value of the record named AName; its index or -1.
  int32_t FindValue(const String& AName, String& AValue) const;
  /// Clears Rec, then copies record Index into it; false when Index is out of range.
  bool GetRecBy(int32_t Index, TNameValue& Rec) const;
  /// The record at Index, -1 meaning the last one; nullptr when out of range or empty. The
  /// pointer is valid until Recs is next resized.
  TNameValue* RecPtr(int32_t Index);
  const TNameValue* RecPtr(int32_t Index) const;
  int32_t ValueCount() const;
  /// The text form: name, fValueDelim, value, joined by fRecDelim; no quoting of any kind.
  String JoinRecs() const;
  /// Appends Name + fValueDelim + Value per record, inside one BeginUpdate/EndUpdate.
  void SaveToList(TStrings& List) const;
  /// Clears List (unlike the integer array's SaveToListEx, deliberately) and adds one line per
  /// record: Option 1 Name, 2 Value, 3 Name + fValueDelim + Value, 4 Value + fValueDelim + Name,
  /// anything else an empty line. Inside one BeginUpdate/EndUpdate.
  void SaveToListEx(TStrings& List, uint8_t Option) const;
};
using PNameValueArrayRec = TNameValueArrayRec*;

/// The same as TNameValueArrayRec for integer values.
struct TNameValueIntArrayRec {
  Char fRecDelim = 0;
  Char fValueDelim = 0;
  TNameValueIntArray Recs;

  [[nodiscard]] static TNameValueIntArrayRec Create(Char RecDelim, Char ValueDelim);
  void Clear();
  int32_t IndexOf(const String& AName) const;
  int32_t AddNameValue(const String& AName, int32_t AValue);
  /// Sets AValue from the record named AName; leaves it untouched when there is none. Its
  /// index or -1.
  int32_t FindValue(const String& AName, int32_t& AValue) const;
  /// Sets Rec to an empty Name and Value -1, then copies record Index; false when out of range.
  bool GetRecBy(int32_t Index, TNameValueInt& Rec) const;
  TNameValueInt* RecPtr(int32_t Index);
  const TNameValueInt* RecPtr(int32_t Index) const;
  int32_t ValueCount() const;
  String JoinRecs() const;
  /// Appends one line per record: with UseObjects the Name with the Value as the line's integer
  /// tag (TStrings::TagToObject), otherwise Name + fValueDelim + decimal Value.
  void SaveToList(TStrings& List, bool UseObjects) const;
  /// As TNameValueArrayRec::SaveToListEx, but appends to what List holds (deliberately).
  void SaveToListEx(TStrings& List, uint8_t Option) const;
};
using PNameValueIntArrayRec = TNameValueIntArrayRec*;

/// The title, filter description and extension(s) of a file dialog.
struct TFileDialogParams {
  String DlgTitle;
  String FileHint;
  String FileExt;

  [[nodiscard]] static TFileDialogParams Create(const String& ADlgTitle, const String& AFileHint,
                                                const String& AFileExt);
};
using PFileDialogParams = TFileDialogParams*;

// --- Callback types ---------------------------------------------------------------------------
// Closures that may capture state; an empty std::function stands for "no callback". Where no
// operation of the library fixes the arguments of a type, it takes the plain argument list its
// name suggests (strings by const reference, objects as TObject*, controls and owners too).

using TSimpleProc = std::function<void()>;
using TStringProc = std::function<void(const String& S)>;
using TStringEvent = std::function<void(TObject* Sender, const String& S)>;
using TIntEvent = std::function<void(TObject* Sender, int32_t Value)>;
using TNotifyFunc = std::function<void(TObject* Sender)>;
using TBoolValueProc = std::function<void(bool Value)>;
using TStrBoolFunc = std::function<bool(const String& S)>;
using TIntBoolFunc = std::function<bool(int32_t Index)>;
using TObjBoolFunc = std::function<bool(TObject* Obj)>;
using TObjBool2Func = std::function<bool(TObject* Obj, bool Param)>;
using TEnableStrFunc = std::function<bool(const String& S)>;
using TEnableObjFunc = std::function<bool(TObject* Obj)>;
using TEnableIntFunc = std::function<bool(int32_t Value)>;
using TStrStrFunc = std::function<String(const String& S)>;
using TStorageStrFunc = std::function<String(const String& Section, const String& Key)>;
using TIntStringFunc = std::function<int32_t(const String& Value)>;
using TObjStringFunc = std::function<TObject*(const String& Value)>;
using TIntObjFunc = std::function<int32_t(TObject* Instance)>;
using TStrObjFunc = std::function<String(TObject* Instance)>;
using TIntMapFunc = std::function<int32_t(int32_t Value)>;
using TCalcIntValue = std::function<int32_t(int32_t Value)>;
using TConvertIntValue = std::function<int32_t(int32_t Group, int32_t Value)>;
/// Reads (Value null) or writes (*Value) a value; returns the value now held.
using TGetSetIntValue = std::function<int32_t(int32_t* Value)>;
using TGetSetBoolValue = std::function<bool(bool* Value)>;
using TKeyValueProc = std::function<void(const String& Key, const String& Value)>;
using TKeyValueIntProc =
    std::function<void(const String& Key, const String& Value, int32_t Param)>;
using TKeyValueObjProc =
    std::function<void(const String& Key, const String& Value, TObject* Obj)>;
using TKeyValueIntFunc = std::function<int32_t(const String& Key, const String& Value)>;
using TKeyValueNameIntFunc =
    std::function<int32_t(const String& Key, const String& Value, const String& Name)>;
using TObjKeyValueEvent =
    std::function<void(TObject* Sender, const String& Key, const String& Value)>;
using TOwnerValueProc = std::function<void(TObject* AOwner, const String& Value)>;
using TIndexProc = std::function<void(TObject* Instance, int32_t SrcIndex, int32_t DstIndex)>;
using TIndexFunc =
    std::function<int32_t(TObject* Instance, int32_t SrcIndex, int32_t DstIndex, int32_t Param)>;
using TIntObjProc = std::function<void(int32_t Index, TObject* Obj)>;
using TIntObjHandler = std::function<bool(int32_t Index, TObject* Obj)>;
using TPropValueChangeProc = std::function<void(TObject* Instance, const String& PropName)>;
using TCustomDataProc = std::function<void(const void* Data, int32_t Size)>;
using TCustomBytesProc = std::function<void(const TBytes& AData)>;
using TRefVarBytesProc = std::function<void(TBytes& AData)>;
using TRefConstBytesProc = std::function<void(const TBytes& AData)>;
using TCheckMemoryFunc =
    std::function<bool(const void* Source, int32_t Start, int32_t Size, int32_t Total)>;
using TSetCheckMemoryFuncProc = std::function<void(const TCheckMemoryFunc& Func)>;
using TFileNameMethod = std::function<void(const String& FileName)>;
using TFileNameProc = std::function<void(const String& FileName)>;
using TImportErrorProc = std::function<void(TExcelImportErrors Errors)>;
using TTransferDataFunc =
    std::function<int32_t(void* Source, void* Dest, uint16_t Command, uint16_t Option)>;
using TListSortCompareObj = std::function<int32_t(void* Item1, void* Item2)>;
using TFindCompareObj = std::function<int32_t(int32_t Index, const void* PValue)>;
using TSortObjFunc = std::function<int32_t(TObject* Obj1, TObject* Obj2)>;
using TRefSortCompareFunc = std::function<int32_t(void* Item1, void* Item2)>;
using TRefListCompareFunc = std::function<int32_t(TStrings* List, int32_t Index1, int32_t Index2)>;
using TRefStringCompareFunc = std::function<int32_t(const String& S1, const String& S2)>;
using TRefStringSortFunc = std::function<int32_t(const String& S1, const String& S2)>;
using TStringCompareFunc = std::function<int32_t(const String& S1, const String& S2)>;
using TStringSortFunc = std::function<int32_t(const String& S1, const String& S2)>;
using TStringIntegerFunc = std::function<int32_t(const String& S, int32_t Param)>;
using TStringListSortCompFunc =
    std::function<int32_t(TStringList* List, int32_t Index1, int32_t Index2)>;
/// A comparison of SubStr with AText; non-zero means a match (for containment, the position).
using TGetPosFunc = std::function<int32_t(const String& SubStr, const String& AText)>;
using TCustomLinesProc = std::function<void(TStrings* Lines)>;
using TCustomLinesFunc = std::function<bool(TStrings* Lines)>;
using TCustomStreamFunc = std::function<bool(TStream* Stream)>;
using TCustomGetPageOrCountFunc = std::function<int32_t(TObject* Sender, bool GetCount)>;
using TCustomGetPageIndexFunc = std::function<int32_t(TObject* Page)>;
using TCustomGetPageIndexOrParentFunc = std::function<int32_t(TObject* Page, bool GetParent)>;
using TCustomGetStrByObjFunc = std::function<String(TObject* Obj)>;
using TCustomGetStrByObjPtrFunc = std::function<String(TObject* Obj, void* Ptr)>;
using TGetSubTextFunc = std::function<String(const String& SubText)>;
using TGetRowStrFunc = std::function<String(int32_t ARow, const String& DefValue)>;
using THandleMemDataFunc = std::function<bool(TStream* Stream)>;
using THandleCoordDataProc = std::function<void(int32_t X, int32_t Y, const String& Data)>;
using TEnableCoordStrFunc = std::function<bool(int32_t X, int32_t Y, const String& S)>;
using TStringDlgTypeFunc = std::function<int32_t(const String& Text, TCustomDialogType DlgType)>;
using TSaveChangeMsgFunc = std::function<int32_t(const String& AMessage, TObject* AOwner)>;
using TSimpleCreateControlFunc = std::function<TObject*(TObject* AOwner, TObject* AParent)>;
using TCreatePageEvent = std::function<void(TObject* AParent, TObject* AOwner,
                                            const TSimpleCreateControlFunc& CreateChildEvent)>;
using TCreatePageHandler = std::function<TObject*(TObject* AParent, TObject* AOwner)>;
using TCreatePageControlFunc = std::function<TObject*(TObject* AOwner, TObject* AParent)>;
using TCreateControlFunc =
    std::function<TObject*(TObject* AOwner, TObject* AParent, const String& AName)>;
using TCreateObjectWithTabsFunc = std::function<TObject*(TObject* AOwner, TObject* AParent,
                                                         const TStringDynArray& TabCaptions)>;
using TEnumCompsProc = std::function<void(TObject* Component)>;
using TListOperProc = std::function<int32_t(TListOperType Oper, int32_t Param)>;
using TListDelegate = std::function<int32_t(TListOperType Oper, int32_t Param)>;
using TCustomDataDelegate = std::function<int32_t(TDataOperType Oper, TObject* Data)>;
/// Called once with a freshly prepared viewer or dialog, before it is shown.
using TCustomObjProc = std::function<void(TObject* Obj)>;
using TRefIndexValueProc = std::function<void(int32_t Index, const String& Value)>;
using TRefIndexStrFunc = std::function<String(int32_t Index)>;
using TRefObjStrFunc = std::function<String(TObject* Obj)>;
using TRefObjBoolFunc = std::function<bool(TObject* Obj)>;
using TRefIntBoolFunc = std::function<bool(int32_t Value)>;
using TRefStrIntBoolFunc = std::function<bool(const String& S, int32_t Value)>;
using TRefStrIntFunc = std::function<int32_t(const String& S)>;
using TRefStrBoolFunc = std::function<bool(const String& S)>;
using TRefIntObjStrProc = std::function<void(int32_t Index, TObject* Obj, const String& S)>;
using TRefObjStrProc = std::function<void(TObject* Obj, const String& S)>;
using TRefKeyValStrProc =
    std::function<void(const String& Key, const String& Value, const String& S)>;
using TRefIntStrProc = std::function<void(int32_t Index, const String& S)>;
using TRefIntVarProc = std::function<void(int32_t& Value)>;
using TRefPtrIndexOptionProc = std::function<void(void* Ptr, int32_t Index, int32_t Option)>;
using TRefPtrOptionProc = std::function<void(void* Ptr, int32_t Option)>;

// Dataset callbacks.
using TDataSetProc = std::function<void(TDataSet* DataSet)>;
using TDataSetEnableFunc = std::function<bool(TDataSet* DataSet)>;
using TDataSetParamEnableFunc = std::function<bool(TDataSet* DataSet, void* Param)>;
using TDataSetStringFunc = std::function<String(TDataSet* DataSet)>;
using TFieldEnableFunc = std::function<bool(TField* Field)>;
using TKeyFieldEnableFunc = std::function<bool(TField* Field, TField* KeyField)>;

using TSetPropValueFunc =
    std::function<bool(TObject* Instance, const String& PropName, const Variant& Value)>;

// Typed-variable callbacks: a value of a walked variable is handed over by its path (Name),
// the name of its type (TypeName) and its value as a Variant; readers may replace the value.
using TVariableReadFunc = std::function<Variant(const String& Name)>;
using TVariableWriteProc = std::function<void(const String& Name, const Variant& Value)>;
/// True when a value for Name was found and stored in Value.
using TVariableReadFuncRef = std::function<bool(const String& Name, Variant& Value)>;
using TVariableReadFuncTypeNameRef =
    std::function<bool(const String& Name, const String& TypeName, Variant& Value)>;
using TVariableEnumProcTypeNameRef =
    std::function<void(const String& Name, const String& TypeName)>;
using TVariableWriteProcTypeNameRef =
    std::function<void(const String& Name, const String& TypeName, const Variant& Value)>;
using TVariableReadProcTypeNameRef =
    std::function<void(const String& Name, const String& TypeName, Variant& Value)>;
using TVariableWriteProcRef = std::function<void(const String& Name, const Variant& Value)>;
/// Name, type description and address of a value inside the walked variable.
using TVariableTypeProcRef =
    std::function<void(const String& Name, const TRttiType* AType, void* Value)>;
using TVariantReadFuncRef = std::function<Variant(const String& Name)>;
using TVariantWriteProcRef = std::function<void(const String& Name, const Variant& Value)>;
/// The value in Value may be replaced (in and out).
using TVariantReadWriteProcRef = std::function<void(const String& Name, Variant& Value)>;

// --- Further array types --------------------------------------------------------------------

using TControlArray = std::vector<TObject*>;
/// Components; every control is a component, so a control array converts element for element.
using TComponentArray = std::vector<TObject*>;
using TNotifyEventArray = std::vector<TNotifyEvent>;
using TDoubleArray = std::vector<double>;
using TDynDoubleArray = std::vector<double>;
using TVariantDynArray = std::vector<Variant>;
using TStrPointerArray = std::vector<String*>;

// --- Wrapper records (one value handed through a generic interface) -------------------------

struct TStrRec {
  String Str;
};
using PStrRec = TStrRec*;

struct TObjectRec {
  TObject* Obj = nullptr;
};
using PObjectRec = TObjectRec*;

struct TPointerRec {
  void* Ptr = nullptr;
};
using PPointerRec = TPointerRec*;

/// Owns its pointer list (the records that GetListRec returns hand the list to the caller).
struct TListRec {
  std::unique_ptr<TList> List;
};
using PListRec = TListRec*;

/// Owns its string list (the records that GetStrListRec returns hand the list to the caller).
struct TStrListRec {
  std::unique_ptr<TStringList> List;
};
using PStrListRec = TStrListRec*;

struct TStringObjRec {
  String Str;
  TObject* Obj = nullptr;
};
using PStringObjRec = TStringObjRec*;

struct TString2Rec {
  String Arg;
  String Res;
};
using PString2Rec = TString2Rec*;

struct TStringKeyRec {
  String Str;
  int32_t Key = 0;
};
using PStringKeyRec = TStringKeyRec*;

struct TObjectKeyRec {
  TObject* Obj = nullptr;
  int32_t Key = 0;
};
using PObjectKeyRec = TObjectKeyRec*;

struct TOptionKeyRec {
  String Str;
  TObject* Obj = nullptr;
  int32_t Option = 0;
  int32_t Key = 0;
};
using POptionKeyRec = TOptionKeyRec*;

struct TFuncObjRec {
  TSimpleProc Func;
  TObject* Obj = nullptr;
};
using PFuncObjRec = TFuncObjRec*;

struct TEventObjRec {
  TNotifyEvent Event;
  TObject* Obj = nullptr;
};
using PEventObjRec = TEventObjRec*;

struct TOffsetRec {
  int32_t Index = 0;
  int32_t Offset = 0;
};
using POffsetRec = TOffsetRec*;
using TOffsetRecArray = std::vector<TOffsetRec>;

struct TMinMaxRec {
  int32_t FMin = 0;
  int32_t FMax = 0;
};
using PMinMaxRec = TMinMaxRec*;

struct TSplitRec {
  String s1;
  String s2;
  String s3;
};
using PSplitRec = TSplitRec*;

/// Numeric input parameters of the value input dialogs: the allowed range, the number of
/// integer and fractional digits shown, the step of the spin buttons and a display multiplier.
struct TNumParamsRec {
  double MinValue = 0;
  double MaxValue = 0;
  int32_t IntPart = 0;
  int32_t RealPart = 0;
  double Step = 0;
  double Multiplier = 0;
};
using PNumParamsRec = TNumParamsRec*;

// --- Interfaces of the dialog and viewer units ----------------------------------------------
// Abstract classes; an implementation also derives from TObject (they do not, to keep one
// TObject base per object).

/// Something that holds a list and answers the list operations of TListOperType.
class IListOwner {
 public:
  virtual ~IListOwner() = default;
  /// Runs Oper with Param (an index, a count or a page step); returns an index or a count, or
  /// -1 when the operation does not apply.
  virtual int32_t ListOperation(TListOperType Oper, int32_t Param) = 0;
};

/// Something that offers numbered commands (menu items, buttons).
class ICustomCommands {
 public:
  virtual ~ICustomCommands() = default;
  virtual bool CommandEnabled(int32_t Command) const = 0;
  /// Runs Command; false when it is unknown or disabled.
  virtual bool ExecuteCommand(int32_t Command) = 0;
};

/// Something that shows status text in numbered panels.
class IStatusCommands {
 public:
  virtual ~IStatusCommands() = default;
  virtual String GetStatusText(int32_t Panel) const = 0;
  virtual void SetStatusText(int32_t Panel, const String& Text) = 0;
};

// --- Free functions ---------------------------------------------------------------------------

/// A record holding S.
TStrRec GetStrRec(const String& S);
/// A record holding a new pointer list with the elements of Items in order (empty for an empty
/// array). The record, and so the caller, owns the list.
TListRec GetListRec(const std::vector<void*>& Items);
/// A record holding a new string list whose text is S (one item per line; CR LF, LF and CR all
/// separate lines). The record, and so the caller, owns the list.
TStrListRec GetStrListRec(const String& S);

}  // namespace vex
