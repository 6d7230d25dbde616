#include "ui/tools/PropertyGrid.h"

#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/ReportView.h"

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

    QWidget* createEditor(QWidget* pParent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        const CJDEPropSetting* pRow = CPropertyGrid::RowOf(m_tree.itemFromIndex(index));
        if (index.column() != kValueColumn || pRow == nullptr || pRow->m_bGroup)
            return nullptr;
        if (pRow->m_listOptions.empty()) {
            auto* pEdit = new QLineEdit(pParent);
            pEdit->setFrame(false);
            pEdit->setAccessibleName(ToQString(pRow->m_strLabel));
            return pEdit;
        }
        auto* pCombo = new COptionBox(pParent);
        pCombo->setAccessibleName(ToQString(pRow->m_strLabel));
        pCombo->setFrame(false);
        for (const std::string& strOption : pRow->m_listOptions)
            pCombo->addItem(ToQString(strOption));
        if (pRow->m_bAllowEdit) {
            pCombo->setEditable(true);
            // What is typed stands as it was typed.
            pCombo->setCompleter(nullptr);
            pCombo->setInsertPolicy(QComboBox::NoInsert);
        }
        auto* pThis = const_cast<CValueDelegate*>(this);
        connect(pCombo, &QComboBox::activated, pThis, [pThis, pCombo] {
            if (!pCombo->m_bListOpen)
                return;
            emit pThis->commitData(pCombo);
            emit pThis->closeEditor(pCombo);
        });
        return pCombo;
    }

    void setEditorData(QWidget* pEditor, const QModelIndex& index) const override {
        const QString strValue = index.data(Qt::EditRole).toString();
        if (auto* pEdit = qobject_cast<QLineEdit*>(pEditor))
            pEdit->setText(strValue);
        if (auto* pCombo = qobject_cast<QComboBox*>(pEditor)) {
            pCombo->setCurrentIndex(pCombo->findText(strValue, Qt::MatchExactly | Qt::MatchCaseSensitive));
            // The file may hold a value that is none of the options; it stays until another is chosen.
            if (pCombo->isEditable())
                pCombo->setEditText(strValue);
            else
                pCombo->setPlaceholderText(strValue);
        }
    }

    void setModelData(QWidget* pEditor, QAbstractItemModel*, const QModelIndex& index) const override {
        QTreeWidgetItem& item = *m_tree.itemFromIndex(index);
        if (const auto* pEdit = qobject_cast<QLineEdit*>(pEditor))
            m_grid.SetValue(item, pEdit->text());
        const auto* pCombo = qobject_cast<QComboBox*>(pEditor);
        if (pCombo != nullptr && (pCombo->isEditable() || pCombo->currentIndex() >= 0))
            m_grid.SetValue(item, pCombo->currentText());
    }

    void updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                              const QModelIndex&) const override {
        // Editors need a little more height than a row's text.
        QRect rect = option.rect;
        const int nMissing = std::max(0, pEditor->sizeHint().height() - rect.height());
        rect.adjust(0, -nMissing / 2, 0, nMissing - nMissing / 2);
        pEditor->setGeometry(rect);
    }

    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const CJDEPropSetting* pRow = CPropertyGrid::RowOf(m_tree.itemFromIndex(index));
        if (pRow != nullptr && pRow->m_bGroup)
            pPainter->fillRect(option.rect, option.palette.brush(QPalette::Button));
        QStyledItemDelegate::paint(pPainter, option, index);
        pPainter->save();
        pPainter->setPen(option.palette.color(QPalette::Mid).lighter(125));
        pPainter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
        if (index.column() == kValueColumn)
            pPainter->drawLine(option.rect.topLeft(), option.rect.bottomLeft());
        pPainter->restore();
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

CPropertyGrid::CPropertyGrid(QWidget* pParent) : QWidget(pParent) {
    auto* pTree = new CTree;
    m_pTree = pTree;
    m_pTree->setObjectName(QStringLiteral("Grid"));
    m_pTree->setAccessibleName(tr("Settings"));
    m_pTree->setColumnCount(2);
    m_pTree->setHeaderLabels({QStringLiteral("Property"), QStringLiteral("Value")});
    m_pTree->setHeaderHidden(true);
    m_pTree->setUniformRowHeights(true);
    m_pTree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTree->setAllColumnsShowFocus(true);
    m_pTree->header()->setStretchLastSection(true);
    m_pTree->setItemDelegate(new CValueDelegate(*this, *pTree));
    m_pTree->installEventFilter(this);
    CopyRowsByKey(*m_pTree);

    auto* pArea = new QFrame;
    pArea->setFrameShape(QFrame::StyledPanel);
    m_pName = PlainLabel();
    QFont bold = m_pName->font();
    bold.setBold(true);
    m_pName->setFont(bold);
    m_pDescription = PlainLabel();
    m_pDescription->setObjectName(QStringLiteral("Description"));
    m_pDescription->setWordWrap(true);
    m_pDescription->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* pAreaLayout = new QVBoxLayout(pArea);
    pAreaLayout->setContentsMargins(6, 4, 6, 4);
    pAreaLayout->setSpacing(2);
    pAreaLayout->addWidget(m_pName);
    pAreaLayout->addWidget(m_pDescription, 1);
    // Room for the longest description, so that the grid does not jump from row to row.
    pArea->setFixedHeight(m_pName->fontMetrics().lineSpacing() * 7 + 14);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(2);
    pLayout->addWidget(m_pTree, 1);
    pLayout->addWidget(pArea);
    setFocusProxy(m_pTree);

    connect(m_pTree, &QTreeWidget::currentItemChanged, this, &CPropertyGrid::ShowDescription);
    connect(m_pTree, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* pItem, int nColumn) {
        if (nColumn == kValueColumn)
            m_pTree->editItem(pItem, kValueColumn);
    });
    connect(m_pTree, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* pItem) { m_pTree->editItem(pItem, kValueColumn); });
}

