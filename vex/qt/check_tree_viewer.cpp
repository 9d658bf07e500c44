#include "vex/qt/check_tree_viewer.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QStatusBar>
#include <QStyleOptionViewItem>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QToolTip>
#include <QTreeView>
#include <QVBoxLayout>

#include "vex/platform/exceptions.h"
#include "vex/qt/qt_string.h"
#include "vex/ui/dialog_service.h"

namespace vex::qt {

namespace {

constexpr int kItemHeight = 18;
constexpr int kHintMs = 1000;
const char* const kFileFilter = "Text files (*.txt);;All files (*)";

TQtCheckTreeViewerService& Service() {
  static TQtCheckTreeViewerService service;
  return service;
}

// Draws the check indicator of radio nodes as a radio button; everything else as the base style.
class RadioItemStyle : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element == PE_IndicatorItemViewItemCheck && item != nullptr &&
        item->index.data(TCheckTreeItemModel::KindRole).toInt() == nkRadio) {
      QStyleOptionButton radio;
      radio.QStyleOption::operator=(*option);
      QProxyStyle::drawPrimitive(PE_IndicatorRadioButton, &radio, painter, widget);
      return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
};

// Every row is kItemHeight pixels high.
class FixedHeightDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), kItemHeight};
  }
};

// The List page shows the text with the editor's own line breaks.
QString ListPageText(const String& text) {
  QString shown = ToQString(text);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  return shown;
}

QPushButton* AddButton(QHBoxLayout* layout, const QString& caption, QWidget* parent) {
  auto* button = new QPushButton(caption, parent);
  button->setFixedSize(100, 30);
  layout->addWidget(button);
  return button;
}

}  // namespace

// --- TCheckTreeItemModel --------------------------------------------------------------------

TCheckTreeItemModel::TCheckTreeItemModel(TCheckTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree) {
  tree_.SetObserver(this);
}

TCheckTreeItemModel::~TCheckTreeItemModel() { tree_.SetObserver(nullptr); }

TCheckTreeNode* TCheckTreeItemModel::NodeOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<TCheckTreeNode*>(index.internalPointer()) : nullptr;
}

QModelIndex TCheckTreeItemModel::IndexOf(const TCheckTreeNode* node) const {
  if (node == nullptr) return {};
  return createIndex(node->Index(), 0, const_cast<TCheckTreeNode*>(node));
}

QModelIndex TCheckTreeItemModel::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
  const TCheckTreeNode* under = NodeOf(parent);
  return IndexOf(under == nullptr ? tree_.RootNodes(row) : under->Item(row));
}

QModelIndex TCheckTreeItemModel::parent(const QModelIndex& child) const {
  const TCheckTreeNode* node = NodeOf(child);
  return node == nullptr ? QModelIndex() : IndexOf(node->Parent());
}

int TCheckTreeItemModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  const TCheckTreeNode* node = NodeOf(parent);
  return node == nullptr ? tree_.RootCount() : node->Count();
}

int TCheckTreeItemModel::columnCount(const QModelIndex&) const { return 1; }

QVariant TCheckTreeItemModel::data(const QModelIndex& index, int role) const {
  const TCheckTreeNode* node = NodeOf(index);
  if (node == nullptr) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return ToQString(node->Text());
    case Qt::CheckStateRole:
      if (node->Kind() == nkPlain) return {};
      return node->Checked() ? Qt::Checked : Qt::Unchecked;
    case KindRole:
      return static_cast<int>(node->Kind());
    default:
      return {};
  }
}

bool TCheckTreeItemModel::setData(const QModelIndex& index, const QVariant&, int role) {
  TCheckTreeNode* node = NodeOf(index);
  if (node == nullptr || role != Qt::CheckStateRole) return false;
  return tree_.ToggleByUser(*node);
}

