#include "ui/cachebrowser/CacheDSView.h"

#include "ui/kit/ListCtrl.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace carvelot {

namespace {

constexpr int kLeft = 2;
constexpr int kGroupTop = 1;
constexpr int kGroupHeight = 58;
constexpr int kListTop = 62;

} // namespace

CCacheDSView::CCacheDSView(CCacheDoc& cache)
    : m_cache(cache), m_pGroup(new QGroupBox(this)), m_pProcess(new QLineEdit), m_pHandle(new QLineEdit),
      m_pList(new CListCtrl(SpecsOf(MemberColumns()), tr("Cache columns"), this)) {
    m_cache.m_pDSView = this;
    auto* pLayout = new QHBoxLayout(m_pGroup);
    const auto add = [&](const QString& strLabel, const char* pszName, QLineEdit* pEdit, int nStretch) {
        auto* pLabel = new QLabel(strLabel);
        pLabel->setBuddy(pEdit);
        pEdit->setObjectName(QLatin1String(pszName));
        pEdit->setAccessibleName(strLabel);
        pEdit->setMinimumWidth(pEdit->fontMetrics().averageCharWidth() * 7);
        pLayout->addWidget(pLabel);
        pLayout->addWidget(pEdit, nStretch);
    };
    add(tr("Process"), "Process", m_pProcess, 2);
    add(tr("Handle"), "Handle", m_pHandle, 3);
    m_pList->setObjectName(QStringLiteral("Members"));
    m_cache.m_cacheDS.FillMemberList(*this);
    m_pHandle->setText(ToQString(m_cache.m_strHandle));
    m_pProcess->setText(QString::number(static_cast<std::int32_t>(m_cache.m_processId)));
    for (QLineEdit* pEdit : {m_pProcess, m_pHandle}) {
        pEdit->setCursorPosition(0);
        pEdit->setAcceptDrops(false); // a log dropped here opens as everywhere
    }
    setTabOrder(m_pProcess, m_pHandle);
    setTabOrder(m_pHandle, m_pList);
    setFocusProxy(m_pList);
}

CCacheDSView::~CCacheDSView() {
    if (m_cache.m_pDSView == this)
        m_cache.m_pDSView = nullptr;
    m_pList->Fill(nullptr); // the rows go before the list
}

std::string CCacheDSView::ProcessText() const { return ToUtf8(m_pProcess->text()); }

std::string CCacheDSView::HandleText() const { return ToUtf8(m_pHandle->text()); }

void CCacheDSView::Fill(std::vector<std::shared_ptr<CMember>> listRows) {
    m_pList->Model().BeginFill();
    m_rows.m_listRows = std::move(listRows);
    m_pList->Fill(&m_rows);
}

void CCacheDSView::LayOut() {
    // With a large font the edits need more.
    const int nGroup = std::max(kGroupHeight, m_pGroup->minimumSizeHint().height());
    const int nTop = kListTop - kGroupHeight + nGroup;
    m_pGroup->setGeometry(kLeft, kGroupTop, std::max(width() - kLeft, 0), nGroup);
    m_pList->setGeometry(kLeft, nTop, std::max(width() - kLeft, 0), std::max(height() - nTop, 0));
}

void CCacheDSView::resizeEvent(QResizeEvent* pEvent) {
    QWidget::resizeEvent(pEvent);
    LayOut();
}

void CCacheDSView::changeEvent(QEvent* pEvent) {
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange || pEvent->type() == QEvent::StyleChange)
        LayOut();
}

} // namespace carvelot
