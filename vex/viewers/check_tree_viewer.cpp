#include "vex/viewers/check_tree_viewer.h"

#include "vex/companion/query_list.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

ICheckTreeViewerService* g_service = nullptr;

void ImportLines(TCheckTreeViewerForm& form, const TStrings& lines) {
  form.ListText = lines.Text();
  ImportTreeFromList(form.Tree, lines);
}

}  // namespace

void AcceptParams(TCheckTreeViewerForm& form, TObject* obj, const String& text,
                  const String& caption, uint8_t options) {
  form.Options = options;
  if (obj == nullptr) {
    TStringList lines;
    lines.SetText(text);
    ImportTreeFromList(form.Tree, lines);
    form.ListText = text;
  } else {
    LoadTreeFromObject(form, obj);
  }
  form.Tree.SetReadOnly(form.ReadOnly());
  if ((options & ctvExpanded) != 0) {
    form.Tree.FullExpand();
  } else {
    form.Tree.FullCollapse();
  }
  form.Tree.SetSelected(form.Tree.GetFirstNode());
  if (!caption.empty()) form.Caption = caption;
}

bool LoadTreeFromObject(TCheckTreeViewerForm& form, TObject* obj) {
  if (auto* list = dynamic_cast<TQueryList*>(obj)) {
    ImportTreeFromQueryList(form.Tree, *list);
    form.ListText = list->ExportToStrWithTabs();
    return true;
  }
  if (auto* strings = dynamic_cast<TStrings*>(obj)) {
    ImportLines(form, *strings);
    return true;
  }
  if (auto* stream = dynamic_cast<TStream*>(obj)) {
    TStringList lines;
    stream->SetPosition(0);
    lines.LoadFromStream(*stream);
    ImportLines(form, lines);
    return true;
  }
  return false;
}

bool SaveTreeToObject(const TCheckTree& tree, TObject* obj) {
  if (auto* list = dynamic_cast<TQueryList*>(obj)) {
    ExportTreeToQueryList(tree, *list);
    return true;
  }
  if (auto* strings = dynamic_cast<TStrings*>(obj)) {
    ExportTreeToList(tree, *strings);
    return true;
  }
  if (auto* stream = dynamic_cast<TStream*>(obj)) {
    TStringList lines;
    ExportTreeToList(tree, lines);
    stream->SetPosition(0);
    lines.SaveToStream(*stream);
    stream->SetSize(stream->Position());
    return true;
  }
  return false;
}

void LoadTreeFromFile(TCheckTreeViewerForm& form, const String& file_name) {
  TStringList lines;
  lines.LoadFromFile(file_name);
  ImportLines(form, lines);
}

void SaveTreeToFile(const TCheckTreeViewerForm& form, const String& file_name) {
  TStringList lines;
  ExportTreeToList(form.Tree, lines);
  lines.SaveToFile(file_name);
}

String NodesStatusText(const TCheckTree& tree) { return u"Nodes: " + IntToStr(tree.Count()); }

String LinesStatusText(const String& list_text) {
  TStringList lines;
  lines.SetText(list_text);
  return u"Lines: " + IntToStr(lines.Count());
}

String IndexStatusText(const TCheckTreeNode& node) {
  return u"Index: " + IntToStr(node.AbsoluteIndex());
}

String CopiedCharsText(const String& copied) {
  return u"Copied chars: " + IntToStr(static_cast<int32_t>(copied.size()));
}

ICheckTreeViewerService* SetCheckTreeViewerService(ICheckTreeViewerService* service) {
  ICheckTreeViewerService* previous = g_service;
  g_service = service;
  return previous;
}

ICheckTreeViewerService* CheckTreeViewerService() { return g_service; }

bool EditObjAsCheckTree(TObject* obj, const String& Text, const String& Caption,
                        const TCustomObjProc& Proc, bool ReadOnly, uint8_t Options) {
  if (g_service == nullptr) return false;
  const uint8_t options =
      ReadOnly ? uint8_t(Options | ctvReadOnly) : uint8_t(Options & ~ctvReadOnly);
  TCheckTreeViewerForm form;
  AcceptParams(form, obj, Text, Caption, options);
  const bool ok = g_service->ShowCheckTreeViewer(form, Proc);
  if (ok && !ReadOnly && obj != nullptr) SaveTreeToObject(form.Tree, obj);
  return ok;
}

bool ViewObjAsCheckTree(TObject* obj, const String& Text, const String& Caption,
                        const TCustomObjProc& Proc, uint8_t Options) {
  return EditObjAsCheckTree(obj, Text, Caption, Proc, true, Options);
}

}  // namespace vex