Qt::ItemFlags TCheckTreeItemModel::flags(const QModelIndex& index) const {
  const TCheckTreeNode* node = NodeOf(index);
  if (node == nullptr) return Qt::NoItemFlags;
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (node->Kind() != nkPlain && !tree_.ReadOnly()) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

void TCheckTreeItemModel::TreeChanging() {
  resetting_ = true;
  beginResetModel();
}

void TCheckTreeItemModel::TreeChanged() {
  endResetModel();
  resetting_ = false;
  emit TreeReset();
}

void TCheckTreeItemModel::NodeChanged(TCheckTreeNode& node) {
  const QModelIndex at = IndexOf(&node);
  emit dataChanged(at, at);
}

void TCheckTreeItemModel::ExpansionChanged(TCheckTreeNode* node) { emit ExpansionChangedIn(node); }

// During a reset the view's indexes are stale; TreeReset brings the selection over afterwards.
void TCheckTreeItemModel::SelectionChanged() {
  if (!resetting_) emit SelectionChangedIn();
}

// --- TCheckTreeViewer: building --------------------------------------------------------------

TCheckTreeViewer::TCheckTreeViewer(QWidget* parent)
    : QDialog(parent), owned_(std::make_unique<TCheckTreeViewerForm>()), form_(owned_.get()) {
  Build();
}

TCheckTreeViewer::TCheckTreeViewer(TCheckTreeViewerForm& form, QWidget* parent)
    : QDialog(parent), form_(&form) {
  Build();
}

TCheckTreeViewer::~TCheckTreeViewer() {
  if (form_->Window == this) form_->Window = nullptr;
  // The model stops observing the tree before the form (when owned) goes.
  delete model_;
}

void TCheckTreeViewer::Build() {
  resize(800, 660);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  BuildTopPanel();
  BuildPages();
  BuildStatusBar();
  BuildMenu();
  ApplyForm();
}

void TCheckTreeViewer::BuildTopPanel() {
  auto* panel = new QWidget(this);
  panel->setFixedHeight(54);
  auto* buttons = new QHBoxLayout(panel);
  buttons->setContentsMargins(12, 12, 12, 12);
  ok_ = AddButton(buttons, tr("OK"), panel);
  cancel_ = AddButton(buttons, tr("Cancel"), panel);
  load_ = AddButton(buttons, tr("Load..."), panel);
  save_ = AddButton(buttons, tr("Save..."), panel);
  buttons->addStretch();
  ok_->setDefault(true);
  connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
  connect(load_, &QPushButton::clicked, this, &TCheckTreeViewer::Load);
  connect(save_, &QPushButton::clicked, this, &TCheckTreeViewer::Save);
  static_cast<QVBoxLayout*>(layout())->addWidget(panel);
}

void TCheckTreeViewer::BuildPages() {
  pages_ = new QTabWidget(this);
  model_ = new TCheckTreeItemModel(form_->Tree);
  tree_view_ = new QTreeView(pages_);
  auto* style = new RadioItemStyle();
  style->setParent(tree_view_);
  tree_view_->setStyle(style);
  tree_view_->setItemDelegate(new FixedHeightDelegate(tree_view_));
  tree_view_->setUniformRowHeights(true);
  tree_view_->setHeaderHidden(true);
  tree_view_->setModel(model_);
  tree_view_->setContextMenuPolicy(Qt::ActionsContextMenu);
  pages_->addTab(tree_view_, tr("Tree"));

  list_edit_ = new QPlainTextEdit(pages_);
  QFont font(QStringLiteral("Monospace"));
  font.setStyleHint(QFont::Monospace);
  font.setPixelSize(16);
  list_edit_->setFont(font);
  list_edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
  list_edit_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  list_edit_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  pages_->addTab(list_edit_, tr("List"));
  static_cast<QVBoxLayout*>(layout())->addWidget(pages_, 1);

  connect(model_, &TCheckTreeItemModel::TreeReset, this, [this] {
    SyncExpansion(nullptr);
    SyncSelection();
    UpdateCounts();
  });
  connect(model_, &TCheckTreeItemModel::ExpansionChangedIn, this, &TCheckTreeViewer::SyncExpansion);
  connect(model_, &TCheckTreeItemModel::SelectionChangedIn, this, &TCheckTreeViewer::SyncSelection);
  connect(tree_view_, &QTreeView::expanded, this, [this](const QModelIndex& index) {
    if (!syncing_) TCheckTreeItemModel::NodeOf(index)->SetExpanded(true);
  });
  connect(tree_view_, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
    if (!syncing_) TCheckTreeItemModel::NodeOf(index)->SetExpanded(false);
  });
  connect(tree_view_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { NodeSelected(current); });
}