void CPropertyGrid::SetRows(std::vector<CJDEPropSetting>& listTop) {
    m_pTree->clear();
    for (CJDEPropSetting& row : listTop)
        AddRow(m_pTree->invisibleRootItem(), row);
    m_pTree->expandAll();
    m_pTree->setCurrentItem(m_pTree->topLevelItem(0));
    m_pTree->resizeColumnToContents(kLabelColumn);
    constexpr int kGap = 16;
    m_pTree->setColumnWidth(kLabelColumn, std::min(m_pTree->columnWidth(kLabelColumn) + kGap, width() / 2));
}

void CPropertyGrid::AddRow(QTreeWidgetItem* pParent, CJDEPropSetting& row) {
    auto* pItem = new QTreeWidgetItem(pParent);
    pItem->setText(kLabelColumn, ToQString(row.m_strLabel));
    pItem->setData(kLabelColumn, Qt::UserRole, QVariant::fromValue(static_cast<void*>(&row)));
    if (row.m_bGroup) {
        QFont bold = m_pTree->font();
        bold.setBold(true);
        pItem->setFont(kLabelColumn, bold);
        pItem->setFirstColumnSpanned(true);
    } else {
        pItem->setText(kValueColumn, ToQString(row.GetValue()));
        pItem->setFlags(pItem->flags() | Qt::ItemIsEditable);
    }
    for (CJDEPropSetting& child : row.m_listChildren)
        AddRow(pItem, child);
}

CJDEPropSetting* CPropertyGrid::RowOf(const QTreeWidgetItem* pItem) {
    return pItem == nullptr
               ? nullptr
               : static_cast<CJDEPropSetting*>(pItem->data(kLabelColumn, Qt::UserRole).value<void*>());
}

void CPropertyGrid::SetValue(QTreeWidgetItem& item, const QString& strValue) {
    CJDEPropSetting& row = *RowOf(&item);
    row.SetValue(ToUtf8(strValue));
    item.setText(kValueColumn, ToQString(row.GetValue()));
    QFont font = m_pTree->font();
    font.setBold(row.IsModified());
    item.setFont(kValueColumn, font);
}

void CPropertyGrid::EndEdit() {
    // Leaving an editor commits it; the focus may well have stayed there when a key pressed the button.
    QWidget* pFocus = QApplication::focusWidget();
    if (pFocus != nullptr && pFocus != m_pTree && m_pTree->isAncestorOf(pFocus))
        m_pTree->setFocus();
}

void CPropertyGrid::ShowDescription(const QTreeWidgetItem* pItem) {
    const CJDEPropSetting* pRow = RowOf(pItem);
    m_pName->setText(pRow != nullptr ? ToQString(pRow->m_strLabel) : QString());
    m_pDescription->setText(pRow != nullptr ? ToQString(pRow->m_strDescription) : QString());
}

bool CPropertyGrid::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pObject != m_pTree || pEvent->type() != QEvent::KeyPress || static_cast<CTree*>(m_pTree)->IsEditing())
        return QWidget::eventFilter(pObject, pEvent);
    const auto* pKey = static_cast<QKeyEvent*>(pEvent);
    QTreeWidgetItem* pItem = m_pTree->currentItem();
    const CJDEPropSetting* pRow = RowOf(pItem);
    if (pRow == nullptr || pRow->m_bGroup)
        return QWidget::eventFilter(pObject, pEvent);
    const QString strText = pKey->text();
    const bool bTyped = !strText.isEmpty() && strText.at(0).isPrint() &&
                        !(pKey->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool bOpens =
        pKey->key() == Qt::Key_F2 || pKey->key() == Qt::Key_Return || pKey->key() == Qt::Key_Enter;
    if (!bTyped && !bOpens)
        return QWidget::eventFilter(pObject, pEvent);
    m_pTree->editItem(pItem, kValueColumn);
    // A typed character opens the editor and replaces what stood there.
    QWidget* pEditor = QApplication::focusWidget();
    if (bTyped && pEditor != nullptr && pEditor != m_pTree && m_pTree->isAncestorOf(pEditor))
        QApplication::sendEvent(pEditor, pEvent);
    return true;
}

} // namespace carvelot
