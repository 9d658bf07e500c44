// uCheckTreeViewer without a toolkit: the state of the check tree viewer window (its tree, List
// page text, caption, options, file name), how it is filled from and written back to a string
// list, a stream or a TQueryList, and the service a toolkit installs to show it.
//
//   TStringList lines;   // "1#0|Pumps\r\n\t0#0|Pump 2\r\n"
//   if (EditObjAsCheckTree(&lines, u"", u"Pumps", nullptr, false, ctvExpanded)) ...  // edited
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/object.h"
#include "vex/platform/types.h"
#include "vex/viewers/check_tv.h"

namespace vex {

/// The viewer's state, which the object callback receives (as TObject*) before the window is
/// shown; the window shows and edits exactly this.
class TCheckTreeViewerForm : public TObject {
 public:
  String Caption = u"Check Tree Viewer";
  /// The List page: the tab-indented text the tree was loaded from.
  String ListText;
  TCheckTree Tree;
  /// The option byte: ctvShowLoad, ctvShowSave, ctvExpanded, ctvReadOnly.
  uint8_t Options = 0;
  /// The file Load and Save use; empty until one is chosen.
  String FileName;
  /// The toolkit's window while it exists (a QDialog* with vex::qt), otherwise null.
  void* Window = nullptr;

  bool ReadOnly() const { return (Options & ctvReadOnly) != 0; }
  String ClassName() const override { return u"TCheckTreeViewerForm"; }
};

/// Fills form for showing: the List page gets Text and the tree is imported from its lines when
/// obj is null, otherwise both come from obj (LoadTreeFromObject); then the tree is made
/// read-only by the ctvReadOnly bit, fully expanded or collapsed by ctvExpanded, its first node
/// selected, and a non-empty Caption replaces the window caption.
void AcceptParams(TCheckTreeViewerForm& form, TObject* obj, const String& text,
                  const String& caption, uint8_t options);

/// Loads form's tree and List page from obj: a TQueryList (through ImportTreeFromQueryList,
/// its tab export on the List page), a TStrings (the tab-indented lines) or a TStream (the same
/// text as UTF-8, read from the start). False, and nothing changed, for any other object.
bool LoadTreeFromObject(TCheckTreeViewerForm& form, TObject* obj);
/// Writes tree into obj: a TQueryList gets ExportTreeToQueryList, a TStrings the tab-indented
/// lines, a TStream that text as UTF-8 from its start, resized to end with it. False for any
/// other object.
bool SaveTreeToObject(const TCheckTree& tree, TObject* obj);

/// Load and Save of the viewer: the tab-indented text as UTF-8. Load replaces tree and List page.
void LoadTreeFromFile(TCheckTreeViewerForm& form, const String& file_name);
void SaveTreeToFile(const TCheckTreeViewerForm& form, const String& file_name);

/// Status bar texts: "Nodes: " and the node count, "Lines: " and the List page's line count,
/// "Index: " and the absolute index of node.
String NodesStatusText(const TCheckTree& tree);
String LinesStatusText(const String& list_text);
String IndexStatusText(const TCheckTreeNode& node);
/// The hint after Copy Text: "Copied chars: " and the number of characters copied.
String CopiedCharsText(const String& copied);

/// Shows the check tree viewer; a toolkit installs one (vex::qt::InstallCheckTreeViewer).
class ICheckTreeViewerService {
 public:
  virtual ~ICheckTreeViewerService() = default;
  /// Shows form modally as a window, after calling Prepare (when assigned) with &form once the
  /// window exists. Returns true when it was closed with OK; form then holds the edited tree.
  virtual bool ShowCheckTreeViewer(TCheckTreeViewerForm& form, const TCustomObjProc& Prepare) = 0;
};

/// Installs the service (null uninstalls, not owned) and returns the previous one.
ICheckTreeViewerService* SetCheckTreeViewerService(ICheckTreeViewerService* service);
ICheckTreeViewerService* CheckTreeViewerService();

/// Shows obj (or Text, when obj is null) in the viewer, read-only when ReadOnly (the option
/// bit ctvReadOnly is set or cleared to match). When it is closed with OK, ReadOnly is false
/// and obj is not null, the tree is written back into obj. True when closed with OK; false at
/// once when no service is installed.
bool EditObjAsCheckTree(TObject* obj, const String& Text, const String& Caption,
                        const TCustomObjProc& Proc, bool ReadOnly, uint8_t Options);
/// EditObjAsCheckTree with ReadOnly true: nothing is ever written back.
bool ViewObjAsCheckTree(TObject* obj, const String& Text, const String& Caption,
                        const TCustomObjProc& Proc, uint8_t Options);

}  // namespace vex
