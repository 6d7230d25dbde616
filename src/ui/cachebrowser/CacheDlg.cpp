#include "ui/cachebrowser/CacheDlg.h"

#include "cachebrowser/CacheDefinition.h"
#include "text/Numbers.h"
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

template <typename TWidget>
TWidget* Named(TWidget* pWidget, const char* pszName, const QString& strAccessible) {
    pWidget->setObjectName(QLatin1String(pszName));
    pWidget->setAccessibleName(strAccessible);
    return pWidget;
}

QPushButton* Button(const QString& strText, const char* pszName) {
    auto* pButton = new QPushButton(strText);
    pButton->setObjectName(QLatin1String(pszName));
    pButton->setAutoDefault(false);
    return pButton;
}

QLabel* Label(const QString& strText, QWidget* pBuddy) {
    auto* pLabel = new QLabel(strText);
    pLabel->setBuddy(pBuddy);
    return pLabel;
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
    QPushButton* pAdd = Button(tr("Add"), "Add");
    QPushButton* pRemove = Button(tr("Remove"), "Remove");
    QPushButton* pLoad = Button(tr("Load"), "Load");
    QPushButton* pSave = Button(tr("Save"), "Save");
    QPushButton* pParse = Button(tr("Parse"), "Parse");

    const int nCharacter = fontMetrics().averageCharWidth();
    m_editCacheName->setReadOnly(true);
    m_editInstance->setReadOnly(true);
    m_editArraySize->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_editArraySize));
    m_editArraySize->setFixedWidth(nCharacter * 10 + 24);
    m_editColumnName->setMinimumWidth(nCharacter * 18);
    m_lstColumns->setMinimumHeight(m_lstColumns->fontMetrics().lineSpacing() * 8);
    m_editStructure->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_editStructure->setTabChangesFocus(true);
    m_editStructure->setMinimumHeight(m_editStructure->fontMetrics().lineSpacing() * 6);

    auto* pCache = new QHBoxLayout;
    pCache->addWidget(Label(tr("Name"), m_editCacheName));
    pCache->addWidget(m_editCacheName, 1);
    pCache->addWidget(Label(tr("Instance"), m_editInstance));
    pCache->addWidget(m_editInstance, 1);

    auto* pMember = new QHBoxLayout;
    pMember->addWidget(Label(tr("Name"), m_editColumnName));
    pMember->addWidget(m_editColumnName, 1);
    pMember->addWidget(Label(tr("Datatype"), m_cmbType));
    pMember->addWidget(m_cmbType);
    pMember->addWidget(Label(tr("Array"), m_editArraySize));
    pMember->addWidget(m_editArraySize);
    pMember->addWidget(pAdd);
    auto* pListButtons = new QVBoxLayout;
    pListButtons->addWidget(pRemove);
    pListButtons->addWidget(pLoad);
    pListButtons->addWidget(pSave);
    pListButtons->addStretch();
    auto* pList = new QHBoxLayout;
    pList->addWidget(m_lstColumns, 1);
    pList->addLayout(pListButtons);
    auto* pColumns = new QGroupBox(tr("Cache Columns"));
    auto* pColumnsLayout = new QVBoxLayout(pColumns);
    pColumnsLayout->addLayout(pMember);
    pColumnsLayout->addLayout(pList, 1);

    auto* pStructure = new QGroupBox(tr("Data Structure"));
    auto* pStructureLayout = new QHBoxLayout(pStructure);
    pStructureLayout->addWidget(m_editStructure, 1);
    pStructureLayout->addWidget(pParse, 0, Qt::AlignTop);

    int nButton = 0;
    for (const QPushButton* pButton : {pAdd, pRemove, pLoad, pSave, pParse})
        nButton = std::max(nButton, pButton->sizeHint().width());
    for (QPushButton* pButton : {pAdd, pRemove, pLoad, pSave, pParse})
        pButton->setFixedWidth(nButton);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addLayout(pCache);
    pLayout->addWidget(pColumns, 3);
    pLayout->addWidget(pStructure, 2);
    pLayout->addWidget(pButtons);
    // In the dialog already: else it would forget it when the focus passes Cancel.
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    resize(std::max(620, sizeHint().width()), std::max(480, sizeHint().height()));
    QWidget* pLast = nullptr;
    for (QWidget* pNext : std::initializer_list<QWidget*>{
             m_editColumnName, m_cmbType, m_editArraySize, pAdd, m_lstColumns, pRemove, pLoad, pSave,
             m_editStructure, pParse, pButtons->button(QDialogButtonBox::Ok),
             pButtons->button(QDialogButtonBox::Cancel), m_editCacheName, m_editInstance}) {
        if (pLast != nullptr)
            setTabOrder(pLast, pNext);
        pLast = pNext;
    }
    m_editColumnName->setFocus();

    m_editCacheName->setText(ToQString(m_pDoc->m_strName));
    m_editInstance->setText(ToQString(m_pDoc->m_strInstance));
    m_editCacheName->setCursorPosition(0);
    m_editInstance->setCursorPosition(0);
    m_pWorkDS->CopyMembers(m_pDoc->m_cacheDS);
    for (const char* pszType : kTypes)
        m_cmbType->insertItem(0, QLatin1String(pszType));
    m_cmbType->setCurrentIndex(-1);
    m_editArraySize->setText(QString::number(m_nArraySize));
    m_pWorkDS->FillMemberList(*this);

    connect(pAdd, &QPushButton::clicked, this, &CCacheDlg::OnAdd);
    connect(pRemove, &QPushButton::clicked, this, &CCacheDlg::OnRemove);
    connect(pLoad, &QPushButton::clicked, this, &CCacheDlg::OnLoad);
    connect(pSave, &QPushButton::clicked, this, &CCacheDlg::OnSave);
    connect(pParse, &QPushButton::clicked, this, &CCacheDlg::OnParse);
    connect(pButtons, &QDialogButtonBox::accepted, this, &CCacheDlg::OnOk);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

