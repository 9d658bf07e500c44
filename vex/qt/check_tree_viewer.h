// TCheckTreeViewer, the check tree viewer window over Qt Widgets: a tree with real check boxes
// and radio buttons (one ticked radio per sibling group) above a List page with the text, OK /
// Cancel / Load... / Save..., a status bar and a menu to find, copy, collapse and expand nodes.
//
//   vex::qt::Install();                                // installs the viewer with the rest
//   vex::EditObjAsCheckTree(&lines, u"", u"Pumps", nullptr, false, vex::ctvExpanded);
#pragma once

#include <QAbstractItemModel>
#include <QDialog>
#include <memory>

#include "vex/viewers/check_tree_viewer.h"

class QAction;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStatusBar;
class QTabWidget;
class QTreeView;

namespace vex::qt {

/// Presents a TCheckTree to Qt's item views and follows its changes. Check-box and radio nodes
/// carry Qt::CheckStateRole; a user's tick goes through TCheckTree::ToggleByUser, so checks
/// cascade and radio groups stay exclusive.
class TCheckTreeItemModel : public QAbstractItemModel, public TCheckTreeObserver {
  Q_OBJECT

 public:
  /// The node's TNodeKind, for the view's drawing of radio buttons.
  static constexpr int KindRole = Qt::UserRole + 1;

  explicit TCheckTreeItemModel(TCheckTree& tree, QObject* parent = nullptr);
  ~TCheckTreeItemModel() override;

  QModelIndex IndexOf(const TCheckTreeNode* node) const;
  static TCheckTreeNode* NodeOf(const QModelIndex& index);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  void TreeReset();
  void ExpansionChangedIn(TCheckTreeNode* node);
  void SelectionChangedIn();

 private:
  void TreeChanging() override;
  void TreeChanged() override;
  void NodeChanged(TCheckTreeNode& node) override;
  void ExpansionChanged(TCheckTreeNode* node) override;
  void SelectionChanged() override;

  TCheckTree& tree_;
  bool resetting_ = false;
};

/// The check tree viewer window. It shows and edits a TCheckTreeViewerForm: its own, or one
/// handed in by the caller (which must outlive the window).
class TCheckTreeViewer : public QDialog {
  Q_OBJECT

 public:
  explicit TCheckTreeViewer(QWidget* parent = nullptr);
  explicit TCheckTreeViewer(TCheckTreeViewerForm& form, QWidget* parent = nullptr);
  ~TCheckTreeViewer() override;

  /// Fills the window from obj (a string list, stream or TQueryList) or, when obj is null,
  /// from Text; applies the option byte, selects the first node, shows the Tree page and calls
  /// Proc (when assigned) with the form. See vex::AcceptParams.
  void AcceptParams(TObject* obj, const String& text, const String& caption,
                    const TCustomObjProc& proc, uint8_t options);
  /// Shows the form's caption, List text, buttons and status again after code changed it.
  void ApplyForm();

  TCheckTreeViewerForm& Form() { return *form_; }
  TCheckTree& Tree() { return form_->Tree; }

  /// Menu operations, also reachable from the tree's context menu.
  void FindNode(int32_t level);
  void CopyText();
  void CollapseAll();
  void ExpandAll();
  /// Load and Save through a file dialog (starting at FileName, by default "Default.txt" in
  /// the program's folder), and without one.
  void Load();
  void Save();
  void LoadFromFile(const String& file_name);
  void SaveToFile(const String& file_name);
  /// The file Load and Save start from.
  String FileName() const;

  QTreeView* TreeView() const { return tree_view_; }
  QPlainTextEdit* ListEdit() const { return list_edit_; }
  QTabWidget* Pages() const { return pages_; }
  QPushButton* OkButton() const { return ok_; }
  QPushButton* CancelButton() const { return cancel_; }
  QPushButton* LoadButton() const { return load_; }
  QPushButton* SaveButton() const { return save_; }
  QStatusBar* StatusBar() const { return status_bar_; }
  /// The text of status panel 0..3 (nodes, lines, index, path).
  QString StatusText(int panel) const;
  /// The action of a context-menu item by its caption ("Find Parent...", "Copy Text", ...).
  QAction* MenuAction(const QString& caption) const;

 private:
  void Build();
  void BuildTopPanel();
  void BuildPages();
  void BuildStatusBar();
  void BuildMenu();
  void SyncExpansion(TCheckTreeNode* node);
  void SyncSelection();
  void NodeSelected(const QModelIndex& current);
  void UpdateCounts();

  std::unique_ptr<TCheckTreeViewerForm> owned_;
  TCheckTreeViewerForm* form_;
  TCheckTreeItemModel* model_ = nullptr;
  QTreeView* tree_view_ = nullptr;
  QPlainTextEdit* list_edit_ = nullptr;
  QTabWidget* pages_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* load_ = nullptr;
  QPushButton* save_ = nullptr;
  QStatusBar* status_bar_ = nullptr;
  QLabel* panels_[4] = {};
  bool syncing_ = false;
};

/// Creates the window and prepares it (AcceptParams) without showing it; the caller frees it.
std::unique_ptr<TCheckTreeViewer> CreateCheckTreeViewer(TObject* obj, const String& Text,
                                                        const String& Caption,
                                                        const TCustomObjProc& Proc,
                                                        uint8_t Options);

/// Shows the viewer modally for EditObjAsCheckTree and ViewObjAsCheckTree.
class TQtCheckTreeViewerService : public ICheckTreeViewerService {
 public:
  bool ShowCheckTreeViewer(TCheckTreeViewerForm& form, const TCustomObjProc& Prepare) override;
};

/// Installs the Qt check tree viewer as the library's viewer service (Install does this too);
/// UninstallCheckTreeViewer removes it again.
void InstallCheckTreeViewer();
void UninstallCheckTreeViewer();

}  // namespace vex::qt
