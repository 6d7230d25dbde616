#include "ui/tools/PropertyGrid.h"

#include "ui/kit/PlainText.h"
#include "ui/kit/ReportView.h"
#include "ui/kit/Text.h"

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace carvelot {

namespace {

constexpr int kLabelColumn = 0;
constexpr int kValueColumn = 1;

class CTree : public QTreeWidget {
public:
    using QTreeWidget::itemFromIndex;
    using QTreeWidget::QTreeWidget;
    bool IsEditing() const { return state() == EditingState; }
};

// Takes an option of its opened list at once; keys and the wheel only go over the options.
class COptionBox : public QComboBox {
public:
    using QComboBox::QComboBox;
    bool m_bListOpen = false;

    void showPopup() override {
        m_bListOpen = true;
        QComboBox::showPopup();
    }
    void hidePopup() override {
        QComboBox::hidePopup();
        // The chosen option is told after this.
        QMetaObject::invokeMethod(
            this, [this] { m_bListOpen = false; }, Qt::QueuedConnection);
    }
};

class CValueDelegate : public QStyledItemDelegate {
public:
    CValueDelegate(CPropertyGrid& grid, CTree& tree)
        : QStyledItemDelegate(&tree), m_grid(grid), m_tree(tree) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        const CJDEPropSetting* row = CPropertyGrid::RowOf(m_tree.itemFromIndex(index));
        if (index.column() != kValueColumn || row == nullptr || row->m_bGroup) {
            return nullptr;
        }
        if (row->m_listOptions.empty()) {
            auto* edit = new QLineEdit(parent);
            edit->setFrame(false);
            edit->setAccessibleName(ToQString(row->m_strLabel));
            return edit;
        }
        auto* combo = new COptionBox(parent);
        combo->setAccessibleName(ToQString(row->m_strLabel));
        combo->setFrame(false);
        for (const std::string& option : row->m_listOptions) {
            combo->addItem(ToQString(option));
        }
        if (row->m_bAllowEdit) {
            combo->setEditable(true);
            // What is typed stands as it was typed.
            combo->setCompleter(nullptr);
            combo->setInsertPolicy(QComboBox::NoInsert);
        }
        auto* self = const_cast<CValueDelegate*>(this);
        connect(combo, &QComboBox::activated, self, [self, combo] {
            if (!combo->m_bListOpen) {
                return;
            }
            emit self->commitData(combo);
            emit self->closeEditor(combo);
        });
        return combo;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        const QString value = index.data(Qt::EditRole).toString();
        if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
            edit->setText(value);
        }
        if (auto* combo = qobject_cast<QComboBox*>(editor)) {
            combo->setCurrentIndex(combo->findText(value, Qt::MatchExactly | Qt::MatchCaseSensitive));
            // The file may hold a value that is none of the options; it stays until another is chosen.
            if (combo->isEditable()) {
                combo->setEditText(value);
            } else {
                combo->setPlaceholderText(value);
            }
        }
    }

    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
        QTreeWidgetItem& item = *m_tree.itemFromIndex(index);
        if (const auto* edit = qobject_cast<QLineEdit*>(editor)) {
            m_grid.SetValue(item, edit->text());
        }
        const auto* combo = qobject_cast<QComboBox*>(editor);
        if (combo != nullptr && (combo->isEditable() || combo->currentIndex() >= 0)) {
            m_grid.SetValue(item, combo->currentText());
        }
    }

    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex&) const override {
        // Editors need a little more height than a row's text.
        QRect rect = option.rect;
        const int missing = std::max(0, editor->sizeHint().height() - rect.height());
        rect.adjust(0, -missing / 2, 0, missing - missing / 2);
        editor->setGeometry(rect);
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const CJDEPropSetting* row = CPropertyGrid::RowOf(m_tree.itemFromIndex(index));
        if (row != nullptr && row->m_bGroup) {
            painter->fillRect(option.rect, option.palette.brush(QPalette::Button));
        }
        QStyledItemDelegate::paint(painter, option, index);
        painter->save();
        painter->setPen(option.palette.color(QPalette::Mid).lighter(125));
        painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
        if (index.column() == kValueColumn) {
            painter->drawLine(option.rect.topLeft(), option.rect.bottomLeft());
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(option.fontMetrics.height() + 8);
        return size;
    }

private:
    CPropertyGrid& m_grid;
    CTree& m_tree;
};

} // namespace