CCacheDlg::~CCacheDlg() {
    m_lstColumns->Fill(nullptr); // the rows go before the list
}

void CCacheDlg::Fill(std::vector<std::shared_ptr<CMember>> listRows) {
    m_lstColumns->Model().BeginFill();
    m_rows.m_listRows = std::move(listRows);
    m_lstColumns->Fill(&m_rows);
}

bool CCacheDlg::UpdateData() {
    m_strColumnName = m_editColumnName->text();
    m_strDataType = m_cmbType->currentText();
    const std::string strText = ToUtf8(m_editArraySize->text());
    std::size_t nPosition = 0;
    QString strMessage;
    if (!ScanInteger(strText, nPosition, m_nArraySize) || nPosition != strText.size())
        strMessage = tr("Enter an integer.");
    else if (m_nArraySize < kLeastArraySize || m_nArraySize > kMostArraySize)
        strMessage = tr("Enter an integer between %1 and %2.").arg(kLeastArraySize).arg(kMostArraySize);
    else
        return true;
    UserInterface().ShowMessage(strMessage);
    m_editArraySize->setFocus();
    m_editArraySize->selectAll();
    return false;
}

void CCacheDlg::OnAdd() {
    if (!UpdateData())
        return;
    if (m_strColumnName.isEmpty())
        return UserInterface().ShowMessage(QStringLiteral("Column name is required"));
    if (m_strDataType.isEmpty())
        return UserInterface().ShowMessage(QStringLiteral("Data Type is required"));
    std::shared_ptr<CMember> pMember = m_pWorkDS->CreateMember(ToUtf8(m_strDataType), {});
    if (pMember == nullptr)
        return UserInterface().ShowMessage(QStringLiteral("Failed to create member"));
    pMember->m_count = m_nArraySize;
    CCacheDS::SetMemberName(*pMember, ToUtf8(m_strColumnName));
    m_pWorkDS->m_members.push_back(std::move(pMember));
    m_pWorkDS->FillMemberList(*this);
    m_lstColumns->scrollToBottom();
}

void CCacheDlg::OnParse() {
    std::string strText = ToUtf8(m_editStructure->toPlainText());
    m_pWorkDS->ParseTypedef(strText);
    m_pWorkDS->FillMemberList(*this);
    UserInterface().ShowMessage(QStringLiteral(" size: %1").arg(m_pWorkDS->GetRowSize()));
}

void CCacheDlg::OnRemove() {
    const int nRow = m_lstColumns->SelectedRow();
    if (nRow < 0)
        return;
    // After a load that failed the list still shows members that are no longer there.
    std::vector<std::shared_ptr<CMember>> listRows = m_rows.m_listRows;
    std::erase(m_pWorkDS->m_members, listRows[static_cast<std::size_t>(nRow)]);
    listRows.erase(listRows.begin() + nRow);
    const int nScrolled = m_lstColumns->verticalScrollBar()->value();
    Fill(std::move(listRows));
    m_lstColumns->verticalScrollBar()->setValue(nScrolled);
    // The row that follows has the focus, and is selected by the next key.
    const QModelIndex next =
        m_lstColumns->Model().index(std::min(nRow, m_lstColumns->Model().rowCount() - 1), 0);
    m_lstColumns->selectionModel()->setCurrentIndex(next, QItemSelectionModel::NoUpdate);
}

void CCacheDlg::OnLoad() {
    const auto strPath =
        UserInterface().AskOpenFile({EFiles::Definitions, tr("Open"), QStringLiteral("cds"),
                                     QStringLiteral("*.cds"), QLatin1String(kDefinitionFilter)});
    if (!strPath)
        return;
    const std::string strMessage = LoadCacheDefinition(ToUtf8(*strPath), *m_pWorkDS);
    if (strMessage.empty())
        m_pWorkDS->FillMemberList(*this);
    else
        UserInterface().ShowMessage(ToQString(strMessage));
}

void CCacheDlg::OnSave() {
    const auto strPath =
        UserInterface().AskSaveFile({EFiles::Definitions, tr("Save As"), QStringLiteral("cds"),
                                     QStringLiteral("Cache"), QLatin1String(kDefinitionFilter)});
    if (!strPath)
        return;
    const std::string strMessage = SaveCacheDefinition(ToUtf8(*strPath), *m_pWorkDS);
    if (!strMessage.empty())
        UserInterface().ShowMessage(ToQString(strMessage));
}

void CCacheDlg::OnOk() {
    m_pDoc->m_cacheDS.CopyMembers(*m_pWorkDS);
    m_pWorkDS->Clear();
    accept();
}

} // namespace carvelot