void TCheckTreeViewer::BuildStatusBar() {
  status_bar_ = new QStatusBar(this);
  status_bar_->setSizeGripEnabled(false);
  const int widths[4] = {100, 100, 120, 50};
  for (int i = 0; i < 4; ++i) {
    panels_[i] = new QLabel(status_bar_);
    panels_[i]->setMinimumWidth(widths[i]);
    status_bar_->addWidget(panels_[i], i == 3 ? 1 : 0);
  }
  static_cast<QVBoxLayout*>(layout())->addWidget(status_bar_);
}

void TCheckTreeViewer::BuildMenu() {
  auto add = [this](const QString& caption, auto&& slot) {
    auto* action = new QAction(caption, tree_view_);
    connect(action, &QAction::triggered, this, slot);
    tree_view_->addAction(action);
  };
  add(tr("Find Parent..."), [this] { FindNode(0); });
  add(tr("Find Child..."), [this] { FindNode(1); });
  add(tr("Copy Text"), [this] { CopyText(); });
  add(tr("Collapse All"), [this] { CollapseAll(); });
  add(tr("Expand All"), [this] { ExpandAll(); });
}

// --- TCheckTreeViewer: state -----------------------------------------------------------------

void TCheckTreeViewer::AcceptParams(TObject* obj, const String& text, const String& caption,
                                    const TCustomObjProc& proc, uint8_t options) {
  vex::AcceptParams(*form_, obj, text, caption, options);
  ApplyForm();
  pages_->setCurrentWidget(tree_view_);
  if (proc) {
    form_->Window = this;
    proc(form_);
    ApplyForm();
  }
}

void TCheckTreeViewer::ApplyForm() {
  setWindowTitle(ToQString(form_->Caption));
  list_edit_->setPlainText(ListPageText(form_->ListText));
  list_edit_->setReadOnly(form_->ReadOnly());
  load_->setVisible((form_->Options & ctvShowLoad) != 0 && !form_->ReadOnly());
  save_->setVisible((form_->Options & ctvShowSave) != 0);
  SyncExpansion(nullptr);
  SyncSelection();
  UpdateCounts();
}

void TCheckTreeViewer::UpdateCounts() {
  panels_[0]->setText(ToQString(NodesStatusText(form_->Tree)));
  panels_[1]->setText(ToQString(LinesStatusText(form_->ListText)));
}

void TCheckTreeViewer::SyncExpansion(TCheckTreeNode* node) {
  syncing_ = true;
  if (node != nullptr) {
    tree_view_->setExpanded(model_->IndexOf(node), node->Expanded());
  } else {
    int32_t expanded = 0;
    const int32_t count = form_->Tree.Count();
    for (int32_t i = 0; i < count; ++i) expanded += form_->Tree.Items(i)->Expanded() ? 1 : 0;
    if (expanded == count) {
      tree_view_->expandAll();
    } else {
      tree_view_->collapseAll();
      for (int32_t i = 0; expanded > 0 && i < count; ++i) {
        TCheckTreeNode* item = form_->Tree.Items(i);
        if (item->Expanded()) tree_view_->setExpanded(model_->IndexOf(item), true);
      }
    }
  }
  syncing_ = false;
}

void TCheckTreeViewer::SyncSelection() {
  const QModelIndex index = model_->IndexOf(form_->Tree.Selected());
  if (tree_view_->currentIndex() != index) {
    tree_view_->setCurrentIndex(index);
    if (index.isValid()) tree_view_->scrollTo(index);
  }
  NodeSelected(index);
}

void TCheckTreeViewer::NodeSelected(const QModelIndex& current) {
  TCheckTreeNode* node = TCheckTreeItemModel::NodeOf(current);
  form_->Tree.SetSelected(node);
  panels_[2]->setText(node == nullptr ? QString() : ToQString(IndexStatusText(*node)));
  panels_[3]->setText(node == nullptr ? QString() : ToQString(NodePath(*node)));
}

