#include "ui/cachebrowser/CacheDlg.h"

#include "cachebrowser/CacheDefinition.h"
#include "text/Integers.h"
#include "ui/kit/ListCtrl.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace carvelot {

namespace {

constexpr std::int32_t kLeastArraySize = 1;
constexpr std::int32_t kMostArraySize = 99999999;

// Each is inserted above those before it. The two of two words are no type words: they can be chosen and
// never be added.
constexpr const char* kTypes[] = {"int",  "unsigned int", "long",         "unsigned long", "bool",
                                  "char", "JCHAR",        "MATH_NUMERIC", "JDEDATE"};

template <typename TWidget> TWidget* Named(TWidget* widget, const char* name, const QString& accessible) {
    widget->setObjectName(QLatin1String(name));
    widget->setAccessibleName(accessible);
    return widget;
}

QPushButton* Button(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QLabel* Label(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

CCacheDlg::CCacheDlg(CCacheDoc& document)
    : QDialog(QApplication::activeWindow()), m_pDoc(&document), m_pWorkDS(std::make_unique<CCacheDS>()) {
    setWindowTitle(tr("Define Cache Structure"));

    m_editCacheName = Named(new QLineEdit, "CacheName", tr("Cache name"));
    m_editInstance = Named(new QLineEdit, "Instance", tr("Instance"));
    m_editColumnName = Named(new QLineEdit, "ColumnName", tr("Column name"));
    m_cmbType = Named(new QComboBox, "DataType", tr("Data type"));
    m_editArraySize = Named(new QLineEdit, "Array", tr("Array size"));
    m_lstColumns = new CListCtrl(SpecsOf(MemberColumns()), tr("Cache columns"), this);
    m_lstColumns->setObjectName(QStringLiteral("Columns"));
    m_editStructure = Named(new QPlainTextEdit, "Structure", tr("Typedef of the data structure"));
    QPushButton* add = Button(tr("Add"), "Add");
    QPushButton* remove = Button(tr("Remove"), "Remove");
    QPushButton* load = Button(tr("Load"), "Load");
    QPushButton* save = Button(tr("Save"), "Save");
    QPushButton* parse = Button(tr("Parse"), "Parse");

    const int character = fontMetrics().averageCharWidth();
    m_editCacheName->setReadOnly(true);
    m_editInstance->setReadOnly(true);
    m_editArraySize->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_editArraySize));
    m_editArraySize->setFixedWidth(character * 10 + 24);
    m_editColumnName->setMinimumWidth(character * 18);
    m_lstColumns->setMinimumHeight(m_lstColumns->fontMetrics().lineSpacing() * 8);
    m_editStructure->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_editStructure->setTabChangesFocus(true);
    m_editStructure->setMinimumHeight(m_editStructure->fontMetrics().lineSpacing() * 6);

    auto* cache = new QHBoxLayout;
    cache->addWidget(Label(tr("Name"), m_editCacheName));
    cache->addWidget(m_editCacheName, 1);
    cache->addWidget(Label(tr("Instance"), m_editInstance));
    cache->addWidget(m_editInstance, 1);

    auto* member = new QHBoxLayout;
    member->addWidget(Label(tr("Name"), m_editColumnName));
    member->addWidget(m_editColumnName, 1);
    member->addWidget(Label(tr("Datatype"), m_cmbType));
    member->addWidget(m_cmbType);
    member->addWidget(Label(tr("Array"), m_editArraySize));
    member->addWidget(m_editArraySize);
    member->addWidget(add);
    auto* buttonColumn = new QVBoxLayout;
    buttonColumn->addWidget(remove);
    buttonColumn->addWidget(load);
    buttonColumn->addWidget(save);
    buttonColumn->addStretch();
    auto* list = new QHBoxLayout;
    list->addWidget(m_lstColumns, 1);
    list->addLayout(buttonColumn);
    auto* columns = new QGroupBox(tr("Cache Columns"));
    auto* columnsLayout = new QVBoxLayout(columns);
    columnsLayout->addLayout(member);
    columnsLayout->addLayout(list, 1);

    auto* structure = new QGroupBox(tr("Data Structure"));
    auto* structureLayout = new QHBoxLayout(structure);
    structureLayout->addWidget(m_editStructure, 1);
    structureLayout->addWidget(parse, 0, Qt::AlignTop);

    int width = 0;
    for (const QPushButton* button : {add, remove, load, save, parse}) {
        width = std::max(width, button->sizeHint().width());
    }
    for (QPushButton* button : {add, remove, load, save, parse}) {
        button->setFixedWidth(width);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(cache);
    layout->addWidget(columns, 3);
    layout->addWidget(structure, 2);
    layout->addWidget(buttons);
    // In the dialog already: else it would forget it when the focus passes Cancel.
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    resize(std::max(620, sizeHint().width()), std::max(480, sizeHint().height()));
    QWidget* last = nullptr;
    for (QWidget* next : std::initializer_list<QWidget*>{
             m_editColumnName, m_cmbType, m_editArraySize, add, m_lstColumns, remove, load, save,
             m_editStructure, parse, buttons->button(QDialogButtonBox::Ok),
             buttons->button(QDialogButtonBox::Cancel), m_editCacheName, m_editInstance}) {
        if (last != nullptr) {
            setTabOrder(last, next);
        }
        last = next;
    }
    m_editColumnName->setFocus();

    m_editCacheName->setText(ToQString(m_pDoc->m_strName));
    m_editInstance->setText(ToQString(m_pDoc->m_strInstance));
    m_editCacheName->setCursorPosition(0);
    m_editInstance->setCursorPosition(0);
    m_pWorkDS->CopyMembers(m_pDoc->m_cacheDS);
    for (const char* type : kTypes) {
        m_cmbType->insertItem(0, QLatin1String(type));
    }
    m_cmbType->setCurrentIndex(-1);
    m_editArraySize->setText(QString::number(m_nArraySize));
    m_pWorkDS->FillMemberList(*this);

    connect(add, &QPushButton::clicked, this, &CCacheDlg::OnAdd);
    connect(remove, &QPushButton::clicked, this, &CCacheDlg::OnRemove);
    connect(load, &QPushButton::clicked, this, &CCacheDlg::OnLoad);
    connect(save, &QPushButton::clicked, this, &CCacheDlg::OnSave);
    connect(parse, &QPushButton::clicked, this, &CCacheDlg::OnParse);
    connect(buttons, &QDialogButtonBox::accepted, this, &CCacheDlg::OnOk);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

CCacheDlg::~CCacheDlg() {
    m_lstColumns->Fill(nullptr); // the rows go before the list
}

void CCacheDlg::Fill(std::vector<std::shared_ptr<CMember>> rows) {
    m_lstColumns->Model().BeginFill();
    m_rows.m_listRows = std::move(rows);
    m_lstColumns->Fill(&m_rows);
}

bool CCacheDlg::UpdateData() {
    m_strColumnName = m_editColumnName->text();
    m_strDataType = m_cmbType->currentText();
    const std::string text = ToUtf8(m_editArraySize->text());
    std::size_t position = 0;
    QString message;
    if (!ScanInteger(text, position, m_nArraySize) || position != text.size()) {
        message = tr("Enter an integer.");
    } else if (m_nArraySize < kLeastArraySize || m_nArraySize > kMostArraySize) {
        message = tr("Enter an integer between %1 and %2.").arg(kLeastArraySize).arg(kMostArraySize);
    } else {
        return true;
    }
    UserInterface().ShowMessage(message);
    m_editArraySize->setFocus();
    m_editArraySize->selectAll();
    return false;
}

void CCacheDlg::OnAdd() {
    if (!UpdateData()) {
        return;
    }
    if (m_strColumnName.isEmpty()) {
        return UserInterface().ShowMessage(QStringLiteral("Column name is required"));
    }
    if (m_strDataType.isEmpty()) {
        return UserInterface().ShowMessage(QStringLiteral("Data Type is required"));
    }
    std::shared_ptr<CMember> member = m_pWorkDS->CreateMember(ToUtf8(m_strDataType), {});
    if (member == nullptr) {
        return UserInterface().ShowMessage(QStringLiteral("Failed to create member"));
    }
    member->m_count = m_nArraySize;
    CCacheDS::SetMemberName(*member, ToUtf8(m_strColumnName));
    m_pWorkDS->m_members.push_back(std::move(member));
    m_pWorkDS->FillMemberList(*this);
    m_lstColumns->scrollToBottom();
}

void CCacheDlg::OnParse() {
    std::string text = ToUtf8(m_editStructure->toPlainText());
    m_pWorkDS->ParseTypedef(text);
    m_pWorkDS->FillMemberList(*this);
    UserInterface().ShowMessage(QStringLiteral(" size: %1").arg(m_pWorkDS->GetRowSize()));
}

void CCacheDlg::OnRemove() {
    const int row = m_lstColumns->SelectedRow();
    if (row < 0) {
        return;
    }
    // After a load that failed the list still shows members that are no longer there.
    std::vector<std::shared_ptr<CMember>> rows = m_rows.m_listRows;
    std::erase(m_pWorkDS->m_members, rows[static_cast<std::size_t>(row)]);
    rows.erase(rows.begin() + row);
    const int scrolled = m_lstColumns->verticalScrollBar()->value();
    Fill(std::move(rows));
    m_lstColumns->verticalScrollBar()->setValue(scrolled);
    // The row that follows has the focus, and is selected by the next key.
    const QModelIndex next =
        m_lstColumns->Model().index(std::min(row, m_lstColumns->Model().rowCount() - 1), 0);
    m_lstColumns->selectionModel()->setCurrentIndex(next, QItemSelectionModel::NoUpdate);
}

void CCacheDlg::OnLoad() {
    const auto path =
        UserInterface().AskOpenFile({EFiles::Definitions, tr("Open"), QStringLiteral("cds"),
                                     QStringLiteral("*.cds"), QLatin1String(kDefinitionFilter)});
    if (!path) {
        return;
    }
    const std::string message = LoadCacheDefinition(ToUtf8(*path), *m_pWorkDS);
    if (message.empty()) {
        m_pWorkDS->FillMemberList(*this);
    } else {
        UserInterface().ShowMessage(ToQString(message));
    }
}

void CCacheDlg::OnSave() {
    const auto path =
        UserInterface().AskSaveFile({EFiles::Definitions, tr("Save As"), QStringLiteral("cds"),
                                     QStringLiteral("Cache"), QLatin1String(kDefinitionFilter)});
    if (!path) {
        return;
    }
    const std::string message = SaveCacheDefinition(ToUtf8(*path), *m_pWorkDS);
    if (!message.empty()) {
        UserInterface().ShowMessage(ToQString(message));
    }
}

void CCacheDlg::OnOk() {
    m_pDoc->m_cacheDS.CopyMembers(*m_pWorkDS);
    m_pWorkDS->Clear();
    accept();
}

} // namespace carvelot