CPropertyGrid::CPropertyGrid(QWidget* parent) : QWidget(parent) {
    auto* tree = new CTree;
    m_pTree = tree;
    m_pTree->setObjectName(QStringLiteral("Grid"));
    m_pTree->setAccessibleName(tr("Settings"));
    m_pTree->setColumnCount(2);
    m_pTree->setHeaderLabels({QStringLiteral("Property"), QStringLiteral("Value")});
    m_pTree->setHeaderHidden(true);
    m_pTree->setUniformRowHeights(true);
    m_pTree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTree->setAllColumnsShowFocus(true);
    m_pTree->header()->setStretchLastSection(true);
    m_pTree->setItemDelegate(new CValueDelegate(*this, *tree));
    m_pTree->installEventFilter(this);
    CopyRowsByKey(*m_pTree);

    auto* area = new QFrame;
    area->setFrameShape(QFrame::StyledPanel);
    m_pName = PlainLabel();
    QFont bold = m_pName->font();
    bold.setBold(true);
    m_pName->setFont(bold);
    m_pDescription = PlainLabel();
    m_pDescription->setObjectName(QStringLiteral("Description"));
    m_pDescription->setWordWrap(true);
    m_pDescription->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* areaLayout = new QVBoxLayout(area);
    areaLayout->setContentsMargins(6, 4, 6, 4);
    areaLayout->setSpacing(2);
    areaLayout->addWidget(m_pName);
    areaLayout->addWidget(m_pDescription, 1);
    // Room for the longest description, so that the grid does not jump from row to row.
    area->setFixedHeight(m_pName->fontMetrics().lineSpacing() * 7 + 14);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_pTree, 1);
    layout->addWidget(area);
    setFocusProxy(m_pTree);

    connect(m_pTree, &QTreeWidget::currentItemChanged, this, &CPropertyGrid::ShowDescription);
    connect(m_pTree, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item, int column) {
        if (column == kValueColumn) {
            Edit(item);
        }
    });
    connect(m_pTree, &QTreeWidget::itemDoubleClicked, this, &CPropertyGrid::Edit);
}

void CPropertyGrid::SetRows(std::vector<CJDEPropSetting>& top) {
    m_pTree->clear();
    for (CJDEPropSetting& row : top) {
        AddRow(m_pTree->invisibleRootItem(), row);
    }
    m_pTree->expandAll();
    m_pTree->setCurrentItem(m_pTree->topLevelItem(0));
    m_pTree->resizeColumnToContents(kLabelColumn);
    constexpr int kGap = 16;
    m_pTree->setColumnWidth(kLabelColumn, std::min(m_pTree->columnWidth(kLabelColumn) + kGap, width() / 2));
}

void CPropertyGrid::AddRow(QTreeWidgetItem* parent, CJDEPropSetting& row) {
    auto* item = new QTreeWidgetItem(parent);
    item->setText(kLabelColumn, ToQString(row.m_strLabel));
    item->setData(kLabelColumn, Qt::UserRole, QVariant::fromValue(static_cast<void*>(&row)));
    if (row.m_bGroup) {
        QFont bold = m_pTree->font();
        bold.setBold(true);
        item->setFont(kLabelColumn, bold);
        item->setFirstColumnSpanned(true);
    } else {
        item->setText(kValueColumn, ToQString(row.GetValue()));
        item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    for (CJDEPropSetting& child : row.m_listChildren) {
        AddRow(item, child);
    }
}

CJDEPropSetting* CPropertyGrid::RowOf(const QTreeWidgetItem* item) {
    return item == nullptr
               ? nullptr
               : static_cast<CJDEPropSetting*>(item->data(kLabelColumn, Qt::UserRole).value<void*>());
}

void CPropertyGrid::SetValue(QTreeWidgetItem& item, const QString& value) {
    CJDEPropSetting& row = *RowOf(&item);
    row.SetValue(ToUtf8(value));
    item.setText(kValueColumn, ToQString(row.GetValue()));
    QFont font = m_pTree->font();
    font.setBold(row.IsModified());
    item.setFont(kValueColumn, font);
}

// A group has no value to edit.
void CPropertyGrid::Edit(QTreeWidgetItem* item) {
    const CJDEPropSetting* const row = RowOf(item);
    if (row != nullptr && !row->m_bGroup && !static_cast<CTree*>(m_pTree)->IsEditing()) {
        m_pTree->editItem(item, kValueColumn);
    }
}

void CPropertyGrid::EndEdit() {
    // Leaving an editor commits it; the focus may well have stayed there when a key pressed the button.
    QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && focus != m_pTree && m_pTree->isAncestorOf(focus)) {
        m_pTree->setFocus();
    }
}

void CPropertyGrid::ShowDescription(const QTreeWidgetItem* item) {
    const CJDEPropSetting* row = RowOf(item);
    m_pName->setText(row != nullptr ? ToQString(row->m_strLabel) : QString());
    m_pDescription->setText(row != nullptr ? ToQString(row->m_strDescription) : QString());
}

bool CPropertyGrid::eventFilter(QObject* object, QEvent* event) {
    if (object != m_pTree || event->type() != QEvent::KeyPress || static_cast<CTree*>(m_pTree)->IsEditing()) {
        return QWidget::eventFilter(object, event);
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    QTreeWidgetItem* item = m_pTree->currentItem();
    const CJDEPropSetting* row = RowOf(item);
    if (row == nullptr || row->m_bGroup) {
        return QWidget::eventFilter(object, event);
    }
    const QString text = key->text();
    const bool typed = !text.isEmpty() && text.at(0).isPrint() &&
                       !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool opens =
        key->key() == Qt::Key_F2 || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (!typed && !opens) {
        return QWidget::eventFilter(object, event);
    }
    m_pTree->editItem(item, kValueColumn);
    // A typed character opens the editor and replaces what stood there.
    QWidget* editor = QApplication::focusWidget();
    if (typed && editor != nullptr && editor != m_pTree && m_pTree->isAncestorOf(editor)) {
        QApplication::sendEvent(editor, event);
    }
    return true;
}

} // namespace carvelot