QString TCheckTreeViewer::StatusText(int panel) const {
  return panel >= 0 && panel < 4 ? panels_[panel]->text() : QString();
}

QAction* TCheckTreeViewer::MenuAction(const QString& caption) const {
  for (QAction* action : tree_view_->actions()) {
    if (action->text() == caption) return action;
  }
  return nullptr;
}

// --- TCheckTreeViewer: operations ------------------------------------------------------------

void TCheckTreeViewer::FindNode(int32_t level) { FindNodeByQuery(form_->Tree, level); }

void TCheckTreeViewer::CopyText() {
  const TCheckTreeNode* node = form_->Tree.Selected();
  if (node == nullptr) return;
  QApplication::clipboard()->setText(ToQString(node->Text()));
  QToolTip::showText(mapToGlobal(QPoint(width() / 2, height() - 40)),
                     ToQString(CopiedCharsText(node->Text())), this, QRect(), kHintMs);
}

void TCheckTreeViewer::CollapseAll() { form_->Tree.FullCollapse(); }

void TCheckTreeViewer::ExpandAll() { form_->Tree.FullExpand(); }

String TCheckTreeViewer::FileName() const {
  if (!form_->FileName.empty()) return form_->FileName;
  return FromQString(QDir(QCoreApplication::applicationDirPath()).filePath("Default.txt"));
}

void TCheckTreeViewer::LoadFromFile(const String& file_name) {
  LoadTreeFromFile(*form_, file_name);
  form_->FileName = file_name;
  list_edit_->setPlainText(ListPageText(form_->ListText));
  UpdateCounts();
}

void TCheckTreeViewer::SaveToFile(const String& file_name) {
  SaveTreeToFile(*form_, file_name);
  form_->FileName = file_name;
}

void TCheckTreeViewer::Load() {
  QFileDialog dialog(this, tr("Load"), ToQString(FileName()), tr(kFileFilter));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  try {
    LoadFromFile(FromQString(dialog.selectedFiles().first()));
  } catch (const Exception& e) {
    if (IDialogService* service = DialogService()) {
      service->MessageBox(u"Load", e.Message(), diError, dbOK, 0);
    }
  }
}

void TCheckTreeViewer::Save() {
  QFileDialog dialog(this, tr("Save"), ToQString(FileName()), tr(kFileFilter));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("txt"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  try {
    SaveToFile(FromQString(dialog.selectedFiles().first()));
  } catch (const Exception& e) {
    if (IDialogService* service = DialogService()) {
      service->MessageBox(u"Save", e.Message(), diError, dbOK, 0);
    }
  }
}

// --- creating and showing --------------------------------------------------------------------

std::unique_ptr<TCheckTreeViewer> CreateCheckTreeViewer(TObject* obj, const String& Text,
                                                        const String& Caption,
                                                        const TCustomObjProc& Proc,
                                                        uint8_t Options) {
  auto viewer = std::make_unique<TCheckTreeViewer>(QApplication::activeWindow());
  viewer->AcceptParams(obj, Text, Caption, Proc, Options);
  return viewer;
}

bool TQtCheckTreeViewerService::ShowCheckTreeViewer(TCheckTreeViewerForm& form,
                                                    const TCustomObjProc& Prepare) {
  TCheckTreeViewer viewer(form, QApplication::activeWindow());
  viewer.Pages()->setCurrentWidget(viewer.TreeView());
  form.Window = &viewer;
  if (Prepare) {
    Prepare(&form);
    viewer.ApplyForm();
  }
  const bool ok = viewer.exec() == QDialog::Accepted;
  form.Window = nullptr;
  return ok;
}

void InstallCheckTreeViewer() { SetCheckTreeViewerService(&Service()); }

void UninstallCheckTreeViewer() {
  if (CheckTreeViewerService() == &Service()) SetCheckTreeViewerService(nullptr);
}

}  // namespace vex::qt
